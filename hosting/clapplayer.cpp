#include "hosting/clapplayer.h"

#include "hosting/turn.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace mirelon::hosting {

namespace {

constexpr std::size_t toldRoom = 64 * 1024;

std::vector<clap_param_info> parametersOf(const ClapInstance& instance) {
    std::vector<clap_param_info> infos;
    for (std::uint32_t i = 0; i < instance.parameterCount(); ++i)
        if (const auto info = instance.parameterInfo(i))
            infos.push_back(*info);
    return infos;
}

} // namespace

ClapPlayer::ClapPlayer(const ClapLibrary& library, const std::string& id, double rate_)
    : instance(library, host, id)
    , infos(parametersOf(instance))
    , values(infos.size())
    , rate(rate_)
    , parts(std::size_t{instance.inputChannels()} + instance.outputChannels())
    , told(toldRoom) {
    in.reserve(infos.size());
    readValues();
}

std::optional<std::size_t> ClapPlayer::indexOf(clap_id parameter) const noexcept {
    const auto found = std::ranges::find(infos, parameter, &clap_param_info::id);
    if (found == infos.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - infos.begin());
}

double ClapPlayer::value(std::size_t index) const noexcept {
    return values[index].number.load(std::memory_order_relaxed);
}

void ClapPlayer::setValue(std::size_t index, double value) noexcept {
    values[index].number.store(value, std::memory_order_relaxed);
    values[index].isNew.store(true, std::memory_order_release);
}

// What has been set and not yet been taken over counts more.
void ClapPlayer::readValues() {
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!values[i].isNew.load(std::memory_order_acquire))
            if (const auto value = instance.value(infos[i].id))
                values[i].number.store(*value, std::memory_order_relaxed);
}

// --- Cycles ---

void ClapPlayer::collectChanges() noexcept {
    in.clear();
    out.clear();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!values[i].isNew.exchange(false, std::memory_order_acquire))
            continue;
        clap_event_param_value event = clapValueEvent(0, infos[i].id, value(i));
        event.cookie = infos[i].cookie;
        in.add(event);
    }
}

void ClapPlayer::noteTold() noexcept {
    for (const ClapTold& each : out.told()) {
        const auto index = indexOf(each.parameter);
        if (index && each.type == CLAP_EVENT_PARAM_VALUE)
            values[*index].number.store(each.value, std::memory_order_relaxed);
        told.put(0, std::as_bytes(std::span(&each, 1)));
    }
}

template <typename Sample>
void ClapPlayer::process(Sample* const* inputs, Sample* const* outputs,
                         std::uint32_t frames) noexcept {
    const Turn turn(busy, Turn::Manner::spun);
    if (!active) {
        for (std::uint32_t i = 0; i < instance.outputChannels(); ++i)
            std::fill_n(outputs[i], frames, Sample{0});
        return;
    }
    auto** const from = reinterpret_cast<Sample**>(parts.data());
    auto** const to = from + instance.inputChannels();
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t part = std::min(frames - done, largestBlock);
        for (std::uint32_t i = 0; i < instance.inputChannels(); ++i)
            from[i] = inputs[i] + done;
        for (std::uint32_t i = 0; i < instance.outputChannels(); ++i)
            to[i] = outputs[i] + done;
        collectChanges();
        instance.process<Sample>(from, to, part, in.list(), out.list());
        noteTold();
        done += part;
    }
}

template void ClapPlayer::process(float* const*, float* const*, std::uint32_t) noexcept;
template void ClapPlayer::process(double* const*, double* const*, std::uint32_t) noexcept;

void ClapPlayer::settle() noexcept {
    const Turn turn(busy, Turn::Manner::tried);
    if (!turn)
        return;
    collectChanges();
    instance.flush(in.list(), out.list());
    noteTold();
}

// --- Activation ---

void ClapPlayer::activate(double newRate, std::uint32_t newLargestBlock) {
    // A block of the old size may be under way.
    const Turn turn(busy, Turn::Manner::awaited);
    rate = newRate;
    largestBlock = newLargestBlock;
    active = instance.activate(rate, largestBlock);
}

void ClapPlayer::resume() {
    settle();
    activate(rate, largestBlock);
    resumed = true;
}

void ClapPlayer::suspend() {
    const Turn turn(busy, Turn::Manner::awaited);
    instance.deactivate();
    active = resumed = false;
}

void ClapPlayer::setRate(double rate_) {
    if (!(rate_ > 0.0) || !std::isfinite(rate_) || rate_ == rate)
        return;
    if (resumed)
        activate(rate_, largestBlock);
    else
        rate = rate_;
}

void ClapPlayer::setLargestBlock(std::uint32_t frames) {
    if (frames == 0 || frames == largestBlock)
        return;
    if (resumed)
        activate(rate, frames);
    else
        largestBlock = frames;
}

// --- The main loop ---

bool ClapPlayer::serve() {
    instance.serve();
    const int now = host.rescans() + host.dirtyMarks();
    if (now == asked)
        return false;
    asked = now;
    readValues();
    return true;
}

std::optional<ClapTold> ClapPlayer::takeTold() noexcept {
    const auto message = told.take();
    if (!message)
        return std::nullopt;
    ClapTold each{};
    std::memcpy(&each, message->bytes.data(), sizeof each);
    return each;
}

std::optional<std::vector<std::byte>> ClapPlayer::save() {
    settle();
    return instance.save();
}

bool ClapPlayer::load(std::span<const std::byte> state) {
    settle(); // what has been set until now is not to count afterwards
    const bool taken = instance.load(state);
    readValues();
    asked = host.rescans() + host.dirtyMarks();
    return taken;
}

} // namespace mirelon::hosting

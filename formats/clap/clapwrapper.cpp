#include "formats/clap/clapwrapper.h"

#include "formats/clap/parametervalues.h"
#include "formats/clap/streams.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace mirelon::clap {

namespace {

// Until the first activation.
constexpr float usualRate = 44100.0F;
constexpr VstInt32 usualBlock = 1024;

constexpr std::uint32_t channelCount = 2;

bool isStereo(const clap_audio_buffer* buffer, std::uint32_t ports) noexcept {
    return buffer != nullptr && ports > 0 && buffer->channel_count >= channelCount;
}

template <typename Sample>
bool areWhole(Sample* const* inputs, Sample* const* outputs) noexcept {
    const auto whole = [](Sample* const* channels) {
        return channels != nullptr && channels[0] != nullptr && channels[1] != nullptr;
    };
    return whole(inputs) && whole(outputs);
}

} // namespace

ClapWrapper::ClapWrapper(const HostLink& host)
    : EffectHost(usualRate, usualBlock)
    , host(host) {}

ClapWrapper::~ClapWrapper() {
    deactivate();
}

bool ClapWrapper::activate(double rate, std::uint32_t mostFrames) noexcept {
    if (!(rate > 0.0) || !std::isfinite(rate) || mostFrames == 0)
        return false;
    deactivate();
    constexpr std::uint32_t most = std::numeric_limits<VstInt32>::max();
    setFormat(static_cast<float>(rate), static_cast<VstInt32>(std::min(mostFrames, most)));
    dispatch(effMainsChanged, 0, 1);
    return true;
}

void ClapWrapper::deactivate() noexcept {
    dispatch(effMainsChanged, 0, 0);
}

void ClapWrapper::startProcessing() noexcept {
    dispatch(effStartProcess);
}

void ClapWrapper::stopProcessing() noexcept {
    dispatch(effStopProcess);
}

void ClapWrapper::reset() noexcept {
    dispatch(effMainsChanged, 0, 0);
    dispatch(effMainsChanged, 0, 1);
}

// --- Audio ---

clap_process_status ClapWrapper::process(const clap_process& cycle) noexcept {
    const clap_audio_buffer* const in = cycle.audio_inputs;
    const clap_audio_buffer* const out = cycle.audio_outputs;
    if (isStereo(in, cycle.audio_inputs_count) && isStereo(out, cycle.audio_outputs_count)) {
        if (areWhole(in->data32, out->data32)) {
            processCut(in->data32, out->data32, cycle);
            return CLAP_PROCESS_CONTINUE;
        }
        if (areWhole(in->data64, out->data64)) {
            processCut(in->data64, out->data64, cycle);
            return CLAP_PROCESS_CONTINUE;
        }
    }
    flush(cycle.in_events, cycle.out_events);
    return cycle.frames_count == 0 ? CLAP_PROCESS_CONTINUE : CLAP_PROCESS_ERROR;
}

template <typename Sample>
void ClapWrapper::processCut(Sample* const* inputs, Sample* const* outputs,
                             const clap_process& cycle) noexcept {
    std::uint32_t position = 0;
    const auto processUntil = [&](std::uint32_t end) noexcept {
        if (end <= position)
            return;
        Sample* in[] = {inputs[0] + position, inputs[1] + position};
        Sample* out[] = {outputs[0] + position, outputs[1] + position};
        const auto frames = static_cast<VstInt32>(end - position);
        if constexpr (std::is_same_v<Sample, float>)
            effect().processReplacing(in, out, frames);
        else
            effect().processDoubleReplacing(in, out, frames);
        position = end;
    };
    forEachParameterEvent(cycle.in_events, [&](const ParameterEvent& event) {
        processUntil(std::min(event.time, cycle.frames_count));
        apply(event);
    });
    processUntil(cycle.frames_count);
    tellChanges(cycle.out_events);
}

void ClapWrapper::flush(const clap_input_events* in, const clap_output_events* out) noexcept {
    forEachParameterEvent(in, [this](const ParameterEvent& event) { apply(event); });
    tellChanges(out);
}

void ClapWrapper::apply(const ParameterEvent& event) noexcept {
    const auto current = effect().getParameter(event.index);
    if (const auto change = changeByHost(event.index, current, event.value))
        effect().setParameter(event.index, *change);
}

// --- From the user to the host ---

void ClapWrapper::tellChanges(const clap_output_events* out) noexcept {
    if (out == nullptr || out->try_push == nullptr)
        return;
    const bool emptied = changes.take([out](const Change& change) {
        switch (change.kind) {
        case Change::Kind::begin:
            return pushGesture(out, change.index, GestureEdge::begin);
        case Change::Kind::end:
            return pushGesture(out, change.index, GestureEdge::end);
        case Change::Kind::value:
            break;
        }
        return pushValue(out, change.index, hostValueOf(change.index, change.value));
    });
    // What waits for the host to have heard of these is due now.
    if (emptied && valuesChanged.load(std::memory_order_relaxed))
        host.requestCallback();
}

void ClapWrapper::parameterAutomated(VstInt32 index, float value) {
    changes.value(index, value);
    host.requestFlush();
}

void ClapWrapper::gestureBegun(VstInt32 index) {
    changes.begin(index);
}

void ClapWrapper::gestureEnded(VstInt32 index) {
    changes.end(index);
    host.requestFlush();
}

bool ClapWrapper::resizeWindow(int width, int height) {
    return width > 0 && height > 0 &&
           host.resizeWindow(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
}

void ClapWrapper::displayChanged() {
    if (loading.load(std::memory_order_relaxed))
        return;
    valuesChanged.store(true, std::memory_order_relaxed);
    stateChanged.store(true, std::memory_order_relaxed);
    host.requestCallback();
}

void ClapWrapper::tellHost() noexcept {
    if (stateChanged.exchange(false, std::memory_order_relaxed))
        host.markDirty();
    if (changes.takeLoss())
        valuesChanged.store(true, std::memory_order_relaxed);
    if (!valuesChanged.load(std::memory_order_relaxed))
        return;
    // The values that the user has set before would come to the host as newer.
    if (!changes.isEmpty())
        return host.requestFlush();
    valuesChanged.store(false, std::memory_order_relaxed);
    host.rescanValues();
}

// --- State ---

bool ClapWrapper::save(const clap_ostream& stream) {
    ChunkImage bank;
    effect().writeChunk(bank);
    return writeWhole(stream, bank);
}

bool ClapWrapper::load(const clap_istream& stream) {
    ChunkImage bank;
    if (!readWhole(stream, bank) || !isAtEnd(stream))
        return false;
    loading.store(true, std::memory_order_relaxed);
    const ChunkVerdict verdict = effect().applyChunk(bank);
    loading.store(false, std::memory_order_relaxed);
    if (verdict != ChunkVerdict::accepted)
        return false;
    stateChanged.store(false, std::memory_order_relaxed);
    valuesChanged.store(true, std::memory_order_relaxed);
    tellHost();
    return true;
}

} // namespace mirelon::clap

#include "tests/formats/lv2/lv2windowhost.h"

#include "formats/lv2/portvalues.h"

#include <algorithm>
#include <glib.h>
#include <limits>
#include <sstream>
#include <thread>
#include <utility>

namespace mirelon::test {

using namespace std::chrono_literals;

bool Lv2WindowHost::open(std::optional<double> scale) {
    window.reset();
    hosting::Lv2Window::Options options{parent->id(), true, std::nullopt};
    if (scale)
        options.scale = static_cast<float>(*scale);
    window = std::make_unique<NotedWindow>(lv2Bundle(), options);
    window->onWrite = [this](const hosting::Lv2Write& write) { carry(write); };
    told.assign(lv2::kNumPorts, std::numeric_limits<float>::quiet_NaN());
    return window->isOpen();
}

void Lv2WindowHost::close() {
    if (window != nullptr)
        window->close();
}

void Lv2WindowHost::play(Echo how) {
    echo = how;
    instance = std::make_unique<hosting::Lv2Instance>(lv2Bundle(), 48000.0);
}

void Lv2WindowHost::carry(const hosting::Lv2Write& write) {
    if (instance == nullptr)
        return;
    if (!write.number)
        return instance->send(write.message);
    instance->control(write.port) = *write.number;
    told[write.port] = *write.number;
    if (echo == Echo::late)
        late.emplace_back(write.port, *write.number);
}

void Lv2WindowHost::runAudio() {
    float silence[4][64] = {};
    float* const inputs[] = {silence[0], silence[1]};
    float* const outputs[] = {silence[2], silence[3]};
    instance->run(inputs, outputs, 64);
    for (const auto& atom : instance->received())
        window->tell(lv2::kPortNotify, atom);
    for (std::uint32_t port = 0; port < instance->portCount(); ++port) {
        if (!instance->isControlInput(port) && !instance->isControlOutput(port))
            continue;
        const float number = instance->control(port);
        if (std::exchange(told[port], number) != number)
            window->tell(port, number);
    }
}

void Lv2WindowHost::turn() {
    if (window == nullptr)
        return;
    if (instance != nullptr)
        runAudio();
    if (++turns % 4 == 0) {
        const auto due = std::exchange(late, {});
        for (const auto& [port, number] : due)
            window->tell(port, number);
    }
    window->idle();
}

void Lv2WindowHost::runMainLoop(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        std::this_thread::sleep_for(4ms);
    } while (std::chrono::steady_clock::now() < end);
}

WindowHost::Size Lv2WindowHost::size() {
    return window->sizes.empty() ? Size() : window->sizes.front();
}

// The first is the one that it opens in.
std::vector<WindowHost::Size> Lv2WindowHost::sizesAsked() {
    auto asked = window->sizes;
    if (!asked.empty())
        asked.erase(asked.begin());
    return asked;
}

std::string Lv2WindowHost::gestures() {
    std::string all;
    std::istringstream touches(window->touches);
    char end = 0;
    std::uint32_t port = 0;
    while (touches >> end >> port)
        all += end + std::to_string(lv2::parameterOfPort(port));
    return all;
}

std::vector<float> Lv2WindowHost::valuesTold(int parameter) {
    std::vector<float> values;
    for (const float number : numbersWritten(lv2::portOfParameter(parameter)))
        values.push_back(lv2::valueOfPort(parameter, number).value());
    return values;
}

std::optional<float> Lv2WindowHost::value(int parameter) {
    if (instance == nullptr)
        return std::nullopt;
    return lv2::valueOfPort(parameter, instance->control(lv2::portOfParameter(parameter)));
}

std::optional<ChunkImage> Lv2WindowHost::bank() {
    const auto written = banksWritten();
    return written.empty() ? std::nullopt : std::optional(written.back());
}

void Lv2WindowHost::set(int parameter, float value) {
    const std::uint32_t port = lv2::portOfParameter(parameter);
    const float number = lv2::portValueOf(parameter, value);
    if (instance != nullptr)
        instance->control(port) = number; // the window hears of it in the next turn
    else
        window->tell(port, number);
}

std::vector<float> Lv2WindowHost::numbersWritten(std::uint32_t port) const {
    std::vector<float> numbers;
    for (const hosting::Lv2Write& write : window->writes)
        if (write.port == port && write.number)
            numbers.push_back(*write.number);
    return numbers;
}

std::vector<ChunkImage> Lv2WindowHost::banksWritten() const {
    std::vector<std::vector<std::byte>> atoms;
    for (const hosting::Lv2Write& write : window->writes)
        if (write.port == lv2::kPortControl)
            atoms.push_back(write.message);
    return banksIn(atoms);
}

int Lv2WindowHost::questions() const {
    int count = 0;
    ChunkImage bank;
    for (const hosting::Lv2Write& write : window->writes)
        if (write.port == lv2::kPortControl &&
            lv2::readMessage(write.message, lv2Types(), bank) == lv2::MessageKind::get)
            ++count;
    return count;
}

ChunkImage Lv2WindowHost::playedBank() {
    ChunkImage bank{};
    const auto state = instance->save();
    std::ranges::copy(state.at(lv2::bankPropertyUri).value, bank.begin());
    return bank;
}

} // namespace mirelon::test

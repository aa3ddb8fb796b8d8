#include "tests/formats/lv2/lv2windowhost.h"

#include <cmath>
#include <cstdlib>
#include <glib.h>
#include <limits>
#include <thread>

namespace mirelon::test {

using namespace std::chrono_literals;

Lv2WindowHost::Lv2WindowHost(std::optional<float> scale_)
    : scale(scale_) {
    VirtualDisplay::start();
    setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1);
    parent = std::make_unique<XWindow>(324, 348);
}

bool Lv2WindowHost::open() {
    window.reset();
    window = std::make_unique<NotedWindow>(lv2Bundle(),
                                           hosting::Lv2Window::Options{parent->id(), true, scale});
    window->onWrite = [this](const hosting::Lv2Write& write) { carry(write); };
    told.assign(lv2::kNumPorts, std::numeric_limits<float>::quiet_NaN());
    return window->isOpen();
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
    if (instance != nullptr)
        runAudio();
    if (++turns % 4 == 0) {
        const auto due = std::exchange(late, {});
        for (const auto& [port, number] : due)
            window->tell(port, number);
    }
    window->idle();
}

void Lv2WindowHost::run(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
        turn();
        std::this_thread::sleep_for(4ms);
    } while (std::chrono::steady_clock::now() < end);
}

void Lv2WindowHost::runMainLoop(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        std::this_thread::sleep_for(4ms);
    } while (std::chrono::steady_clock::now() < end);
}

void Lv2WindowHost::moveTo(int x, int y) {
    parent->moveTo(x, y);
    run(40ms);
}

void Lv2WindowHost::click(int x, int y, unsigned button) {
    moveTo(x, y);
    parent->press(button);
    run(40ms);
    parent->release(button);
    run(40ms);
}

// The toolkit starts a sequence of clicks anew once the pointer has been away.
void Lv2WindowHost::doubleClick(int x, int y) {
    moveTo(x, y - 20);
    moveTo(x, y);
    parent->press();
    parent->release();
    parent->press();
    run(40ms);
    parent->release();
    run(40ms);
}

void Lv2WindowHost::drag(int fromX, int toX, int y) {
    moveTo(fromX, y);
    parent->press();
    run(40ms);
    moveTo((fromX + toX) / 2, y);
    moveTo(toX, y);
    parent->release();
    run(40ms);
}

Pixels Lv2WindowHost::pixels() {
    run();
    return parent->pixels();
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

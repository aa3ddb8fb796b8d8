#include "tests/formats/windowhost.h"

#include "tests/editor/positions.h"

#include <cstdlib>
#include <thread>

namespace mirelon::test {

using namespace std::chrono_literals;

namespace {

constexpr auto apart = 4ms; // turns of a host's loop
constexpr auto reaction = 40ms;

} // namespace

WindowHost::WindowHost() {
    VirtualDisplay::start();
    setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1);
    parent = std::make_unique<XWindow>(editorWidth, editorHeight);
}

void WindowHost::run(std::chrono::milliseconds time) {
    for (auto passed = 0ms; passed < time; passed += apart) {
        turn();
        std::this_thread::sleep_for(apart);
    }
}

bool WindowHost::runUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        run(apart);
    }
    return true;
}

bool WindowHost::runUntilStill(const Pixels& before) {
    constexpr int enough = 15; // several steps of a menu's fading
    Pixels last = before;
    bool changed = false;
    int turns = 0;
    return runUntil([&] {
        Pixels now = parent->pixels();
        turns = now == last ? turns + 1 : 0;
        changed = changed || now != last;
        last = std::move(now);
        return changed && turns >= enough;
    });
}

void WindowHost::moveTo(int x, int y) {
    parent->moveTo(x, y);
    run(reaction);
}

void WindowHost::click(int x, int y, unsigned button) {
    moveTo(x, y);
    parent->press(button);
    run(reaction);
    parent->release(button);
    run(reaction);
}

// The toolkit starts a sequence of clicks anew once the pointer has been away.
void WindowHost::doubleClick(int x, int y) {
    moveTo(x, y - 20);
    moveTo(x, y);
    parent->press();
    parent->release();
    parent->press();
    run(reaction);
    parent->release();
    run(reaction);
}

void WindowHost::drag(int fromX, int toX, int y) {
    moveTo(fromX, y);
    parent->press();
    run(reaction);
    moveTo((fromX + toX) / 2, y);
    moveTo(toX, y);
    parent->release();
    run(reaction);
}

void WindowHost::key(unsigned long keysym) {
    parent->keyDown(keysym);
    parent->keyUp(keysym);
    run(20ms);
}

Pixels WindowHost::pixels() {
    run(80ms);
    return parent->pixels();
}

// The menu opens where it is clicked; the line is its third.
bool WindowHost::chooseSizeOfOneAndAHalf() {
    const Pixels closed = pixels();
    click(title.x, title.y, 3);
    if (!runUntilStill(closed))
        return false;
    click(title.x + 20, 58);
    return runUntil([this] { return !sizesAsked().empty(); });
}

} // namespace mirelon::test

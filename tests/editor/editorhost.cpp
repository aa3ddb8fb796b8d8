#include "tests/editor/editorhost.h"

#include "tests/support/plugin.h"

#include <X11/keysym.h>
#include <cstdlib>
#include <thread>
#include <utility>

void mirelon::hosting::PrintTo(Drive drive, std::ostream* out) {
    *out << (drive == Drive::hostIdle ? "HostIdle" : drive == Drive::glib ? "Glib" : "Both");
}

namespace mirelon::test {

using namespace std::chrono_literals;

namespace {

constexpr double windowWidth = 324;

// A host's loop takes a turn so often.
constexpr auto turn = 4ms;

// Further than the reach of a double click.
constexpr double elsewhere = 20;

} // namespace

const hosting::Module& EditorHost::module() {
    return pluginModule();
}

EditorHost::EditorHost(Drive drive)
    : drive(drive) {
    VirtualDisplay::start();
    setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1);
    effect = std::make_unique<hosting::Effect>(module(), host);
    const ERect size = rect();
    window = std::make_unique<XWindow>(size.right - size.left, size.bottom - size.top);
    scale = (size.right - size.left) / windowWidth;
}

EditorHost::~EditorHost() {
    effect.reset();
    run(20ms);
}

ERect EditorHost::rect() {
    ERect* answer = nullptr;
    effect->dispatch(effEditGetRect, 0, 0, &answer);
    return *answer;
}

VstIntPtr EditorHost::open() {
    const VstIntPtr answer = effect->dispatch(effEditOpen, 0, 0, window->asParent());
    run(100ms);
    return answer;
}

void EditorHost::close() {
    effect->dispatch(effEditClose);
}

void EditorHost::iterate() {
    iterateHostLoop(drive, effect.get());
}

void EditorHost::run(std::chrono::milliseconds time) {
    for (auto passed = 0ms; passed < time; passed += turn) {
        iterate();
        std::this_thread::sleep_for(turn);
    }
}

bool EditorHost::runUntil(const std::function<bool()>& reached) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (!reached()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        iterate();
        std::this_thread::sleep_for(turn);
    }
    return true;
}

bool EditorHost::runUntilStill(const Pixels& before) {
    constexpr int enough = 15; // several steps of a menu's fading
    Pixels last = before;
    bool changed = false;
    int turns = 0;
    return runUntil([&] {
        Pixels now = window->pixels();
        ++turns;
        if (now != last) {
            changed = true;
            turns = 0;
            last = std::move(now);
        }
        return changed && turns >= enough;
    });
}

bool EditorHost::runUntilStill(WindowDamage& drawn) {
    constexpr int enough = 10; // more than a tick of the slowest timer
    long last = drawn.pixels();
    int turns = 0;
    return runUntil([&] {
        drawn.look();
        ++turns;
        if (drawn.pixels() != last)
            turns = 0;
        last = drawn.pixels();
        return last > 0 && turns >= enough;
    });
}

void EditorHost::moveTo(double x, double y) {
    window->moveTo(x * scale, y * scale);
    run(40ms);
}

void EditorHost::press(unsigned button) {
    window->press(button);
    run(40ms);
}

void EditorHost::release(unsigned button) {
    window->release(button);
    run(40ms);
}

void EditorHost::click(double x, double y, unsigned button) {
    moveTo(x, y);
    press(button);
    release(button);
}

// The toolkit starts a sequence of clicks anew once the pointer has been away.
void EditorHost::doubleClick(double x, double y) {
    moveTo(x, y - elsewhere);
    moveTo(x, y);
    window->press();
    window->release();
    window->press();
    run(40ms);
    release();
}

void EditorHost::drag(double fromX, double fromY, double toX, double toY) {
    moveTo(fromX, fromY);
    press();
    moveTo((fromX + toX) / 2, (fromY + toY) / 2);
    moveTo(toX, toY);
    release();
}

void EditorHost::wheel(double x, double y, unsigned button) {
    moveTo(x, y);
    press(button);
    release(button);
}

void EditorHost::key(unsigned long keysym) {
    window->keyDown(keysym);
    window->keyUp(keysym);
    run(20ms);
}

void EditorHost::type(std::string_view text) {
    for (const char c : text)
        key(c == ' ' ? XK_space : static_cast<unsigned long>(static_cast<unsigned char>(c)));
}

void EditorHost::hold(unsigned long keysym) {
    window->keyDown(keysym);
    run(20ms);
}

void EditorHost::letGo(unsigned long keysym) {
    window->keyUp(keysym);
    run(20ms);
}

std::string EditorHost::touches(VstInt32 tag) const {
    std::string sequence;
    for (const hosting::HostCall& call : host.calls()) {
        if (call.index != tag)
            continue;
        if (call.opcode == audioMasterBeginEdit)
            sequence += 'b';
        else if (call.opcode == audioMasterAutomate)
            sequence += 'a';
        else if (call.opcode == audioMasterEndEdit)
            sequence += 'e';
    }
    return sequence;
}

Pixels EditorHost::pixels() {
    run(80ms);
    return window->pixels();
}

} // namespace mirelon::test

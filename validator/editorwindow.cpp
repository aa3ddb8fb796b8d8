#include "validator/editorwindow.h"

#include "validator/check.h"

#include <algorithm>
#include <thread>

namespace mirelon::check {

using namespace std::chrono_literals;

namespace {

Display* openedDisplay(const hosting::Effect& effect) {
    if (!effect.hasFlag(effFlagsHasEditor))
        throw Skipped("has no editor");
    XInitThreads();
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw Skipped("there is no X display");
    return display;
}

} // namespace

EditorWindow::EditorWindow(hosting::Effect& effect_)
    : effect(effect_)
    , display(openedDisplay(effect_)) {}

EditorWindow::~EditorWindow() {
    if (isOpen)
        effect.dispatch(effEditClose);
    if (parent != 0)
        XDestroyWindow(display.get(), parent);
}

unsigned EditorWindow::childCount() const {
    Window root = 0;
    Window above = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display.get(), parent, &root, &above, &children, &count) == 0)
        return 0;
    if (children != nullptr)
        XFree(children);
    return count;
}

// An editor may make and take away its window within the next idles.
bool EditorWindow::waitForChildren(bool some) {
    for (int i = 0; i < 100; ++i) {
        if ((childCount() > 0) == some)
            return true;
        if (isOpen)
            effect.dispatch(effEditIdle);
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

void EditorWindow::open() {
    ERect* rect = nullptr;
    effect.dispatch(effEditGetRect, 0, 0, &rect);
    const int width = rect != nullptr ? rect->right - rect->left : 400;
    const int height = rect != nullptr ? rect->bottom - rect->top : 300;
    if (parent == 0) {
        parent = XCreateSimpleWindow(display.get(), DefaultRootWindow(display.get()), 0, 0,
                                     static_cast<unsigned>(std::max(width, 1)),
                                     static_cast<unsigned>(std::max(height, 1)), 0, 0, 0);
        XMapWindow(display.get(), parent);
        XSync(display.get(), False);
    }
    effect.dispatch(effEditOpen, 0, reinterpret_cast<VstIntPtr>(display.get()),
                    reinterpret_cast<void*>(parent)); // NOLINT(performance-no-int-to-ptr)
    isOpen = true;
    effect.dispatch(effEditGetRect, 0, 0, &rect);
    require(rect != nullptr && rect->right > rect->left && rect->bottom > rect->top,
            "gives no rectangle for its open editor");
    require(waitForChildren(true), "opens no window in the host's");
}

void EditorWindow::close() {
    effect.dispatch(effEditClose);
    isOpen = false;
    require(waitForChildren(false), "leaves its window behind when it is closed");
}

void EditorWindow::idle(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        effect.dispatch(effEditIdle);
        std::this_thread::sleep_for(5ms);
    }
}

} // namespace mirelon::check

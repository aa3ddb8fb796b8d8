#include "tests/editor/hostkeys.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace mirelon::test {

namespace {

constexpr long keyEvents = KeyPressMask | KeyReleaseMask;

} // namespace

HostKeys::HostKeys(EditorHost& editor_)
    : editor(editor_) {
    XSelectInput(editor.window->connection(), editor.window->id(), keyEvents);
    takeFocus();
}

void HostKeys::takeFocus() const {
    Display* const display = editor.window->connection();
    XSetInputFocus(display, editor.window->id(), RevertToParent, CurrentTime);
    XSync(display, False);
}

bool HostKeys::hasFocus() const {
    Window focused = 0;
    int revert = 0;
    XGetInputFocus(editor.window->connection(), &focused, &revert);
    return focused == editor.window->id();
}

std::string HostKeys::heard() {
    Display* const display = editor.window->connection();
    editor.run(std::chrono::milliseconds(30));
    XSync(display, False);
    std::string all;
    XEvent event{};
    while (XCheckWindowEvent(display, editor.window->id(), keyEvents, &event) != 0) {
        all += all.empty() ? "" : " ";
        all += event.type == KeyPress ? '+' : '-';
        all += XKeysymToString(XLookupKeysym(&event.xkey, 0));
    }
    return all;
}

void HostKeys::send(unsigned long keysym) const {
    Display* const display = editor.window->connection();
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.window = editor.window->children().at(0);
    event.xkey.root = DefaultRootWindow(display);
    event.xkey.same_screen = True;
    event.xkey.keycode = XKeysymToKeycode(display, keysym);
    XSendEvent(display, event.xkey.window, False, KeyPressMask, &event);
    XSync(display, False);
}

} // namespace mirelon::test

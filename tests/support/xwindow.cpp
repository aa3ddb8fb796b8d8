#include "tests/support/xwindow.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <chrono>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <thread>

namespace mirelon::test {

namespace {

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using Connection = std::unique_ptr<Display, CloseDisplay>;

void prepareDisplay() {
    VirtualDisplay::start();
    hosting::ignoreXErrors(); // a window that has gone is part of what is tested
}

Connection connectToDisplay() {
    prepareDisplay();
    Connection connection(XOpenDisplay(nullptr));
    if (connection == nullptr)
        throw std::runtime_error("no display");
    return connection;
}

std::string titleOnDisplay() {
    prepareDisplay();
    return "host";
}

} // namespace

std::pair<int, int> changedRows(const Pixels& before, const Pixels& after) {
    const auto differs = [&](int row) {
        return before.part(0, row, before.width, row + 1) !=
               after.part(0, row, after.width, row + 1);
    };
    int first = 0;
    while (first < after.height && !differs(first))
        ++first;
    int end = after.height;
    while (end > first && !differs(end - 1))
        --end;
    return {first, end};
}

void setScreenResources(std::string_view text) {
    const Connection display = connectToDisplay();
    XChangeProperty(display.get(), DefaultRootWindow(display.get()), XA_RESOURCE_MANAGER, XA_STRING,
                    8, PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
}

void markScreenAsManaged(const std::string& name) {
    const Connection display(XOpenDisplay(name.c_str()));
    const Window root = DefaultRootWindow(display.get());
    XChangeProperty(display.get(), root,
                    XInternAtom(display.get(), "_NET_SUPPORTING_WM_CHECK", False), XA_WINDOW, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(&root), 1);
}

std::optional<unsigned long> windowNamed(std::string_view title) {
    const Connection display = connectToDisplay();
    for (const unsigned long window :
         hosting::childrenOf(display.get(), DefaultRootWindow(display.get()))) {
        char* name = nullptr;
        if (XFetchName(display.get(), window, &name) == 0 || name == nullptr)
            continue;
        const std::string_view whole(name);
        const bool found = whole == title || (whole.starts_with(title) &&
                                              whole.substr(title.size()).starts_with(" - "));
        XFree(name);
        if (found)
            return window;
    }
    return {};
}

std::string titleOfWindowNamed(std::string_view title) {
    const auto window = windowNamed(title);
    const Connection display = connectToDisplay();
    char* name = nullptr;
    if (!window || XFetchName(display.get(), *window, &name) == 0 || name == nullptr)
        return {};
    std::string whole(name);
    XFree(name);
    return whole;
}

std::optional<Pixels> pixelsOfWindowNamed(std::string_view title) {
    const auto window = windowNamed(title);
    const Connection display = connectToDisplay();
    return window ? hosting::pictureOf(display.get(), *window) : std::nullopt;
}

void closeWindowNamed(std::string_view title) {
    const auto window = windowNamed(title);
    if (!window)
        return;
    const Connection display = connectToDisplay();
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = *window;
    event.xclient.message_type = XInternAtom(display.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(display.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(display.get(), *window, False, NoEventMask, &event);
}

void pressKeyAt(int x, int y, unsigned long keysym) {
    const Connection display = connectToDisplay();
    const unsigned key = XKeysymToKeycode(display.get(), keysym);
    // Without a window manager the pointer's window must be given the keys.
    XSetInputFocus(display.get(), PointerRoot, RevertToPointerRoot, CurrentTime);
    XTestFakeMotionEvent(display.get(), -1, x, y, CurrentTime);
    XTestFakeKeyEvent(display.get(), key, True, CurrentTime);
    XTestFakeKeyEvent(display.get(), key, False, CurrentTime);
    XSync(display.get(), False);
}

XWindow::XWindow(int width, int height)
    : HostWindow(titleOnDisplay(), width, height, hosting::WindowKind::ordinary) {
    XSelectInput(connection(), id(), NoEventMask); // nobody looks at its events
    XSetWindowBackground(connection(), id(), 0x808080);
    XMoveWindow(connection(), id(), 20, 30);
    show();
    // Without a window manager the pointer's window must be given the keys.
    XSetInputFocus(connection(), PointerRoot, RevertToPointerRoot, CurrentTime);
    XSync(connection(), False);
}

void XWindow::destroy() {
    XDestroyWindow(connection(), id());
    XSync(connection(), False);
}

void XWindow::resize(int width, int height) {
    XResizeWindow(connection(), id(), static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(connection(), False);
}

void XWindow::reparent() const {
    const unsigned long around = XCreateSimpleWindow(connection(), DefaultRootWindow(connection()),
                                                     40, 50, 400, 400, 0, 0, 0);
    XMapWindow(connection(), around);
    XReparentWindow(connection(), id(), around, 5, 6);
    XSync(connection(), False);
}

void XWindow::hide() const {
    XUnmapWindow(connection(), id());
    XSync(connection(), False);
}

void XWindow::markAsManaged() const {
    const Atom state = XInternAtom(connection(), "WM_STATE", False);
    // Xlib takes 32-bit words as longs.
    const long words[] = {NormalState, None};
    XChangeProperty(connection(), id(), state, state, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(words), 2);
    XSync(connection(), False);
}

bool XWindow::isMapped(unsigned long child) const {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(connection(), child, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

bool XWindow::becomesEmpty() const {
    constexpr std::chrono::milliseconds interval(4);
    for (int i = 0; i < 500 && !children().empty(); ++i)
        std::this_thread::sleep_for(interval);
    return children().empty();
}

std::vector<std::uint32_t> XWindow::embedInfo(unsigned long child) const {
    const Atom name = XInternAtom(connection(), "_XEMBED_INFO", False);
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(connection(), child, name, 0, 2, False, AnyPropertyType, &type, &format,
                           &count, &rest, &data) != Success ||
        data == nullptr || format != 32)
        return {};
    // Xlib hands 32-bit words over as longs.
    const auto* words = reinterpret_cast<const long*>(data);
    std::vector<std::uint32_t> result(words, words + count);
    XFree(data);
    return result;
}

Pixels XWindow::pixels() const {
    return hosting::pictureOf(connection(), id()).value_or(Pixels{});
}

void XWindow::moveTo(double x, double y) {
    Window child = 0;
    int rootX = 0;
    int rootY = 0;
    XTranslateCoordinates(connection(), id(), DefaultRootWindow(connection()),
                          static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)),
                          &rootX, &rootY, &child);
    XTestFakeMotionEvent(connection(), 0, rootX, rootY, CurrentTime);
    XSync(connection(), False);
}

void XWindow::press(unsigned button) {
    XTestFakeButtonEvent(connection(), button, True, CurrentTime);
    XSync(connection(), False);
}

void XWindow::release(unsigned button) {
    XTestFakeButtonEvent(connection(), button, False, CurrentTime);
    XSync(connection(), False);
}

void XWindow::keyDown(unsigned long keysym) {
    XTestFakeKeyEvent(connection(), XKeysymToKeycode(connection(), keysym), True, CurrentTime);
    XSync(connection(), False);
}

void XWindow::keyUp(unsigned long keysym) {
    XTestFakeKeyEvent(connection(), XKeysymToKeycode(connection(), keysym), False, CurrentTime);
    XSync(connection(), False);
}

} // namespace mirelon::test

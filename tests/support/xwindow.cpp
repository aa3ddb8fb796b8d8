#include "tests/support/xwindow.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace mirelon::test {

namespace {

// Xlib ends the process on an error by default; a window that has gone is
// part of what is tested.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using Connection = std::unique_ptr<Display, CloseDisplay>;

Connection connectToDisplay() {
    VirtualDisplay::start();
    XSetErrorHandler(ignoreError);
    Connection connection(XOpenDisplay(nullptr));
    if (connection == nullptr)
        throw std::runtime_error("no display");
    return connection;
}

// What is to be seen in a window; nothing when it is not on the screen.
Pixels grab(Display* display, Window window, int width, int height) {
    XSync(display, False);
    XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(width),
                              static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (image == nullptr)
        return {};
    Pixels result{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            result.rgb.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFU);
    XDestroyImage(image);
    return result;
}

std::vector<std::uint32_t> childrenOf(Display* display, Window window) {
    Window root = 0;
    Window parent = 0;
    Window* list = nullptr;
    unsigned count = 0;
    XSync(display, False);
    if (XQueryTree(display, window, &root, &parent, &list, &count) == 0)
        return {};
    std::vector<std::uint32_t> result(list, list + count);
    XFree(list);
    return result;
}

} // namespace

Pixels Pixels::part(int left, int top, int right, int bottom) const {
    Pixels result{right - left, bottom - top, {}};
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            result.rgb.push_back(at(x, y));
    return result;
}

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

std::optional<std::uint32_t> windowNamed(std::string_view title) {
    const Connection display = connectToDisplay();
    for (const std::uint32_t window : childrenOf(display.get(), DefaultRootWindow(display.get()))) {
        char* name = nullptr;
        if (XFetchName(display.get(), window, &name) == 0 || name == nullptr)
            continue;
        const bool found = name == title;
        XFree(name);
        if (found)
            return window;
    }
    return {};
}

std::optional<Pixels> pixelsOfWindowNamed(std::string_view title) {
    const auto window = windowNamed(title);
    const Connection display = connectToDisplay();
    XWindowAttributes attributes{};
    if (!window || XGetWindowAttributes(display.get(), *window, &attributes) == 0)
        return {};
    return grab(display.get(), *window, attributes.width, attributes.height);
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

XWindow::XWindow(int width, int height)
    : display(connectToDisplay().release())
    , width(width)
    , height(height) {
    window = static_cast<std::uint32_t>(XCreateSimpleWindow(
        display, DefaultRootWindow(display), 20, 30, static_cast<unsigned>(width),
        static_cast<unsigned>(height), 0, 0, 0x808080));
    XMapWindow(display, window);
    // Without a window manager the pointer's window must be given the keys.
    XSetInputFocus(display, PointerRoot, RevertToPointerRoot, CurrentTime);
    XSync(display, False);
}

XWindow::~XWindow() {
    destroy();
    XCloseDisplay(display);
}

void* XWindow::asParent() const {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

void XWindow::destroy() {
    if (window != 0)
        XDestroyWindow(display, window);
    window = 0;
    XSync(display, False);
}

void XWindow::resize(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
    XResizeWindow(display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display, False);
}

std::vector<std::uint32_t> XWindow::children() const {
    return childrenOf(display, window);
}

bool XWindow::isMapped(std::uint32_t child) const {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(display, child, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

std::vector<std::uint32_t> XWindow::embedInfo(std::uint32_t child) const {
    const Atom name = XInternAtom(display, "_XEMBED_INFO", False);
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(display, child, name, 0, 2, False, AnyPropertyType, &type, &format,
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
    return grab(display, window, width, height);
}

void XWindow::moveTo(double x, double y) {
    Window child = 0;
    int rootX = 0;
    int rootY = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display),
                          static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)),
                          &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, 0, rootX, rootY, CurrentTime);
    XSync(display, False);
}

void XWindow::press(unsigned button) {
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    XSync(display, False);
}

void XWindow::release(unsigned button) {
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    XSync(display, False);
}

void XWindow::keyDown(unsigned long keysym) {
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, keysym), True, CurrentTime);
    XSync(display, False);
}

void XWindow::keyUp(unsigned long keysym) {
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, keysym), False, CurrentTime);
    XSync(display, False);
}

} // namespace mirelon::test

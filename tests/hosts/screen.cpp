#include "tests/hosts/screen.h"

#include "tests/support/virtualdisplay.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

namespace mirelon::test {
namespace {

constexpr auto windowManagerFile = "/usr/bin/openbox";

void pause() {
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
}

std::string titleOf(Display* display, Window window) {
    char* name = nullptr;
    if (XFetchName(display, window, &name) == 0 || name == nullptr)
        return {};
    std::string title = name;
    XFree(name);
    return title;
}

// The first window for which `wanted` holds, from `window` downwards.
template <typename Wanted>
std::optional<Window> search(Display* display, Window window, Wanted wanted) {
    for (const Window child : hosting::childrenOf(display, window)) {
        if (wanted(child))
            return child;
        if (const auto found = search(display, child, wanted))
            return found;
    }
    return std::nullopt;
}

// A property of the root window that names a window; none: 0.
Window rootProperty(Display* display, const char* name) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display), XInternAtom(display, name, False), 0, 1,
                       False, XA_WINDOW, &type, &format, &count, &rest, &data);
    const Window window =
        type == XA_WINDOW && count == 1 ? *reinterpret_cast<const Window*>(data) : None;
    if (data != nullptr)
        XFree(data);
    return window;
}

} // namespace

std::string Screen::display() {
    return VirtualDisplay::start().name();
}

bool Screen::hasWindowManager() {
    return isExecutable(windowManagerFile);
}

Screen::Screen(const Environment& environment, const std::filesystem::path& log)
    : connection(XOpenDisplay(display().c_str())) {
    if (connection == nullptr)
        throw std::runtime_error("no connection to " + display());
    hosting::ignoreXErrors(); // windows of other programs may be gone at any moment
    // On a busy machine a key is let go late, which no program is to take for a
    // key held down.
    XAutoRepeatOff(connection);
    // What the window manager of an earlier test has left would count as the new
    // one's word that it runs, and a host's first window might come before it does.
    XDeleteProperty(connection, DefaultRootWindow(connection),
                    XInternAtom(connection, "_NET_SUPPORTING_WM_CHECK", False));
    XSync(connection, False);
    windowManager =
        std::make_unique<Program>(std::vector<std::string>{windowManagerFile}, environment, log);
    const bool running = eventually(std::chrono::seconds(20), [this] {
        return rootProperty(connection, "_NET_SUPPORTING_WM_CHECK") != None;
    });
    if (!running)
        throw std::runtime_error("the window manager does not run");
}

Screen::~Screen() {
    XCloseDisplay(connection);
}

bool Screen::isOnShow(WindowId window) const {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(connection, window, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

std::optional<Screen::WindowId> Screen::windowTitled(const std::string& part) const {
    return search(connection, DefaultRootWindow(connection), [this, &part](Window window) {
        return titleOf(connection, window).find(part) != std::string::npos && isOnShow(window);
    });
}

std::optional<Screen::WindowId> Screen::inside(WindowId window, const std::string& size) const {
    return search(connection, window, [this, &size](Window child) {
        XWindowAttributes attributes{};
        return XGetWindowAttributes(connection, child, &attributes) != 0 &&
               attributes.map_state == IsViewable &&
               std::to_string(attributes.width) + 'x' + std::to_string(attributes.height) == size;
    });
}

Pixels Screen::pixels(WindowId window) const {
    return hosting::pictureOf(connection, window).value_or(Pixels{});
}

void Screen::pointAt(WindowId window, Position at) {
    Window child = 0;
    int rootX = 0;
    int rootY = 0;
    XTranslateCoordinates(connection, window, DefaultRootWindow(connection), at.x, at.y, &rootX,
                          &rootY, &child);
    XTestFakeMotionEvent(connection, -1, rootX, rootY, CurrentTime);
    XSync(connection, False);
    pause();
}

void Screen::press(unsigned button) {
    XTestFakeButtonEvent(connection, button, True, CurrentTime);
    XSync(connection, False);
    pause();
}

void Screen::release(unsigned button) {
    XTestFakeButtonEvent(connection, button, False, CurrentTime);
    XSync(connection, False);
    pause();
}

void Screen::click(WindowId window, Position at, unsigned button) {
    pointAt(window, at);
    press(button);
    release(button);
}

void Screen::doubleClick() {
    // Toolkits count a click soon after others as their third or fourth.
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    for (int click = 0; click < 2; ++click) {
        press();
        release();
    }
}

void Screen::key(unsigned long keysym, unsigned long modifier) {
    const auto code = [this](unsigned long symbol) { return XKeysymToKeycode(connection, symbol); };
    if (modifier != 0)
        XTestFakeKeyEvent(connection, code(modifier), True, CurrentTime);
    XTestFakeKeyEvent(connection, code(keysym), True, CurrentTime);
    XSync(connection, False);
    pause();
    XTestFakeKeyEvent(connection, code(keysym), False, CurrentTime);
    if (modifier != 0)
        XTestFakeKeyEvent(connection, code(modifier), False, CurrentTime);
    XSync(connection, False);
    pause();
}

void Screen::type(std::string_view text) {
    for (const char c : text)
        key(static_cast<unsigned char>(c)); // their symbols are their codes
}

void Screen::tellWindowManager(WindowId window, const char* message, long first) const {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(connection, message, False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = first;
    XSendEvent(connection, DefaultRootWindow(connection), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XSync(connection, False);
}

void Screen::activate(WindowId window) {
    constexpr long fromAPager = 2;
    tellWindowManager(window, "_NET_ACTIVE_WINDOW", fromAPager);
    eventually(std::chrono::seconds(5),
               [this, window] { return rootProperty(connection, "_NET_ACTIVE_WINDOW") == window; });
}

void Screen::close(WindowId window) {
    tellWindowManager(window, "_NET_CLOSE_WINDOW", CurrentTime);
}

std::optional<Pixels> atRest(const std::function<Pixels()>& look,
                             const std::function<bool(const Pixels&)>& wanted) {
    constexpr int enough = 10; // looks, which are 20 ms apart
    Pixels last;
    int same = 0;
    const bool rests = eventually(std::chrono::seconds(10), [&] {
        Pixels now = look();
        same = now == last ? same + 1 : 0;
        last = std::move(now);
        return same >= enough && wanted(last);
    });
    return rests ? std::optional(std::move(last)) : std::nullopt;
}

} // namespace mirelon::test

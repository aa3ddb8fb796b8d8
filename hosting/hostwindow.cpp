#include "hosting/hostwindow.h"

#include "hosting/hostingerror.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <utility>

namespace mirelon::hosting {

namespace {

constexpr std::size_t mostKeys = 64; // kept

int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

// Users do not change it.
void fixSize(Display* display, unsigned long window, int width, int height) {
    XSizeHints size{};
    size.flags = PMinSize | PMaxSize;
    size.min_width = size.max_width = width;
    size.min_height = size.max_height = height;
    XSetWMNormalHints(display, window, &size);
}

} // namespace

void ignoreXErrors() {
    XSetErrorHandler(ignoreError);
}

std::vector<unsigned long> childrenOf(Display* display, unsigned long window) {
    Window root = 0;
    Window parent = 0;
    Window* list = nullptr;
    unsigned count = 0;
    XSync(display, False);
    if (XQueryTree(display, window, &root, &parent, &list, &count) == 0 || list == nullptr)
        return {};
    std::vector<unsigned long> children(list, list + count);
    XFree(list);
    return children;
}

HostWindow::HostWindow(const std::string& title, int width, int height, WindowKind kind)
    : display(XOpenDisplay(nullptr)) {
    if (display == nullptr)
        throw DisplayError("there is no X display to open a window on (DISPLAY)");
    XSetWindowAttributes attributes{};
    attributes.override_redirect = kind == WindowKind::bare ? True : False;
    attributes.event_mask = StructureNotifyMask | KeyPressMask;
    window = XCreateWindow(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                           static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                           CWOverrideRedirect | CWEventMask, &attributes);
    setTitle(title);
    fixSize(display, window, width, height);
    Atom message = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(display, window, &message, 1);
    deleteMessage = message;
    XSync(display, False);
}

HostWindow::~HostWindow() {
    XDestroyWindow(display, window);
    XCloseDisplay(display);
}

void* HostWindow::asParent() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): so the interface passes a window
    return reinterpret_cast<void*>(window);
}

void HostWindow::show() {
    XMapRaised(display, window);
    XSync(display, False);
}

void HostWindow::setTitle(const std::string& title) {
    Xutf8SetWMProperties(display, window, title.c_str(), title.c_str(), nullptr, 0, nullptr,
                         nullptr, nullptr);
    XFlush(display);
}

void HostWindow::resize(int width, int height) {
    XWindowAttributes now{};
    if (XGetWindowAttributes(display, window, &now) != 0 && now.width == width &&
        now.height == height)
        return;
    fixSize(display, window, width, height);
    XResizeWindow(display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display, False);
}

bool HostWindow::serve() {
    bool open = true;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        constexpr unsigned commands = ControlMask | Mod1Mask | Mod4Mask;
        if (event.type == KeyPress && (event.xkey.state & commands) == 0 && keys.size() < mostKeys)
            keys.push_back(XLookupKeysym(&event.xkey, 0));
        if (event.type == DestroyNotify ||
            (event.type == ClientMessage &&
             static_cast<unsigned long>(event.xclient.data.l[0]) == deleteMessage))
            open = false;
    }
    return open;
}

std::vector<unsigned long> HostWindow::takeKeys() {
    return std::exchange(keys, {});
}

Picture HostWindow::picture() const {
    auto picture = pictureOf(display, window);
    if (!picture)
        throw DisplayError("the window does not fit on the display");
    return *std::move(picture);
}

} // namespace mirelon::hosting

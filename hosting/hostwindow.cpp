#include "hosting/hostwindow.h"

#include "hosting/hostingerror.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace mirelon::hosting {

namespace {

// Xlib ends the program on an error by default. What a plug-in does to the
// window is no reason for that.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

} // namespace

HostWindow::HostWindow(const std::string& title, int width, int height, WindowKind kind)
    : display(XOpenDisplay(nullptr))
    , width(width)
    , height(height) {
    if (display == nullptr)
        throw DisplayError("there is no X display to open a window on (DISPLAY)");
    XSetErrorHandler(ignoreError);
    XSetWindowAttributes attributes{};
    attributes.override_redirect = kind == WindowKind::bare ? True : False;
    attributes.event_mask = StructureNotifyMask;
    window = XCreateWindow(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                           static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                           CWOverrideRedirect | CWEventMask, &attributes);
    Xutf8SetWMProperties(display, window, title.c_str(), title.c_str(), nullptr, 0, nullptr,
                         nullptr, nullptr);
    XSizeHints size{};
    size.flags = PMinSize | PMaxSize;
    size.min_width = size.max_width = width;
    size.min_height = size.max_height = height;
    XSetWMNormalHints(display, window, &size);
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

bool HostWindow::serve() {
    bool open = true;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == DestroyNotify ||
            (event.type == ClientMessage &&
             static_cast<unsigned long>(event.xclient.data.l[0]) == deleteMessage))
            open = false;
    }
    return open;
}

Picture HostWindow::picture() const {
    XSync(display, False);
    XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(width),
                              static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (image == nullptr)
        throw DisplayError("the window does not fit on the display");
    Picture result{width, height, {}};
    result.rgb.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            result.rgb.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFU);
    XDestroyImage(image);
    return result;
}

} // namespace mirelon::hosting

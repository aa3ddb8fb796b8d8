#include "validator/xerrors.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <array>
#include <mutex>

namespace mirelon::validator {

namespace {

std::mutex access;
std::string first;
int count = 0;

int note(Display* display, XErrorEvent* error) {
    std::array<char, 128> kind{};
    std::array<char, 128> request{};
    XGetErrorText(display, error->error_code, kind.data(), static_cast<int>(kind.size()));
    const std::string number = std::to_string(error->request_code);
    XGetErrorDatabaseText(display, "XRequest", number.c_str(), number.c_str(), request.data(),
                          static_cast<int>(request.size()));
    const std::lock_guard lock(access);
    if (count++ == 0)
        first = std::string(kind.data()) + " of the request " + request.data();
    return 0;
}

} // namespace

void noteXErrors() {
    XSetErrorHandler(note);
}

std::string notedXErrors() {
    const std::lock_guard lock(access);
    if (count == 0)
        return {};
    return "causes an X error: " + first +
           (count > 1 ? " (" + std::to_string(count) + " errors)" : "");
}

bool hasWindowManager() {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return false;
    Atom type = None;
    int format = 0;
    unsigned long items = 0;
    unsigned long left = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display),
                       XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False,
                       XA_WINDOW, &type, &format, &items, &left, &value);
    if (value != nullptr)
        XFree(value);
    XCloseDisplay(display);
    return items > 0;
}

} // namespace mirelon::validator

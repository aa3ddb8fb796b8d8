#include "validator/xerrors.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <execinfo.h>
#include <filesystem>
#include <mutex>

namespace mirelon::validator {

namespace {

std::mutex access;
std::string first;
int count = 0;
int openGlCount = 0;

// Whether OpenGL's library waits for the answer in which the error came.
bool isWaitingInOpenGl() {
    std::array<void*, 16> frames{};
    const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
    return std::any_of(frames.begin(), frames.begin() + depth, [](void* frame) {
        Dl_info where{};
        return dladdr(frame, &where) != 0 && where.dli_fname != nullptr &&
               std::filesystem::path(where.dli_fname).filename().string().starts_with("libGLX");
    });
}

bool isOfSoftwareOpenGl(const XErrorEvent& error) {
    constexpr int firstExtension = 128;
    // Of the extension MIT-SHM: pictures to and from memory.
    constexpr int putImage = 3;
    constexpr int getImage = 4;
    return error.error_code == BadMatch && error.request_code >= firstExtension &&
           (error.minor_code == putImage || error.minor_code == getImage) && isWaitingInOpenGl();
}

int note(Display* display, XErrorEvent* error) {
    std::array<char, 128> kind{};
    std::array<char, 128> request{};
    XGetErrorText(display, error->error_code, kind.data(), static_cast<int>(kind.size()));
    const std::string number = std::to_string(error->request_code);
    XGetErrorDatabaseText(display, "XRequest", number.c_str(), number.c_str(), request.data(),
                          static_cast<int>(request.size()));
    const bool isOpenGl = isOfSoftwareOpenGl(*error);
    const std::lock_guard lock(access);
    openGlCount += isOpenGl ? 1 : 0;
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

bool areXErrorsOfSoftwareOpenGl() {
    const std::lock_guard lock(access);
    return count > 0 && count == openGlCount;
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
    XFree(value); // or nothing
    XCloseDisplay(display);
    return items > 0;
}

} // namespace mirelon::validator

// The window of the effect with defects, which has some of its own.
#pragma once

#include "tests/validator/brokeneffects/wrongpicture.h"
#include "tests/validator/defects.h"

#include <X11/Xlib.h>
#include <atomic>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

namespace mirelon::test::brokeneffects {

constexpr const char* openGlFile = "libGLX_standin.so";

// The host's rectangle and a window of its own in the host's.
class Editor {
  public:
    ~Editor() { close(); }

    bool open(Window parent) {
        if (isOpen() && !hasDefect("window-stays"))
            std::abort(); // no host opens what is open
        ++openings;
        if ((hasDefect("second-opening") && openings == 2) ||
            (hasDefect("fiftieth-opening") && openings == 50))
            return false;
        if (hasDefect("one-editor-only") && anyOpen.exchange(true))
            crash();
        if (hasDefect("one-window-only") && anyOpen.exchange(true))
            return false;
        display = XOpenDisplay(nullptr);
        if (display == nullptr)
            return false;
        window = XCreateSimpleWindow(display, parent, 0, 0, 100, 50, 0, 0, 0);
        // A window that is not to be seen yet cannot have the keyboard.
        if (hasDefect("x-error"))
            XSetInputFocus(display, window, RevertToParent, CurrentTime);
        if (hasDefect("picture-x-error"))
            putWrongPicture(display, window);
        if (hasDefect("opengl-x-error"))
            callOpenGl(display, window);
        XMapWindow(display, window);
        XSync(display, False);
        return true;
    }
    void close() {
        if (display == nullptr || hasDefect("window-stays"))
            return;
        XDestroyWindow(display, window);
        XCloseDisplay(display);
        display = nullptr;
    }
    bool isOpen() const { return display != nullptr; }

  private:
    // What goes by the name of OpenGL's library, beside this file.
    static void callOpenGl(Display* display, Window window) {
        Dl_info here{};
        dladdr(&anyOpen, &here);
        const auto library = std::filesystem::path(here.dli_fname).replace_filename(openGlFile);
        void* const loaded = dlopen(library.c_str(), RTLD_NOW);
        using Put = void (*)(Display*, Window);
        reinterpret_cast<Put>(dlsym(loaded, "drawWithOpenGl"))(display, window);
    }

    static inline std::atomic<bool> anyOpen{false};

    int openings = 0;
    Display* display = nullptr;
    Window window = 0;
};

} // namespace mirelon::test::brokeneffects

// A host's window with the effect's editor in it.
#pragma once

#include "hosting/effect.h"

#include <X11/Xlib.h>
#include <chrono>
#include <memory>

namespace mirelon::check {

// The window is on the process's display. Throws Skipped when the effect has no
// editor or the process no display. One thread only.
class EditorWindow {
  public:
    explicit EditorWindow(hosting::Effect& effect);
    ~EditorWindow(); // closes the editor
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    // Each throws Failed when the editor does not do its part.
    void open();
    void close();
    // Sends the host's idle command for this long.
    void idle(std::chrono::milliseconds time);

  private:
    struct CloseDisplay {
        void operator()(Display* display) const noexcept { XCloseDisplay(display); }
    };
    unsigned childCount() const;
    bool waitForChildren(bool some);

    hosting::Effect& effect;
    std::unique_ptr<Display, CloseDisplay> display;
    Window parent = 0;
    bool isOpen = false;
};

} // namespace mirelon::check

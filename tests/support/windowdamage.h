// What is drawn anew into an editor's window.
#pragma once

#include "tests/support/xwindow.h"

#include <chrono>

namespace mirelon::test {

// Counts from its making on. The window is drawn meanwhile: look() often, and
// after a moment's rest to have seen everything.
class WindowDamage {
  public:
    // Of the only child of `host`, whose other events are lost. Throws
    // std::runtime_error when the X server does not report damage.
    explicit WindowDamage(const XWindow& host);
    ~WindowDamage();
    WindowDamage(const WindowDamage&) = delete;
    WindowDamage& operator=(const WindowDamage&) = delete;

    void look();
    // What comes at once is one picture.
    int pictures() const { return count; }
    // All together, each as often as it was drawn.
    long pixels() const { return area; }
    // The rows from the first that was drawn into to just after the last.
    int top() const { return first; }
    int bottom() const { return end; }

  private:
    const XWindow& host;
    unsigned long damage = 0;
    int eventBase = 0;

    int count = 0;
    long area = 0;
    int first = 0;
    int end = 0;
    std::chrono::steady_clock::time_point last{};
};

} // namespace mirelon::test

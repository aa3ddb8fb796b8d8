// A window on the desktop with nothing in it but a plug-in's editor.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct _XDisplay;

namespace mirelon::hosting {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> rgb; // 0xRRGGBB, row by row
};

// How a window stands on the desktop: like any other, or without a frame and
// above all others, for as long as it takes to look at it.
enum class WindowKind { ordinary, bare };

// Uses an X connection of its own. One thread.
class HostWindow {
  public:
    // Throws DisplayError without a display.
    HostWindow(const std::string& title, int width, int height, WindowKind kind);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // As an editor takes it.
    void* asParent() const;
    void show();
    // Looks at what has happened to the window; false once the user has asked
    // for it to be closed.
    bool serve();
    // What is to be seen in the window. Throws DisplayError when it is not all on
    // the display.
    Picture picture() const;

  private:
    _XDisplay* display;
    unsigned long window = 0;
    unsigned long deleteMessage = 0;
    int width;
    int height;
};

} // namespace mirelon::hosting

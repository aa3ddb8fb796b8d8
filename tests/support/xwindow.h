// A host's window on the test display, and a user in front of it.
#pragma once

#include "tests/support/virtualdisplay.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct _XDisplay;

namespace mirelon::test {

struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> rgb; // 0xRRGGBB, row by row

    std::uint32_t at(int x, int y) const {
        return rgb[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
    }
    // The part from (left, top) to just before (right, bottom).
    Pixels part(int left, int top, int right, int bottom) const;
    bool operator==(const Pixels&) const = default;
};

// The rows from the first in which two pictures of one size differ to just after
// the last; two equal numbers when there is none.
std::pair<int, int> changedRows(const Pixels& before, const Pixels& after);

// The X resource text that a desktop leaves on the screen for its programs.
void setScreenResources(std::string_view text);

// A program's window with this title, directly on the screen.
std::optional<std::uint32_t> windowNamed(std::string_view title);
// As the user sees it; nothing when there is no such window.
std::optional<Pixels> pixelsOfWindowNamed(std::string_view title);
// Asks the program to close it, as a window manager's close button does.
void closeWindowNamed(std::string_view title);

// Uses an X connection of its own. Positions are pixels from the window's
// corner. Input is real: it goes through the server to whatever is there.
class XWindow {
  public:
    XWindow(int width, int height);
    ~XWindow();
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    std::uint32_t id() const { return window; }
    void* asParent() const;
    void destroy();
    void resize(int width, int height);

    std::vector<std::uint32_t> children() const;
    bool isMapped(std::uint32_t child) const;
    // The two words of the property by which a child asks to be shown; empty
    // when it has none.
    std::vector<std::uint32_t> embedInfo(std::uint32_t child) const;
    Pixels pixels() const;

    void moveTo(double x, double y);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void keyDown(unsigned long keysym);
    void keyUp(unsigned long keysym);

  private:
    _XDisplay* display;
    std::uint32_t window = 0;
    int width;
    int height;
};

} // namespace mirelon::test

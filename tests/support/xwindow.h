// A host's window on the test display, and a user in front of it.
#pragma once

#include "hosting/hostwindow.h"
#include "tests/support/virtualdisplay.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mirelon::test {

using Pixels = hosting::Picture;

// The rows from the first in which two pictures of one size differ to just after
// the last; two equal numbers when there is none.
std::pair<int, int> changedRows(const Pixels& before, const Pixels& after);

// The X resource text that a desktop leaves on the screen for its programs.
void setScreenResources(std::string_view text);

// Marks a display's screen as a window manager does.
void markScreenAsManaged(const std::string& display);

// A program's window with this title, directly on the screen; what follows " - " in a
// title may be anything.
std::optional<unsigned long> windowNamed(std::string_view title);
// All of its title; empty when there is no such window.
std::string titleOfWindowNamed(std::string_view title);
// As the user sees it; nothing when there is no such window.
std::optional<Pixels> pixelsOfWindowNamed(std::string_view title);
// Asks the program to close it, as a window manager's close button does.
void closeWindowNamed(std::string_view title);

// Puts the pointer on this pixel of the screen, and presses a key there.
void pressKeyAt(int x, int y, unsigned long keysym);

// On show, with the keys. Positions are pixels from the window's corner. Input is
// real: it goes through the server to whatever is there.
class XWindow : public hosting::HostWindow {
  public:
    XWindow(int width, int height);

    // As when the host takes the window away from under the editor.
    void destroy();
    void resize(int width, int height);
    // As when the host docks its windows: into another one, where it is on show.
    void reparent() const;
    // Until show().
    void hide() const;
    // Marks it as a window manager marks the windows that it manages.
    void markAsManaged() const;

    bool isMapped(unsigned long child) const;
    // Whether no window is left in it. Waits for that, for two seconds: the server
    // may hear of an editor's closing later than of this question, which comes over
    // another connection.
    bool becomesEmpty() const;
    // The two words of the property by which a child asks to be shown; empty
    // when it has none.
    std::vector<std::uint32_t> embedInfo(unsigned long child) const;
    Pixels pixels() const;

    void moveTo(double x, double y);
    void press(unsigned button = 1);
    void release(unsigned button = 1);
    void keyDown(unsigned long keysym);
    void keyUp(unsigned long keysym);
};

} // namespace mirelon::test

// A window on the desktop with nothing in it but a plug-in's editor.
#pragma once

#include "hosting/picture.h"

#include <string>
#include <vector>

namespace mirelon::hosting {

// How a window stands on the desktop: like any other, or without a frame and
// above all others, for as long as it takes to look at it.
enum class WindowKind { ordinary, bare };

// Xlib ends the program on an error unless it has been told otherwise. What a
// plug-in does to a window is no reason for that, except where it is judged.
void ignoreXErrors();

// The windows in a window, from the lowest up.
std::vector<unsigned long> childrenOf(_XDisplay* display, unsigned long window);

// Uses an X connection of its own. One thread.
class HostWindow {
  public:
    // Not yet to be seen. Throws DisplayError without a display.
    HostWindow(const std::string& title, int width, int height, WindowKind kind);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    _XDisplay* connection() const { return display; }
    unsigned long id() const { return window; }
    // As an editor takes it.
    void* asParent() const;

    void show();
    void setTitle(const std::string& title);
    // Nothing happens where it has that size.
    void resize(int width, int height);
    // Looks at what has happened to the window; false once the user has asked
    // for it to be closed.
    bool serve();
    // The keys that were pressed in it since the last call, without Control, Alt and
    // the like: keysyms, of the key's first level. An editor in it may have taken
    // others for itself. Those of a window that is never asked are lost.
    std::vector<unsigned long> takeKeys();
    std::vector<unsigned long> children() const { return childrenOf(display, window); }
    // Throws DisplayError when it is not all on the display.
    Picture picture() const;

  private:
    _XDisplay* display;
    unsigned long window = 0;
    unsigned long deleteMessage = 0;
    std::vector<unsigned long> keys;
};

} // namespace mirelon::hosting

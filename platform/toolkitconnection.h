// The toolkit's global state: its set-up and its connection to the X server.
#pragma once

#include "platform/toolkit.h"

#include <cstdint>

struct xcb_connection_t;

namespace mirelon {

// Makes the toolkit usable; needs no display. Before the first picture, font or
// frame; every call after the first does nothing.
void setUpToolkit();

// Opens the toolkit's X connection, served by `loop`, for good. Only when a
// display is available, and only once.
void connectToolkit(VSTGUI::X11::IRunLoop& loop);
bool toolkitConnectionAlive();
// How many bytes have come over that connection, events and replies alike.
std::uint64_t toolkitBytesRead();
// Sends the requests that wait to be sent.
void flushToolkit();

// Whether this timer is one by which a frame draws what has been invalidated.
bool isRedrawTimer(const VSTGUI::X11::ITimerHandler& timer);

// The window of an open frame; 0 when it has none.
std::uint32_t windowOf(const VSTGUI::CFrame& frame);
// Whether `window` exists on the toolkit's display.
bool windowExists(std::uint32_t window);
// The window around `window`, or it itself, that the desktop's window manager knows:
// dialogs belong to such ones. `window` where there is none.
std::uint32_t managedWindowOf(std::uint32_t window);
// Shows a child window and says so in the property by which embedding hosts
// learn whether to show it.
void announceMapped(std::uint32_t window);
// From now on the server paints black what of a window is laid bare, until something
// is drawn there.
void blackenBackground(std::uint32_t window);
// Destroys a child window; does nothing for one that is already gone.
void destroyWindow(std::uint32_t window);

} // namespace mirelon

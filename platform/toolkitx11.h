// The toolkit's X11 side: its own headers, fenced like the rest of it, and its
// connection. Local to the files that speak with the X server.
#pragma once

#include "platform/serverconnection.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "vstgui/lib/platform/linux/x11platform.h"
#include "vstgui/lib/platform/linux/x11timer.h"
#pragma GCC diagnostic pop

namespace mirelon {

// Null before connectToolkit.
inline xcb_connection_t* connection() {
    return VSTGUI::X11::RunLoop::instance().getXcbConnection();
}

} // namespace mirelon

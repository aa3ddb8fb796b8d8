// The toolkit's X11 side: its own headers, fenced like the rest of it, its
// connection, and what replies that come over it are held by. Local to the files
// that speak with the X server.
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "vstgui/lib/platform/linux/x11platform.h"
#include "vstgui/lib/platform/linux/x11timer.h"
#pragma GCC diagnostic pop

namespace mirelon {

template <typename Reply>
struct FreeReply {
    void operator()(Reply* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply<Reply>>;

// Null before connectToolkit.
inline xcb_connection_t* connection() {
    return VSTGUI::X11::RunLoop::instance().getXcbConnection();
}

} // namespace mirelon

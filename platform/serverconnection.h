// Connections of our own to the X server, beside the toolkit's.
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace mirelon {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using ServerConnection = std::unique_ptr<xcb_connection_t, Disconnect>;

// To the server that the environment names; null without a display.
ServerConnection connectToServer();

// The first screen of a connection.
inline const xcb_screen_t& firstScreen(xcb_connection_t* connection) {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

// What comes over a connection: replies and events.
template <typename Reply>
struct FreeReply {
    void operator()(Reply* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply<Reply>>;

} // namespace mirelon

// A connection that keeps an X server from starting anew.
#pragma once

#include <memory>

struct xcb_connection_t;

namespace mirelon::hosting {

// A server without a session starts anew when its last client leaves, and refuses whoever
// connects in that moment; some end. While this lives, the server of DISPLAY has a client.
// Waits up to a second for one that is starting anew. Holds nothing where there is no
// display, which is no fault. One thread.
class DisplayHold {
  public:
    DisplayHold();

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
};

} // namespace mirelon::hosting

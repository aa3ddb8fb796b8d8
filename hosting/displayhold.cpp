#include "hosting/displayhold.h"

#include <chrono>
#include <thread>
#include <xcb/xcb.h>

namespace mirelon::hosting {

using namespace std::chrono_literals;

// Not Xlib's connection: that ends the process when the server has gone.
void DisplayHold::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

DisplayHold::DisplayHold() {
    const auto end = std::chrono::steady_clock::now() + 1s;
    for (;;) {
        connection.reset(xcb_connect(nullptr, nullptr));
        const bool refused = xcb_connection_has_error(connection.get()) == XCB_CONN_ERROR;
        if (!refused || std::chrono::steady_clock::now() > end)
            return;
        std::this_thread::sleep_for(10ms);
    }
}

} // namespace mirelon::hosting

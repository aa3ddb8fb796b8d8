#include "platform/serverconnection.h"

namespace mirelon {

ServerConnection connectToServer() {
    ServerConnection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()) != 0 ||
        xcb_setup_roots_iterator(xcb_get_setup(connection.get())).rem == 0)
        connection.reset();
    return connection;
}

} // namespace mirelon

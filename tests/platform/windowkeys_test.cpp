// The keys of a window that another one takes, and on a display that goes away. What typing and
// shortcuts make of them stands with the editor's tests.
#include "platform/windowkeys.h"

#include "platform/runloop.h"
#include "platform/toolkitconnection.h"
#include "platform/toolkitx11.h"
#include "tests/support/virtualdisplay.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/socket.h>

using namespace mirelon;
using namespace mirelon::test;

namespace {

std::uint32_t makeWindow() {
    const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
    const xcb_window_t window = xcb_generate_id(connection());
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 8, 8, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_map_window(connection(), window);
    return window;
}

std::uint32_t focusedWindowThere() {
    const ReplyPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
    return reply->focus;
}

TEST(WindowKeys, StayWhereAnotherWindowHasTakenThem) {
    VirtualDisplay::start();
    const RunLoop::User user;
    ASSERT_TRUE(RunLoop::instance().connectToDisplay());
    const auto window = makeWindow();
    const auto other = makeWindow();
    {
        WindowKeys keys(window, [] {});
        keys.take();
        ASSERT_EQ(focusedWindowThere(), window);
        xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_PARENT, other, XCB_CURRENT_TIME);
    }
    EXPECT_EQ(focusedWindowThere(), other);
}

// The host ends its editor before anybody has noticed that the server has gone.
TEST(WindowKeys, MayBeGivenBackToADisplayThatHasGone) {
    VirtualDisplay::start();
    const RunLoop::User user;
    ASSERT_TRUE(RunLoop::instance().connectToDisplay());
    const auto window = makeWindow();
    {
        WindowKeys keys(window, [] {});
        keys.take();
        ASSERT_EQ(focusedWindowThere(), window);
        shutdown(xcb_get_file_descriptor(connection()), SHUT_RDWR);
        ASSERT_TRUE(toolkitConnectionAlive());
    }
    EXPECT_FALSE(toolkitConnectionAlive());
}

} // namespace

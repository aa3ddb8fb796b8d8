#include "hosting/displayhold.h"

#include "tests/support/childprocess.h"
#include "tests/support/xserver.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <xcb/xcb.h>

namespace mirelon::hosting {
namespace {

using test::XServer;

bool canConnect() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool fine = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return fine;
}

TEST(DisplayHold, KeepsAServerWhileOthersComeAndGo) {
    XServer server("800x600x24", XServer::Left::ends);
    ASSERT_NE(server.display(), "") << "Xvfb did not start";
    EXPECT_EQ(test::inChild([&]() -> int {
                  setenv("DISPLAY", server.display().c_str(), 1);
                  const DisplayHold hold;
                  constexpr int visits = 50;
                  int lost = 0;
                  for (int i = 0; i < visits; ++i)
                      lost += canConnect() ? 0 : 1;
                  return lost;
              }),
              0);
    EXPECT_TRUE(server.ends()); // or it would have stayed without a hold
}

TEST(DisplayHold, HoldsNothingWithoutADisplay) {
    EXPECT_EQ(test::inChild([]() -> int {
                  unsetenv("DISPLAY");
                  const DisplayHold hold;
                  return canConnect() ? 1 : 0;
              }),
              0);
}

} // namespace
} // namespace mirelon::hosting

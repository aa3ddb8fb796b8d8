// What happens to a host when the X server under the open editor goes away.
//
// The host here speaks to the server through xcb, which reports a lost
// connection; a host that uses Xlib is ended by Xlib itself, whatever plug-ins
// it has loaded.
#include "tests/support/childprocess.h"
#include "tests/support/plugin.h"
#include "tests/support/xserver.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <xcb/xcb.h>

using namespace mirelon;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

struct CloseConnection {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

// The host's window, without Xlib.
class XcbWindow {
  public:
    XcbWindow(int width, int height)
        : connection(xcb_connect(nullptr, nullptr))
        , window(xcb_generate_id(connection.get())) {
        const xcb_screen_t* const screen =
            xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
        xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(connection.get(), window);
        free(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()),
                                       nullptr)); // a round trip
    }
    void* asParent() const {
        return reinterpret_cast<void*>(std::uintptr_t{window}); // NOLINT(performance-no-int-to-ptr)
    }
    bool lost() const { return xcb_connection_has_error(connection.get()) != 0; }
    bool waitUntilLost() const {
        for (int i = 0; i < 300 && !lost(); ++i) {
            free(xcb_poll_for_event(connection.get()));
            std::this_thread::sleep_for(10ms);
        }
        return lost();
    }

  private:
    std::unique_ptr<xcb_connection_t, CloseConnection> connection;
    xcb_window_t window;
};

void idle(const hosting::Effect& effect, std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        effect.dispatch(effEditIdle);
        std::this_thread::sleep_for(5ms);
    }
}

// Where the host came to; the process ends with it.
enum Stage { fine = 0, noEditor = 10, serverStays = 11, soundLost = 12, stateLost = 13 };

// `afterwards` is what the host does with the editor of the dead server.
template <typename Afterwards>
int hostOnADyingServer(XServer& server, Afterwards afterwards) {
    const mirelon::test::Signal opened;
    mirelon::test::ChildProcess host([&]() -> int {
        setenv("DISPLAY", server.display().c_str(), 1);
        PluginInstance instance;
        instance.effect.resume();
        const XcbWindow window(400, 400);
        if (instance.effect.dispatch(effEditOpen, 0, 0, window.asParent()) != 1)
            return noEditor;
        idle(instance.effect, 200ms);
        opened.signal();
        if (!window.waitUntilLost())
            return serverStays;
        afterwards(instance.effect);
        const StereoBuffer<float> in(std::vector<float>(8, 0.5F), std::vector<float>(8, 0.5F));
        instance.effect.setParameter(0, 0.5F);
        if (processed(instance.effect, in).left != in.left)
            return soundLost;
        return instance.effect.chunk().size() == 692 ? fine : stateLost;
    });
    opened.wait();
    server.kill();
    return host.wait();
}

class KilledServer : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(server.display(), "") << "Xvfb did not start"; }
    XServer server{"800x600x24"};
};

TEST_F(KilledServer, LeavesTheHostAliveWhileItGoesOnIdling) {
    EXPECT_EQ(hostOnADyingServer(server, [](auto& effect) { idle(effect, 500ms); }), fine);
}

TEST_F(KilledServer, LeavesTheHostAliveWhenItClosesTheEditor) {
    EXPECT_EQ(hostOnADyingServer(server, [](auto& effect) { effect.dispatch(effEditClose); }),
              fine);
}

TEST_F(KilledServer, LeavesTheHostAliveWhenParametersMove) {
    EXPECT_EQ(hostOnADyingServer(server,
                                 [](auto& effect) {
                                     for (VstInt32 i = 0; i < 9; ++i)
                                         effect.setParameter(i, 0.7F);
                                     idle(effect, 100ms);
                                     for (VstInt32 i = 1; i < 5; ++i)
                                         effect.setParameter(i, 0.5F);
                                     effect.setParameter(5, 1.0F);
                                     for (VstInt32 i = 6; i < 9; ++i)
                                         effect.setParameter(i, 0.0F);
                                 }),
              fine);
}

TEST_F(KilledServer, LeavesTheHostAliveWhenItOpensTheEditorAgain) {
    EXPECT_EQ(hostOnADyingServer(server,
                                 [](auto& effect) {
                                     effect.dispatch(effEditClose);
                                     effect.dispatch(effEditOpen, 0, 0,
                                                     reinterpret_cast<void*>(std::uintptr_t{42}));
                                     idle(effect, 50ms);
                                     effect.dispatch(effEditClose);
                                 }),
              fine);
}

class NeverIdle : public ::testing::Test {
  protected:
    XServer server{"800x600x24"};
};

TEST_F(NeverIdle, AHostThatNeverIdlesKeepsItsSoundAndState) {
    ASSERT_NE(server.display(), "") << "Xvfb did not start";
    EXPECT_EQ(mirelon::test::inChild([&]() -> int {
                  setenv("DISPLAY", server.display().c_str(), 1);
                  PluginInstance instance;
                  instance.effect.resume();
                  const XcbWindow window(400, 400);
                  if (instance.effect.dispatch(effEditOpen, 0, 0, window.asParent()) != 1)
                      return noEditor;
                  for (int i = 0; i < 20000; ++i)
                      instance.effect.setParameter(i % 5, static_cast<float>(i % 100) * 0.01F);
                  for (VstInt32 i = 0; i < 5; ++i)
                      instance.effect.setParameter(i, 0.5F);
                  const StereoBuffer<float> in(std::vector<float>(8, 0.5F),
                                               std::vector<float>(8, 0.5F));
                  if (processed(instance.effect, in).left != in.left)
                      return soundLost;
                  return instance.effect.chunk().size() == 692 ? fine : stateLost;
              }),
              fine);
}

} // namespace

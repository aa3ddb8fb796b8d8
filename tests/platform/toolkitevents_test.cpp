// The loop of the open editors and the toolkit's own connection to a display.
#include "platform/runloop.h"
#include "platform/toolkitconnection.h"
#include "tests/support/mainloop.h"
#include "tests/support/pumping.h"
#include "tests/support/virtualdisplay.h"
#include "tests/support/watchedpipe.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <xcb/xcb.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "vstgui/lib/platform/linux/x11platform.h"
#pragma GCC diagnostic pop

using namespace mirelon;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

xcb_connection_t* connection() {
    return VSTGUI::X11::RunLoop::instance().getXcbConnection();
}

// A window whose properties' changes are counted as the toolkit hands them out.
class CountedWindow final : VSTGUI::X11::IFrameEventHandler {
  public:
    CountedWindow()
        : window(xcb_generate_id(connection())) {
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection(), XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 8, 8, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK,
                          &events);
        VSTGUI::X11::RunLoop::instance().registerWindowEventHandler(window, this);
    }
    ~CountedWindow() {
        VSTGUI::X11::RunLoop::instance().unregisterWindowEventHandler(window);
        xcb_destroy_window(connection(), window);
    }
    CountedWindow(const CountedWindow&) = delete;
    CountedWindow& operator=(const CountedWindow&) = delete;

    void change() const {
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, 1, "x");
    }

    xcb_window_t id() const { return window; }

    int changes = 0;

  private:
    void onEvent(xcb_map_notify_event_t&) override {}
    void onEvent(xcb_key_press_event_t&) override {}
    void onEvent(xcb_button_press_event_t&) override {}
    void onEvent(xcb_motion_notify_event_t&) override {}
    void onEvent(xcb_enter_notify_event_t&) override {}
    void onEvent(xcb_focus_in_event_t&) override {}
    void onEvent(xcb_expose_event_t&) override {}
    void onEvent(xcb_property_notify_event_t&) override { ++changes; }
    void onEvent(xcb_selection_notify_event_t&) override {}
    void onEvent(xcb_client_message_event_t&, xcb_window_t) override {}

    xcb_window_t window;
};

// Waits for an answer, with which every event before it is read.
void makeRoundTrip() {
    std::free(xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
}

bool descriptorIsSilent() {
    pollfd state{xcb_get_file_descriptor(connection()), POLLIN, 0};
    return poll(&state, 1, 0) == 0;
}

class ToolkitEvents : public testing::TestWithParam<void (*)()> {
  protected:
    ToolkitEvents() {
        VirtualDisplay::start();
        EXPECT_TRUE(static_cast<bool>(user));
        EXPECT_TRUE(loop.connectToDisplay());
    }
    static void turn() { GetParam()(); }

    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
};
INSTANTIATE_TEST_SUITE_P(HostIdleAndGlib, ToolkitEvents,
                         testing::Values([] { RunLoop::instance().pump(); }, iterateOnce),
                         [](const auto& info) { return info.index == 0 ? "HostIdle" : "Glib"; });

TEST_P(ToolkitEvents, ThatWereReadWithAnAnswerAreHandledInTheNextTurn) {
    CountedWindow window;
    turn();
    window.change();
    makeRoundTrip();
    ASSERT_TRUE(descriptorIsSilent());
    turn();
    EXPECT_EQ(window.changes, 1);
}

TEST_P(ToolkitEvents, ThatATimerReadsAreHandledInItsTurn) {
    CountedWindow window;
    turn();
    const auto id = loop.addTimer(1ms, [&] {
        window.change();
        makeRoundTrip();
    });
    std::this_thread::sleep_for(2ms);
    turn();
    loop.removeTimer(id);
    EXPECT_EQ(window.changes, 1);
}

TEST_P(ToolkitEvents, RequestsOfATimerAreSentInItsTurn) {
    CountedWindow window;
    turn();
    const auto id = loop.addTimer(1ms, [&] { window.change(); });
    std::this_thread::sleep_for(2ms);
    turn();
    loop.removeTimer(id);
    pollfd state{xcb_get_file_descriptor(connection()), POLLIN, 0};
    EXPECT_EQ(poll(&state, 1, 2000), 1);
}

// A host that shows an editor may have long to go until it gives it a turn.
TEST_P(ToolkitEvents, AreNotWaitedForToShowAWindow) {
    CountedWindow window;
    announceMapped(window.id());
    const std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> attributes(
        xcb_get_window_attributes_reply(
            connection(), xcb_get_window_attributes(connection(), window.id()), nullptr),
        &std::free);
    ASSERT_NE(attributes, nullptr);
    EXPECT_EQ(attributes->map_state, XCB_MAP_STATE_VIEWABLE);
}

TEST_P(ToolkitEvents, LetTheLoopSleepWhenAllAreHandled) {
    CountedWindow window;
    for (int i = 0; i < 10; ++i)
        window.change();
    makeRoundTrip();
    turn();
    turn();
    EXPECT_EQ(window.changes, 10);
    EXPECT_LE(iterateFor(200ms), 5);
}

// Called like the toolkit's own.
struct CountedHandler final : VSTGUI::X11::IEventHandler, VSTGUI::X11::ITimerHandler {
    void onEvent() override {
        ++events;
        onCall();
    }
    void onTimer() override { ++redraws; }
    int events = 0;
    int redraws = 0;
    std::function<void()> onCall = [] {};
};

TEST_P(ToolkitEvents, ThatWereReadWithAnAnswerAreFollowedByARedraw) {
    CountedWindow window;
    CountedHandler frame;
    loop.registerTimer(16, &frame);
    const auto redrawn = [&](std::chrono::milliseconds within) {
        frame.redraws = 0;
        const auto end = std::chrono::steady_clock::now() + within;
        while (frame.redraws == 0 && std::chrono::steady_clock::now() < end) {
            turn();
            std::this_thread::sleep_for(1ms);
        }
        return frame.redraws > 0;
    };
    while (redrawn(100ms)) // for what came before
        ;
    window.change();
    makeRoundTrip();
    ASSERT_TRUE(descriptorIsSilent());
    EXPECT_TRUE(redrawn(20s));
    loop.unregisterTimer(&frame);
}

TEST_P(ToolkitEvents, AreNotHandedToWhatAHandlerOfThemHasTakenBack) {
    CountedWindow window;
    WatchedPipe silent;
    CountedHandler first;
    CountedHandler second;
    first.onCall = [&] { loop.unregisterEventHandler(&second); };
    turn();
    loop.registerEventHandler(silent.reader(), &first);
    loop.registerEventHandler(silent.reader(), &second);
    window.change();
    makeRoundTrip(); // no descriptor says that there is an event
    turn();
    loop.unregisterEventHandler(&first);
    EXPECT_EQ(window.changes, 1);
    EXPECT_GT(first.events, 0);
    EXPECT_EQ(second.events, 0);
}

class ToolkitTimers : public ToolkitEvents {};
INSTANTIATE_TEST_SUITE_P(Glib, ToolkitTimers, testing::Values(iterateOnce));

TEST_P(ToolkitTimers, AsSlowAsTheEditorsTickTogetherWithThem) {
    int ticks = 0;
    const auto id = loop.addTimer(33333us, [] {});
    int own = 0;
    const auto timer = VSTGUI::makeOwned<VSTGUI::CVSTGUITimer>(
        [&](VSTGUI::CVSTGUITimer*) { ++own; }, 1000 / VSTGUI::CView::idleRate);
    std::this_thread::sleep_for(10ms);
    const auto later = VSTGUI::makeOwned<VSTGUI::CVSTGUITimer>(
        [&](VSTGUI::CVSTGUITimer*) { ++ticks; }, 1000 / VSTGUI::CView::idleRate);
    EXPECT_LE(iterateFor(1000ms), 40);
    EXPECT_GE(own, 10);
    EXPECT_GE(ticks, 10);
    loop.removeTimer(id);
}

TEST_P(ToolkitTimers, OfAnimationsTickInTheirOwnTime) {
    int ticks = 0;
    const auto timer =
        VSTGUI::makeOwned<VSTGUI::CVSTGUITimer>([&](VSTGUI::CVSTGUITimer*) { ++ticks; }, 16);
    // A busy machine may miss some, but not each time.
    for (int attempt = 0; attempt < 5 && ticks < 20; ++attempt) {
        ticks = 0;
        iterateFor(500ms);
    }
    EXPECT_GE(ticks, 20);
    EXPECT_LE(ticks, 32);
}

TEST_P(ToolkitTimers, ThatAreStoppedLetTheLoopSleep) {
    int ticks = 0;
    const auto timer =
        VSTGUI::makeOwned<VSTGUI::CVSTGUITimer>([&](VSTGUI::CVSTGUITimer*) { ++ticks; }, 5);
    ASSERT_TRUE(pumpUntil([&] { return ticks > 0; }));
    timer->stop();
    ticks = 0;
    EXPECT_LE(iterateFor(200ms), 5);
    EXPECT_EQ(ticks, 0);
}

// The last one: a connection that has broken is not made again.
class WithoutConnection : public ToolkitEvents {};
INSTANTIATE_TEST_SUITE_P(Glib, WithoutConnection, testing::Values(iterateOnce));

TEST_P(WithoutConnection, NothingOfTheToolkitsIsServedAndNothingKeepsTheLoopAwake) {
    CountedWindow window;
    turn();
    window.change();
    makeRoundTrip();
    CountedHandler frame;
    loop.registerTimer(16, &frame); // wants to draw
    shutdown(xcb_get_file_descriptor(connection()), SHUT_RDWR);
    makeRoundTrip();
    EXPECT_FALSE(loop.connectToDisplay());
    EXPECT_LE(iterateFor(300ms), 10);
    EXPECT_EQ(window.changes, 0);
    EXPECT_EQ(frame.redraws, 0);
}

} // namespace

// The loop of the open editors, without a display.
#include "platform/runloop.h"

#include "tests/support/mainloop.h"
#include "tests/support/watchedpipe.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <glib.h>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <thread>

using namespace mirelon;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

// Both triggers, one a test.
class RunLoopDrive : public testing::TestWithParam<void (*)()> {
  protected:
    RunLoopDrive() { EXPECT_TRUE(static_cast<bool>(user)); }
    static void turn() { GetParam()(); }

    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
};
INSTANTIATE_TEST_SUITE_P(HostIdleAndGlib, RunLoopDrive,
                         testing::Values([] { RunLoop::instance().pump(); }, iterateOnce),
                         [](const auto& info) { return info.index == 0 ? "HostIdle" : "Glib"; });

struct CountingHandler : VSTGUI::X11::IEventHandler, VSTGUI::X11::ITimerHandler {
    void onEvent() override {
        ++events;
        onCall();
    }
    void onTimer() override {
        ++redraws;
        onCall();
    }
    int events = 0;
    int redraws = 0;
    std::function<void()> onCall = [] {};
};

// A toolkit's connection whose events are read as they are handled.
struct Connection : CountingHandler {
    Connection() {
        onCall = [this] { pipe.drain(); };
        RunLoop::instance().registerEventHandler(pipe.reader(), this);
    }
    ~Connection() { RunLoop::instance().unregisterEventHandler(this); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    WatchedPipe pipe;
};

// A frame as the loop sees it.
struct Frame : CountingHandler {
    Frame() { RunLoop::instance().registerTimer(16, this); }
    ~Frame() { RunLoop::instance().unregisterTimer(this); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
};

TEST_P(RunLoopDrive, ServesAWatchedDescriptorWhenItCanBeRead) {
    WatchedPipe pipe;
    int calls = 0;
    const auto id = loop.watchDescriptor(pipe.reader(), [&] {
        ++calls;
        pipe.drain();
    });
    turn();
    EXPECT_EQ(calls, 0);
    pipe.write();
    turn();
    turn();
    EXPECT_EQ(calls, 1);
    loop.unwatchDescriptor(id);
    pipe.write();
    turn();
    EXPECT_EQ(calls, 1);
}

TEST_P(RunLoopDrive, ServesTheToolkitsEventsInTheSameTurn) {
    Connection connection;
    connection.pipe.write();
    turn();
    turn();
    EXPECT_EQ(connection.events, 1);
}

TEST_P(RunLoopDrive, DrawsWhatEventsChangedInTheSameTurn) {
    Connection connection;
    Frame frame;
    turn(); // the first drawing
    const int before = frame.redraws;
    std::this_thread::sleep_for(20ms);
    connection.pipe.write();
    turn();
    EXPECT_EQ(frame.redraws, before + 1);
}

TEST_P(RunLoopDrive, DrawsNoMoreOftenThanTheToolkitAsksHoweverManyTheEvents) {
    Connection connection;
    Frame frame;
    turn();
    const int before = frame.redraws;
    const auto begin = Clock::now();
    for (int i = 0; i < 100; ++i) {
        connection.pipe.write();
        turn();
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_GE(connection.events, 90);
    EXPECT_LE(frame.redraws - before, (Clock::now() - begin) / 16ms + 1);
    std::this_thread::sleep_for(16ms);
    const int last = frame.redraws;
    connection.pipe.write();
    turn();
    EXPECT_EQ(frame.redraws, last + 1);
}

TEST_P(RunLoopDrive, DrawsTheLastChangeWithoutAnotherEvent) {
    Connection connection;
    Frame frame;
    turn();
    int before = -1;
    while (frame.redraws != before) { // until the machine is quick enough
        before = frame.redraws;
        connection.pipe.write();
        turn(); // too soon to draw
    }
    std::this_thread::sleep_for(17ms);
    turn();
    EXPECT_EQ(frame.redraws, before + 1);
    turn();
    EXPECT_EQ(frame.redraws, before + 1);
}

TEST_P(RunLoopDrive, DrawsWhatATimerChangedInTheSameTurn) {
    Frame frame;
    turn();
    const int before = frame.redraws;
    const auto id = loop.addTimer(1ms, [] {});
    std::this_thread::sleep_for(2ms);
    turn();
    loop.removeTimer(id);
    EXPECT_EQ(frame.redraws, before + 1);
}

TEST_P(RunLoopDrive, DrawsWhatAnEventChangedRightAfterATimersDrawing) {
    Connection connection;
    Frame frame;
    while (frame.redraws == 0) // not before the last test's frame rests no more
        turn();
    const auto id = loop.addTimer(20ms, [] {});
    std::this_thread::sleep_for(22ms); // events may be drawn again by then
    turn();
    loop.removeTimer(id);
    const int before = frame.redraws;
    connection.pipe.write();
    turn();
    EXPECT_EQ(frame.redraws, before + 1);
}

TEST_P(RunLoopDrive, CallsNothingOfTheToolkitsThatHasBeenTakenBackMeanwhile) {
    Connection first;
    Connection second;
    Frame frame;
    first.onCall = [&] {
        first.pipe.drain();
        loop.unregisterEventHandler(&second);
        loop.unregisterTimer(&frame);
    };
    first.pipe.write();
    second.pipe.write();
    std::this_thread::sleep_for(20ms);
    turn();
    EXPECT_EQ(first.events, 1);
    EXPECT_EQ(second.events, 0);
    EXPECT_EQ(frame.redraws, 0);
    EXPECT_FALSE(loop.unregisterEventHandler(&second));
    EXPECT_FALSE(loop.unregisterTimer(&frame));
}

TEST_P(RunLoopDrive, DrawsNoFrameThatTheDrawingOfAnotherHasTakenBack) {
    Frame first;
    Frame second;
    first.onCall = [&] { loop.unregisterTimer(&second); };
    std::this_thread::sleep_for(20ms); // a drawing is due
    turn();
    EXPECT_EQ(first.redraws, 1);
    EXPECT_EQ(second.redraws, 0);
}

TEST_P(RunLoopDrive, CallsNoTimerThatAnotherHasRemovedInTheSameTurn) {
    int calls = 0;
    TimerSchedule::Id removed = 0;
    const auto removing = loop.addTimer(1ms, [&] { loop.removeTimer(removed); });
    removed = loop.addTimer(1ms, [&] { ++calls; });
    std::this_thread::sleep_for(2ms); // both are due
    turn();
    loop.removeTimer(removing);
    EXPECT_EQ(calls, 0);
}

TEST_P(RunLoopDrive, ATurnInsideATurnDoesNothing) {
    WatchedPipe pipe;
    int depth = 0;
    int deepest = 0;
    const auto id = loop.watchDescriptor(pipe.reader(), [&] {
        deepest = std::max(deepest, ++depth);
        turn();
        loop.pump();
        --depth;
        pipe.drain();
    });
    pipe.write();
    turn();
    loop.unwatchDescriptor(id);
    EXPECT_EQ(deepest, 1);
}

TEST(RunLoop, DoesNotKeepALoopThatTheHostRunsInsideATurnAwake) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    WatchedPipe pipe;
    int iterations = 0;
    const auto id = loop.watchDescriptor(pipe.reader(), [&] {
        iterations = iterateFor(100ms);
        pipe.drain();
    });
    pipe.write();
    iterateOnce();
    loop.unwatchDescriptor(id);
    EXPECT_GT(iterations, 0);
    EXPECT_LE(iterations, 10);
}

TEST(RunLoop, NeitherServesNorWakesAThreadThatDoesNotOwnIt) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    Connection connection;
    Frame frame;
    int ticks = 0;
    const auto id = loop.addTimer(5ms, [&] { ++ticks; });
    iterateOnce(); // the owner has polled before
    ticks = 0;     // it ticks in that, where the machine is slow
    const int before = frame.redraws;
    connection.pipe.write();
    int iterations = 0;
    std::thread([&] { iterations = iterateFor(300ms); }).join();
    EXPECT_LE(iterations, 10);
    EXPECT_EQ(connection.events, 0);
    EXPECT_EQ(frame.redraws, before);
    EXPECT_EQ(ticks, 0);
    // What was pending is served as soon as the owner iterates.
    iterateOnce();
    EXPECT_EQ(connection.events, 1);
    EXPECT_EQ(ticks, 1);
    loop.removeTimer(id);
}

TEST(RunLoop, IsServedByItsOwnThreadAmongOthersThatIterate) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    int ticks = 0;
    const auto id = loop.addTimer(10ms, [&] { ++ticks; });
    for (int i = 0; i < 10; ++i) {
        std::thread([] { iterateFor(5ms); }).join();
        iterateFor(15ms);
    }
    loop.removeTimer(id);
    EXPECT_GE(ticks, 8);
}

TEST(RunLoop, SurvivesWhatFailsInATurn) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    WatchedPipe pipe;
    int calls = 0;
    const auto id = loop.watchDescriptor(pipe.reader(), [&] {
        if (++calls < 3)
            throw std::runtime_error("failed");
        pipe.drain();
    });
    pipe.write();
    const int iterations = iterateFor(200ms);
    loop.unwatchDescriptor(id);
    EXPECT_EQ(calls, 3);
    EXPECT_LE(iterations, 20) << "what fails is tried again without a pause";
    EXPECT_FALSE(loop.isPumping());
}

TEST(RunLoop, SleepsWithoutAnythingToServe) {
    const RunLoop::User user;
    Connection connection;
    EXPECT_LE(iterateFor(200ms), 5);
}

TEST(RunLoop, SleepsOnceItsTimersAreRemoved) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    loop.removeTimer(loop.addTimer(1ms, [] {}));
    EXPECT_LE(iterateFor(200ms), 5);
}

TEST(RunLoop, KeepsWhatItCallsUntilTheCallReturns) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    WatchedPipe pipe;
    // What a function holds goes with it.
    std::weak_ptr<int> held;
    int calls = 0;
    TimerSchedule::Id timer = 0;
    DescriptorWatches::Id watch = 0;
    auto holding = [&](auto remove) {
        auto value = std::make_shared<int>(0);
        held = value;
        return [&, remove, value] {
            ++calls;
            remove();
            EXPECT_FALSE(held.expired());
        };
    };
    timer = loop.addTimer(1ms, holding([&] { loop.removeTimer(timer); }));
    std::this_thread::sleep_for(2ms);
    loop.pump();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(held.expired());
    watch = loop.watchDescriptor(pipe.reader(), holding([&] { loop.unwatchDescriptor(watch); }));
    pipe.write();
    loop.pump();
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(held.expired());
}

TEST(RunLoop, WakesTheMainContextFromAnyThread) {
    const RunLoop::User user;
    // Again and again: a busy machine may not have begun to wait at the first.
    std::atomic<bool> awake{false};
    std::thread other([&] {
        while (!awake) {
            std::this_thread::sleep_for(20ms);
            RunLoop::wake();
        }
    });
    const auto begin = Clock::now();
    const guint limit = g_timeout_add(
        2000, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    // What the source was attached with may end the first sleep.
    while (Clock::now() - begin < 15ms)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_LT(Clock::now() - begin, 1s);
    awake = true;
    other.join();
    g_source_remove(limit);
}

TEST(RunLoop, WorkForLaterRunsAfterTheTurnThatAsksForIt) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    ASSERT_TRUE(static_cast<bool>(user));
    std::vector<int> order;
    TimerSchedule::Id id = 0;
    id = loop.addTimer(1ms, [&] {
        loop.whenUnwound([&] { order.push_back(2); });
        order.push_back(1);
        loop.removeTimer(id);
    });
    std::this_thread::sleep_for(5ms);
    loop.pump();
    EXPECT_EQ(order, (std::vector{1, 2}));
    loop.whenUnwound([&] { order.push_back(3); });
    EXPECT_EQ(order.back(), 3);
}

// As a display does that takes longer to draw than the editors' turns are apart.
TEST(RunLoop, ThatTakesLongLeavesTheHostsOwnWorkItsTurn) {
    RunLoop& loop = RunLoop::instance();
    const RunLoop::User user;
    ASSERT_TRUE(static_cast<bool>(user));
    int turns = 0;
    const TimerSchedule::Id id = loop.addTimer(1ms, [&] {
        ++turns;
        std::this_thread::sleep_for(40ms);
    });
    std::this_thread::sleep_for(30ms);
    int hostsTurns = 0;
    const guint hosts = g_idle_add(
        [](gpointer count) -> gboolean {
            ++*static_cast<int*>(count);
            return G_SOURCE_CONTINUE;
        },
        &hostsTurns);
    for (int i = 0; i < 20; ++i)
        g_main_context_iteration(nullptr, FALSE);
    EXPECT_GT(turns, 0);
    EXPECT_GT(hostsTurns, 10);
    g_source_remove(hosts);
    loop.removeTimer(id);
}

TEST(RunLoop, BelongsToOneThreadAtATime) {
    bool granted = true;
    {
        const RunLoop::User user;
        EXPECT_TRUE(EditorThread::instance().isOwnThread());
        std::thread([&] {
            const RunLoop::User other;
            granted = static_cast<bool>(other);
        }).join();
        EXPECT_FALSE(granted);
    }
    EXPECT_FALSE(EditorThread::instance().isOwnThread());
    std::thread([&] {
        const RunLoop::User other;
        granted = static_cast<bool>(other) && EditorThread::instance().isOwnThread();
    }).join();
    EXPECT_TRUE(granted);
}

TEST(RunLoop, WithoutADisplayDoesNotConnect) {
    unsetenv("DISPLAY");
    const RunLoop::User user;
    EXPECT_FALSE(RunLoop::instance().connectToDisplay());
    RunLoop::instance().pump();
}

} // namespace

#include "platform/maincontextsource.h"

#include "tests/support/mainloop.h"
#include "tests/support/watchedpipe.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

using namespace mirelon;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

using Clock = MainContextSource::Clock;
using Wait = MainContextSource::Wait;

constexpr auto never = Clock::time_point::max();

// Does as it is told.
struct Client final : MainContextSource::Client {
    bool isServable() const noexcept override { return servable; }
    std::optional<Wait> nextWait() override { return wait(); }
    void serve() override {
        ++turns;
        onServe();
    }
    bool servable = true;
    int turns = 0;
    std::function<std::optional<Wait>()> wait = [] { return Wait{never, {}}; };
    std::function<void()> onServe = [] {};
};

class MainContextSourceTest : public testing::Test {
  protected:
    MainContextSourceTest() { source.start(); }
    // Serves once a tick of this length.
    void tickEvery(std::chrono::milliseconds interval) {
        client.wait = [this] { return Wait{due, {}}; };
        client.onServe = [this, interval] { due = Clock::now() + interval; };
    }
    Client client;
    MainContextSource source{client};
    Clock::time_point due = Clock::now();
};

TEST_F(MainContextSourceTest, ServesAtEachDeadlineAndSleepsInBetween) {
    tickEvery(20ms);
    const auto begin = Clock::now();
    const int wakeUps = iterateUntil([&] { return client.turns == 6; });
    EXPECT_EQ(client.turns, 6);
    EXPECT_GE(Clock::now() - begin, 100ms);
    EXPECT_LE(wakeUps, client.turns + 5);
}

TEST_F(MainContextSourceTest, ServesWhenADescriptorCanBeRead) {
    WatchedPipe pipe;
    client.wait = [&] { return Wait{never, {pipe.reader()}}; };
    client.onServe = [&] { pipe.drain(); };
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 0);
    pipe.write();
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 1);
}

TEST_F(MainContextSourceTest, PollsTheDescriptorsThatAreWantedNow) {
    WatchedPipe first;
    WatchedPipe second;
    std::vector<int> wanted{first.reader()};
    client.wait = [&] { return Wait{never, wanted}; };
    iterateOnce();
    wanted = {second.reader()};
    first.write();
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 0);
    second.write();
    iterateOnce();
    EXPECT_EQ(client.turns, 1);
}

TEST_F(MainContextSourceTest, DoesNothingWhileTheClientIsNotServable) {
    WatchedPipe pipe;
    client.wait = [&] { return Wait{Clock::now(), {pipe.reader()}}; };
    pipe.write();
    iterateOnce();
    const int before = client.turns;
    client.servable = false;
    EXPECT_LE(iterateFor(100ms), 5);
    EXPECT_EQ(client.turns, before);
    client.servable = true;
    iterateOnce();
    EXPECT_EQ(client.turns, before + 1);
}

TEST_F(MainContextSourceTest, AsksAClientAgainThatCouldNotAnswer) {
    int asked = 0;
    client.wait = [&]() -> std::optional<Wait> {
        if (++asked < 3)
            return {};
        return Wait{client.turns == 0 ? Clock::now() : never, {}};
    };
    const int wakeUps = iterateUntil([&] { return client.turns == 1; });
    EXPECT_EQ(client.turns, 1);
    EXPECT_LE(wakeUps, 10);
}

TEST_F(MainContextSourceTest, PausesAfterATurnThatFails) {
    client.wait = [] { return Wait{Clock::now(), {}}; };
    auto last = Clock::now() - 1s;
    auto shortest = Clock::duration::max();
    client.onServe = [&] {
        shortest = std::min(shortest, Clock::now() - last);
        last = Clock::now();
        throw std::runtime_error("failed");
    };
    iterateUntil([&] { return client.turns == 4; });
    EXPECT_EQ(client.turns, 4);
    EXPECT_GE(shortest, 10ms);
}

TEST_F(MainContextSourceTest, SurvivesAClientThatFailsToAnswer) {
    client.wait = []() -> std::optional<Wait> { throw std::runtime_error("failed"); };
    EXPECT_LE(iterateFor(100ms), 20);
}

TEST_F(MainContextSourceTest, MayBeStoppedInsideItsTurn) {
    tickEvery(1ms);
    client.onServe = [this] { source.stop(); };
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 1);
}

TEST_F(MainContextSourceTest, LeavesNothingInTheContextOnceStopped) {
    WatchedPipe pipe;
    client.wait = [&] { return Wait{never, {pipe.reader()}}; };
    iterateOnce();
    source.stop();
    source.stop();
    pipe.write();
    EXPECT_LE(iterateFor(50ms), 3);
    EXPECT_EQ(client.turns, 0);
}

TEST_F(MainContextSourceTest, MayBeStoppedWhileAnotherThreadIterates) {
    WatchedPipe pipe;
    client.wait = [&] {
        std::this_thread::sleep_for(20us); // time for the other thread to stop it
        return Wait{never, {pipe.reader()}};
    };
    std::atomic<int> complaints{0};
    const guint handler = g_log_set_handler(
        "GLib", G_LOG_LEVEL_CRITICAL,
        [](const gchar*, GLogLevelFlags, const gchar*, gpointer count) {
            ++*static_cast<std::atomic<int>*>(count);
        },
        &complaints);
    std::atomic<bool> over{false};
    std::thread other([&] {
        while (!over)
            iterateOnce();
    });
    for (int i = 0; i < 2000; ++i) {
        source.stop();
        source.start();
        std::this_thread::sleep_for(std::chrono::microseconds(i % 100));
    }
    source.stop();
    over = true;
    other.join();
    g_log_remove_handler("GLib", handler);
    EXPECT_EQ(complaints, 0);
    // Nothing of what was stopped is polled any more.
    pipe.write();
    EXPECT_LE(iterateFor(50ms), 3);
    EXPECT_EQ(client.turns, 0);
}

TEST_F(MainContextSourceTest, StartedTwiceServesOnce) {
    source.start();
    client.wait = [this] { return Wait{client.turns == 0 ? due : never, {}}; };
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 1);
    source.stop();
    due = Clock::now();
    client.turns = 0;
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 0);
    source.start();
    iterateFor(20ms);
    EXPECT_EQ(client.turns, 1);
}

} // namespace

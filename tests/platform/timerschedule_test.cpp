#include "platform/timerschedule.h"

#include <gtest/gtest.h>

using namespace mirelon;
using namespace std::chrono_literals;

namespace {

using Id = TimerSchedule::Id;
using Ids = std::vector<Id>;

constexpr TimerSchedule::Clock::time_point start{1h};

TEST(TimerSchedule, ATimerIsFirstDueOneIntervalAfterItWasAdded) {
    TimerSchedule schedule;
    const Id id = schedule.add(10ms, start);
    EXPECT_EQ(schedule.takeDue(start + 9ms), Ids{});
    EXPECT_EQ(schedule.takeDue(start + 10ms), Ids{id});
    EXPECT_EQ(schedule.takeDue(start + 10ms), Ids{});
}

TEST(TimerSchedule, ALateTickDoesNotDelayTheNext) {
    TimerSchedule schedule;
    const Id id = schedule.add(10ms, start);
    EXPECT_EQ(schedule.takeDue(start + 17ms), Ids{id});
    EXPECT_EQ(schedule.takeDue(start + 19ms), Ids{});
    EXPECT_EQ(schedule.takeDue(start + 20ms), Ids{id});
}

TEST(TimerSchedule, MissedTicksAreNotMadeUpFor) {
    TimerSchedule schedule;
    const Id id = schedule.add(10ms, start);
    EXPECT_EQ(schedule.takeDue(start + 105ms), Ids{id});
    EXPECT_EQ(schedule.takeDue(start + 114ms), Ids{});
    EXPECT_EQ(schedule.takeDue(start + 115ms), Ids{id});
}

TEST(TimerSchedule, ServedAsLateAsItsNextTickATimerIsNotDueTwiceAtOnce) {
    TimerSchedule schedule;
    const Id id = schedule.add(10ms, start);
    EXPECT_EQ(schedule.takeDue(start + 20ms), Ids{id});
    EXPECT_EQ(schedule.takeDue(start + 20ms), Ids{});
    EXPECT_EQ(schedule.takeDue(start + 30ms), Ids{id});
}

TEST(TimerSchedule, TicksThirtyTimesASecondWhateverTheTurnsOfTheLoop) {
    for (const auto turn : {4ms, 7ms, 16ms, 25ms, 33ms}) {
        TimerSchedule schedule;
        schedule.add(33333335ns, start);
        int ticks = 0;
        for (auto now = start; now < start + 10s; now += turn)
            ticks += static_cast<int>(schedule.takeDue(now).size());
        EXPECT_NEAR(ticks, 300, 3) << turn.count();
    }
}

TEST(TimerSchedule, TimersAreServedInTheOrderOfTheirAdding) {
    TimerSchedule schedule;
    const Id slow = schedule.add(20ms, start);
    const Id fast = schedule.add(10ms, start);
    EXPECT_EQ(schedule.takeDue(start + 10ms), Ids{fast});
    EXPECT_EQ(schedule.takeDue(start + 20ms), (Ids{slow, fast}));
}

TEST(TimerSchedule, ARemovedTimerIsNeverDue) {
    TimerSchedule schedule;
    const Id gone = schedule.add(10ms, start);
    const Id stays = schedule.add(10ms, start);
    schedule.remove(gone);
    schedule.remove(gone);
    EXPECT_FALSE(schedule.contains(gone));
    EXPECT_EQ(schedule.takeDue(start + 10ms), Ids{stays});
    schedule.remove(stays);
    EXPECT_TRUE(schedule.empty());
}

TEST(TimerSchedule, AnIdIsNotUsedAgain) {
    TimerSchedule schedule;
    const Id first = schedule.add(10ms, start);
    schedule.remove(first);
    EXPECT_NE(schedule.add(10ms, start), first);
}

TEST(TimerSchedule, AnIntervalOfNothingIsDueOnceATurn) {
    TimerSchedule schedule;
    const Id id = schedule.add(0ns, start);
    EXPECT_EQ(schedule.takeDue(start + 1ms), Ids{id});
    EXPECT_EQ(schedule.takeDue(start + 2ms), Ids{id});
}

TEST(TimerSchedule, TheShortestIntervalIsANanosecond) {
    for (const auto interval : {-1ns, 0ns, 1ns}) {
        TimerSchedule schedule;
        const Id id = schedule.add(interval, start);
        EXPECT_EQ(schedule.takeDue(start), Ids{}) << interval.count();
        EXPECT_EQ(schedule.takeDue(start + 1ns), Ids{id}) << interval.count();
    }
}

TEST(TimerSchedule, AsksForNothingWithoutTimers) {
    TimerSchedule schedule;
    EXPECT_EQ(schedule.next(), TimerSchedule::Clock::time_point::max());
    schedule.remove(schedule.add(10ms, start));
    EXPECT_EQ(schedule.next(), TimerSchedule::Clock::time_point::max());
}

TEST(TimerSchedule, AsksToBeServedWhenTheFirstTimerIsDue) {
    TimerSchedule schedule;
    schedule.add(20ms, start);
    schedule.add(15ms, start);
    EXPECT_EQ(schedule.next(), start + 15ms);
    schedule.takeDue(start + 15ms);
    EXPECT_EQ(schedule.next(), start + 20ms);
    schedule.takeDue(start + 20ms);
    EXPECT_EQ(schedule.next(), start + 30ms);
}

TEST(TimerSchedule, ATolerantTimerAsksForNothingOfItsOwnUntilItsToleranceIsOver) {
    TimerSchedule schedule;
    const Id tolerant = schedule.add(10ms, start, 8ms);
    EXPECT_EQ(schedule.next(), start + 18ms);
    const Id exact = schedule.add(15ms, start);
    EXPECT_EQ(schedule.next(), start + 15ms);
    EXPECT_EQ(schedule.takeDue(start + 15ms), (Ids{tolerant, exact}));
}

TEST(TimerSchedule, ATolerantTimerIsDueLikeAnyOther) {
    TimerSchedule schedule;
    const Id id = schedule.add(10ms, start, 8ms);
    EXPECT_EQ(schedule.takeDue(start + 9ms), Ids{});
    EXPECT_EQ(schedule.takeDue(start + 10ms), Ids{id});
    EXPECT_EQ(schedule.next(), start + 28ms);
}

} // namespace

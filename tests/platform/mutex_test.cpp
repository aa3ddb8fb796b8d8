#include "platform/mutex.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <thread>

// A deleted mutex stays allocated on purpose; nothing else may leak.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:XPlatCreateMutex\n";
}

// ThreadSanitizer does not see the timed locking (pthread_mutex_clocklock) and
// takes the unlocking after it for a mistake.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "mutex:XPlatUnlockMutex\nrace:XPlatUnlockMutex\n";
}

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Whether another thread gets the lock within a moment; it gives it back.
bool isFree(XPlatMutex* mutex) {
    std::atomic<bool> entered = false;
    std::thread other([&] {
        // The timed form cannot say whether it holds the lock: a flag that only
        // the untimed form can set does.
        XPlatLockMutex(mutex, 0);
        entered = true;
        XPlatUnlockMutex(mutex);
    });
    const auto deadline = Clock::now() + 100ms;
    while (!entered && Clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
    const bool free = entered;
    if (!free)
        XPlatUnlockMutex(mutex); // ours: lets the other thread end
    other.join();
    return free;
}

TEST(Mutex, NullDoesNothing) {
    const auto before = Clock::now();
    XPlatLockMutex(nullptr, 0);
    XPlatLockMutex(nullptr, 5000);
    XPlatUnlockMutex(nullptr);
    XPlatDeleteMutex(nullptr);
    EXPECT_LT(Clock::now() - before, 1s);
}

TEST(Mutex, IsFreeWhenCreated) {
    XPlatMutex* mutex = XPlatCreateMutex();
    EXPECT_TRUE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, LockedOnceIsHeld) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    EXPECT_FALSE(isFree(mutex));
    EXPECT_TRUE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, LockedTwiceNeedsTwoUnlocks) {
    for (const std::uint32_t secondTimeout : {0U, 20U}) {
        XPlatMutex* mutex = XPlatCreateMutex();
        XPlatLockMutex(mutex, 0);
        XPlatLockMutex(mutex, secondTimeout);
        XPlatUnlockMutex(mutex);
        EXPECT_FALSE(isFree(mutex));
        EXPECT_TRUE(isFree(mutex));
        XPlatDeleteMutex(mutex);
    }
}

TEST(Mutex, TimedLockOnAFreeMutexHoldsIt) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 1000);
    EXPECT_FALSE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, TimedLockOnAHeldMutexReturnsAfterItsTime) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    std::thread([&] {
        const auto before = Clock::now();
        XPlatLockMutex(mutex, 50);
        const auto waited = Clock::now() - before;
        EXPECT_GE(waited, 49ms);
        EXPECT_LT(waited, 2s);
    }).join();
    XPlatUnlockMutex(mutex);
    EXPECT_TRUE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, UnlockAfterAFailedTimedLockLeavesTheHolderInPossession) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    std::thread([&] {
        XPlatLockMutex(mutex, 5);
        XPlatUnlockMutex(mutex);
    }).join();
    EXPECT_FALSE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, DeletedByItsHolderStillExists) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    XPlatDeleteMutex(mutex);
    XPlatUnlockMutex(mutex);
    EXPECT_TRUE(isFree(mutex));
}

TEST(Mutex, KeepsCountingThreadsApart) {
    XPlatMutex* mutex = XPlatCreateMutex();
    int counter = 0;
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads)
        thread = std::thread([&] {
            for (int i = 0; i < 10000; ++i) {
                XPlatLockMutex(mutex, 0);
                ++counter;
                XPlatUnlockMutex(mutex);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 40000);
    XPlatDeleteMutex(mutex);
}

} // namespace

#include "platform/mutex.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <malloc.h>
#include <memory>
#include <pthread.h>
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

// How often this program has tried to unlock what its thread does not hold.
std::atomic<int> refusedUnlocks{0};

} // namespace

// The linker leads this program's unlocking here (-Wl,--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" int __real_pthread_mutex_unlock(pthread_mutex_t* mutex);
extern "C" int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
    const int failure = __real_pthread_mutex_unlock(mutex);
    if (failure == EPERM)
        ++refusedUnlocks;
    return failure;
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Whether another thread gets the lock in time; it gives it back.
bool isFree(XPlatMutex* mutex, std::chrono::milliseconds time = 20s) {
    std::promise<void> entered;
    auto entry = entered.get_future();
    std::thread other([&] {
        // The timed form cannot say whether it holds the lock: what only comes after
        // the untimed form does.
        XPlatLockMutex(mutex, 0);
        entered.set_value();
        XPlatUnlockMutex(mutex);
    });
    const bool free = entry.wait_for(time) == std::future_status::ready;
    if (!free)
        XPlatUnlockMutex(mutex); // ours: lets the other thread end
    other.join();
    return free;
}

// Undoes one lock of this thread when it is.
bool isHeld(XPlatMutex* mutex) {
    return !isFree(mutex, 100ms);
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
    EXPECT_TRUE(isHeld(mutex));
    EXPECT_TRUE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, LockedTwiceNeedsTwoUnlocks) {
    for (const std::uint32_t secondTimeout : {0U, 20U}) {
        XPlatMutex* mutex = XPlatCreateMutex();
        XPlatLockMutex(mutex, 0);
        XPlatLockMutex(mutex, secondTimeout);
        XPlatUnlockMutex(mutex);
        EXPECT_TRUE(isHeld(mutex));
        EXPECT_TRUE(isFree(mutex));
        XPlatDeleteMutex(mutex);
    }
}

TEST(Mutex, TimedLockOnAFreeMutexHoldsIt) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 1000);
    EXPECT_TRUE(isHeld(mutex));
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

TEST(Mutex, TimedLockGetsAMutexThatIsFreedMeanwhile) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    std::promise<void> waiting;
    std::thread other([&] {
        waiting.set_value();
        XPlatLockMutex(mutex, 60000);
        EXPECT_TRUE(isHeld(mutex));
    });
    waiting.get_future().wait();
    XPlatUnlockMutex(mutex);
    other.join();
    EXPECT_TRUE(isFree(mutex));
    XPlatDeleteMutex(mutex);
}

// What a thread does to a mutex that this one has locked twice, and whether the
// lock inside has been asked to let go of another thread's possession.
struct Stranger {
    explicit Stranger(const std::function<void(XPlatMutex*)>& work) {
        XPlatLockMutex(mutex, 0);
        XPlatLockMutex(mutex, 0);
        refusedUnlocks = 0;
        std::thread(work, mutex).join();
        refused = refusedUnlocks;
    }
    ~Stranger() { XPlatDeleteMutex(mutex); }
    Stranger(const Stranger&) = delete;
    Stranger& operator=(const Stranger&) = delete;

    // Whether exactly the holder's two unlocks free the mutex.
    bool hasChangedNothing() const {
        XPlatUnlockMutex(mutex);
        return refused == 0 && isHeld(mutex) && isFree(mutex);
    }

    XPlatMutex* const mutex = XPlatCreateMutex();
    int refused = 0;
};

TEST(Mutex, UnlockAfterAFailedTimedLockLeavesTheHolderInPossession) {
    const Stranger stranger([](XPlatMutex* mutex) {
        XPlatLockMutex(mutex, 5);
        XPlatUnlockMutex(mutex);
    });
    EXPECT_TRUE(stranger.hasChangedNothing());
}

TEST(Mutex, UnlockByAThreadThatNeverLockedItLeavesTheHolderInPossession) {
    const Stranger stranger([](XPlatMutex* mutex) {
        for (int i = 0; i < 3; ++i)
            XPlatUnlockMutex(mutex);
    });
    EXPECT_TRUE(stranger.hasChangedNothing());
}

TEST(Mutex, UnlockOfAFreeMutexLeavesItFree) {
    XPlatMutex* mutex = XPlatCreateMutex();
    refusedUnlocks = 0;
    XPlatUnlockMutex(mutex);
    XPlatLockMutex(mutex, 0);
    XPlatUnlockMutex(mutex);
    XPlatUnlockMutex(mutex);
    EXPECT_EQ(refusedUnlocks, 0);
    EXPECT_TRUE(isFree(mutex));
    XPlatLockMutex(mutex, 0);
    EXPECT_TRUE(isHeld(mutex));
    XPlatDeleteMutex(mutex);
}

TEST(Mutex, DeletedByItsHolderStillExists) {
    XPlatMutex* mutex = XPlatCreateMutex();
    XPlatLockMutex(mutex, 0);
    XPlatDeleteMutex(mutex);
    // Memory that is free would be given to the next who asks for as much.
    const std::unique_ptr<void, decltype(&std::free)> next(std::malloc(malloc_usable_size(mutex)),
                                                           &std::free);
    ASSERT_NE(next.get(), mutex);
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

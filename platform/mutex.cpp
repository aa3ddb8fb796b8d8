#include "platform/mutex.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

struct XPlatMutex {
    std::recursive_timed_mutex lock;
    std::atomic<int> references{2};
    // Who holds the lock: a thread only ever compares this with itself.
    std::atomic<std::thread::id> owner;
    int depth = 0; // guarded by the lock
};

XPlatMutex* XPlatCreateMutex() {
    return new XPlatMutex;
}

void XPlatDeleteMutex(XPlatMutex* mutex) {
    if (mutex != nullptr && mutex->references.fetch_sub(1) == 1)
        delete mutex;
}

void XPlatLockMutex(XPlatMutex* mutex, std::uint32_t timeoutMs) {
    if (mutex == nullptr)
        return;
    if (timeoutMs == 0) {
        mutex->lock.lock();
    } else {
        using Clock = std::chrono::steady_clock;
        const std::chrono::duration<double> wait(timeoutMs / 1000.0);
        const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(wait);
        if (!mutex->lock.try_lock_until(deadline))
            return;
    }
    mutex->owner = std::this_thread::get_id();
    ++mutex->depth;
}

void XPlatUnlockMutex(XPlatMutex* mutex) {
    if (mutex == nullptr || mutex->owner.load() != std::this_thread::get_id())
        return;
    if (--mutex->depth == 0)
        mutex->owner = std::thread::id();
    mutex->lock.unlock();
}

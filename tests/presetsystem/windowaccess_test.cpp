#include "presetsystem/windowaccess.h"

#include "platform/runloop.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <thread>

namespace mirelon::test {
namespace {

// What `access` answers on another thread.
bool heldElsewhere(const WindowAccess& access) {
    bool held = false;
    std::thread([&] { held = static_cast<bool>(access.tryHold()); }).join();
    return held;
}

TEST(WindowAccess, IsGivenToTheThreadThatOwnsAnOpenWindow) {
    const RunLoop::User user;
    WindowAccess access;
    EXPECT_FALSE(access.tryHold());
    access.open();
    EXPECT_TRUE(access.tryHold());
    access.close();
    EXPECT_FALSE(access.tryHold());
}

TEST(WindowAccess, IsGivenAgainInsideItself) {
    const RunLoop::User user;
    WindowAccess access;
    access.open();
    const auto outer = access.tryHold();
    EXPECT_TRUE(access.tryHold());
}

TEST(WindowAccess, IsNotGivenToAnotherThread) {
    const RunLoop::User user;
    WindowAccess access;
    access.open();
    EXPECT_FALSE(heldElsewhere(access));
}

TEST(WindowAccess, IsNotGivenWhenNoThreadOwnsWindows) {
    WindowAccess access;
    access.open();
    EXPECT_FALSE(access.tryHold());
}

TEST(WindowAccess, DoesNotWaitForAThreadThatMayBeClosingTheWindow) {
    const RunLoop::User user;
    WindowAccess access;
    access.open();
    std::binary_semaphore isHeld{0};
    std::binary_semaphore isTried{0};
    std::thread closing([&] {
        const auto held = EditorThread::instance().lock();
        isHeld.release();
        isTried.acquire();
    });
    isHeld.acquire();
    EXPECT_FALSE(access.tryHold());
    isTried.release();
    closing.join();
    EXPECT_TRUE(access.tryHold());
}

} // namespace
} // namespace mirelon::test

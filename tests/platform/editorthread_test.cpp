#include "platform/editorthread.h"

#include <gtest/gtest.h>
#include <thread>

using namespace mirelon;

namespace {

// What `ask` answers on a thread of its own.
template <typename Ask>
bool elsewhere(Ask ask) {
    bool answer = false;
    std::thread([&] { answer = ask(); }).join();
    return answer;
}

TEST(EditorThread, WithoutAUserIsNoThreadAtAll) {
    const EditorThread thread;
    EXPECT_FALSE(thread.isOwnThread());
}

TEST(EditorThread, IsTheOneOfTheFirstUser) {
    EditorThread thread;
    EXPECT_TRUE(thread.addUser());
    EXPECT_TRUE(thread.isOwnThread());
    EXPECT_FALSE(elsewhere([&] { return thread.isOwnThread(); }));
}

TEST(EditorThread, RefusesUsersOfOtherThreads) {
    EditorThread thread;
    ASSERT_TRUE(thread.addUser());
    EXPECT_FALSE(elsewhere([&] { return thread.addUser(); }));
    EXPECT_TRUE(thread.removeUser()) << "a refused user counts";
}

TEST(EditorThread, StaysUntilItsLastUserGoes) {
    EditorThread thread;
    ASSERT_TRUE(thread.addUser());
    ASSERT_TRUE(thread.addUser());
    EXPECT_FALSE(thread.removeUser());
    EXPECT_TRUE(thread.isOwnThread());
    EXPECT_TRUE(elsewhere([&] { return thread.removeUser(); }));
    EXPECT_FALSE(thread.isOwnThread());
}

TEST(EditorThread, MayBeAnotherOneLater) {
    EditorThread thread;
    ASSERT_TRUE(thread.addUser());
    thread.removeUser();
    EXPECT_TRUE(elsewhere([&] { return thread.addUser() && thread.isOwnThread(); }));
    EXPECT_FALSE(thread.isOwnThread());
}

TEST(EditorThread, HoldsItsLockAsOftenAsItLikes) {
    EditorThread thread;
    const auto outer = thread.lock();
    const auto inner = thread.tryLock();
    EXPECT_TRUE(inner.owns_lock());
}

TEST(EditorThread, DoesNotWaitForALockThatIsOnlyTried) {
    EditorThread thread;
    {
        const auto held = thread.lock();
        EXPECT_FALSE(elsewhere([&] { return thread.tryLock().owns_lock(); }));
    }
    EXPECT_TRUE(elsewhere([&] { return thread.tryLock().owns_lock(); }));
}

TEST(EditorThread, OfTheProcessIsOne) {
    EXPECT_EQ(&EditorThread::instance(), &EditorThread::instance());
}

} // namespace

#include "hosting/messagequeue.h"

#include <gtest/gtest.h>
#include <thread>

namespace mirelon::hosting {
namespace {

std::vector<std::byte> bytes(std::size_t size, int first) {
    std::vector<std::byte> result;
    for (std::size_t i = 0; i < size; ++i)
        result.push_back(static_cast<std::byte>(first + static_cast<int>(i)));
    return result;
}

std::vector<std::byte> copyOf(const MessageQueue::Message& message) {
    return {message.bytes.begin(), message.bytes.end()};
}

TEST(MessageQueue, GivesMessagesInTheirOrderWithTheirPorts) {
    MessageQueue queue(256);
    EXPECT_TRUE(queue.put(3, bytes(5, 1)));
    EXPECT_TRUE(queue.put(4, bytes(0, 0)));
    auto message = queue.take();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->port, 3U);
    EXPECT_EQ(copyOf(*message), bytes(5, 1));
    message = queue.take();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->port, 4U);
    EXPECT_TRUE(message->bytes.empty());
    EXPECT_FALSE(queue.take());
}

TEST(MessageQueue, RefusesWhatFindsNoRoomAndKeepsTheRest) {
    MessageQueue queue(40);
    EXPECT_FALSE(queue.put(1, bytes(33, 0)));
    EXPECT_TRUE(queue.put(1, bytes(32, 0)));
    EXPECT_FALSE(queue.put(1, bytes(0, 0)));
    EXPECT_EQ(copyOf(*queue.take()), bytes(32, 0));
    EXPECT_TRUE(queue.put(1, bytes(32, 9)));
}

TEST(MessageQueue, KeepsMessagesWholeAcrossItsEnd) {
    MessageQueue queue(50);
    for (int i = 0; i < 500; ++i) {
        const auto message = bytes(static_cast<std::size_t>(i % 30), i);
        ASSERT_TRUE(queue.put(static_cast<std::uint32_t>(i), message));
        const auto taken = queue.take();
        ASSERT_TRUE(taken);
        EXPECT_EQ(taken->port, static_cast<std::uint32_t>(i));
        ASSERT_EQ(copyOf(*taken), message);
    }
}

TEST(MessageQueue, LosesNothingBetweenTwoThreads) {
    constexpr int count = 20000;
    MessageQueue queue(200);
    std::thread writer([&] {
        for (int i = 0; i < count; ++i)
            while (!queue.put(static_cast<std::uint32_t>(i),
                              bytes(static_cast<std::size_t>(i % 64), i)))
                std::this_thread::yield();
    });
    int wrong = 0;
    for (int i = 0; i < count;) {
        const auto message = queue.take();
        if (!message) {
            std::this_thread::yield();
            continue;
        }
        if (message->port != static_cast<std::uint32_t>(i) ||
            copyOf(*message) != bytes(static_cast<std::size_t>(i % 64), i))
            ++wrong;
        ++i;
    }
    writer.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace mirelon::hosting

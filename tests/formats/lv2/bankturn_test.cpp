#include "formats/lv2/bankturn.h"

#include <array>
#include <gtest/gtest.h>
#include <thread>

namespace mirelon::lv2 {
namespace {

TEST(BankTurn, IsOneReplacersAtATime) {
    BankTurn turn;
    EXPECT_TRUE(turn.tryToReplace());
    EXPECT_FALSE(turn.tryToReplace());
    turn.replaced();
    EXPECT_TRUE(turn.tryToReplace());
}

TEST(BankTurn, ReadsAgainWhatWasReplacedMeanwhile) {
    BankTurn turn;
    int readings = 0;
    turn.readWhole([&] {
        if (++readings == 1) {
            turn.waitToReplace();
            turn.replaced();
        }
    });
    EXPECT_EQ(readings, 2);
}

TEST(BankTurn, IsReadWholeWhileTwoReplace) {
    BankTurn turn;
    std::array<std::atomic<int>, 64> words{};
    std::atomic<bool> stop{false};
    const auto fill = [&](int value) {
        for (auto& word : words)
            word.store(value, std::memory_order_relaxed);
        turn.replaced();
    };
    std::thread waiting([&] {
        for (int i = 0; !stop; i += 2) {
            turn.waitToReplace();
            fill(i);
        }
    });
    std::thread trying([&] {
        for (int i = 1; !stop; i += 2)
            if (turn.tryToReplace())
                fill(i);
    });
    for (int i = 0; i < 1000; ++i) {
        std::array<int, 64> copy{};
        turn.readWhole([&] {
            for (std::size_t j = 0; j < copy.size(); ++j)
                copy[j] = words[j].load(std::memory_order_relaxed);
        });
        for (const int word : copy)
            ASSERT_EQ(word, copy[0]);
    }
    stop = true;
    waiting.join();
    trying.join();
}

} // namespace
} // namespace mirelon::lv2

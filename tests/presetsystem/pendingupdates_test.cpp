#include "presetsystem/pendingupdates.h"

#include <gtest/gtest.h>

#include <climits>
#include <thread>
#include <vector>

namespace mirelon::test {
namespace {

// The indices of what `taken` names; the bank is -1.
std::vector<int> namedBy(PendingUpdates::Taken taken) {
    std::vector<int> names;
    if (taken.bank())
        names.push_back(-1);
    for (int i = 0; i < kNumPresetParams; ++i)
        if (taken.parameter(i))
            names.push_back(i);
    return names;
}
using Names = std::vector<int>;

TEST(PendingUpdates, AreNoneAtFirst) {
    PendingUpdates updates;
    EXPECT_EQ(namedBy(updates.take()), Names{});
}

TEST(PendingUpdates, NameExactlyTheParametersThatWereAdded) {
    PendingUpdates updates;
    updates.addParameter(0);
    updates.addParameter(8);
    updates.addParameter(8);
    EXPECT_EQ(namedBy(updates.take()), (Names{0, 8}));
}

TEST(PendingUpdates, KeepTheBankApartFromTheParameters) {
    PendingUpdates updates;
    updates.addBank();
    EXPECT_EQ(namedBy(updates.take()), Names{-1});
}

TEST(PendingUpdates, AreTakenOnce) {
    PendingUpdates updates;
    updates.addParameter(3);
    updates.addBank();
    EXPECT_EQ(namedBy(updates.take()), (Names{-1, 3}));
    EXPECT_EQ(namedBy(updates.take()), Names{});
}

TEST(PendingUpdates, DoNotKnowOtherParameters) {
    PendingUpdates updates;
    for (const long index : {-1L, 9L, 31L, 32L, 64L, LONG_MIN, LONG_MAX})
        updates.addParameter(index);
    EXPECT_EQ(namedBy(updates.take()), Names{});
}

TEST(PendingUpdates, LoseNothingThatAnyThreadAdds) {
    PendingUpdates updates;
    std::vector<int> values(kNumPresetParams, 0);
    std::vector<std::thread> threads;
    threads.reserve(values.size());
    for (int i = 0; i < kNumPresetParams; ++i)
        threads.emplace_back([&, i] {
            values[static_cast<std::size_t>(i)] = 1;
            updates.addParameter(i);
        });
    int seen = 0;
    while (seen < kNumPresetParams)
        for (const int i : namedBy(updates.take()))
            seen += values.at(static_cast<std::size_t>(i));
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(seen, kNumPresetParams);
    EXPECT_EQ(namedBy(updates.take()), Names{});
}

} // namespace
} // namespace mirelon::test

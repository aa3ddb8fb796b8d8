#include "presetsystem/memorycomparison.h"

#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using Equal = MemoryComparison::Equal;

class MemoryComparisonTest : public testing::Test {
  protected:
    MemoryComparisonTest() {
        current.bytes[10] = std::byte{1};
        other.bytes[10] = std::byte{2};
    }
    struct Environment {
        Environment() { setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1); }
        TemporaryFolder folder;
    };
    Environment environment;
    StoredPresets stored;
    MemoryComparison memories;
    presetfilestruct current;
    presetfilestruct other;
};

TEST_F(MemoryComparisonTest, FindsNoneEqualWhenNothingIsStored) {
    EXPECT_EQ(memories.compare(current, stored), (Equal{false, false}));
}

TEST_F(MemoryComparisonTest, FindsTheMemoryThatHoldsThePreset) {
    stored.storePreset(PresetSlot::memoryA, current);
    EXPECT_EQ(memories.compare(current, stored), (Equal{true, false}));
    stored.storePreset(PresetSlot::memoryB, current);
    stored.storePreset(PresetSlot::memoryA, other);
    EXPECT_EQ(memories.compare(current, stored), (Equal{false, true}));
}

TEST_F(MemoryComparisonTest, IsDueOnceAfterAChange) {
    EXPECT_TRUE(memories.isDue());
    memories.compare(current, stored);
    EXPECT_FALSE(memories.isDue());
    memories.presetChanged();
    EXPECT_TRUE(memories.isDue());
    EXPECT_FALSE(memories.isDue());
}

TEST_F(MemoryComparisonTest, IsDueAfterAStoringByAnyone) {
    memories.isDue();
    memories.compare(current, stored);
    StoredPresets others;
    others.storePreset(PresetSlot::memoryB, current);
    EXPECT_TRUE(memories.isDue());
    EXPECT_EQ(memories.compare(current, stored), (Equal{false, true}));
}

TEST_F(MemoryComparisonTest, ReadsTheMemoriesAnewAfterARestart) {
    memories.isDue();
    memories.compare(current, stored);
    memories.restart();
    EXPECT_TRUE(memories.isDue());
}

} // namespace
} // namespace mirelon::test

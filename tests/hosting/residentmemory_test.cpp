#include "hosting/residentmemory.h"

#include <gtest/gtest.h>
#include <vector>

namespace mirelon::hosting {
namespace {

TEST(ResidentMemory, GrowsByWhatIsAllocatedAndWritten) {
    constexpr std::size_t much = 64U << 20U;
    const std::size_t before = residentMemory();
    const std::vector<char> memory(much, 'x');
    EXPECT_GT(before, 0U);
    EXPECT_GE(residentMemory(), before + much * 9 / 10);
    EXPECT_LE(residentMemory(), before + 2 * much);
    EXPECT_EQ(memory.back(), 'x');
}

} // namespace
} // namespace mirelon::hosting

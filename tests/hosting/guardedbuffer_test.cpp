#include "hosting/guardedbuffer.h"

#include <gtest/gtest.h>

namespace mirelon::hosting {
namespace {

TEST(GuardedBuffer, LiesAsFarFromAlignedAddressesAsAskedFor) {
    for (const std::size_t shift : {0U, 1U, 5U}) {
        GuardedBuffer<float> buffer(10, shift);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.data()) % 64, shift * sizeof(float));
    }
}

TEST(GuardedBuffer, StaysIntactWhileItsOwnSamplesAreWritten) {
    GuardedBuffer<double> buffer(10, 1);
    std::ranges::fill(buffer.samples(), 0.5);
    EXPECT_TRUE(buffer.guardsIntact());
}

TEST(GuardedBuffer, NoticesASampleOnEitherSide) {
    GuardedBuffer<float> before(10, 3);
    before.data()[-1] = 0.0F;
    EXPECT_FALSE(before.guardsIntact());
    GuardedBuffer<float> after(10, 3);
    after.data()[10] = 0.0F;
    EXPECT_FALSE(after.guardsIntact());
}

TEST(GuardedBuffer, WatchesAtLeast64SamplesOnEitherSide) {
    for (std::size_t shift = 0; shift < 16; ++shift) {
        GuardedBuffer<float> before(10, shift);
        before.data()[-64] = 0.0F;
        EXPECT_FALSE(before.guardsIntact()) << shift;
        GuardedBuffer<float> after(10, shift);
        after.data()[10 + 63] = 0.0F;
        EXPECT_FALSE(after.guardsIntact()) << shift;
    }
}

TEST(GuardedBuffer, KeepsItsSamplesAndGuardsInACopy) {
    GuardedBuffer<float> buffer(10, 3);
    std::ranges::fill(buffer.samples(), 0.25F);
    GuardedBuffer<float> copy = buffer;
    EXPECT_TRUE(copy.guardsIntact());
    EXPECT_TRUE(std::ranges::equal(copy.samples(), buffer.samples()));
    buffer.data()[-1] = 0.0F;
    copy = buffer;
    EXPECT_FALSE(copy.guardsIntact());
}

} // namespace
} // namespace mirelon::hosting

// What the kernels' common tests cannot see of the 128-bit registers: it would
// cost time, or show in one of many billions of samples.
#if defined(__x86_64__)
#include "processor/core/stereolanes_sse2.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using mirelon::kernels::Four;

Four::Mask mask(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
    return {_mm_set_epi64x(b, a), _mm_set_epi64x(d, c)};
}

bool sameBits(Four::Mask a, Four::Mask b) {
    return Four::isZero(a ^ b);
}

Four::Vector oneByOne(double a, double b, double c, double d) {
    alignas(16) const double values[]{a, b, c, d};
    return Four::load(values);
}

TEST(Sse2Lanes, AreEqualIfBothTheirHalvesAre) {
    constexpr std::int64_t value = 0x123456789ABCDEF;
    constexpr std::int64_t lowDiffers = value ^ 1;
    constexpr std::int64_t highDiffers = value ^ 0x100000000000000;
    const Four::Mask all = mask(value, value, value, value);
    EXPECT_TRUE(sameBits(Four::equal(all, all), mask(-1, -1, -1, -1)));
    EXPECT_TRUE(sameBits(Four::equal(all, mask(lowDiffers, value, highDiffers, value)),
                         mask(0, -1, 0, -1)));
    EXPECT_TRUE(sameBits(Four::equal(all, mask(value, lowDiffers, value, highDiffers)),
                         mask(-1, 0, -1, 0)));
    EXPECT_TRUE(sameBits(Four::equal(all, mask(highDiffers, lowDiffers, lowDiffers, highDiffers)),
                         Four::none()));
    EXPECT_TRUE(sameBits(Four::equal(all, mask(lowDiffers, highDiffers, highDiffers, lowDiffers)),
                         Four::none()));
}

// An exact follow-up of every step would give the same bits at many times the cost.
TEST(Sse2Lanes, OrdinaryStepsAreNotDoubted) {
    int doubted = 0;
    for (int i = 0; i < 1000; ++i) {
        const double level = 0.25 + i * 0x1.23456789p-11;
        const Four::Vector e = oneByOne(0.1, 0.3 * level, level, 0.9);
        Four::Mask doubt = Four::none();
        const Four::Vector next = Four::step(e, Four::all(level), Four::all(1e-4), doubt);
        doubted += Four::isZero(doubt) ? 0 : 1;
        alignas(16) double actual[4];
        alignas(16) double start[4];
        Four::store(actual, next);
        Four::store(start, e);
        for (int lane = 0; lane < 4; ++lane)
            EXPECT_EQ(actual[lane], std::fma(level - start[lane], 1e-4, start[lane]));
    }
    EXPECT_LT(doubted, 10);
}

TEST(Sse2Lanes, AStepFromSilenceToSilenceIsNotDoubted) {
    Four::Mask doubt = Four::none();
    Four::step(Four::all(0.0), Four::all(0.0), Four::all(1e-4), doubt);
    EXPECT_TRUE(Four::isZero(doubt));
}

} // namespace
#endif

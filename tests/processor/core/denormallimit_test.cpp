#include "processor/core/denormallimit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace {

using namespace mirelon;
using namespace mirelon::kernels;

constexpr unsigned long halving = 1UL << 23;

// Factors of one, that leave every sample as it is.
Coefficients ones() {
    Coefficients c;
    c.gainLin = c.widthSide = c.stabilityL = c.stabilityR = 1.0F;
    c.balanceL = c.balanceR = c.centerL = c.centerR = 1.0F;
    return c;
}

// Each factor, and how many times a sample meets it.
constexpr std::pair<float Coefficients::*, int> factors[] = {
    {&Coefficients::gainLin, 1},    {&Coefficients::widthSide, 1}, {&Coefficients::stabilityL, 1},
    {&Coefficients::stabilityR, 1}, {&Coefficients::balanceL, 1},  {&Coefficients::balanceR, 1},
    {&Coefficients::centerL, 2},    {&Coefficients::centerR, 2},
};

template <typename Sample>
Sample limitOf(const Coefficients& c) {
    Sample limit = 0;
    denormalLimit(c, limit);
    return limit;
}

TEST(BitsBelowOne, CountEachHalvingWhateverTheSign) {
    for (int i = 0; i <= 126; ++i) {
        EXPECT_EQ(bitsBelowOne(std::ldexp(1.0F, -i)), static_cast<unsigned long>(i) * halving);
        EXPECT_EQ(bitsBelowOne(-std::ldexp(1.0F, -i)), static_cast<unsigned long>(i) * halving);
    }
}

TEST(BitsBelowOne, AreThereForFactorsBelowOneOnly) {
    EXPECT_EQ(bitsBelowOne(0.75F), halving / 2);
    EXPECT_EQ(bitsBelowOne(std::nextafter(1.0F, 0.0F)), 1UL);
    for (const float factor :
         {1.0F, std::nextafter(1.0F, 2.0F), 1.5F, 1e30F, std::numeric_limits<float>::infinity()})
        EXPECT_EQ(bitsBelowOne(factor), 0UL) << factor;
}

TEST(BitsBelowOne, AreMostForTheSmallestFactorAndNoneForZero) {
    EXPECT_EQ(bitsBelowOne(std::numeric_limits<float>::denorm_min()), 127 * halving - 1);
    EXPECT_EQ(bitsBelowOne(0.0F), 0UL);
    EXPECT_EQ(bitsBelowOne(-0.0F), 0UL);
}

TEST(Halvings, CountEveryFactorAsOftenAsItIsMultipliedIn) {
    EXPECT_EQ(halvings(ones()), 0);
    for (const auto& [factor, times] : factors) {
        Coefficients c = ones();
        c.*factor = 0x1p-5F;
        EXPECT_EQ(halvings(c), 5 * times);
    }
}

TEST(Halvings, AreCountedUp) {
    Coefficients c = ones();
    c.gainLin = std::nextafter(1.0F, 0.0F);
    EXPECT_EQ(halvings(c), 1);
    c.widthSide = c.stabilityL = 0.75F;
    EXPECT_EQ(halvings(c), 2);
}

TEST(DenormalLimit, LiesAsManyPowersOfTwoAboveItsLowestAsThereAreHalvings) {
    Coefficients c = ones();
    EXPECT_EQ(limitOf<float>(c), 0x1p-100F);
    EXPECT_EQ(limitOf<double>(c), 0x1p-900);
    c.balanceL = 0x1p-7F;
    c.centerR = 0x1p-20F;
    EXPECT_EQ(limitOf<float>(c), 0x1p-53F);
    EXPECT_EQ(limitOf<double>(c), 0x1p-853);
}

TEST(DenormalLimit, IsAboveAnyFloatIfTheFactorsAreTiny) {
    Coefficients c = ones();
    c.centerL = 0x1p-100F;
    c.gainLin = 0x1p-27F;
    EXPECT_EQ(limitOf<float>(c), 0x1p127F);
    c.gainLin = 0x1p-28F;
    EXPECT_EQ(limitOf<float>(c), std::numeric_limits<float>::infinity());
    c.gainLin = 0x1p-120F;
    EXPECT_EQ(limitOf<float>(c), std::numeric_limits<float>::infinity());
}

TEST(DenormalLimit, IsAnOrdinaryDoubleForAnyFactors) {
    Coefficients c = ones();
    for (const auto& [factor, times] : factors)
        c.*factor = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(limitOf<double>(c), 0x1p370);
}

} // namespace

#include "tools/audio/nulltest.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace mirelon::tools {
namespace {

const std::vector<double> signal{0.5, -0.25, 0.125, 0.0};

TEST(NullTest, FindsEqualSignalsIdentical) {
    NullTest test;
    test.add(signal, signal, signal, signal);
    EXPECT_TRUE(test.identical());
    EXPECT_EQ(test.peak(), 0.0);
    EXPECT_EQ(test.rms(), 0.0);
}

TEST(NullTest, MeasuresTheDifference) {
    std::vector<double> other = signal;
    other[2] += 0.5;
    NullTest test;
    test.add(signal, signal, signal, signal);
    test.add(signal, signal, signal, other);
    EXPECT_FALSE(test.identical());
    EXPECT_EQ(test.firstDifferent(), 6U);
    EXPECT_EQ(test.differentFrames(), 1U);
    EXPECT_EQ(test.peak(), 0.5);
    EXPECT_DOUBLE_EQ(test.rms(), std::sqrt(0.25 / 16.0));
}

TEST(NullTest, CountsWhatOnlyOneHas) {
    NullTest test;
    test.add(signal, signal, signal, signal);
    test.addExcess(0);
    EXPECT_TRUE(test.identical());
    test.addExcess(10);
    EXPECT_EQ(test.firstDifferent(), 4U);
    EXPECT_EQ(test.differentFrames(), 10U);
    EXPECT_EQ(test.peak(), 0.0);
}

TEST(NullTest, TakesNoNumberForTheSameAsNoNumber) {
    NullTest test;
    test.add(std::vector{double{NAN}}, std::vector{double{INFINITY}}, std::vector{double{NAN}},
             std::vector{double{INFINITY}});
    EXPECT_TRUE(test.identical());
    test.add(std::vector{double{NAN}}, std::vector{0.0}, std::vector{0.0}, std::vector{0.0});
    EXPECT_EQ(test.firstDifferent(), 1U);
    EXPECT_EQ(test.peak(), INFINITY);
}

} // namespace
} // namespace mirelon::tools

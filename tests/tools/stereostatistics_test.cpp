#include "tools/audio/stereostatistics.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace mirelon::tools {
namespace {

StereoStatistics of(std::vector<double> left, std::vector<double> right) {
    StereoStatistics statistics;
    statistics.add(left, right);
    return statistics;
}

TEST(StereoStatistics, MeasuresPeakAndRms) {
    const auto statistics = of({3.0, -4.0}, {0.5, 0.5});
    EXPECT_EQ(statistics.frames(), 2U);
    EXPECT_EQ(statistics.peak(0), 4.0);
    EXPECT_DOUBLE_EQ(statistics.rms(0), std::sqrt(12.5));
    EXPECT_EQ(statistics.peak(1), 0.5);
    EXPECT_DOUBLE_EQ(statistics.rms(1), 0.5);
}

TEST(StereoStatistics, OfPiecesAreThoseOfTheWhole) {
    StereoStatistics pieces;
    pieces.add(std::vector{1.0}, std::vector{0.25});
    pieces.add(std::vector{-0.5, 0.125}, std::vector{0.0, 1.0});
    const auto whole = of({1.0, -0.5, 0.125}, {0.25, 0.0, 1.0});
    EXPECT_EQ(pieces.rms(0), whole.rms(0));
    EXPECT_EQ(pieces.width(), whole.width());
}

TEST(StereoStatistics, WidthIsTheLogarithmOfSumToDifference) {
    // Sum 2, difference 1: a ratio of 2 is a quarter of 16's four octaves.
    EXPECT_DOUBLE_EQ(of({1.5}, {0.5}).width(), 0.25);
    EXPECT_DOUBLE_EQ(of({1.5}, {-0.5}).width(), -0.25);
    EXPECT_DOUBLE_EQ(of({1.0}, {0.0}).width(), 0.0);
}

TEST(StereoStatistics, BalanceIsTheLogarithmOfRightToLeft) {
    EXPECT_DOUBLE_EQ(of({0.25}, {0.5}).balance(), 0.25);
    EXPECT_DOUBLE_EQ(of({0.5}, {0.25}).balance(), -0.25);
}

TEST(StereoStatistics, ReadingsStayWithinHalf) {
    EXPECT_EQ(of({1.0}, {1.0}).width(), 0.5);
    EXPECT_EQ(of({1.0}, {-1.0}).width(), -0.5);
    EXPECT_EQ(of({1.0}, {0.9}).width(), 0.5);
    EXPECT_EQ(of({0.0}, {1.0}).balance(), 0.5);
    EXPECT_EQ(of({1.0}, {0.001}).balance(), -0.5);
}

TEST(StereoStatistics, OfSilenceAreZero) {
    for (const auto& silence : {StereoStatistics(), of({0.0}, {0.0}), of({1e-9}, {1e-9})}) {
        EXPECT_EQ(silence.width(), 0.0);
        EXPECT_EQ(silence.balance(), 0.0);
    }
    EXPECT_EQ(StereoStatistics().rms(0), 0.0);
    EXPECT_EQ(decibels(0.0), -INFINITY);
}

TEST(StereoStatistics, CorrelationIsOfLeftAndRight) {
    EXPECT_DOUBLE_EQ(of({0.5, -0.25}, {0.25, -0.125}).correlation(), 1.0);
    EXPECT_DOUBLE_EQ(of({0.5, -0.25}, {-0.5, 0.25}).correlation(), -1.0);
    EXPECT_DOUBLE_EQ(of({0.5, 0.5}, {0.5, -0.5}).correlation(), 0.0);
    EXPECT_DOUBLE_EQ(of({3.0, 4.0}, {4.0, 3.0}).correlation(), 24.0 / 25.0);
    EXPECT_EQ(of({0.5}, {0.0}).correlation(), 0.0);
}

TEST(StereoStatistics, LeaveOutWhatIsNotFinite) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto statistics =
        of({0.5, nan, 0.5, -std::numeric_limits<double>::infinity()}, {0.25, 0.25, -nan, 0.25});
    EXPECT_EQ(statistics.notFinite(), 3U);
    EXPECT_EQ(statistics.frames(), 4U);
    EXPECT_EQ(statistics.peak(0), INFINITY);
    EXPECT_EQ(statistics.peak(1), 0.25);
    EXPECT_DOUBLE_EQ(statistics.rms(0), std::sqrt(0.125));
    EXPECT_TRUE(std::isfinite(statistics.width()));
    EXPECT_EQ(of({1.0}, {1.0}).notFinite(), 0U);
}

} // namespace
} // namespace mirelon::tools

#include "processor/core/stereocore.h"
#include "tests/support/referenceprocessor.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using mirelon::readMeters;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

float widthOf(double sum, double diff) {
    return readMeters({sum, diff, 0.0, 0.0}).width;
}

float balanceOf(double left, double right) {
    return readMeters({0.0, 0.0, left, right}).balance;
}

TEST(Meters, EqualFollowersReadTheMiddle) {
    EXPECT_NEAR(widthOf(0.3, 0.3), 0.0F, 1e-7);
    EXPECT_NEAR(balanceOf(0.3, 0.3), 0.0F, 1e-7);
}

TEST(Meters, ReadTheLogarithmToBaseSixteen) {
    EXPECT_NEAR(widthOf(0.4, 0.2), 0.25F, 1e-6);
    EXPECT_NEAR(widthOf(0.2, 0.4), -0.25F, 1e-6);
    EXPECT_NEAR(balanceOf(0.2, 0.4), 0.25F, 1e-6);
    EXPECT_NEAR(balanceOf(0.4, 0.2), -0.25F, 1e-6);
}

TEST(Meters, StandAtTheirEndsBeyondARatioOfFour) {
    EXPECT_EQ(widthOf(0.5, 0.1), 0.5F);
    EXPECT_EQ(widthOf(0.1, 0.5), -0.5F);
    EXPECT_EQ(balanceOf(0.1, 0.5), 0.5F);
    EXPECT_EQ(balanceOf(0.5, 0.1), -0.5F);
    EXPECT_EQ(widthOf(1e300, 1e-6), 0.5F);
    EXPECT_EQ(widthOf(1e-4, 1e308), -0.5F);
}

TEST(Meters, SilenceReadsTheMiddleAndOneSilentFollowerAnEnd) {
    EXPECT_EQ(widthOf(0.0, 0.0), 0.0F);
    EXPECT_EQ(widthOf(0.1, 0.0), 0.5F);
    EXPECT_EQ(widthOf(0.0, 0.1), -0.5F);
    EXPECT_EQ(balanceOf(0.0, 0.0), 0.0F);
    EXPECT_EQ(balanceOf(0.1, 0.0), -0.5F);
    EXPECT_EQ(balanceOf(0.0, 0.1), 0.5F);
}

// The difference goes silent a hundred times lower than everything else.
TEST(Meters, ThresholdsAreExclusiveAndTheDifferencesOwnIsLower) {
    EXPECT_EQ(widthOf(1e-5, 1e-7), 0.0F);
    EXPECT_EQ(widthOf(1e-5, std::nextafter(1e-7, 1.0)), -0.5F);
    EXPECT_EQ(widthOf(std::nextafter(1e-5, 1.0), 1e-7), 0.5F);
    EXPECT_NEAR(widthOf(1.1e-5, 1.1e-5), 0.0F, 1e-6);
    EXPECT_EQ(balanceOf(1e-5, 1e-5), 0.0F);
    EXPECT_EQ(balanceOf(std::nextafter(1e-5, 1.0), 1e-5), -0.5F);
    EXPECT_EQ(balanceOf(1e-5, std::nextafter(1e-5, 1.0)), 0.5F);
}

TEST(Meters, StayInRangeForFollowersThatAreNoNumbers) {
    EXPECT_EQ(widthOf(infinity, infinity), 0.0F);
    EXPECT_EQ(balanceOf(infinity, infinity), 0.0F);
    EXPECT_EQ(widthOf(infinity, 1.0), 0.5F);
    EXPECT_EQ(widthOf(1.0, infinity), -0.5F);
    EXPECT_EQ(widthOf(nan, nan), 0.0F);
    EXPECT_EQ(widthOf(nan, 1.0), -0.5F);
    EXPECT_EQ(widthOf(1.0, nan), 0.5F);
    EXPECT_EQ(balanceOf(nan, nan), 0.0F);
    EXPECT_EQ(balanceOf(-1.0, -infinity), 0.0F);
}

TEST(Meters, AgreeWithTheReferenceForAnyFollowers) {
    using mirelon::signals::Signal;
    for (const Signal signal : {Signal::noise, Signal::anyBits, Signal::tiny, Signal::extremes}) {
        std::vector<double> values(8000);
        mirelon::signals::fill<double>(values, signal, 11, 0);
        for (std::size_t i = 0; i + 4 <= values.size(); i += 4) {
            mirelon::reference::Followers followers{};
            for (std::size_t j = 0; j < 4; ++j)
                followers[j] = std::fabs(values[i + j]);
            const auto expected = mirelon::reference::readingsOf(followers);
            const auto actual =
                readMeters({followers[0], followers[1], followers[2], followers[3]});
            ASSERT_EQ(actual.width, expected.width);
            ASSERT_EQ(actual.balance, expected.balance);
            ASSERT_LE(std::fabs(actual.width), 0.5F);
            ASSERT_LE(std::fabs(actual.balance), 0.5F);
        }
    }
}

// Ratios of everyday followers, the range's ends and its middle among them.
TEST(Meters, AgreeWithTheReferenceForEverydayFollowers) {
    std::vector<double> values(1200000);
    mirelon::signals::fill<double>(values, mirelon::signals::Signal::noise, 5, 0);
    for (std::size_t i = 0; i + 4 <= values.size(); i += 4) {
        const double level = std::exp(4.0 * values[i]);
        const double nearness = std::exp2(-40.0 * std::fabs(values[i + 1]));
        const double ratios[] = {1.0, 4.0, 0.25, std::exp2(3.0 * values[i + 2])};
        const double over = level * ratios[(i / 4) % 4] * (1.0 + nearness * values[i + 3]);
        const auto expected = mirelon::reference::readingsOf({over, level, level, over});
        const auto actual = readMeters({over, level, level, over});
        ASSERT_EQ(actual.width, expected.width) << over / level;
        ASSERT_EQ(actual.balance, expected.balance) << over / level;
    }
}

// Ratios about half-way between two readings, where the last bits of the
// logarithm decide which of them it is. Where a power of two times the root of
// two is near, a series for the logarithm is at its worst.
TEST(Meters, AgreeWithTheReferenceHalfWayBetweenTwoReadings) {
    for (const float from : {-0.375F, -0.125F, 0.125F, 0.375F, 0.3F})
        for (const float towards : {-1.0F, 1.0F}) {
            float reading = from;
            for (int i = 0; i < 3000; ++i) {
                const float next = std::nextafter(reading, towards);
                const double half = (static_cast<double>(reading) + static_cast<double>(next)) / 2;
                const double ratio = std::exp2(4.0 * half);
                const double unit = std::nextafter(ratio, 5.0) - ratio;
                for (const int units : {-2000, -250, -150, -100, -50, -3, -2, -1, 0, 1, 2, 3, 50,
                                        100, 150, 250, 2000}) {
                    const double over = ratio + units * unit;
                    const auto expected = mirelon::reference::readingsOf({over, 1.0, 1.0, over});
                    const auto actual = readMeters({over, 1.0, 1.0, over});
                    ASSERT_EQ(actual.width, expected.width) << half << " " << units;
                    ASSERT_EQ(actual.balance, expected.balance) << half << " " << units;
                }
                reading = next;
            }
        }
}

TEST(FollowerCoefficient, CoversFifteenSixteenthsInSixHundredMilliseconds) {
    for (const float rate : {8000.0F, 44100.0F, 48000.0F, 96000.0F, 192000.0F}) {
        const double k = mirelon::envelopeCoefficient(rate);
        EXPECT_EQ(k, mirelon::reference::followerCoefficient(rate));
        EXPECT_NEAR(std::pow(1.0 - k, static_cast<double>(rate) * 0.6), 1.0 / 16.0, 1e-9);
    }
}

} // namespace

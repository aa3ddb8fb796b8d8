#include "processor/core/parameters.h"
#include "tests/support/referenceprocessor.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using mirelon::applyParameter;
using mirelon::Coefficients;
using mirelon::workingValue;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

Coefficients with(int index, float value) {
    Coefficients coefficients;
    applyParameter(coefficients, index, value);
    return coefficients;
}

bool identical(const Coefficients& a, const Coefficients& b) {
    // Bit for bit: two zeros of different sign differ, two NaN need not.
    return std::memcmp(&a, &b, sizeof a) == 0; // NOLINT(bugprone-suspicious-memory-comparison)
}

TEST(Coefficients, WidthIsQuadraticAndUnchangedInTheMiddle) {
    EXPECT_EQ(with(kParamWidth, 0.0F).widthSide, 0.0F);
    EXPECT_EQ(with(kParamWidth, 0.5F).widthSide, 0.5F);
    EXPECT_EQ(with(kParamWidth, 1.0F).widthSide, 2.0F);
}

TEST(Coefficients, WidthNormFallsAsTheSideGrows) {
    EXPECT_EQ(with(kParamWidth, 0.0F).widthNorm, 0.75F);
    EXPECT_EQ(with(kParamWidth, 0.5F).widthNorm, 0.5F);
    EXPECT_EQ(with(kParamWidth, 1.0F).widthNorm, 0.25F);
}

TEST(Coefficients, GainSpansTwelveDecibelsBothWays) {
    EXPECT_EQ(with(kParamGain, 0.5F).gainLin, 1.0F);
    EXPECT_NEAR(with(kParamGain, 1.0F).gainLin, 3.981072, 1e-6);
    EXPECT_NEAR(with(kParamGain, 0.0F).gainLin, 0.2511886, 1e-7);
}

TEST(Coefficients, CrossFadesAreOneInTheMiddleAndTwoAtAnEnd) {
    for (const float v : {0.0F, 0.5F, 1.0F}) {
        EXPECT_EQ(with(kParamBalance, v).balanceL, 2.0F * v);
        EXPECT_EQ(with(kParamBalance, v).balanceR, 2.0F - 2.0F * v);
        EXPECT_EQ(with(kParamStability, v).stabilityL, 2.0F * v);
        EXPECT_EQ(with(kParamStability, v).stabilityR, 2.0F - 2.0F * v);
    }
}

TEST(Coefficients, CentreMovesHalfTheWay) {
    EXPECT_EQ(with(kParamCenterPos, 0.0F).centerL, 0.5F);
    EXPECT_EQ(with(kParamCenterPos, 0.0F).centerR, 1.5F);
    EXPECT_EQ(with(kParamCenterPos, 0.5F).centerL, 1.0F);
    EXPECT_EQ(with(kParamCenterPos, 0.5F).centerR, 1.0F);
    EXPECT_EQ(with(kParamCenterPos, 1.0F).centerL, 1.5F);
    EXPECT_EQ(with(kParamCenterPos, 1.0F).centerR, 0.5F);
}

class Switch : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Every, Switch,
                         testing::Values(kParamProcess, kParamPhase, kParamInvertL, kParamInvertR));

TEST_P(Switch, IsOnFromTheMiddle) {
    EXPECT_EQ(workingValue(with(GetParam(), 0.4999F), GetParam()), 0.0F);
    EXPECT_EQ(workingValue(with(GetParam(), 0.5F), GetParam()), 1.0F);
    EXPECT_EQ(workingValue(with(GetParam(), 1.0F), GetParam()), 1.0F);
}

// v + 0.5 is a float: the last value before the middle rounds up to 1.
TEST_P(Switch, RoundsBeforeItCompares) {
    const float below = std::nextafter(0.5F, 0.0F);
    EXPECT_EQ(workingValue(with(GetParam(), below), GetParam()), 1.0F);
    EXPECT_EQ(workingValue(with(GetParam(), std::nextafter(below, 0.0F)), GetParam()), 0.0F);
}

TEST_P(Switch, IsZeroOrOneWhateverIsSent) {
    for (const float on : {1.5F, 2.0F, 1e30F, infinity})
        EXPECT_EQ(workingValue(with(GetParam(), on), GetParam()), 1.0F) << on;
    for (const float off : {-0.5F, -1.5F, -1e30F, -infinity, nan, -nan})
        EXPECT_EQ(workingValue(with(GetParam(), off), GetParam()), 0.0F) << off;
}

TEST(Coefficients, OutsideTheTableChangeNothingAndReadZero) {
    const Coefficients before = with(kParamGain, 0.7F);
    for (const int index :
         {-1, 9, 10, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        Coefficients after = before;
        applyParameter(after, index, 0.25F);
        EXPECT_TRUE(identical(before, after)) << index;
        EXPECT_EQ(workingValue(before, index), 0.0F) << index;
    }
}

TEST(Coefficients, AParameterLeavesTheOthersAlone) {
    for (int index = 0; index < kNumParams; ++index) {
        Coefficients coefficients;
        for (int i = 0; i < kNumParams; ++i)
            applyParameter(coefficients, i, 0.75F);
        const Coefficients before = coefficients;
        applyParameter(coefficients, index, 0.125F);
        for (int other = 0; other < kNumParams; ++other) {
            const bool same = workingValue(before, other) == workingValue(coefficients, other);
            EXPECT_EQ(same, other != index) << index << " changed " << other;
        }
        applyParameter(coefficients, index, 0.75F);
        EXPECT_TRUE(identical(before, coefficients)) << index;
    }
}

TEST(Coefficients, WorkingValueIsTheLeftOneOfAPair) {
    EXPECT_EQ(workingValue(with(kParamWidth, 1.0F), kParamWidth), 2.0F);
    EXPECT_EQ(workingValue(with(kParamGain, 0.5F), kParamGain), 1.0F);
    EXPECT_EQ(workingValue(with(kParamBalance, 0.25F), kParamBalance), 0.5F);
    EXPECT_EQ(workingValue(with(kParamStability, 0.25F), kParamStability), 0.5F);
    EXPECT_EQ(workingValue(with(kParamCenterPos, 1.0F), kParamCenterPos), 1.5F);
}

TEST(Coefficients, AgreeWithTheReferenceToTheBit) {
    std::vector<float> values(20000);
    mirelon::signals::fill<float>(values, mirelon::signals::Signal::noise, 7, 0);
    for (float value : values) {
        value = std::fabs(value);
        Coefficients ours;
        for (int i = 0; i < kNumParams; ++i)
            applyParameter(ours, i, value);
        std::array<float, 9> all{};
        all.fill(value);
        const auto reference = mirelon::reference::factorsFor(all);
        ASSERT_EQ(ours.widthSide, reference.width) << value;
        ASSERT_EQ(ours.gainLin, reference.gain) << value;
        ASSERT_EQ(ours.balanceL, reference.balanceL) << value;
        ASSERT_EQ(ours.balanceR, reference.balanceR) << value;
        ASSERT_EQ(ours.stabilityL, reference.stabilityL) << value;
        ASSERT_EQ(ours.stabilityR, reference.stabilityR) << value;
        ASSERT_EQ(ours.centerL, reference.centerL) << value;
        ASSERT_EQ(ours.centerR, reference.centerR) << value;
        ASSERT_EQ(ours.processOn == 1.0F, reference.process) << value;
        ASSERT_EQ(ours.phaseOn == 1.0F, reference.swap) << value;
        ASSERT_EQ(ours.invertL == 1.0F, reference.invertL) << value;
        ASSERT_EQ(ours.invertR == 1.0F, reference.invertR) << value;
    }
}

} // namespace

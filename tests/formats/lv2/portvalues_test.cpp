#include "formats/lv2/portvalues.h"

#include "processor/core/factorypresets.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace mirelon::lv2 {
namespace {

constexpr float steps = 1 << 20;

class PortValue : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Every, PortValue, testing::Range(0, int{kNumParams}));

// Of all single-precision values that are multiples of 2^-20.
TEST_P(PortValue, ThatAPortHasComesBackExactlyThroughTheValue) {
    for (float i = 0; i <= steps; ++i) {
        const float port = portValueOf(GetParam(), i / steps);
        ASSERT_EQ(portValueOf(GetParam(), valueOfPort(GetParam(), port).value()), port) << i;
    }
}

TEST_P(PortValue, GivesTheValueToTheLastBitButOne) {
    if (parameterAt(GetParam()).kind == ParameterKind::onOff)
        return;
    for (float i = 0; i <= steps; ++i) {
        const float value = i / steps;
        const float back = valueOfPort(GetParam(), portValueOf(GetParam(), value)).value();
        ASSERT_NEAR(back, value, 3e-8F) << i;
    }
}

TEST_P(PortValue, OfTheEndsAndTheMiddleIsExact) {
    for (const float value : {0.0F, 0.5F, 1.0F})
        EXPECT_EQ(valueOfPort(GetParam(), portValueOf(GetParam(), value)),
                  parameterAt(GetParam()).kind == ParameterKind::onOff ? std::round(value) : value);
}

TEST_P(PortValue, OutsideTheRangeIsTakenToTheNearerEnd) {
    EXPECT_EQ(valueOfPort(GetParam(), -1e9F), 0.0F);
    EXPECT_EQ(valueOfPort(GetParam(), 1e9F), 1.0F);
    EXPECT_EQ(valueOfPort(GetParam(), -std::numeric_limits<float>::infinity()), 0.0F);
    EXPECT_EQ(valueOfPort(GetParam(), std::numeric_limits<float>::infinity()), 1.0F);
}

TEST_P(PortValue, ThatIsNoNumberGivesNoValue) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(valueOfPort(GetParam(), none), std::nullopt);
    EXPECT_EQ(changeByPort(GetParam(), 0.5F, none), std::nullopt);
}

TEST_P(PortValue, ThatAValueShowsKeepsTheValue) {
    for (float i = 0; i <= steps; i += 7) {
        const float value = i / steps;
        ASSERT_EQ(changeByPort(GetParam(), value, portValueOf(GetParam(), value)), std::nullopt);
    }
}

TEST_P(PortValue, OfAnotherValueChangesIt) {
    EXPECT_EQ(changeByPort(GetParam(), 0.0F, portRange(GetParam()).maximum), 1.0F);
    EXPECT_EQ(changeByPort(GetParam(), 1.0F, portRange(GetParam()).minimum), 0.0F);
}

TEST(PortValueInUsersUnits, IsWhatPanelsShow) {
    EXPECT_EQ(portValueOf(kParamWidth, 0.625F), 156.25F);
    EXPECT_EQ(portValueOf(kParamGain, 0.75F), 6.0F);
    EXPECT_EQ(portValueOf(kParamBalance, 0.75F), 25.0F);
    EXPECT_EQ(portValueOf(kParamStability, 0.25F), -25.0F);
    EXPECT_EQ(portValueOf(kParamProcess, 1.0F), 1.0F);
    EXPECT_EQ(portRange(kParamWidth).maximum, 400.0F);
    EXPECT_EQ(portRange(kParamGain).minimum, -12.0F);
    EXPECT_EQ(portRange(kParamCenterPos).minimum, -50.0F);
}

TEST(PortValueOfASwitch, IsOnAboveZero) {
    for (const float on : {1e-30F, 0.4F, 0.7F, 1.0F})
        EXPECT_EQ(valueOfPort(kParamPhase, on), 1.0F);
    for (const float off : {-1.0F, -0.0F, 0.0F})
        EXPECT_EQ(valueOfPort(kParamPhase, off), 0.0F);
}

TEST(PortValueOfASwitch, KeepsAValueOnTheSameSide) {
    EXPECT_EQ(changeByPort(kParamPhase, 0.8F, 1.0F), std::nullopt);
    EXPECT_EQ(changeByPort(kParamPhase, 0.49F, 0.0F), std::nullopt);
    EXPECT_EQ(changeByPort(kParamPhase, 0.49F, 1.0F), 1.0F);
}

} // namespace
} // namespace mirelon::lv2

// What the table says of every parameter, and the compiler cannot check.
#include "processor/core/parameters.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using namespace mirelon;

TEST(Parameters, SwitchesAndNoOthersAreOnOrOffAndNothingBetween) {
    for (const Parameter& parameter : parameterTable) {
        Coefficients coefficients;
        bool between = false;
        for (int i = 0; i <= 64; ++i) {
            applyParameter(coefficients, parameter.index, static_cast<float>(i) / 64.0F);
            const float working = workingValue(coefficients, parameter.index);
            between = between || (working != 0.0F && working != 1.0F);
        }
        EXPECT_EQ(between, parameter.kind == ParameterKind::continuous) << parameter.name;
    }
}

TEST(Parameters, SwitchesGovernOneCoefficientOnly) {
    for (const Parameter& parameter : parameterTable)
        EXPECT_FALSE(parameter.kind == ParameterKind::onOff && parameter.companion)
            << parameter.name;
}

TEST(Parameters, EachDisplaysSomethingAtItsInitialValue) {
    for (const Parameter& parameter : parameterTable) {
        Coefficients coefficients;
        applyParameter(coefficients, parameter.index, parameter.initial);
        char text[32] = "";
        parameterDisplay(parameter.index, parameter.initial, coefficients, text);
        EXPECT_NE(std::string_view(text), "") << parameter.name;
        EXPECT_LE(std::string_view(text).size(), 8U) << parameter.name;
    }
}

TEST(Parameters, StartAsTheProductSounds) {
    constexpr float expected[] = {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F};
    for (int i = 0; i < kNumParams; ++i)
        EXPECT_EQ(parameterAt(i).initial, expected[i]) << i;
}

TEST(Parameters, AreFiveContinuousOnesAndFourSwitches) {
    EXPECT_EQ(numberOf(ParameterKind::continuous), 5U);
    EXPECT_EQ(numberOf(ParameterKind::onOff), 4U);
}

} // namespace

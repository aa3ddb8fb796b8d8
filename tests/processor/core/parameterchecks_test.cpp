// That a broken table of parameters is noticed.
#include "processor/core/parameterchecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace {

using namespace mirelon;
using namespace mirelon::parameterchecks;

class ParameterChecks : public testing::Test {
  protected:
    // The parameter with others' coefficients.
    void setCoefficients(ParameterIndex index, Governed working,
                         std::optional<Governed> companion) {
        const Parameter before = table[static_cast<std::size_t>(index)];
        Parameter after{.index = before.index,
                        .name = {},
                        .label = {},
                        .kind = before.kind,
                        .initial = before.initial,
                        .display = before.display,
                        .reader = before.reader,
                        .working = working,
                        .companion = companion};
        std::ranges::copy(before.name, after.name);
        std::vector<Parameter> changed;
        for (const Parameter& parameter : table)
            changed.push_back(parameter.index == index ? after : parameter);
        table.swap(changed);
    }

    Parameter& row(ParameterIndex index) { return table[static_cast<std::size_t>(index)]; }

    std::vector<Parameter> table{parameterTable.begin(), parameterTable.end()};
};

TEST_F(ParameterChecks, FindNothingInASoundTable) {
    EXPECT_TRUE(everyIndexHasItsRow(table));
    EXPECT_TRUE(namesDiffer(table));
    EXPECT_TRUE(initialValuesArePossible(table));
    EXPECT_TRUE(everyCoefficientHasOneParameter(table));
}

TEST_F(ParameterChecks, FindARowInAnothersPlace) {
    for (const auto index : {kParamWidth, kParamStability, kParamInvertR}) {
        const ParameterIndex before = row(index).index;
        row(index).index = kParamGain;
        EXPECT_FALSE(everyIndexHasItsRow(table)) << index;
        row(index).index = before;
    }
}

TEST_F(ParameterChecks, FindANameGivenTwice) {
    std::ranges::copy(row(kParamPhase).name, row(kParamWidth).name);
    EXPECT_FALSE(namesDiffer(table));
}

TEST_F(ParameterChecks, FindAnInitialValueThatIsNotNormalised) {
    for (const float value : {-0.25F, 1.25F, std::numeric_limits<float>::quiet_NaN()}) {
        row(kParamGain).initial = value;
        EXPECT_FALSE(initialValuesArePossible(table)) << value;
    }
    for (const float value : {0.0F, 0.25F, 1.0F}) {
        row(kParamGain).initial = value;
        EXPECT_TRUE(initialValuesArePossible(table)) << value;
    }
}

TEST_F(ParameterChecks, FindASwitchThatStartsBetweenOnAndOff) {
    for (const float value : {-1.0F, 0.5F, 2.0F, std::numeric_limits<float>::quiet_NaN()}) {
        row(kParamPhase).initial = value;
        EXPECT_FALSE(initialValuesArePossible(table)) << value;
    }
    for (const float value : {0.0F, 1.0F}) {
        row(kParamPhase).initial = value;
        EXPECT_TRUE(initialValuesArePossible(table)) << value;
    }
}

TEST_F(ParameterChecks, FindACoefficientOfTwoParameters) {
    setCoefficients(kParamInvertR, {&Coefficients::invertL, laws::onOff}, {});
    EXPECT_FALSE(everyCoefficientHasOneParameter(table));
}

TEST_F(ParameterChecks, FindACompanionThatAnotherParameterGoverns) {
    setCoefficients(kParamBalance, {&Coefficients::balanceL, laws::rising},
                    Governed{&Coefficients::stabilityR, laws::falling});
    EXPECT_FALSE(everyCoefficientHasOneParameter(table));
}

TEST_F(ParameterChecks, FindACoefficientOfNoParameter) {
    setCoefficients(kParamBalance, {&Coefficients::balanceL, laws::rising}, {});
    EXPECT_FALSE(everyCoefficientHasOneParameter(table));
}

TEST_F(ParameterChecks, CountGovernorsAmongWorkingValuesAndCompanions) {
    EXPECT_EQ(governorsOf(table, &Coefficients::gainLin), 1U);
    EXPECT_EQ(governorsOf(table, &Coefficients::balanceR), 1U);
    setCoefficients(kParamGain, {&Coefficients::balanceR, laws::linearGain},
                    Governed{&Coefficients::balanceR, laws::falling});
    EXPECT_EQ(governorsOf(table, &Coefficients::balanceR), 3U);
    EXPECT_EQ(governorsOf(table, &Coefficients::gainLin), 0U);
}

} // namespace

// Where a switch's working value turns: polarity and bypass from a half on, the
// swap above it.
#include "tests/support/kerneltest.h"
#include "tests/support/neutralcoefficients.h"

#include <utility>

namespace mirelon {
namespace {

using Frame = std::pair<float, float>;

class SwitchValues : public KernelTest {
  protected:
    // Left 0.75 and right 0.25 through one frame.
    static Frame output(const Coefficients& c) {
        const float left = 0.75F;
        const float right = 0.25F;
        Envelopes envelopes;
        Frame result;
        kernels::processWith<float>(
            *GetParam(),
            {c, 0.001, envelopes, {&left, &right}, {&result.first, &result.second}, 1});
        return result;
    }
};

INSTANTIATE_TEST_SUITE_P(Of, SwitchValues,
                         testing::ValuesIn(kernels::builtKernels().begin(),
                                           kernels::builtKernels().end()),
                         kernelName);

TEST_P(SwitchValues, PolarityTurnsAtAHalf) {
    Coefficients c = neutralCoefficients();
    for (const auto& [value, sign] : {std::pair{0.49F, 1.0F}, {0.5F, -1.0F}, {0.6F, -1.0F}}) {
        c.invertL = value;
        EXPECT_EQ(output(c), Frame(sign * 0.75F, 0.25F)) << value;
        c.invertL = 0.0F;
        c.invertR = value;
        EXPECT_EQ(output(c), Frame(0.75F, sign * 0.25F)) << value;
        c.invertR = 0.0F;
    }
}

TEST_P(SwitchValues, TheSwapTurnsAboveAHalf) {
    Coefficients c = neutralCoefficients();
    c.phaseOn = 0.5F;
    EXPECT_EQ(output(c), Frame(0.75F, 0.25F));
    c.phaseOn = 0.6F;
    EXPECT_EQ(output(c), Frame(0.25F, 0.75F));
}

TEST_P(SwitchValues, ASwappedChannelKeepsItsPolarity) {
    Coefficients c = neutralCoefficients();
    c.invertL = 1.0F;
    for (const float value : {0.4F, 0.5F}) {
        c.phaseOn = value;
        EXPECT_EQ(output(c), Frame(-0.75F, 0.25F)) << value;
    }
    for (const float value : {0.55F, 1.0F}) {
        c.phaseOn = value;
        EXPECT_EQ(output(c), Frame(0.25F, -0.75F)) << value;
    }
}

TEST_P(SwitchValues, ProcessingTurnsAtAHalf) {
    Coefficients c = neutralCoefficients();
    c.gainLin = 2.0F;
    for (const auto& [value, gain] : {std::pair{0.49F, 1.0F}, {0.5F, 2.0F}, {0.6F, 2.0F}}) {
        c.processOn = value;
        EXPECT_EQ(output(c), Frame(gain * 0.75F, gain * 0.25F)) << value;
    }
}

} // namespace
} // namespace mirelon

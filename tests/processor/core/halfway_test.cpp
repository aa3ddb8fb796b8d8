// Steps whose exact result lies next to the middle between two numbers: rounded
// twice, they would come out on the wrong side.
#include "tests/support/kerneltest.h"
#include "tests/support/neutralcoefficients.h"
#include "tests/support/signals.h"

#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using namespace mirelon;
using namespace mirelon::kernels;
using signals::sameBits;

template <typename Sample>
using Channels = std::pair<std::vector<Sample>, std::vector<Sample>>;

template <typename Sample>
Channels<Sample> processed(const Kernel& kernel, const Coefficients& c, Channels<Sample> audio,
                           double k, Envelopes& followers) {
    auto& [left, right] = audio;
    processWith<Sample>(kernel, {c,
                                 k,
                                 followers,
                                 {left.data(), right.data()},
                                 {left.data(), right.data()},
                                 static_cast<int>(left.size())});
    return audio;
}

class Halfway : public KernelTest {
  protected:
    template <typename Sample>
    static void expectSameOutput(const Coefficients& c, const Channels<Sample>& in) {
        Envelopes ours;
        Envelopes plain;
        const auto actual = processed(*GetParam(), c, in, 1e-3, ours);
        const auto expected = processed(portable, c, in, 1e-3, plain);
        for (std::size_t i = 0; i < in.first.size(); ++i) {
            ASSERT_TRUE(sameBits(actual.first[i], expected.first[i]))
                << std::hexfloat << in.first[i] << ", " << in.second[i]
                << " left: " << actual.first[i] << " for " << expected.first[i];
            ASSERT_TRUE(sameBits(actual.second[i], expected.second[i]))
                << std::hexfloat << in.first[i] << ", " << in.second[i]
                << " right: " << actual.second[i] << " for " << expected.second[i];
        }
    }

    template <typename Sample>
    static void addsATinyMidToAHalfwayProduct();
    template <typename Sample>
    static void roundsToDenormals();
    template <typename Sample>
    static void stepsAFollower();
};

INSTANTIATE_TEST_SUITE_P(Of, Halfway, testing::ValuesIn(kernelsToCompare()), kernelName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Halfway);

// The side signal is (1 + m 2^-a) 2^41 and the centre weight 1 + n 2^-b with odd m
// and n: the last bit of the product is half of a sample's. The mid signal, which
// decides, is too small to be kept beside the product even in double precision.
// One more frame, a denormal in the end, sends the group another way.
template <typename Sample>
void Halfway::addsATinyMidToAHalfwayProduct() {
    constexpr int digits = std::numeric_limits<Sample>::digits;
    constexpr int b = 13;
    constexpr int a = digits - b;
    std::mt19937_64 random(1);
    int decided = 0;
    for (const Sample other : {Sample{0.5}, std::numeric_limits<Sample>::denorm_min()})
        for (int round = 0; round < 200; ++round) {
            Coefficients c = neutralCoefficients();
            c.widthSide = 0x1p40F;
            c.stabilityL = c.stabilityR = 1.0F;
            c.centerL = c.centerR = 1.0F + std::ldexp(static_cast<float>(random() % 4096 | 1), -b);
            Channels<Sample> in;
            for (int i = 0; i < 16; ++i) {
                const auto m = static_cast<Sample>(random() % (1ULL << (a - 1)) | 1);
                const Sample half = 1 + std::ldexp(m, -a);
                const Sample mid =
                    std::ldexp(random() % 2 == 0 ? Sample{1} : Sample{-1}, 1 - digits);
                const Sample sign = random() % 2 == 0 ? Sample{1} : Sample{-1};
                in.first.push_back(sign * half + mid);
                in.second.push_back(-sign * half + mid);
                const Sample side = 2 * sign * half * Sample{0x1p40};
                const auto weight = static_cast<Sample>(c.centerR);
                decided += std::fma(side, weight, mid) != side * weight ? 1 : 0;
            }
            const auto place = static_cast<std::size_t>(random() % 16);
            in.first[place] = in.second[place] = other;
            expectSameOutput(c, in);
            if (HasFatalFailure())
                return;
        }
    EXPECT_GT(decided, 1000) << "the mid signal hardly ever matters";
}
TEST_P(Halfway, ATinyMidDecidesHowASideProductIsRoundedInFloat) {
    addsATinyMidToAHalfwayProduct<float>();
}
TEST_P(Halfway, ATinyMidDecidesHowASideProductIsRoundedInDouble) {
    addsATinyMidToAHalfwayProduct<double>();
}

// Whole multiples of the smallest number, times factors next to a multiple of a
// half: every product has to be rounded to such a multiple again.
template <typename Sample>
void Halfway::roundsToDenormals() {
    constexpr int digits = std::numeric_limits<Sample>::digits;
    constexpr float factors[] = {1.0F,
                                 0.5F,
                                 1.5F,
                                 1.5F + 0x1p-23F,
                                 1.5F - 0x1p-23F,
                                 0.5F + 0x1p-24F,
                                 0.5F - 0x1p-25F,
                                 0.25F,
                                 0.75F,
                                 1.0F - 0x1p-24F,
                                 1.0F + 0x1p-23F,
                                 0x1p-10F + 0x1p-33F,
                                 2.0F,
                                 -0.5F};
    std::mt19937_64 random(2);
    const auto factor = [&] { return factors[random() % std::size(factors)]; };
    const auto sample = [&] {
        const auto bits = random() % static_cast<unsigned>(digits) + 1;
        const auto zeros = random() % bits;
        const auto whole = random() % (1ULL << bits) >> zeros << zeros;
        const Sample v = std::ldexp(static_cast<Sample>(whole),
                                    std::numeric_limits<Sample>::min_exponent - digits);
        return random() % 2 == 0 ? v : -v;
    };
    for (int round = 0; round < 3000; ++round) {
        Coefficients c = neutralCoefficients();
        c.gainLin = factor();
        c.widthSide = factor();
        c.stabilityL = factor();
        c.stabilityR = factor();
        c.centerL = factor();
        c.centerR = factor();
        c.balanceL = factor();
        c.balanceR = factor();
        Channels<Sample> in;
        for (int i = 0; i < 16; ++i) {
            in.first.push_back(sample());
            in.second.push_back(sample());
        }
        expectSameOutput(c, in);
        if (HasFatalFailure())
            return;
    }
}
TEST_P(Halfway, DenormalResultsAreRoundedOnceInFloat) {
    roundsToDenormals<float>();
}
TEST_P(Halfway, DenormalResultsAreRoundedOnceInDouble) {
    roundsToDenormals<double>();
}

// A number of the smallest ones times the centre weight is a whole number and a
// half, and 2^-73 more or less, which takes more bits than a double has. The mid
// signal, an even or odd number of the smallest ones, is added.
TEST_P(Halfway, TheLastBitOfALongProductDecidesBesideDenormals) {
    constexpr std::pair<double, double> products[] = {
        {14384033.0, 0x1p72 / 14384033.0},  // 2^72 + 1
        {16773121.0, 0x1p72 / 16773121.0}}; // 2^72 - 1
    for (const auto& [weight, quotient] : products)
        for (const double right : {0.0, 1.0, 2.0}) {
            const double left = 2.0 * std::round(quotient) + right;
            const double exact = std::fma(std::round(quotient), weight, -0x1p72);
            ASSERT_EQ(std::fabs(exact), 1.0);
            for (const bool toLeft : {true, false})
                for (const double sign : {1.0, -1.0}) {
                    // The other weight is a gain of this channel's output.
                    Coefficients c = neutralCoefficients();
                    (toLeft ? c.centerR : c.centerL) = static_cast<float>(weight * 0x1p-73);
                    const double unit = sign * std::numeric_limits<double>::denorm_min();
                    expectSameOutput<double>(c, {std::vector<double>(4, left * unit),
                                                 std::vector<double>(4, right * unit)});
                }
        }
}

// Denormals are computed on a larger scale; what lies beside them must not leave it.
TEST_P(Halfway, LargeSamplesAndFactorsBesideADenormalDoNotOverflow) {
    for (const float gain : {1.0F, 0x1p80F, 0x1p127F, -0x1p127F})
        for (const float width : {1.0F, 0x1p69F, 0x1p127F, -0x1p127F})
            for (int exponent = 100; exponent <= 1020; exponent += 33) {
                Coefficients c = neutralCoefficients();
                c.gainLin = gain;
                c.widthSide = width;
                const double large = std::ldexp(1.0, exponent);
                const double tiny = 0x1p-1060;
                expectSameOutput<double>(c, {{large, tiny, -large, 1.0, large, -tiny, 1.0, large},
                                             {tiny, tiny, large, large, 0.0, large, 1.0, tiny}});
            }
}

// A distance and a coefficient whose product is 2^72 + 1 or 2^104 - 1 but for the
// scale: in double precision it becomes a power of two, half of a follower's last
// bit.
template <typename Sample>
void Halfway::stepsAFollower() {
    constexpr std::pair<double, double> products[] = {
        {(0x1p24 + 1.0) * 0x1p-24, (0x1p48 - 0x1p24 + 1.0) * 0x1p-102},
        {(0x1p52 - 1.0) * 0x1p-52, (0x1p52 + 1.0) * 0x1p-106},
    };
    Coefficients c = neutralCoefficients();
    c.processOn = 0.0F;
    int decided = 0;
    const auto step = [&](double level, double e, double distance, double k) {
        const auto sample = static_cast<Sample>(level);
        if (e < 0.0 || level < 0.0 || sample != level || level - e != distance)
            return;
        decided += std::fma(distance, k, e) != e + distance * k ? 1 : 0;
        Envelopes ours{e, e, e, 0.0};
        Envelopes plain = ours;
        processed<Sample>(*GetParam(), c, {{sample}, {0}}, k, ours);
        processed<Sample>(portable, c, {{sample}, {0}}, k, plain);
        ASSERT_EQ(ours.sum, plain.sum) << std::hexfloat << level << " " << e << " " << k;
        ASSERT_EQ(ours.diff, plain.diff) << std::hexfloat << level << " " << e << " " << k;
        ASSERT_EQ(ours.left, plain.left) << std::hexfloat << level << " " << e << " " << k;
    };
    for (const auto& [size, coefficient] : products)
        for (const double distance : {size, -size, size / 2, -size / 2})
            for (int scale = -3; scale <= 4; ++scale) {
                const double k = std::ldexp(coefficient, scale);
                for (const double level : {0.0, 0.25, 0.5, 1.0, 1.5, 2.0, 3.0})
                    step(level, level - distance, distance, k);
                // Next to a power of two, where the numbers below lie closer.
                for (const double e : {1.0 - 0x1p-53, 1.0, 1.0 + 0x1p-52})
                    step(e + distance, e, distance, k);
            }
    EXPECT_GT(decided, 4) << "rounding once and twice are hardly ever different";
}
TEST_P(Halfway, AFollowersStepIsRoundedOnceInFloat) {
    stepsAFollower<float>();
}
TEST_P(Halfway, AFollowersStepIsRoundedOnceInDouble) {
    stepsAFollower<double>();
}

} // namespace

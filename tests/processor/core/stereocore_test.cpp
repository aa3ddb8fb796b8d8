#include "hosting/guardedbuffer.h"
#include "processor/core/parameters.h"
#include "processor/core/stereocore.h"
#include "tests/support/neutralcoefficients.h"
#include "tests/support/referenceprocessor.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace mirelon;
using hosting::GuardedBuffer;
using signals::sameBits;
using signals::Signal;

Envelopes envelopesOf(const reference::Followers& f) {
    return {f[0], f[1], f[2], f[3]};
}

void expectSame(const Envelopes& actual, const reference::Followers& expected) {
    EXPECT_TRUE(sameBits(actual.sum, expected[0])) << actual.sum << " for " << expected[0];
    EXPECT_TRUE(sameBits(actual.diff, expected[1])) << actual.diff << " for " << expected[1];
    EXPECT_TRUE(sameBits(actual.left, expected[2])) << actual.left << " for " << expected[2];
    EXPECT_TRUE(sameBits(actual.right, expected[3])) << actual.right << " for " << expected[3];
}

// The core and the reference side by side, block after block.
template <typename Sample>
class Pair {
  public:
    explicit Pair(float rate)
        : coefficient(envelopeCoefficient(rate)) {
        reference.setSampleRate(rate);
        for (int i = 0; i < kNumParams; ++i)
            set(i, i <= kParamProcess ? 0.5F : 0.0F);
    }

    void set(int index, float value) {
        applyParameter(coefficients, index, value);
        reference.setParameter(index, value);
    }

    enum class Aliasing { none, inPlace, crossed };

    void run(Signal signal, unsigned seed, std::size_t frames, Aliasing aliasing) {
        const std::size_t shift = seed % 8;
        GuardedBuffer<Sample> left(frames, shift);
        GuardedBuffer<Sample> right(frames, (shift * 3) % 8);
        GuardedBuffer<Sample> leftOut(frames, (shift * 5) % 8);
        GuardedBuffer<Sample> rightOut(frames, (shift * 7) % 8);
        signals::fill(left.samples(), signal, seed, 0);
        signals::fill(right.samples(), signal, seed, 1);
        std::vector<Sample> expectedLeft(frames);
        std::vector<Sample> expectedRight(frames);
        const auto count = static_cast<int>(frames);
        reference.process(left.data(), right.data(), expectedLeft.data(), expectedRight.data(),
                          count);

        StereoOutput<Sample> out{leftOut.data(), rightOut.data()};
        if (aliasing == Aliasing::inPlace)
            out = {left.data(), right.data()};
        else if (aliasing == Aliasing::crossed)
            out = {right.data(), left.data()};
        processBlock(coefficients, coefficient, envelopes, {left.data(), right.data()}, out, count);

        for (std::size_t i = 0; i < frames; ++i) {
            ASSERT_TRUE(sameBits(out.left[i], expectedLeft[i]))
                << "left " << i << ": " << out.left[i] << " for " << expectedLeft[i];
            ASSERT_TRUE(sameBits(out.right[i], expectedRight[i]))
                << "right " << i << ": " << out.right[i] << " for " << expectedRight[i];
        }
        expectSame(envelopes, reference.followers());
        EXPECT_TRUE(left.guardsIntact() && right.guardsIntact());
        EXPECT_TRUE(leftOut.guardsIntact() && rightOut.guardsIntact());
        const MeterReadings readings = readMeters(envelopes);
        EXPECT_EQ(readings.width, reference.readings().width);
        EXPECT_EQ(readings.balance, reference.readings().balance);
    }

  private:
    Coefficients coefficients;
    double coefficient;
    Envelopes envelopes;
    reference::ReferenceProcessor reference;
};

template <typename Sample>
class StereoCore : public testing::Test {};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(StereoCore, Precisions);

constexpr float rates[] = {8000.0F, 22050.0F, 44100.0F, 48000.0F, 96000.0F, 192000.0F};
constexpr std::size_t sizes[] = {0, 1, 2, 3, 7, 64, 511, 4096};

TYPED_TEST(StereoCore, AgreesWithTheReferenceOverSignalsSizesRatesAndParameterChanges) {
    using Aliasing = typename Pair<TypeParam>::Aliasing;
    std::mt19937 random(20);
    unsigned seed = 0;
    for (const Signal signal : signals::allSignals) {
        SCOPED_TRACE(signals::nameOf(signal));
        Pair<TypeParam> pair(rates[seed % std::size(rates)]);
        for (const std::size_t frames : sizes) {
            SCOPED_TRACE(frames);
            for (const auto aliasing : {Aliasing::none, Aliasing::inPlace, Aliasing::crossed}) {
                for (int i = 0; i < kNumParams; ++i)
                    if (random() % 2 == 0)
                        pair.set(i, static_cast<float>(random() % 4096) / 4095.0F);
                pair.run(signal, seed++, frames, aliasing);
                if (this->HasFatalFailure())
                    return;
            }
        }
    }
}

TYPED_TEST(StereoCore, AgreesWithTheReferenceWhenProcessingIsOff) {
    using Aliasing = typename Pair<TypeParam>::Aliasing;
    unsigned seed = 0;
    for (const Signal signal : signals::allSignals) {
        SCOPED_TRACE(signals::nameOf(signal));
        Pair<TypeParam> pair(48000.0F);
        pair.set(kParamProcess, 0.0F);
        pair.set(kParamGain, 0.9F);
        pair.set(kParamPhase, 1.0F);
        pair.set(kParamInvertL, 1.0F);
        for (const std::size_t frames : sizes)
            for (const auto aliasing : {Aliasing::none, Aliasing::inPlace, Aliasing::crossed})
                pair.run(signal, seed++, frames, aliasing);
        if (this->HasFatalFailure())
            return;
    }
}

// A burst, then silence long enough for the followers to sink below the flush
// offset, then a burst again.
TYPED_TEST(StereoCore, AgreesWithTheReferenceWhileTheFollowersSinkToNothing) {
    using Aliasing = typename Pair<TypeParam>::Aliasing;
    Pair<TypeParam> pair(8000.0F);
    pair.run(Signal::noise, 1, 4096, Aliasing::none);
    for (unsigned i = 0; i < 40; ++i)
        pair.run(Signal::silence, i, 4096, Aliasing::none);
    pair.run(Signal::mono, 2, 4096, Aliasing::none);
    pair.run(Signal::noise, 3, 4096, Aliasing::none);
}

TYPED_TEST(StereoCore, AgreesWithTheReferenceForFactorsOfAnySize) {
    std::mt19937_64 random(5);
    const auto factor = [&] {
        const auto mantissa = static_cast<float>(random() >> 40) * 0x1p-24F;
        return std::ldexp(mantissa, 2 - static_cast<int>(random() % 140));
    };
    for (int round = 0; round < 300; ++round) {
        reference::Factors f;
        f.gain = factor();
        f.width = factor();
        f.balanceL = factor();
        f.balanceR = factor();
        f.stabilityL = factor();
        f.stabilityR = factor();
        f.centerL = factor();
        f.centerR = factor();
        f.swap = random() % 2 == 0;
        f.invertL = random() % 2 == 0;
        f.invertR = random() % 2 == 0;
        Coefficients c;
        c.gainLin = f.gain;
        c.widthSide = f.width;
        c.balanceL = f.balanceL;
        c.balanceR = f.balanceR;
        c.stabilityL = f.stabilityL;
        c.stabilityR = f.stabilityR;
        c.centerL = f.centerL;
        c.centerR = f.centerR;
        c.processOn = 1.0F;
        c.phaseOn = f.swap ? 1.0F : 0.0F;
        c.invertL = f.invertL ? 1.0F : 0.0F;
        c.invertR = f.invertR ? 1.0F : 0.0F;

        constexpr std::size_t frames = 67;
        std::vector<TypeParam> left(frames);
        std::vector<TypeParam> right(frames);
        const Signal signal = round % 2 == 0 ? Signal::noise : Signal::mixture;
        signals::fill<TypeParam>(left, signal, static_cast<unsigned>(round), 0);
        signals::fill<TypeParam>(right, signal, static_cast<unsigned>(round), 1);
        auto leftOut = left;
        auto rightOut = right;
        const double k = reference::followerCoefficient(44100.0F);
        reference::Followers followers{};
        for (std::size_t i = 0; i < frames; ++i)
            reference::processFrame(f, k, followers, left[i], right[i]);
        Envelopes envelopes;
        processBlock(c, k, envelopes, {leftOut.data(), rightOut.data()},
                     {leftOut.data(), rightOut.data()}, frames);
        for (std::size_t i = 0; i < frames; ++i) {
            ASSERT_TRUE(sameBits(left[i], leftOut[i])) << left[i] << " " << leftOut[i];
            ASSERT_TRUE(sameBits(right[i], rightOut[i])) << right[i] << " " << rightOut[i];
        }
        expectSame(envelopes, followers);
    }
}

// Any state of the followers and any coefficient is defined, also those that no
// sample rate and no audio can bring about.
TYPED_TEST(StereoCore, AgreesWithTheReferenceFromAnyState) {
    std::vector<double> values(400);
    signals::fill<double>(values, Signal::anyBits, 3, 0);
    std::vector<double> tiny(400);
    signals::fill<double>(tiny, Signal::tiny, 3, 0);
    constexpr double coefficients[] = {0.0, 1.0, -0.5, 3.0, 1e-310, 1e300, 0.5, 1e-4};
    for (std::size_t i = 0; i + 4 <= values.size(); i += 4) {
        const auto& source = i % 8 == 0 ? values : tiny;
        reference::Followers followers{source[i], source[i + 1], source[i + 2], source[i + 3]};
        Envelopes envelopes = envelopesOf(followers);
        const double k = coefficients[(i / 4) % std::size(coefficients)];
        std::vector<TypeParam> left(37);
        std::vector<TypeParam> right(37);
        const Signal signal = signals::allSignals[(i / 4) % std::size(signals::allSignals)];
        signals::fill<TypeParam>(left, signal, static_cast<unsigned>(i), 0);
        signals::fill<TypeParam>(right, signal, static_cast<unsigned>(i), 1);
        const Coefficients c = neutralCoefficients();
        auto l = left;
        auto r = right;
        processBlock(c, k, envelopes, {left.data(), right.data()}, {l.data(), r.data()}, 37);
        const reference::Factors factors{};
        for (std::size_t j = 0; j < left.size(); ++j)
            reference::processFrame(factors, k, followers, left[j], right[j]);
        expectSame(envelopes, followers);
        for (std::size_t j = 0; j < left.size(); ++j) {
            ASSERT_TRUE(sameBits(left[j], l[j]));
            ASSERT_TRUE(sameBits(right[j], r[j]));
        }
    }
}

TYPED_TEST(StereoCore, DefaultsAreTheIdentityForExactSumsAndDifferences) {
    TypeParam left[] = {TypeParam(0.5), TypeParam(-0.25), TypeParam(1), TypeParam(0)};
    TypeParam right[] = {TypeParam(0.125), TypeParam(0.75), TypeParam(-1), TypeParam(0.5)};
    TypeParam l[4];
    TypeParam r[4];
    Envelopes envelopes;
    processBlock(neutralCoefficients(), 1e-4, envelopes, {left, right}, {l, r}, 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(l[i], left[i]);
        EXPECT_EQ(r[i], right[i]);
    }
}

// The fused subtraction cancels to a positive zero, as m - c * s does.
TYPED_TEST(StereoCore, ACancelledSampleIsPositiveZero) {
    TypeParam left[] = {TypeParam(1)};
    TypeParam right[] = {TypeParam(0)};
    Envelopes envelopes;
    processBlock(neutralCoefficients(), 1e-4, envelopes, {left, right}, {left, right}, 1);
    EXPECT_EQ(right[0], TypeParam(0));
    EXPECT_FALSE(std::signbit(right[0]));
}

TYPED_TEST(StereoCore, NoFramesTouchNothing) {
    TypeParam sample{42};
    for (const int frames : {0, -1, std::numeric_limits<int>::min()}) {
        Envelopes envelopes{0.1, 0.2, 0.3, 0.4};
        processBlock(neutralCoefficients(), 1e-4, envelopes, {&sample, &sample}, {&sample, &sample},
                     frames);
        EXPECT_EQ(sample, TypeParam(42));
        EXPECT_EQ(envelopes.sum, 0.1);
        EXPECT_EQ(envelopes.right, 0.4);
    }
}

TYPED_TEST(StereoCore, OneBadSampleLatchesTheFollowersWhileTheAudioRecovers) {
    for (const TypeParam bad :
         {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
          -std::numeric_limits<TypeParam>::infinity()}) {
        std::vector<TypeParam> left(300, TypeParam(0.5));
        std::vector<TypeParam> right(300, TypeParam(0.25));
        left[100] = bad;
        Envelopes envelopes;
        processBlock(neutralCoefficients(), 1e-2, envelopes, {left.data(), right.data()},
                     {left.data(), right.data()}, 300);
        EXPECT_FALSE(std::isfinite(left[100]));
        for (std::size_t i = 101; i < 300; ++i) {
            ASSERT_EQ(left[i], TypeParam(0.5));
            ASSERT_EQ(right[i], TypeParam(0.25));
        }
        EXPECT_FALSE(std::isfinite(envelopes.sum));
        EXPECT_FALSE(std::isfinite(envelopes.left));
        std::fill(left.begin(), left.end(), TypeParam(0.5));
        processBlock(neutralCoefficients(), 1e-2, envelopes, {left.data(), right.data()},
                     {left.data(), right.data()}, 300);
        EXPECT_FALSE(std::isfinite(envelopes.sum));
        const MeterReadings readings = readMeters(envelopes);
        EXPECT_LE(std::fabs(readings.width), 0.5F);
        EXPECT_LE(std::fabs(readings.balance), 0.5F);
    }
}

TYPED_TEST(StereoCore, BlocksOfAnySizeAddUpToTheSame) {
    std::vector<TypeParam> left(4001);
    std::vector<TypeParam> right(4001);
    signals::fill<TypeParam>(left, Signal::gated, 9, 0);
    signals::fill<TypeParam>(right, Signal::gated, 9, 1);
    auto wholeLeft = left;
    auto wholeRight = right;
    Envelopes whole;
    processBlock(neutralCoefficients(), 1e-3, whole, {left.data(), right.data()},
                 {wholeLeft.data(), wholeRight.data()}, 4001);
    Envelopes pieces;
    std::mt19937 random(1);
    for (int done = 0; done < 4001;) {
        const int frames = std::min(4001 - done, static_cast<int>(random() % 90));
        processBlock(neutralCoefficients(), 1e-3, pieces, {left.data() + done, right.data() + done},
                     {left.data() + done, right.data() + done}, frames);
        done += frames;
    }
    EXPECT_EQ(left, wholeLeft);
    EXPECT_EQ(right, wholeRight);
    EXPECT_EQ(pieces.sum, whole.sum);
    EXPECT_EQ(pieces.diff, whole.diff);
    EXPECT_EQ(pieces.left, whole.left);
    EXPECT_EQ(pieces.right, whole.right);
}

} // namespace

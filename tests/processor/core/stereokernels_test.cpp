// Every kernel against the plain one, bit for bit.
#include "hosting/guardedbuffer.h"
#include "tests/support/kerneltest.h"
#include "tests/support/neutralcoefficients.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace mirelon;
using namespace mirelon::kernels;
using hosting::GuardedBuffer;
using signals::sameBits;
using signals::Signal;

enum class Aliasing { none, inPlace, crossed, oneOutput, oneInput };
constexpr Aliasing allAliasing[] = {Aliasing::none, Aliasing::inPlace, Aliasing::crossed,
                                    Aliasing::oneOutput, Aliasing::oneInput};

Coefficients anyParameters(std::mt19937& random) {
    Coefficients coefficients;
    for (int i = 0; i < kNumParams; ++i)
        applyParameter(coefficients, i, static_cast<float>(random() % 1025) / 1024.0F);
    return coefficients;
}

// Two channels in and out, at given distances from an aligned address.
template <typename Sample>
class Audio {
  public:
    Audio(std::size_t frames, const std::array<std::size_t, 4>& shifts, Aliasing aliasing)
        : inL(frames, shifts[0])
        , inR(frames, shifts[1])
        , outL(frames, shifts[2])
        , outR(frames, shifts[3])
        , in{inL.data(), inR.data()}
        , out{outL.data(), outR.data()} {
        if (aliasing == Aliasing::inPlace)
            out = {inL.data(), inR.data()};
        else if (aliasing == Aliasing::crossed)
            out = {inR.data(), inL.data()};
        else if (aliasing == Aliasing::oneOutput)
            out = {outL.data(), outL.data()};
        else if (aliasing == Aliasing::oneInput)
            in = {inL.data(), inL.data()};
    }

    void fill(Signal signal, unsigned seed) {
        signals::fill(inL.samples(), signal, seed, 0);
        signals::fill(inR.samples(), signal, seed, 1);
    }

    bool guardsIntact() const {
        return inL.guardsIntact() && inR.guardsIntact() && outL.guardsIntact() &&
               outR.guardsIntact();
    }

    std::array<std::span<Sample>, 4> buffers() {
        return {inL.samples(), inR.samples(), outL.samples(), outR.samples()};
    }

  private:
    GuardedBuffer<Sample> inL, inR, outL, outR;

  public:
    StereoInput<Sample> in;
    StereoOutput<Sample> out;
};

// One kernel and the plain one, each with its own followers, through the same
// blocks.
template <typename Sample>
class Race {
  public:
    Race(const Kernel& kernel, const Envelopes& start, double coefficient)
        : kernel(kernel)
        , k(coefficient)
        , ours(start)
        , plain(start) {}

    void run(const Coefficients& coefficients, Signal signal, unsigned seed, std::size_t frames,
             const std::array<std::size_t, 4>& shifts, Aliasing aliasing) {
        Audio<Sample> a(frames, shifts, aliasing);
        Audio<Sample> b(frames, shifts, aliasing);
        a.fill(signal, seed);
        b.fill(signal, seed);
        const auto count = static_cast<int>(frames);
        processWith<Sample>(kernel, {coefficients, k, ours, a.in, a.out, count});
        processWith<Sample>(portable, {coefficients, k, plain, b.in, b.out, count});
        for (std::size_t c = 0; c < 4; ++c)
            for (std::size_t i = 0; i < frames; ++i)
                ASSERT_TRUE(sameBits(a.buffers()[c][i], b.buffers()[c][i]))
                    << "buffer " << c << " frame " << i << ": " << a.buffers()[c][i] << " for "
                    << b.buffers()[c][i];
        ASSERT_TRUE(sameBits(ours.sum, plain.sum)) << ours.sum << " for " << plain.sum;
        ASSERT_TRUE(sameBits(ours.diff, plain.diff)) << ours.diff << " for " << plain.diff;
        ASSERT_TRUE(sameBits(ours.left, plain.left)) << ours.left << " for " << plain.left;
        ASSERT_TRUE(sameBits(ours.right, plain.right)) << ours.right << " for " << plain.right;
        ASSERT_TRUE(a.guardsIntact());
    }

  private:
    const Kernel& kernel;
    double k;
    Envelopes ours;
    Envelopes plain;
};

std::vector<std::size_t> sizes() {
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i <= 33; ++i)
        all.push_back(i);
    for (const std::size_t i : {63U, 64U, 65U, 511U, 999U, 4096U})
        all.push_back(i);
    return all;
}

class EveryKernel : public KernelTest {
  protected:
    template <typename Sample>
    void agreesOverSizesSignalsAndAliasing();
    template <typename Sample>
    void agreesAtEveryAlignment();
    template <typename Sample>
    void agreesWhileTheFollowersSink();
    template <typename Sample>
    void agreesFromAnyState();
    template <typename Sample>
    void agreesForAnyFactors();
    template <typename Sample>
    void agreesWhereBuffersOverlap();
    template <typename Sample>
    void agreesOnTinyLevelsForAnyCoefficient();
};

INSTANTIATE_TEST_SUITE_P(Of, EveryKernel, testing::ValuesIn(kernelsToCompare()), kernelName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryKernel);

template <typename Sample>
void EveryKernel::agreesOverSizesSignalsAndAliasing() {
    std::mt19937 random(1);
    unsigned seed = 0;
    for (const Signal signal : signals::allSignals) {
        SCOPED_TRACE(signals::nameOf(signal));
        for (const Aliasing aliasing : allAliasing) {
            Race<Sample> race(*GetParam(), {}, envelopeCoefficient(44100.0F));
            for (const std::size_t frames : sizes()) {
                Coefficients c = seed % 3 == 0 ? neutralCoefficients() : anyParameters(random);
                c.processOn = seed % 4 == 0 ? 0.0F : 1.0F;
                race.run(c, signal, ++seed, frames, {0, 1, 2, 3}, aliasing);
                if (HasFatalFailure()) {
                    ADD_FAILURE() << frames << " frames, aliasing " << static_cast<int>(aliasing);
                    return;
                }
            }
        }
    }
}
TEST_P(EveryKernel, AgreesOverSizesSignalsAndAliasingInFloat) {
    agreesOverSizesSignalsAndAliasing<float>();
}
TEST_P(EveryKernel, AgreesOverSizesSignalsAndAliasingInDouble) {
    agreesOverSizesSignalsAndAliasing<double>();
}

template <typename Sample>
void EveryKernel::agreesAtEveryAlignment() {
    constexpr std::size_t places = 64 / sizeof(Sample);
    for (const float processOn : {0.0F, 1.0F}) {
        Coefficients c = neutralCoefficients();
        applyParameter(c, kParamWidth, 0.7F);
        c.processOn = processOn;
        Race<Sample> race(*GetParam(), {}, 1e-3);
        for (std::size_t in = 0; in < places; ++in)
            for (std::size_t out = 0; out < places; ++out) {
                race.run(c, Signal::noise, 1, 41, {in, (in + 3) % places, out, (out + 5) % places},
                         Aliasing::none);
                ASSERT_FALSE(HasFatalFailure()) << in << " " << out;
            }
    }
}
TEST_P(EveryKernel, AgreesAtEveryAlignmentInFloat) {
    agreesAtEveryAlignment<float>();
}
TEST_P(EveryKernel, AgreesAtEveryAlignmentInDouble) {
    agreesAtEveryAlignment<double>();
}

// From audio through the region where the flush works to rest, and back, one
// channel and both.
template <typename Sample>
void EveryKernel::agreesWhileTheFollowersSink() {
    for (const double k : {envelopeCoefficient(8000.0F), 1e-2, 0.3}) {
        Race<Sample> race(*GetParam(), {}, k);
        Coefficients c = neutralCoefficients();
        for (const Signal signal : {Signal::noise, Signal::silence, Signal::mono, Signal::silence,
                                    Signal::tiny, Signal::silence, Signal::denormals})
            for (unsigned i = 0; i < 30; ++i) {
                race.run(c, signal, i, 999, {0, 0, 0, 0}, Aliasing::none);
                ASSERT_FALSE(HasFatalFailure()) << signals::nameOf(signal) << " " << i;
            }
        applyParameter(c, kParamBalance, 0.0F);
        for (unsigned i = 0; i < 30; ++i)
            race.run(c, Signal::noise, i, 999, {0, 0, 0, 0}, Aliasing::none);
    }
}
TEST_P(EveryKernel, AgreesWhileTheFollowersSinkInFloat) {
    agreesWhileTheFollowersSink<float>();
}
TEST_P(EveryKernel, AgreesWhileTheFollowersSinkInDouble) {
    agreesWhileTheFollowersSink<double>();
}

template <typename Sample>
void EveryKernel::agreesFromAnyState() {
    constexpr double coefficients[] = {0.0,  1.0,   -0.5,   3.0, 1e-310, 1e300, 0.5,
                                       1e-4, 1e-30, 0.9999, NAN, -1e-4,  2e-5};
    unsigned seed = 0;
    for (const Signal state : {Signal::anyBits, Signal::tiny, Signal::noise, Signal::mixture}) {
        std::vector<double> values(480);
        signals::fill<double>(values, state, 2, 0);
        for (std::size_t i = 0; i + 4 <= values.size(); i += 4) {
            ++seed;
            const Envelopes start{values[i], values[i + 1], std::fabs(values[i + 2]),
                                  std::fabs(values[i + 3])};
            Race<Sample> race(*GetParam(), start, coefficients[seed % std::size(coefficients)]);
            Coefficients c = neutralCoefficients();
            c.processOn = seed % 3 == 0 ? 0.0F : 1.0F;
            for (unsigned block = 0; block < 3; ++block) {
                const Signal signal =
                    signals::allSignals[(seed + block) % std::size(signals::allSignals)];
                race.run(c, signal, seed, 43, {0, 0, 0, 0}, Aliasing::none);
                ASSERT_FALSE(HasFatalFailure()) << signals::nameOf(signal) << " " << seed;
            }
        }
    }
}
TEST_P(EveryKernel, AgreesFromAnyStateInFloat) {
    agreesFromAnyState<float>();
}
TEST_P(EveryKernel, AgreesFromAnyStateInDouble) {
    agreesFromAnyState<double>();
}

template <typename Sample>
void EveryKernel::agreesForAnyFactors() {
    std::mt19937 random(4);
    std::vector<float> factors(8);
    for (unsigned seed = 0; seed < 2000; ++seed) {
        for (float& factor : factors) {
            const float size = static_cast<float>(random() % 4096) / 1024.0F;
            const int smallness = seed % 2 == 0 ? 3 : 150;
            factor =
                std::ldexp(size, -static_cast<int>(random() % static_cast<unsigned>(smallness)));
            if (seed % 50 == 0)
                factor = std::ldexp(factor, 120);
        }
        Coefficients c = neutralCoefficients();
        c.widthSide = factors[0];
        c.gainLin = factors[1];
        c.balanceL = factors[2];
        c.balanceR = factors[3];
        c.stabilityL = factors[4];
        c.stabilityR = factors[5];
        c.centerL = factors[6];
        c.centerR = factors[7];
        c.phaseOn = static_cast<float>(random() % 2);
        c.invertL = static_cast<float>(random() % 2);
        c.invertR = static_cast<float>(random() % 2);
        Race<Sample> race(*GetParam(), {}, 1e-3);
        const Signal signal = signals::allSignals[seed % std::size(signals::allSignals)];
        race.run(c, signal, seed, 59, {0, 0, 0, 0}, Aliasing::none);
        ASSERT_FALSE(HasFatalFailure()) << signals::nameOf(signal) << " " << seed;
    }
}
TEST_P(EveryKernel, AgreesForAnyFactorsInFloat) {
    agreesForAnyFactors<float>();
}
TEST_P(EveryKernel, AgreesForAnyFactorsInDouble) {
    agreesForAnyFactors<double>();
}

// A shifted output is read again as a later input: only frame by frame gives
// the plain loop's result.
template <typename Sample>
void EveryKernel::agreesWhereBuffersOverlap() {
    constexpr std::size_t frames = 100;
    constexpr std::ptrdiff_t middle = 40;
    for (std::ptrdiff_t shift = -20; shift <= 20; ++shift)
        for (const bool crossed : {false, true}) {
            std::vector<Sample> left(frames + 2 * middle);
            std::vector<Sample> right(frames + 2 * middle);
            signals::fill<Sample>(left, Signal::noise, 1, 0);
            signals::fill<Sample>(right, Signal::noise, 1, 1);
            auto plainLeft = left;
            auto plainRight = right;
            Coefficients c = neutralCoefficients();
            // Less than 1, or the feedback would run away.
            applyParameter(c, kParamWidth, 0.45F);
            const auto run = [&](const Kernel& kernel, std::vector<Sample>& l,
                                 std::vector<Sample>& r) {
                Envelopes followers;
                const StereoInput<Sample> in{l.data() + middle, r.data() + middle};
                StereoOutput<Sample> out{l.data() + middle + shift, r.data() + middle + shift};
                if (crossed)
                    std::swap(out.left, out.right);
                processWith<Sample>(kernel,
                                    {c, 1e-3, followers, in, out, static_cast<int>(frames)});
                return followers;
            };
            const Envelopes ours = run(*GetParam(), left, right);
            const Envelopes plain = run(portable, plainLeft, plainRight);
            ASSERT_EQ(left, plainLeft) << shift;
            ASSERT_EQ(right, plainRight) << shift;
            ASSERT_EQ(ours.sum, plain.sum) << shift;
            ASSERT_EQ(ours.right, plain.right) << shift;
        }
}
TEST_P(EveryKernel, AgreesWhereBuffersOverlapInFloat) {
    agreesWhereBuffersOverlap<float>();
}
TEST_P(EveryKernel, AgreesWhereBuffersOverlapInDouble) {
    agreesWhereBuffersOverlap<double>();
}

// Whether a follower stays as it is in silence is not asked of any other level.
TEST_P(EveryKernel, ATopLevelFollowerSinksInSilence) {
    for (const double k : {1e-3, 0.5, 1.0}) {
        Race<float> race(*GetParam(), {1.0, 1.0, 1.0, 1.0}, k);
        race.run(neutralCoefficients(), Signal::silence, 1, 40, {0, 0, 0, 0}, Aliasing::none);
    }
}

// However small a level is, a coefficient that is no fraction can make something
// of it.
template <typename Sample>
void EveryKernel::agreesOnTinyLevelsForAnyCoefficient() {
    constexpr double huge = 1e300;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double k : {huge, -huge, infinity, -infinity, -1e-3, 1.0, 0.0})
        for (const Signal signal : {Signal::denormals, Signal::tiny})
            for (const float processOn : {0.0F, 1.0F}) {
                Coefficients c = neutralCoefficients();
                c.processOn = processOn;
                Race<Sample> race(*GetParam(), {}, k);
                race.run(c, signal, 1, 40, {0, 0, 0, 0}, Aliasing::none);
                ASSERT_FALSE(HasFatalFailure()) << k << " " << signals::nameOf(signal);
            }
}
TEST_P(EveryKernel, AgreesOnTinyLevelsForAnyCoefficientInFloat) {
    agreesOnTinyLevelsForAnyCoefficient<float>();
}
TEST_P(EveryKernel, AgreesOnTinyLevelsForAnyCoefficientInDouble) {
    agreesOnTinyLevelsForAnyCoefficient<double>();
}

} // namespace

#include "tests/support/referenceprocessor.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <type_traits>

namespace mirelon::reference {
namespace {

// 113 bits of significand: products of two doubles are exact in it, and a
// result rounded to it first and to double or float afterwards is the correctly
// rounded one for a single sum, product or quotient.
#if LDBL_MANT_DIG == 113
using Quad = long double;
#else
using Quad = __float128;
#endif

template <typename T>
T plus(T a, T b) {
    return static_cast<T>(static_cast<Quad>(a) + b);
}
template <typename T>
T minus(T a, T b) {
    return static_cast<T>(static_cast<Quad>(a) - b);
}
template <typename T>
T times(T a, T b) {
    return static_cast<T>(static_cast<Quad>(a) * b);
}
template <typename T>
T over(T a, T b) {
    return static_cast<T>(static_cast<Quad>(a) / b);
}

// The sum with its last bit set whenever bits were lost, so that rounding it
// again cannot mistake it for a tie.
Quad sumRoundedToOdd(Quad a, Quad b) {
    const Quad sum = a + b;
    const Quad part = sum - a;
    const Quad lost = (a - (sum - part)) + (b - part);
    const bool exact = lost == 0 || lost != lost;
    auto bits = std::bit_cast<unsigned __int128>(sum);
    if (exact || (bits & 1) != 0)
        return sum;
    bits += (lost > 0) == (sum > 0) ? 1 : static_cast<unsigned __int128>(-1);
    return std::bit_cast<Quad>(bits);
}

// a * b + c with one rounding.
template <typename T>
T fused(T a, T b, T c) {
    return static_cast<T>(sumRoundedToOdd(static_cast<Quad>(a) * b, c));
}

template <typename T>
T magnitude(T a) {
    return std::signbit(a) ? -a : a;
}

template <typename Sample>
constexpr double offsetFor() {
    return std::is_same_v<Sample, float> ? 1e-16 : 1e-21;
}

double followed(double follower, double level, double coefficient, double offset) {
    follower = fused(minus(level, follower), coefficient, follower);
    return minus(plus(follower, offset), offset);
}

float clampedLog16(double over, double under) {
    const double log = std::log10(reference::over(over, under));
    const auto reading =
        static_cast<float>(fused(plus(log, 0.6020599913279624), 0.8304820237218405, -0.5));
    if (std::isnan(reading))
        return 0.0F;
    return reading < -0.5F ? -0.5F : reading > 0.5F ? 0.5F : reading;
}

bool isOn(float normalised) {
    return plus(normalised, 0.5F) >= 1.0F;
}

float doubled(float v) {
    return plus(v, v);
}

float doubledRest(float v) {
    return doubled(minus(1.0F, v));
}

} // namespace

Factors factorsFor(const std::array<float, 9>& normalised) {
    const auto [width, gain, balance, stability, center, process, phase, invertL, invertR] =
        normalised;
    const float c = plus(times(center, 0.5F), 0.25F);
    Factors factors;
    factors.width = times(times(doubled(width), doubled(width)), 0.5F);
    factors.gain =
        static_cast<float>(std::pow(10.0, times(minus(static_cast<double>(gain), 0.5), 1.2)));
    factors.balanceL = doubled(balance);
    factors.balanceR = doubledRest(balance);
    factors.stabilityL = doubled(stability);
    factors.stabilityR = doubledRest(stability);
    factors.centerL = doubled(c);
    factors.centerR = doubledRest(c);
    factors.process = isOn(process);
    factors.swap = isOn(phase);
    factors.invertL = isOn(invertL);
    factors.invertR = isOn(invertR);
    return factors;
}

Readings readingsOf(const Followers& followers) {
    const auto [sum, diff, left, right] = followers;
    Readings readings;
    if (sum > 1e-5)
        readings.width = diff > 1e-7 ? clampedLog16(sum, diff) : 0.5F;
    else
        readings.width = diff > 1e-7 ? -0.5F : 0.0F;
    if (left > 1e-5)
        readings.balance = right > 1e-5 ? clampedLog16(right, left) : -0.5F;
    else
        readings.balance = right > 1e-5 ? 0.5F : 0.0F;
    return readings;
}

double followerCoefficient(float sampleRate) {
    const double samples = times(times(static_cast<double>(sampleRate), 600.0), 0.001);
    return minus(1.0, std::pow(0.0625, over(1.0, samples)));
}

template <typename Sample>
void processFrame(const Factors& factors, double coefficient, Followers& followers, Sample& left,
                  Sample& right) {
    if (factors.process) {
        const Sample gain = factors.gain;
        Sample a = times(factors.invertL ? -gain : gain, left);
        Sample b = times(factors.invertR ? -gain : gain, right);
        if (factors.swap)
            std::swap(a, b);
        const Sample half = 0.5F;
        const Sample centerL = factors.centerL;
        const Sample centerR = factors.centerR;
        const Sample mid = times(plus(a, b), half);
        const Sample side = times(minus(a, b), static_cast<Sample>(factors.width));
        const Sample sideL = times(side, static_cast<Sample>(factors.stabilityL));
        const Sample sideR = times(side, static_cast<Sample>(factors.stabilityR));
        const Sample l = fused(sideL, centerR, mid);
        const Sample r = fused(-centerL, sideR, mid);
        left = times(times(l, static_cast<Sample>(factors.balanceL)), centerL);
        right = times(centerR, times(r, static_cast<Sample>(factors.balanceR)));
    }
    const std::array<Sample, 4> levels{magnitude(plus(left, right)), magnitude(minus(left, right)),
                                       magnitude(left), magnitude(right)};
    for (std::size_t i = 0; i < levels.size(); ++i)
        followers[i] = followed(followers[i], levels[i], coefficient, offsetFor<Sample>());
}

template void processFrame(const Factors&, double, Followers&, float&, float&);
template void processFrame(const Factors&, double, Followers&, double&, double&);

ReferenceProcessor::ReferenceProcessor() = default;

void ReferenceProcessor::setParameter(int index, float value) {
    normalised.at(static_cast<std::size_t>(index)) = value;
}

void ReferenceProcessor::suspend() {
    state = {};
    meters = {};
}

void ReferenceProcessor::resume() {
    state = {};
    meters = {0.5F, 0.5F};
}

template <typename Sample>
void ReferenceProcessor::process(const Sample* leftIn, const Sample* rightIn, Sample* leftOut,
                                 Sample* rightOut, int frames) {
    const Factors factors = factorsFor(normalised);
    const double coefficient = followerCoefficient(sampleRate);
    for (int i = 0; i < frames; ++i) {
        Sample left = leftIn[i];
        Sample right = rightIn[i];
        processFrame(factors, coefficient, state, left, right);
        leftOut[i] = left;
        rightOut[i] = right;
    }
    meters = readingsOf(state);
}

template void ReferenceProcessor::process(const float*, const float*, float*, float*, int);
template void ReferenceProcessor::process(const double*, const double*, double*, double*, int);

} // namespace mirelon::reference

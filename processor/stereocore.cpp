#include "processor/stereocore.h"

#include <cmath>

namespace mirelon {
namespace {

// Added to a follower and taken off again: what lies far below it becomes zero,
// so that a decaying follower never reaches the denormals.
template <typename Sample>
constexpr double flushOffset = 1e-16;
template <>
constexpr double flushOffset<double> = 1e-21;

void follow(double& envelope, double level, double k, double offset) noexcept {
    envelope = std::fma(level - envelope, k, envelope);
    envelope = envelope + offset;
    envelope = envelope - offset;
}

template <typename Sample>
void followFrame(Envelopes& envelopes, Sample left, Sample right, double k) noexcept {
    constexpr double offset = flushOffset<Sample>;
    const Sample sum = left + right;
    const Sample diff = left - right;
    follow(envelopes.sum, std::fabs(sum), k, offset);
    follow(envelopes.diff, std::fabs(diff), k, offset);
    follow(envelopes.left, std::fabs(left), k, offset);
    follow(envelopes.right, std::fabs(right), k, offset);
}

template <typename Sample>
void passThrough(double k, Envelopes& envelopes, StereoInput<Sample> in, StereoOutput<Sample> out,
                 int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        const Sample left = in.left[i];
        const Sample right = in.right[i];
        out.left[i] = left;
        out.right[i] = right;
        followFrame(envelopes, left, right, k);
    }
}

template <typename Sample>
void applyMatrix(const Coefficients& coefficients, double k, Envelopes& envelopes,
                 StereoInput<Sample> in, StereoOutput<Sample> out, int frames) noexcept {
    const Sample gain = coefficients.gainLin;
    const Sample gainL = coefficients.invertL >= 0.5F ? -gain : gain;
    const Sample gainR = coefficients.invertR >= 0.5F ? -gain : gain;
    const bool swapped = coefficients.phaseOn > 0.5F;
    const Sample* const first = swapped ? in.right : in.left;
    const Sample* const second = swapped ? in.left : in.right;
    const Sample gainFirst = swapped ? gainR : gainL;
    const Sample gainSecond = swapped ? gainL : gainR;
    const Sample width = coefficients.widthSide;
    const Sample stabilityL = coefficients.stabilityL;
    const Sample stabilityR = coefficients.stabilityR;
    const Sample centerL = coefficients.centerL;
    const Sample centerR = coefficients.centerR;
    const Sample balanceL = coefficients.balanceL;
    const Sample balanceR = coefficients.balanceR;

    for (int i = 0; i < frames; ++i) {
        const Sample a = gainFirst * first[i];
        const Sample b = gainSecond * second[i];
        const Sample sum = a + b;
        const Sample diff = a - b;
        const Sample side = diff * width;
        const Sample mid = sum * static_cast<Sample>(0.5);
        // m - c*x as a fused step with -c: where both cancel, the zero is +0.
        const Sample l = std::fma(side * stabilityL, centerR, mid) * balanceL;
        const Sample r = std::fma(-centerL, side * stabilityR, mid) * balanceR;
        const Sample left = l * centerL;
        const Sample right = centerR * r;
        out.left[i] = left;
        out.right[i] = right;
        followFrame(envelopes, left, right, k);
    }
}

// The block works on copies: an output that overlaps them, or a parameter that
// changes meanwhile, cannot reach into the loop.
template <typename Sample>
void process(const Coefficients& coefficients, double k, Envelopes& envelopes,
             StereoInput<Sample> in, StereoOutput<Sample> out, int frames) noexcept {
    Envelopes followed = envelopes;
    if (coefficients.processOn >= 0.5F)
        applyMatrix(coefficients, k, followed, in, out, frames);
    else
        passThrough(k, followed, in, out, frames);
    envelopes = followed;
}

// log16(numerator / denominator), held to the meters' range. Both are above the
// silence thresholds; infinity over infinity says nothing and reads 0.
float ratioReading(double numerator, double denominator) noexcept {
    constexpr double log10of4 = 0.6020599913279624;
    constexpr double oneOverLog10of16 = 0.8304820237218405;
    const double ratio = numerator / denominator;
    if (std::isnan(ratio))
        return 0.0F;
    const auto reading =
        static_cast<float>(std::fma(std::log10(ratio) + log10of4, oneOverLog10of16, -0.5));
    if (reading < -0.5F)
        return -0.5F;
    return reading > 0.5F ? 0.5F : reading;
}

// A follower that is NaN counts as silent: it is not above any threshold.
float reading(double numerator, double numeratorSilence, double denominator,
              double denominatorSilence) noexcept {
    const bool hasNumerator = numerator > numeratorSilence;
    const bool hasDenominator = denominator > denominatorSilence;
    if (hasNumerator && hasDenominator)
        return ratioReading(numerator, denominator);
    if (hasNumerator)
        return 0.5F;
    return hasDenominator ? -0.5F : 0.0F;
}

} // namespace

double envelopeCoefficient(float sampleRate) noexcept {
    return 1.0 - std::pow(0.0625, 1.0 / (static_cast<double>(sampleRate) * 600.0 * 0.001));
}

void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<float> in, StereoOutput<float> out,
                  int frames) noexcept {
    process(coefficients, envelopeCoefficient, envelopes, in, out, frames);
}

void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<double> in, StereoOutput<double> out,
                  int frames) noexcept {
    process(coefficients, envelopeCoefficient, envelopes, in, out, frames);
}

MeterReadings readMeters(const Envelopes& envelopes) noexcept {
    // The difference follower counts as silent a hundred times lower than the
    // others: a nearly mono signal still has a width. Not an oversight.
    constexpr double silence = 1e-5;
    constexpr double diffSilence = 1e-7;
    return {reading(envelopes.sum, silence, envelopes.diff, diffSilence),
            reading(envelopes.right, silence, envelopes.left, silence)};
}

} // namespace mirelon

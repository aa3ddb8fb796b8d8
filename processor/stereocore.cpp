#include "processor/stereocore.h"

#include "processor/stereokernels.h"

#include <cmath>

namespace mirelon {
namespace {

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
    kernels::processWith<float>(kernels::chosen(),
                                {coefficients, envelopeCoefficient, envelopes, in, out, frames});
}

void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<double> in, StereoOutput<double> out,
                  int frames) noexcept {
    kernels::processWith<double>(kernels::chosen(),
                                 {coefficients, envelopeCoefficient, envelopes, in, out, frames});
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

#include "processor/stereocore.h"

#include "processor/stereokernels.h"

#include <cmath>

namespace mirelon {

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

} // namespace mirelon

#include "processor/core/coefficients.h"

#include <cmath>

namespace mirelon {
namespace {

// The integer part of v + 0.5, held to 0 and 1. The sum is rounded to single
// precision first, so the float just below 0.5 is already on. No conversion to
// an integer: NaN compares as off, infinities as their sign says.
float switchValue(float v) noexcept {
    return v + 0.5F >= 1.0F ? 1.0F : 0.0F;
}

// A linear cross-fade, 1 and 1 in the middle.
void crossFade(float v, float& rising, float& falling) noexcept {
    rising = v + v;
    falling = (1.0F - v) + (1.0F - v);
}

void applyWidth(Coefficients& coefficients, float v) noexcept {
    const float squared = (v + v) * (v + v);
    coefficients.widthSide = squared * 0.5F;
    coefficients.widthNorm = (3.0F / (squared + 2.0F)) * 0.5F;
}

// 24 dB over the whole range, 0 dB in the middle.
float linearGain(float v) noexcept {
    return static_cast<float>(std::pow(10.0, (static_cast<double>(v) - 0.5) * 1.2));
}

} // namespace

void applyParameter(Coefficients& coefficients, int index, float value) noexcept {
    switch (index) {
    case kParamWidth:
        applyWidth(coefficients, value);
        break;
    case kParamGain:
        coefficients.gainLin = linearGain(value);
        break;
    case kParamBalance:
        crossFade(value, coefficients.balanceL, coefficients.balanceR);
        break;
    case kParamStability:
        crossFade(value, coefficients.stabilityL, coefficients.stabilityR);
        break;
    case kParamCenterPos:
        // Half the way to either side only: the centre never leaves a channel.
        crossFade(value * 0.5F + 0.25F, coefficients.centerL, coefficients.centerR);
        break;
    case kParamProcess:
        coefficients.processOn = switchValue(value);
        break;
    case kParamPhase:
        coefficients.phaseOn = switchValue(value);
        break;
    case kParamInvertL:
        coefficients.invertL = switchValue(value);
        break;
    case kParamInvertR:
        coefficients.invertR = switchValue(value);
        break;
    default:
        break;
    }
}

float workingValue(const Coefficients& coefficients, int index) noexcept {
    switch (index) {
    case kParamWidth:
        return coefficients.widthSide;
    case kParamGain:
        return coefficients.gainLin;
    case kParamBalance:
        return coefficients.balanceL;
    case kParamStability:
        return coefficients.stabilityL;
    case kParamCenterPos:
        return coefficients.centerL;
    case kParamProcess:
        return coefficients.processOn;
    case kParamPhase:
        return coefficients.phaseOn;
    case kParamInvertL:
        return coefficients.invertL;
    case kParamInvertR:
        return coefficients.invertR;
    default:
        return 0.0F;
    }
}

} // namespace mirelon

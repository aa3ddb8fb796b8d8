#include "processor/core/coefficients.h"

#include <cmath>

namespace mirelon::laws {
namespace {

float squaredWidth(float value) noexcept {
    return (value + value) * (value + value);
}

float halfTheWay(float value) noexcept {
    return value * 0.5F + 0.25F;
}

} // namespace

float sideGain(float value) noexcept {
    return squaredWidth(value) * 0.5F;
}

float sideNorm(float value) noexcept {
    return (3.0F / (squaredWidth(value) + 2.0F)) * 0.5F;
}

float linearGain(float value) noexcept {
    return static_cast<float>(std::pow(10.0, (static_cast<double>(value) - 0.5) * 1.2));
}

float rising(float value) noexcept {
    return value + value;
}

float falling(float value) noexcept {
    return (1.0F - value) + (1.0F - value);
}

float risingByHalf(float value) noexcept {
    return rising(halfTheWay(value));
}

float fallingByHalf(float value) noexcept {
    return falling(halfTheWay(value));
}

// The integer part of value + 0.5, held to 0 and 1. The sum is rounded to single
// precision first, so the float just below 0.5 is already on. No conversion to
// an integer: NaN compares as off, infinities as their sign says.
float onOff(float value) noexcept {
    return value + 0.5F >= 1.0F ? 1.0F : 0.0F;
}

} // namespace mirelon::laws

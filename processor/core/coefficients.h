// What the audio path multiplies with, and the laws by which a parameter's
// normalised value becomes it.
#pragma once

namespace mirelon {

// The working values of all parameters; which parameter governs which stands in
// the table of parameters. All gain pairs are 1 and 1 in the middle; the switches
// are exactly 0 or 1.
struct Coefficients {
    float widthSide = 0.0F; // gain of the side signal, 0 to 2; 0.5 is unchanged
    float widthNorm = 0.0F; // a loudness-keeping companion of widthSide; kept, not applied
    float gainLin = 0.0F;   // input gain, linear
    float balanceL = 0.0F;  // output gains
    float balanceR = 0.0F;
    float stabilityL = 0.0F; // weights of the side signal
    float stabilityR = 0.0F;
    float centerL = 0.0F; // weights of the centre signal
    float centerR = 0.0F;
    float processOn = 0.0F;
    float phaseOn = 0.0F;
    float invertL = 0.0F;
    float invertR = 0.0F;
};

// From a normalised value to one working value. Any value, NaN and infinities
// included, is defined.
using Law = float(float value) noexcept;

namespace laws {

float sideGain(float value) noexcept;   // quadratic, 0 to 2
float sideNorm(float value) noexcept;   // falls as the side gain grows
float linearGain(float value) noexcept; // 24 dB over the whole range, 0 dB in the middle

// The two sides of a linear cross-fade, 1 and 1 in the middle.
float rising(float value) noexcept;
float falling(float value) noexcept;
// Half the way to either side only: the centre never leaves a channel.
float risingByHalf(float value) noexcept;
float fallingByHalf(float value) noexcept;

// On at 0.5 or more; NaN is off.
float onOff(float value) noexcept;

} // namespace laws
} // namespace mirelon

// What the audio path multiplies with, and how normalised values become it.
#pragma once

#include "processor/core/parameters.h"

namespace mirelon {

// The working values of all parameters. All gain pairs are 1 and 1 in the
// middle; the switches are exactly 0 or 1.
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

// Recomputes the values that parameter `index` governs from its normalised
// value, and no others. An index outside the table changes nothing; any value,
// NaN and infinities included, is defined (a switch is on at 0.5 or more).
void applyParameter(Coefficients& coefficients, int index, float value) noexcept;

// The one value that stands for a parameter in its own unit; 0 for an index
// outside the table.
float workingValue(const Coefficients& coefficients, int index) noexcept;

} // namespace mirelon

// Parameter values as short texts, for hosts and for the editor's read-outs.
//
// Every function writes a terminated text of at most 31 characters. A number
// outside what the format can show, and NaN where a number would stand, leaves
// the buffer untouched; the text appears in it only when it is whole. Where a
// text is for all values that others are not for, NaN has it too: "C", "-oo dB".
#pragma once

#include "processor/core/coefficients.h"

// `value` with `digits` decimals, at most eight characters in all. Rounds half
// away from zero (with 0.49999 as the threshold) and cuts. With digits below 0
// nothing is cut. Above 99999999 or below -9999999: untouched.
void float2string2(float value, int digits, char* text) noexcept;

// The rounding step of float2string2: moves `value` up by one unit of the last
// kept decimal when what is to be cut is half a unit or more.
double round(double value, int digits) noexcept;

// Used by the editor's read-outs.
void parameterNameStringConvert(float value, char* text) noexcept; // caption by index
void percentStringConvert(float value, char* text) noexcept;       // 1 is "100%"
void dBStringConvert(float value, char* text) noexcept;            // linear gain
// Left of the middle "L1" to "L50", right of it "R1" to "R50". The two sides
// are scaled differently so that each starts at 1 just outside the middle.
void panoramaStringConvert(float value, char* text) noexcept;

// For read-outs in other units.
void frequencyStringConvert(float value, char* text) noexcept; // Hz
void dampStringConvert(float value, char* text) noexcept;
void stepStringConvert(float value, char* text) noexcept;
void strictStringConvert(float value, char* text) noexcept;

namespace mirelon {

// What a host shows beside parameter `index`, from its normalised value and
// the working switches. An index outside the table leaves the text untouched.
void parameterDisplay(int index, float value, const Coefficients& coefficients,
                      char* text) noexcept;

} // namespace mirelon

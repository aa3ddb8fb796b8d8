// Numbers as the short texts that hosts and the editor's read-outs show.
//
// What every function that forms a text promises: it has at most 31 characters and is
// terminated; it goes into the buffer complete or not at all. Where there is no
// number that the format could take (too large, or NaN), the buffer keeps what it
// held. Only a text that means "everything else", like "C" or "-oo dB", is also
// that of NaN.
#pragma once

#include <algorithm>
#include <string_view>

// Decimal notation, eight characters at the most, `digits` of them behind the
// point (below 0: as many as there is room for). Ties, and what is within 0.00001
// of one, go away from zero. Shows -9999999 to 99999999.
void float2string2(float value, int digits, char* text) noexcept;

// How float2string2 rounds before it cuts decimals off: a value whose surplus
// makes up half of the last decimal that stays is moved one such decimal away from
// zero, any other is returned as it is.
double round(double value, int digits) noexcept;

// The editor's read-outs.
void parameterNameStringConvert(float value, char* text) noexcept; // caption by number
void percentStringConvert(float value, char* text) noexcept;       // 1 is "100%"
void dBStringConvert(float value, char* text) noexcept;            // of a linear gain
// A position from right ("R50" at 0) over "C" to left ("L50" at 1). Each side has
// a scale of its own, on which its numbers begin with 1 where "C" ends.
void panoramaStringConvert(float value, char* text) noexcept;

// Read-outs for other units; no control has one of these today.
void frequencyStringConvert(float value, char* text) noexcept; // Hz
void dampStringConvert(float value, char* text) noexcept;
void stepStringConvert(float value, char* text) noexcept;
void strictStringConvert(float value, char* text) noexcept;

namespace mirelon {

// The source, terminated, into a buffer that has room for it.
inline void copyText(std::string_view source, char* text) noexcept {
    // Not memcpy: an empty view may point nowhere.
    *std::ranges::copy(source, text).out = '\0';
}

// A parameter's value as a host shows it, from the normalised value and the one in
// the parameter's own unit.
using Display = void(float value, float working, char* text) noexcept;

namespace displays {

void width(float value, float working, char* text) noexcept;    // %
void gain(float value, float working, char* text) noexcept;     // dB
void position(float value, float working, char* text) noexcept; // "50R" to "50L"
void onOff(float value, float working, char* text) noexcept;
void polarityL(float value, float working, char* text) noexcept;
void polarityR(float value, float working, char* text) noexcept;

} // namespace displays
} // namespace mirelon

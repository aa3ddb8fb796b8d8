// Names of MIDI controllers, and conversions between values and steps.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace mirelon {

inline constexpr std::size_t controllerNameSize = 13; // terminator included
using ControllerName = std::array<char, controllerNameSize>;

} // namespace mirelon

// Controllers 0 to 127, then "not assigned" and an empty name.
inline constexpr std::size_t kNumControllerNames = 130;
extern const std::array<mirelon::ControllerName, kNumControllerNames> ccnames;

// Writes the name that `value` (0 to 1) selects among the 130 into `text`, which
// has room for 13 bytes. Below 0 and for NaN: see float2long;
// an index below the table gives the empty text.
void convertCC(float value, char* text);

// The step, of `n`, in which `value` lies: at most n - 1, below 0 for values
// below 0. NaN is taken as 0.
long float2long(float value, long n);
// The middle of step `i` of `n`.
float long2float(long i, long n);

// The same in plain form: the step by truncation towards zero, at most n - 1
// (NaN is taken as 0), and the middle of a step.
int paramContToLong(float value, int n);
float paramLongToCont(int i, int n);

// The parameters' values and texts as CLAP hosts have them: 0 to 1, as the effect
// has them itself, but never anything else, and of a switch only the two ends.
#pragma once

#include "processor/core/parameters.h"

#include <optional>
#include <span>
#include <string_view>

namespace mirelon::clap {

// `index` is 0 to 8 in all of these. Any thread.

// The effect's value as a host reads it. Not a number is 0.
double hostValueOf(int index, float value) noexcept;

// What the effect, at `current`, is to take when the host sets a value, which is
// taken to the nearer end if it lies outside. Nothing when it says no more than
// the host could have read, so that what a state holds stays exact to the bit,
// and nothing for what is not a number.
std::optional<float> changeByHost(int index, float current, double hostValue) noexcept;

// The value with its unit, as "156.25 %" or "30R", terminated. False, and the text
// untouched, when there is no room for it.
bool textOfHostValue(int index, double hostValue, std::span<char> text) noexcept;

// What such a text stands for; nothing for any other text.
std::optional<double> hostValueOfText(int index, std::string_view text) noexcept;

} // namespace mirelon::clap

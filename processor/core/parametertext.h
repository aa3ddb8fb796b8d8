// The way back from a parameter's text to its value.
#pragma once

#include <optional>
#include <string_view>

namespace mirelon {

// Reads a parameter's text, which is in lower case, has a point before the decimals
// and no blanks around it; nothing if it is none.
using Reader = std::optional<float>(std::string_view text) noexcept;

namespace readers {

std::optional<float> width(std::string_view text) noexcept;    // %
std::optional<float> gain(std::string_view text) noexcept;     // dB
std::optional<float> position(std::string_view text) noexcept; // "50r" to "50l"
std::optional<float> onOff(std::string_view text) noexcept;
std::optional<float> polarityL(std::string_view text) noexcept;
std::optional<float> polarityR(std::string_view text) noexcept;

} // namespace readers

// The normalised value that `text` stands for as parameter `index`. Everything
// that hosts and the window show is understood, and shown again as it was read:
//
//   width      "156.25", "156.25 %", "156%": percent, 0 to 400
//   gain       "4.3", "4.3 dB", "-12.00", "+3 dB"; "-oo dB" is the lower end
//   positions  "12L", "30 R", "C": per cent of the way, as hosts show it
//              "L12", "R30": as the window shows it (left of the middle its scale
//              is another); a plain number is as "12L" when positive, as "12R"
//              when negative
//   switches   "On", "Off", also what the polarity switches show, "-L" (on) and
//              "+L" (off); a number is on from 0.5
//
// A point or a comma before the decimals; letters of either case; blanks around
// and before the unit do not count. A number beyond the end of the range is
// taken to that end: "200 dB" is +12 dB. Nothing for an index outside the table
// and for any other text. Both ends and the middle of a range are exact.
std::optional<float> parameterValueOf(int index, std::string_view text) noexcept;

} // namespace mirelon

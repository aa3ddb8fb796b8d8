// Finds the value for which a parameter shows a text, by looking at what it shows.
#pragma once

#include "hosting/effect.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirelon::tools {

// A text as a number and what follows it: "20L" is 20 and "L", "-6,5 dB" is -6.5
// and "dB". `step` is what its last digit counts: 0.1 for "6.5".
struct ShownNumber {
    double number;
    std::string unit;
    double step;
};

// Nothing for a text that does not begin with a finite number.
std::optional<ShownNumber> shownNumber(std::string_view text);

// The text without the parameter's label, where it ends in it: "-6 dB" is "-6".
std::string_view withoutLabel(std::string_view text, std::string_view label);

// Moves the parameter all along its range, and puts it back at the end of its life.
class DisplaySearch {
  public:
    DisplaySearch(hosting::Effect& effect, VstInt32 index);
    ~DisplaySearch();
    DisplaySearch(const DisplaySearch&) = delete;
    DisplaySearch& operator=(const DisplaySearch&) = delete;

    // For a text that is shown, the middle of the values that show it. Numbers are
    // compared as numbers, with either decimal mark, and a unit may be left out when
    // all that is shown has the same. The ends of the range and the parameter's
    // present value are exact where they show what is wanted. A number beyond what
    // is shown is taken to that end of the range. Nothing for any other text.
    std::optional<float> find(std::string_view wanted) const;

    // "FIRST" to "LAST", as shown at the ends of the range.
    std::string range() const;

  private:
    const std::string& at(int step) const { return shown[static_cast<std::size_t>(step)]; }
    std::string display(float value) const;
    std::optional<float> sameText(std::string_view wanted) const;
    std::optional<float> sameNumber(ShownNumber wanted) const;
    std::optional<float> beyondTheEnds(const ShownNumber& wanted) const;
    std::string commonUnit() const;
    float edge(int step, bool rising, bool past, const ShownNumber& wanted) const;

    hosting::Effect& effect;
    VstInt32 index;
    float original;
    std::string label;
    std::string shownAtFirst;
    std::vector<std::string> shown; // without the label
};

} // namespace mirelon::tools

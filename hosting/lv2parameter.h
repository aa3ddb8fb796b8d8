// The control inputs of an LV2 plug-in as parameters from 0 to 1.
#pragma once

#include "hosting/lv2bundle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::hosting {

// A number of a port that has a name.
struct Lv2ScalePoint {
    std::string label;
    float number;
};

// 0 to 1 goes evenly over the port's range, or by its logarithm where the port
// says so, and counts the named numbers of an enumeration. Mirelon's own ports
// have the values that its parameters have in VST 2.4.
class Lv2Parameter {
  public:
    enum class Kind { continuous, logarithmic, integer, toggle, enumeration };

    float numberOf(float value) const noexcept;
    // 0 for NaN, and the nearer end for a number outside.
    float valueOf(float number) const noexcept;
    // Without the unit.
    std::string display(float number) const;
    // The number that a text means: one as displayed, with or without the unit,
    // or a name. Nothing for what lies outside the range.
    std::optional<float> read(const std::string& text) const;

    std::uint32_t port = 0;
    std::string symbol{};
    std::string name{};
    std::string unit{};
    Kind kind = Kind::continuous;
    float minimum = 0.0F;
    float maximum = 1.0F;
    std::vector<Lv2ScalePoint> points{}; // by their numbers
    std::optional<int> mirelonIndex{};   // of Mirelon's parameter
};

// In the order of the ports.
std::vector<Lv2Parameter> lv2Parameters(const Lv2Bundle& bundle);

} // namespace mirelon::hosting

// Parameter values as the numbers that the LV2 ports carry.
//
// A generic panel and an automation lane show a port's number as it stands, so
// ports carry users' units: width in per cent (0 to 400), gain in dB (-12 to
// +12), positions from -50 (right) to +50 (left), switches 0 or 1.
#pragma once

#include "processor/core/parameters.h"

#include <optional>

namespace mirelon::lv2 {

struct PortRange {
    float minimum;
    float maximum;
};
// Index 0 to 8, here and below.
PortRange portRange(int index) noexcept;

// The port's number for a normalised value.
float portValueOf(int index, float value) noexcept;

// The normalised value for a port's number, which is taken to the nearer end
// of the range when it lies outside; a switch is on above 0. Nothing for NaN.
std::optional<float> valueOfPort(int index, float port) noexcept;

// What a port's number makes of a parameter that has the value `current`:
// nothing when that stays. It stays when `port` is the very number that it
// shows in the port, since several values have the same one, and the exact
// value is the state's.
std::optional<float> changeByPort(int index, float current, float port) noexcept;

} // namespace mirelon::lv2

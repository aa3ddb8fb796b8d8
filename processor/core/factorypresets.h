// The eleven presets that the product comes with.
#pragma once

#include "processor/core/parameters.h"

#include <array>
#include <initializer_list>
#include <string_view>

namespace mirelon {

// Normalised, in parameter order.
using ParameterValues = std::array<float, kNumParams>;

struct FactoryPreset {
    std::string_view name;
    ParameterValues values;
};

struct ParameterChange {
    ParameterIndex index;
    float value; // normalised
};

// Every parameter's initial value, but for the changes.
constexpr ParameterValues initialValuesBut(std::initializer_list<ParameterChange> changes) {
    ParameterValues values{};
    for (const Parameter& parameter : parameterTable)
        values[static_cast<std::size_t>(parameter.index)] = parameter.initial;
    for (const ParameterChange& change : changes)
        values[static_cast<std::size_t>(change.index)] = change.value;
    return values;
}

// The spelling "balanse" and the swapped channels of the two balance presets
// are part of the product's sound and stay.
inline constexpr std::array factoryPresets{
    FactoryPreset{"init", initialValuesBut({})},
    FactoryPreset{"extended width", initialValuesBut({{kParamWidth, 0.625F}})},
    FactoryPreset{"reduced width", initialValuesBut({{kParamWidth, 0.375F}})},
    FactoryPreset{"balanse to the left",
                  initialValuesBut({{kParamBalance, 0.7F}, {kParamPhase, 1.0F}})},
    FactoryPreset{"balanse to the right",
                  initialValuesBut({{kParamBalance, 0.3F}, {kParamPhase, 1.0F}})},
    FactoryPreset{"side bal left", initialValuesBut({{kParamStability, 0.75F}})},
    FactoryPreset{"side bal right", initialValuesBut({{kParamStability, 0.25F}})},
    FactoryPreset{"center shift left", initialValuesBut({{kParamCenterPos, 0.8F}})},
    FactoryPreset{"center shift right", initialValuesBut({{kParamCenterPos, 0.2F}})},
    FactoryPreset{"out of phase", initialValuesBut({{kParamInvertR, 1.0F}})},
    FactoryPreset{"swapped", initialValuesBut({{kParamPhase, 1.0F}})},
};

} // namespace mirelon

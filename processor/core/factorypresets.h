// The eleven presets that the product comes with.
#pragma once

#include "processor/core/parameters.h"

#include <array>
#include <string_view>

namespace mirelon {

using ParameterValues = std::array<float, kNumParams>;

struct FactoryPreset {
    std::string_view name;
    ParameterValues values; // normalised, in parameter order
};

// The spelling "balanse" and the swapped channels of the two balance presets
// are part of the product's sound and stay.
inline constexpr std::array<FactoryPreset, 11> factoryPresets{{
    {"init", {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"extended width", {0.625F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"reduced width", {0.375F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"balanse to the left", {0.5F, 0.5F, 0.7F, 0.5F, 0.5F, 1.0F, 1.0F, 0.0F, 0.0F}},
    {"balanse to the right", {0.5F, 0.5F, 0.3F, 0.5F, 0.5F, 1.0F, 1.0F, 0.0F, 0.0F}},
    {"side bal left", {0.5F, 0.5F, 0.5F, 0.75F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"side bal right", {0.5F, 0.5F, 0.5F, 0.25F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"center shift left", {0.5F, 0.5F, 0.5F, 0.5F, 0.8F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"center shift right", {0.5F, 0.5F, 0.5F, 0.5F, 0.2F, 1.0F, 0.0F, 0.0F, 0.0F}},
    {"out of phase", {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 1.0F}},
    {"swapped", {0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 1.0F, 0.0F, 0.0F}},
}};

} // namespace mirelon

// The parameters. Each is one index and one row of the table: what a host is told
// of it, which coefficients it governs and by which laws, and how its value reads.
// What the table leaves out does not compile (parameters.cpp).
#pragma once

#include "processor/core/coefficients.h"
#include "processor/core/displaytext.h"

#include <array>
#include <cstddef>

// Indices are part of the file formats and of hosts' automation.
enum ParameterIndex : int {
    kParamWidth,
    kParamGain,
    kParamBalance,
    kParamStability,
    kParamCenterPos,
    kParamProcess,
    kParamPhase,
    kParamInvertL,
    kParamInvertR,
    kNumParams
};

namespace mirelon {

enum class ParameterKind { continuous, onOff };

// A coefficient, and how it follows from the parameter's normalised value.
struct Governed {
    float Coefficients::*coefficient = nullptr;
    Law law = nullptr;
};

struct Parameter {
    ParameterIndex index;
    // Within the row: pointers would have to be adjusted whenever the plug-in is loaded.
    char name[10];
    char label[10]; // blanks included: hosts show it centred
    ParameterKind kind;
    float initial; // normalised
    // One or two. The first is the parameter's value in its own unit.
    std::array<Governed, 2> governs;
    Display display;
};

inline constexpr std::array<Parameter, kNumParams> parameterTable{{
    {kParamWidth,
     "width",
     "    %   ",
     ParameterKind::continuous,
     0.5F,
     {{{&Coefficients::widthSide, laws::sideGain}, {&Coefficients::widthNorm, laws::sideNorm}}},
     displays::width},
    {kParamGain,
     "gain",
     "   dB   ",
     ParameterKind::continuous,
     0.5F,
     {{{&Coefficients::gainLin, laws::linearGain}}},
     displays::gain},
    {kParamBalance,
     "balance",
     "       ",
     ParameterKind::continuous,
     0.5F,
     {{{&Coefficients::balanceL, laws::rising}, {&Coefficients::balanceR, laws::falling}}},
     displays::position},
    {kParamStability,
     "stability",
     "         ",
     ParameterKind::continuous,
     0.5F,
     {{{&Coefficients::stabilityL, laws::rising}, {&Coefficients::stabilityR, laws::falling}}},
     displays::position},
    {kParamCenterPos,
     "centerPos",
     "         ",
     ParameterKind::continuous,
     0.5F,
     {{{&Coefficients::centerL, laws::risingByHalf},
       {&Coefficients::centerR, laws::fallingByHalf}}},
     displays::position},
    {kParamProcess,
     "process",
     "         ",
     ParameterKind::onOff,
     1.0F,
     {{{&Coefficients::processOn, laws::onOff}}},
     displays::onOff},
    {kParamPhase,
     "phase",
     "         ",
     ParameterKind::onOff,
     0.0F,
     {{{&Coefficients::phaseOn, laws::onOff}}},
     displays::onOff},
    {kParamInvertL,
     "-L",
     "    ",
     ParameterKind::onOff,
     0.0F,
     {{{&Coefficients::invertL, laws::onOff}}},
     displays::polarityL},
    {kParamInvertR,
     "-R",
     "    ",
     ParameterKind::onOff,
     0.0F,
     {{{&Coefficients::invertR, laws::onOff}}},
     displays::polarityR},
}};

constexpr bool isParameter(int index) noexcept {
    return index >= 0 && index < kNumParams;
}

// For an index of the table.
constexpr const Parameter& parameterAt(int index) noexcept {
    return parameterTable[static_cast<std::size_t>(index)];
}

// How many there are of a kind: who keeps one thing for each can check the number.
constexpr std::size_t numberOf(ParameterKind kind) noexcept {
    std::size_t number = 0;
    for (const Parameter& parameter : parameterTable)
        number += parameter.kind == kind ? 1 : 0;
    return number;
}

// Recomputes the coefficients that parameter `index` governs from its normalised
// value, and no others. An index outside the table changes nothing; any value,
// NaN and infinities included, is defined.
void applyParameter(Coefficients& coefficients, int index, float value) noexcept;

// The one value that stands for a parameter in its own unit; 0 for an index
// outside the table.
float workingValue(const Coefficients& coefficients, int index) noexcept;

// What a host shows beside parameter `index`, from its normalised value and its
// working value. An index outside the table leaves the text untouched.
void parameterDisplay(int index, float value, const Coefficients& coefficients,
                      char* text) noexcept;

} // namespace mirelon

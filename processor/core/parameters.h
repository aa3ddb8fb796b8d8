// The parameters. Each is one index and one row of the table: what a host is told
// of it, which coefficients it governs and by which laws, how its value reads and
// how such a text is understood. What the table leaves out does not compile
// (parameterchecks.h). Longer than other headers because every row stands here.
#pragma once

#include "processor/core/coefficients.h"
#include "processor/core/displaytext.h"
#include "processor/core/parametertext.h"

#include <array>
#include <cstddef>
#include <optional>

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

// Whose parameters these are: the effect's number in states, files and towards
// hosts, "MrLn" as four characters. Part of the file formats.
inline constexpr int effectId = 0x4D724C6E;

enum class ParameterKind { continuous, onOff };

// A coefficient, and how it follows from the parameter's normalised value.
struct Governed {
    float Coefficients::*coefficient;
    Law& law;
};

struct Parameter {
    ParameterIndex index;
    // Within the row: pointers would have to be adjusted whenever the plug-in is loaded.
    char name[10];
    char label[10]; // blanks included: hosts show it centred
    ParameterKind kind;
    float initial; // normalised
    Display& display;
    Reader& reader;                         // what undoes the display
    Governed working;                       // the value in the parameter's own unit
    std::optional<Governed> companion = {}; // of parameters with two coefficients
};

inline constexpr std::array<Parameter, kNumParams> parameterTable{{
    {.index = kParamWidth,
     .name = "width",
     .label = "    %   ",
     .kind = ParameterKind::continuous,
     .initial = 0.5F,
     .display = displays::width,
     .reader = readers::width,
     .working = {&Coefficients::widthSide, laws::sideGain},
     .companion = Governed{&Coefficients::widthNorm, laws::sideNorm}},
    {.index = kParamGain,
     .name = "gain",
     .label = "   dB   ",
     .kind = ParameterKind::continuous,
     .initial = 0.5F,
     .display = displays::gain,
     .reader = readers::gain,
     .working = {&Coefficients::gainLin, laws::linearGain}},
    {.index = kParamBalance,
     .name = "balance",
     .label = "       ",
     .kind = ParameterKind::continuous,
     .initial = 0.5F,
     .display = displays::position,
     .reader = readers::position,
     .working = {&Coefficients::balanceL, laws::rising},
     .companion = Governed{&Coefficients::balanceR, laws::falling}},
    {.index = kParamStability,
     .name = "stability",
     .label = "         ",
     .kind = ParameterKind::continuous,
     .initial = 0.5F,
     .display = displays::position,
     .reader = readers::position,
     .working = {&Coefficients::stabilityL, laws::rising},
     .companion = Governed{&Coefficients::stabilityR, laws::falling}},
    {.index = kParamCenterPos,
     .name = "centerPos",
     .label = "         ",
     .kind = ParameterKind::continuous,
     .initial = 0.5F,
     .display = displays::position,
     .reader = readers::position,
     .working = {&Coefficients::centerL, laws::risingByHalf},
     .companion = Governed{&Coefficients::centerR, laws::fallingByHalf}},
    {.index = kParamProcess,
     .name = "process",
     .label = "         ",
     .kind = ParameterKind::onOff,
     .initial = 1.0F,
     .display = displays::onOff,
     .reader = readers::onOff,
     .working = {&Coefficients::processOn, laws::onOff}},
    {.index = kParamPhase,
     .name = "phase",
     .label = "         ",
     .kind = ParameterKind::onOff,
     .initial = 0.0F,
     .display = displays::onOff,
     .reader = readers::onOff,
     .working = {&Coefficients::phaseOn, laws::onOff}},
    {.index = kParamInvertL,
     .name = "-L",
     .label = "    ",
     .kind = ParameterKind::onOff,
     .initial = 0.0F,
     .display = displays::polarityL,
     .reader = readers::polarityL,
     .working = {&Coefficients::invertL, laws::onOff}},
    {.index = kParamInvertR,
     .name = "-R",
     .label = "    ",
     .kind = ParameterKind::onOff,
     .initial = 0.0F,
     .display = displays::polarityR,
     .reader = readers::polarityR,
     .working = {&Coefficients::invertR, laws::onOff}},
}};

constexpr bool isParameter(int index) noexcept {
    return index >= 0 && index < kNumParams;
}

// For an index of the table.
constexpr const Parameter& parameterAt(int index) noexcept {
    return parameterTable[static_cast<std::size_t>(index)];
}

// How many there are of a kind: what keeps one thing for each can check the number.
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

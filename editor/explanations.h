// What the window says of each of its parts, beside layout.h and panellayout.h,
// which say where they stand: every control there has a text here.
#pragma once

#include "editor/layout.h"
#include "presetsystem/panellayout.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

class EffectLink;

namespace mirelon {

namespace explanations {

// "{}" stands for the value.
struct OfParameter {
    ParameterIndex parameter;
    std::string_view control;
    std::string_view readOut; // none: a switch
};
inline constexpr auto parameters = std::to_array<OfParameter>({
    {kParamWidth, "{}: side level. Shift: fine; double/ctrl click: 100%",
     "double click: type the width, 0 to 400 %"},
    {kParamGain, "{}: input level. Shift: fine; double/ctrl click: 0 dB",
     "double click: type the gain, -12 to 12 dB"},
    {kParamBalance, "{}: level of L and R. Shift: fine; double/ctrl click: C",
     "double click: type the balance, R50 to L50"},
    {kParamStability, "{}: tilt of the sides. Shift: fine; double/ctrl click: C",
     "double click: type the stability, R50 to L50"},
    {kParamCenterPos, "{}: place of the centre. Shift: fine; double/ctrl click: C",
     "double click: type the centre, R50 to L50"},
    {kParamProcess, "{}: without it the input passes untouched", ""},
    {kParamPhase, "{}: swaps the two input channels", ""},
    {kParamInvertL, "{}: inverts the left input", ""},
    {kParamInvertR, "{}: inverts the right input", ""},
});

struct OfMeter {
    layout::Reading reading;
    std::string_view text;
};
inline constexpr auto meters = std::to_array<OfMeter>({
    {layout::Reading::width, "output: mid over side {} dB"},
    {layout::Reading::balance, "output: right over left {} dB"},
});

// "{}" stands for the current preset's whole name, which the field may shorten.
struct OfPanel {
    panel::Tag tag;
    std::string_view text;
};
inline constexpr auto panelControls = std::to_array<OfPanel>({
    {panel::nameTag, "{}: click, type, Return"},
    {panel::rockerTag, "previous preset, next preset"},
    {panel::loadBankTag, "load a bank. Right click: of the other byte order"},
    {panel::saveBankTag, "save all eleven presets to a file"},
    {panel::loadPresetTag, "load a preset. Right click: of the other byte order"},
    {panel::savePresetTag, "save the preset to a file"},
    {panel::menuTag, "choose one of the eleven presets"},
    {panel::defaultBankTag, "double click: bank of new instances; with ctrl: forget it"},
    {panel::defaultPresetTag, "double click: preset of new instances; with ctrl: forget it"},
    {panel::storeATag, "store the preset in memory A"},
    {panel::storeBTag, "store the preset in memory B"},
    {panel::recallATag, "recall memory A into the preset"},
    {panel::recallBTag, "recall memory B into the preset"},
});

inline constexpr std::string_view about = "version and maker";
inline constexpr std::string_view title = "right click: size of the window";
inline constexpr std::string_view memoryLetter = "lit: the preset is as this memory holds it";

constexpr bool everythingIsExplained() {
    for (const layout::SliderRow& row : layout::sliderRows)
        if (std::ranges::count_if(parameters, [&](const OfParameter& of) {
                return of.parameter == row.parameter && !of.control.empty() && !of.readOut.empty();
            }) != 1)
            return false;
    for (const layout::Switch& row : layout::switches)
        if (std::ranges::count_if(parameters, [&](const OfParameter& of) {
                return of.parameter == row.parameter && !of.control.empty();
            }) != 1)
            return false;
    for (const layout::Meter& meter : layout::meters)
        if (std::ranges::count_if(meters, [&](const OfMeter& of) {
                return of.reading == meter.reading && !of.text.empty();
            }) != 1)
            return false;
    for (const panel::Control& control : panel::controls)
        if (std::ranges::count_if(panelControls, [&](const OfPanel& of) {
                return of.tag == control.tag && !of.text.empty();
            }) != 1)
            return false;
    return true;
}
static_assert(everythingIsExplained(), "each control needs one text");

} // namespace explanations

// A part of the window that has an explanation.
struct Subject {
    enum class Part { parameter, readOut, meter, panelControl, about, title, memoryLetter };
    Part part;
    int index = 0; // the parameter, reading or tag

    bool operator==(const Subject&) const = default;
};

// What stands at this point, in pixels at scale 1; nothing where nothing stands.
std::optional<Subject> subjectAt(const VSTGUI::CPoint& point);

// With the effect's values of this moment.
std::string explanationOf(const Subject& subject, EffectLink& effect);

} // namespace mirelon

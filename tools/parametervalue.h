// Parameters and their values as a user writes them.
#pragma once

#include "hosting/effect.h"

#include <string>
#include <vector>

namespace mirelon::tools {

std::vector<std::string> parameterNames(const hosting::Effect& effect);

// What a number in a setting counts.
enum class Scale {
    shown,      // the unit that the parameter shows: "1" is 1 dB
    normalised, // 0 to 1
};

// A setting as it was typed.
struct TypedSetting {
    std::string text;
    Scale scale = Scale::shown;
};

struct ParameterSetting {
    VstInt32 index;
    float value;        // normalised
    std::string remark; // a line for the user where another value was taken; or empty
};

struct ParameterRamp {
    ParameterSetting first;
    ParameterSetting last;
};

// "NAME=VALUE" and "NAME=FIRST:LAST". On the normalised scale a value is a number
// from 0 to 1. Else it is what the effect shows, with or without the unit ("-6 dB",
// "1", "20L", "Off"). Mirelon's texts are read as its window reads them. Another
// effect is asked to convert the text; if it does not, its displays are searched.
// Both move the parameter and put it back. What lies beyond the range is taken to
// its end, with a remark. Throw CommandError for unknown names and for values that
// the effect never shows.
ParameterSetting parseSetting(hosting::Effect& effect, const TypedSetting& setting);
ParameterRamp parseRamp(hosting::Effect& effect, const TypedSetting& setting);

// "width 156.25 %": name, display and label.
std::string parameterText(const hosting::Effect& effect, VstInt32 index);

} // namespace mirelon::tools

// Parameters and their values as a user writes them.
#pragma once

#include "hosting/effect.h"

#include <string>
#include <vector>

namespace mirelon::tools {

std::vector<std::string> parameterNames(const hosting::Effect& effect);

struct ParameterSetting {
    VstInt32 index;
    float value; // normalised
};

struct ParameterRamp {
    VstInt32 index;
    float first; // normalised
    float last;  // normalised
};

// "NAME=VALUE" and "NAME=FIRST:LAST". A value is a number from 0 to 1, taken as
// the normalised value, or else a text that the effect shows for one ("-6 dB",
// "20L", "Off"): the effect's own conversion is asked first, then its displays
// are searched, which moves the parameter and puts it back. Throw CommandError
// for unknown names and for values that the effect never shows.
ParameterSetting parseSetting(hosting::Effect& effect, const std::string& text);
ParameterRamp parseRamp(hosting::Effect& effect, const std::string& text);

// "width 156.25 %": name, display and label.
std::string parameterText(const hosting::Effect& effect, VstInt32 index);

} // namespace mirelon::tools

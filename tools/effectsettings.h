// What a user asks of an effect before it is put to use.
#pragma once

#include "tools/parametervalue.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::tools {

struct EffectSettings {
    std::optional<std::string> preset;  // number or name; nothing: the effect's own stays
    std::vector<TypedSetting> settings; // each NAME=VALUE, over the preset
};

// Chooses a preset by number or name. Throws CommandError, naming what is unknown;
// the empty name is nobody's. Answers `preset 1 "swapped"`.
std::string choosePreset(hosting::Effect& effect, const std::string& numberOrName);

// Sets a parameter. Throws CommandError, naming what is unknown. A remark goes to
// `remark`. Answers "width 156.25 %".
using Remark = std::function<void(const std::string& line)>;
std::string applySetting(hosting::Effect& effect, const TypedSetting& setting,
                         const Remark& remark);

// The preset, then the settings. Throws as above; remarks go to standard error.
void applySettings(hosting::Effect& effect, const EffectSettings& wanted);

} // namespace mirelon::tools

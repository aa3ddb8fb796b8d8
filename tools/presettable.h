// Presets as a table for people.
#pragma once

#include "hosting/effect.h"
#include "presetsystem/presetrecord.h"

#include <optional>
#include <span>

namespace mirelon::tools {

// One line each: number (where there are several), name and the values as the
// effect shows them, which moves its parameters. Values that are not 0 to 1
// stand as numbers with an exclamation mark.
void printPresets(hosting::Effect& effect, std::span<const PresetRecord> presets);

} // namespace mirelon::tools

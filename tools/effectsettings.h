// What a user asks of an effect before it is put to use.
#pragma once

#include "hosting/effect.h"

#include <string>
#include <vector>

namespace mirelon::tools {

// Applies a preset (number or name; empty: the effect's own stays), then the
// settings, each NAME=VALUE. Throws CommandError, naming what is unknown.
void applySettings(hosting::Effect& effect, const std::string& preset,
                   const std::vector<std::string>& settings);

} // namespace mirelon::tools

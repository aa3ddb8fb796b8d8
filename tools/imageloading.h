// Loading preset and bank files into a plug-in that is being hosted.
#pragma once

#include "hosting/effectbank.h"

#include <filesystem>

namespace mirelon::tools {

// All throw CommandError when the effect is not one that keeps such a bank.
hosting::EffectBank requiredBankOf(const hosting::Effect& effect);

// As the editor loads them: a bank file replaces the bank and applies preset 0,
// a preset file replaces the current preset and applies it. Throw CommandError
// for unfit files and when the effect does not take them.
void loadBankFile(hosting::Effect& effect, const std::filesystem::path& file);
void loadPresetFile(hosting::Effect& effect, const std::filesystem::path& file);

} // namespace mirelon::tools

// The bank inside a loaded Mirelon, reached by its state chunk.
#pragma once

#include "hosting/effect.h"
#include "presetsystem/presetrecord.h"

#include <filesystem>

namespace mirelon::tools {

// All throw CommandError when the effect is not one that keeps such a bank.
struct EffectBank {
    PresetBank presets{};
    std::size_t current = 0;
};
EffectBank bankOf(const hosting::Effect& effect);

// Gives the effect the bank and applies its current preset. Throws CommandError
// when the effect does not take it.
void giveBank(hosting::Effect& effect, const EffectBank& bank);

// As the editor loads them: a bank file replaces the bank and applies preset 0,
// a preset file replaces the current preset and applies it.
void loadBankFile(hosting::Effect& effect, const std::filesystem::path& file);
void loadPresetFile(hosting::Effect& effect, const std::filesystem::path& file);

} // namespace mirelon::tools

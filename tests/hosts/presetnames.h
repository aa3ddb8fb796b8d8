// The names of the presets in the chunk that a host keeps.
#pragma once

#include "hosting/effectbank.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace mirelon::test {

constexpr VstInt32 pluginId = fourCharacters("MrLn");

inline hosting::EffectBank bankIn(const std::vector<std::byte>& chunk) {
    const auto bank = hosting::EffectBank::in(chunk, pluginId);
    if (!bank)
        throw std::runtime_error("no chunk of the plug-in's");
    return *bank;
}

inline std::vector<std::string> presetNames(const std::vector<std::byte>& chunk) {
    std::vector<std::string> names;
    for (const PresetRecord& preset : bankIn(chunk).presets)
        names.emplace_back(preset.name().data());
    return names;
}

// The chunk with a name of its own for every preset.
inline std::vector<std::byte> withRenamedPresets(const std::vector<std::byte>& chunk) {
    hosting::EffectBank bank = bankIn(chunk);
    for (std::size_t i = 0; i < bank.presets.size(); ++i)
        bank.presets[i].setName(std::string("renamed by the user ").append(std::to_string(i)));
    return bank.chunk(pluginId);
}

} // namespace mirelon::test

// A state chunk in a file of its own, byte for byte.
#pragma once

#include "hosting/effect.h"

#include <cstddef>
#include <filesystem>
#include <vector>

namespace mirelon::tools {

// The state as a host would save it. Throws CommandError when the effect keeps
// none.
std::vector<std::byte> stateOf(const hosting::Effect& effect);

// Throws CommandError when the file cannot be read or is too long for a state.
std::vector<std::byte> readChunkFile(const std::filesystem::path& file);

// Hands the file's bytes to the effect. Throws CommandError when the effect
// does not take them.
void loadChunkFile(hosting::Effect& effect, const std::filesystem::path& file);

} // namespace mirelon::tools

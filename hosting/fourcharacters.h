// Identifiers of four characters as texts.
#pragma once

#include "shell/vst24.h"

#include <cstdint>
#include <string>

namespace mirelon::hosting {

// The inverse of fourCharacters; a byte that is no ASCII character to be shown
// becomes a question mark.
inline std::string fourCharacterText(VstInt32 identifier) {
    std::string text;
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        const auto byte = static_cast<std::uint32_t>(identifier) >> (shift - 8U) & 0xFFU;
        text += byte >= 0x20U && byte < 0x7FU ? static_cast<char>(byte) : '?';
    }
    return text;
}

} // namespace mirelon::hosting

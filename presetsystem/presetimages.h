// The preset file, the bank file and the controller map as fixed byte images.
//
// All three begin with the owner ID (a word in the writer's byte order) and a
// type byte. Pure byte functions: no file, no effect, no editor.
#pragma once

#include "presetsystem/presetrecord.h"

#include <array>
#include <cstddef>
#include <cstdint>

struct presetfilestruct {
    std::array<std::byte, 65> bytes{};
};
struct bankfilestruct {
    std::array<std::byte, 665> bytes{};
};
struct midifilestruct {
    std::array<std::byte, 41> bytes{};
};
static_assert(sizeof(presetfilestruct) == 65 && sizeof(bankfilestruct) == 665 &&
              sizeof(midifilestruct) == 41);

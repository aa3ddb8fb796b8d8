// The bank of Mirelon's presets, reached as a host can: by its state chunk.
#pragma once

#include "hosting/effect.h"
#include "presetsystem/presetrecord.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mirelon::hosting {

struct EffectBank {
    // Nothing when the bytes are no such chunk of the effect `uniqueID`, or one
    // of the other byte order.
    static std::optional<EffectBank> in(std::span<const std::byte> chunk, std::int32_t uniqueID);
    // The effect whose chunk this is; nothing when it is none of the kind.
    static std::optional<std::int32_t> owner(std::span<const std::byte> chunk);
    // The chunk that holds this bank.
    std::vector<std::byte> chunk(std::int32_t uniqueID) const;

    PresetBank presets{};
    std::optional<std::size_t> current{}; // nothing: the chunk named none
};

// Nothing when the effect keeps no such bank.
std::optional<EffectBank> bankOf(const Effect& effect);

// The effect replaces its bank and applies the current preset. Answers whether
// it did.
bool giveBank(Effect& effect, const EffectBank& bank);

} // namespace mirelon::hosting

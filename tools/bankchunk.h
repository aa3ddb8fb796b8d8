// Mirelon's state chunk as a host may look at it from outside.
#pragma once

#include "presetsystem/chunkimage.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

class BankChunk {
  public:
    static constexpr std::size_t presetCount = kNumPresets;

    struct Preset {
        std::string name;
        PresetValues values; // normalised
    };

    // Nothing when the bytes are no such chunk of the effect `uniqueID`, or one
    // of the other byte order.
    static std::optional<BankChunk> recognise(const std::vector<std::byte>& bytes,
                                              std::int32_t uniqueID);

    std::span<const std::byte> bytes() const noexcept { return image; }
    std::size_t currentPreset() const; // presetCount when it names none
    void setCurrentPreset(std::uint32_t number);
    Preset preset(std::size_t number) const; // below presetCount

  private:
    BankChunk() = default;

    ChunkImage image{};
    PresetBank bank{};
};

} // namespace mirelon::tools

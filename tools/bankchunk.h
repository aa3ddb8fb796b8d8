// Mirelon's state chunk as a host may look at it from outside: a header of
// 32-bit words in this machine's byte order, then eleven preset images.
#pragma once

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
    static constexpr std::size_t presetCount = 11;
    static constexpr std::size_t valueCount = 9;

    struct Preset {
        std::string name;
        std::array<float, valueCount> values; // normalised
    };

    // Nothing when the bytes are no such chunk of the effect `uniqueID`.
    static std::optional<BankChunk> recognise(std::vector<std::byte> bytes, std::int32_t uniqueID);

    std::span<const std::byte> bytes() const noexcept { return image; }
    std::uint32_t currentPreset() const;
    void setCurrentPreset(std::uint32_t number);
    Preset preset(std::size_t number) const; // below presetCount

  private:
    explicit BankChunk(std::vector<std::byte> bytes);
    std::uint32_t word(std::size_t offset) const;

    std::vector<std::byte> image;
};

} // namespace mirelon::tools

// One preset, in memory as on disk.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr int kNumPresets = 11;
inline constexpr int kNumPresetParams = 9;
inline constexpr int kPresetNameLen = 24;

// Swaps the byte order of a 32-bit word in place. `word` need not be aligned.
void mySwapBytes(void* word) noexcept;

namespace mirelon {

// A name as a host's text buffer takes it: 24 bytes and a terminator.
using PresetName = std::array<char, kPresetNameLen + 1>;
// The first 24 bytes of a terminated text.
PresetName presetName(const char* text) noexcept;

using PresetValues = std::array<float, kNumPresetParams>;

constexpr bool isPresetIndex(std::int64_t index) noexcept {
    return index >= 0 && index < kNumPresets;
}

// What a preset value may be; NaN is outside.
constexpr bool isNormalised(float value) noexcept {
    return value >= 0.0F && value <= 1.0F;
}

// Big-endian single-precision values, whatever the processor.
float decodeValue(const std::byte* bytes) noexcept;
void encodeValue(float value, std::byte* bytes) noexcept;

} // namespace mirelon

// Its memory is its image in chunks and files, byte for byte: the name, filled up
// with zeros (a name that fills its room has no terminator), then the values,
// big-endian.
//
// Values and names may be read on one thread while another writes them: every
// access goes through the functions below, which move whole 32-bit words.
struct PresetRecord {
    std::array<std::uint32_t, kPresetNameLen / 4> nameWords;
    std::array<std::uint32_t, kNumPresetParams> valueWords;

    static constexpr std::size_t imageSize = kPresetNameLen + 4 * kNumPresetParams;

    float value(int index) const noexcept;          // index 0 to 8
    void setValue(int index, float value) noexcept; // index 0 to 8
    mirelon::PresetName name() const noexcept;      // always terminated
    void setName(std::string_view text) noexcept;   // cut at 24 bytes, zero-padded
    void writeTo(std::span<std::byte, imageSize> image) const noexcept;
    void readFrom(std::span<const std::byte, imageSize> image) noexcept;
};
static_assert(sizeof(PresetRecord) == PresetRecord::imageSize);

using PresetBank = std::array<PresetRecord, kNumPresets>;
static_assert(sizeof(PresetBank) == 660);

#include "presetsystem/chunkimage.h"

#include <algorithm>
#include <cstring>

namespace mirelon {

namespace {

constexpr std::size_t magicAt = 0;
constexpr std::size_t ownerAt = 4;
constexpr std::size_t countAt = 8;
constexpr std::size_t presetNoAt = 12;

std::uint32_t wordAt(std::span<const std::byte> image, std::size_t offset) noexcept {
    std::uint32_t word = 0;
    std::memcpy(&word, &image[offset], sizeof word);
    return word;
}

void putWord(std::span<std::byte> image, std::size_t offset, std::uint32_t word) noexcept {
    std::memcpy(&image[offset], &word, sizeof word);
}

constexpr std::size_t recordAt(std::size_t preset) noexcept {
    return chunkHeaderSize + PresetRecord::imageSize * preset;
}
static_assert(recordAt(kNumPresets) == chunkSize, "the chunk ends behind its last record");

void turnRound(std::span<std::byte, chunkSize> image) noexcept {
    for (std::size_t offset = 0; offset < chunkHeaderSize; offset += 4)
        if (offset != ownerAt)
            mySwapBytes(&image[offset]);
    for (std::size_t preset = 0; preset < kNumPresets; ++preset)
        for (std::size_t j = 0; j < kNumPresetParams; ++j)
            mySwapBytes(&image[recordAt(preset) + kPresetNameLen + 4 * j]);
}

} // namespace

void writeChunk(std::span<std::byte, chunkSize> image, std::int32_t ownerId, std::int32_t presetNo,
                const PresetBank& bank) noexcept {
    std::ranges::fill(image, std::byte{0});
    putWord(image, magicAt, chunkMagic);
    putWord(image, ownerAt, static_cast<std::uint32_t>(ownerId));
    putWord(image, countAt, kNumPresets);
    setChunkPresetNo(image, presetNo);
    for (std::size_t preset = 0; preset < kNumPresets; ++preset)
        bank[preset].writeTo(std::span<std::byte, PresetRecord::imageSize>(
            &image[recordAt(preset)], PresetRecord::imageSize));
}

std::int32_t chunkOwner(std::span<const std::byte, chunkSize> image) noexcept {
    return static_cast<std::int32_t>(wordAt(image, ownerAt));
}

ChunkVerdict readChunk(std::span<std::byte, chunkSize> image, std::int32_t ownerId) noexcept {
    // The magic word is judged as the host handed it over, before any turning
    // round: a chunk written on a machine of the other byte order is recognised
    // but never applied. (One whose magic word alone is native would be.)
    const bool nativeMagic = wordAt(image, magicAt) == chunkMagic;
    const std::uint32_t owner = wordAt(image, ownerAt);
    auto reversedId = static_cast<std::uint32_t>(ownerId);
    mySwapBytes(&reversedId);
    if (owner != static_cast<std::uint32_t>(ownerId)) {
        if (owner != reversedId)
            return ChunkVerdict::notOurs;
        turnRound(image);
    }
    if (!nativeMagic)
        return ChunkVerdict::ignored;
    if (wordAt(image, countAt) != kNumPresets)
        return ChunkVerdict::badPresetCount;
    return ChunkVerdict::accepted;
}

void copyChunkBank(std::span<const std::byte, chunkSize> image, PresetBank& bank) noexcept {
    for (std::size_t preset = 0; preset < kNumPresets; ++preset)
        bank[preset].readFrom(std::span<const std::byte, PresetRecord::imageSize>(
            &image[recordAt(preset)], PresetRecord::imageSize));
}

std::optional<std::int32_t> chunkPresetNo(std::span<const std::byte, chunkSize> image) noexcept {
    const std::uint32_t presetNo = wordAt(image, presetNoAt);
    if (presetNo >= kNumPresets)
        return std::nullopt;
    return static_cast<std::int32_t>(presetNo);
}

void setChunkPresetNo(std::span<std::byte, chunkSize> image, std::int32_t presetNo) noexcept {
    putWord(image, presetNoAt, static_cast<std::uint32_t>(presetNo));
}

} // namespace mirelon

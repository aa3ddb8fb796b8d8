// The state chunk: the whole bank and the current preset number as 692 bytes.
#pragma once

#include "presetsystem/presetrecord.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace mirelon {

inline constexpr std::size_t chunkSize = 692;
inline constexpr std::size_t chunkHeaderSize = 32;
inline constexpr std::uint32_t chunkMagic = 0x01000000;
using ChunkImage = std::array<std::byte, chunkSize>;

// Fills the whole image. Header words are in this machine's byte order, preset
// values big-endian as in the bank.
void writeChunk(std::span<std::byte, chunkSize> image, std::int32_t ownerId, std::int32_t presetNo,
                const PresetBank& bank) noexcept;

enum class ChunkVerdict {
    accepted,      // the bank is to be replaced
    ignored,       // taken without effect: the magic word is not the native one
    notOurs,       // the owner is another effect
    badPresetCount // the count word is not 11
};

// Judges a chunk that a host gives back, and byte-swaps one of the other order in
// place.
ChunkVerdict readChunk(std::span<std::byte, chunkSize> image, std::int32_t ownerId) noexcept;

// The owner that a chunk names, whether or not it is one.
std::int32_t chunkOwner(std::span<const std::byte, chunkSize> image) noexcept;

// Of an accepted chunk: its records, and its preset number if it is one.
void copyChunkBank(std::span<const std::byte, chunkSize> image, PresetBank& bank) noexcept;
std::optional<std::int32_t> chunkPresetNo(std::span<const std::byte, chunkSize> image) noexcept;
void setChunkPresetNo(std::span<std::byte, chunkSize> image, std::int32_t presetNo) noexcept;

} // namespace mirelon

#include "tools/bankchunk.h"

#include <bit>
#include <cstring>
#include <utility>

namespace mirelon::tools {

namespace {

constexpr std::uint32_t magic = 0x01000000;
constexpr std::size_t magicOffset = 0;
constexpr std::size_t ownerOffset = 4;
constexpr std::size_t countOffset = 8;
constexpr std::size_t currentOffset = 12;
constexpr std::size_t headerSize = 32;
constexpr std::size_t nameSize = 24;
constexpr std::size_t presetSize = nameSize + 4 * BankChunk::valueCount;
constexpr std::size_t chunkSize = headerSize + BankChunk::presetCount * presetSize;

float bigEndianFloat(const std::byte* bytes) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i)
        bits = bits << 8U | std::to_integer<std::uint32_t>(bytes[i]);
    return std::bit_cast<float>(bits);
}

} // namespace

BankChunk::BankChunk(std::vector<std::byte> bytes)
    : image(std::move(bytes)) {}

std::optional<BankChunk> BankChunk::recognise(std::vector<std::byte> bytes, std::int32_t uniqueID) {
    if (bytes.size() != chunkSize)
        return std::nullopt;
    BankChunk chunk(std::move(bytes));
    if (chunk.word(magicOffset) != magic || chunk.word(countOffset) != presetCount ||
        chunk.word(ownerOffset) != static_cast<std::uint32_t>(uniqueID))
        return std::nullopt;
    return chunk;
}

std::uint32_t BankChunk::word(std::size_t offset) const {
    std::uint32_t value = 0;
    std::memcpy(&value, image.data() + offset, sizeof value);
    return value;
}

std::uint32_t BankChunk::currentPreset() const {
    return word(currentOffset);
}

void BankChunk::setCurrentPreset(std::uint32_t number) {
    std::memcpy(image.data() + currentOffset, &number, sizeof number);
}

BankChunk::Preset BankChunk::preset(std::size_t number) const {
    const std::byte* const bytes = image.data() + headerSize + number * presetSize;
    const auto* const text = reinterpret_cast<const char*>(bytes);
    Preset result{{text, strnlen(text, nameSize)}, {}};
    for (std::size_t i = 0; i < valueCount; ++i)
        result.values[i] = bigEndianFloat(bytes + nameSize + 4 * i);
    return result;
}

} // namespace mirelon::tools

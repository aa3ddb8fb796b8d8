#include "hosting/effectbank.h"

#include "presetsystem/chunkimage.h"

#include <algorithm>

namespace mirelon::hosting {

std::optional<EffectBank> EffectBank::in(std::span<const std::byte> chunk, std::int32_t uniqueID) {
    if (chunk.size() != chunkSize)
        return std::nullopt;
    ChunkImage image{};
    std::ranges::copy(chunk, image.begin());
    // One that had to be byte-swapped is not what the effect would write.
    if (readChunk(image, uniqueID) != ChunkVerdict::accepted || !std::ranges::equal(chunk, image))
        return std::nullopt;
    EffectBank bank;
    copyChunkBank(image, bank.presets);
    if (const auto number = chunkPresetNo(image))
        bank.current = static_cast<std::size_t>(*number);
    return bank;
}

std::optional<std::int32_t> EffectBank::owner(std::span<const std::byte> chunk) {
    if (chunk.size() != chunkSize)
        return std::nullopt;
    const std::int32_t named = chunkOwner(chunk.first<chunkSize>());
    return in(chunk, named) ? std::optional(named) : std::nullopt;
}

std::vector<std::byte> EffectBank::chunk(std::int32_t uniqueID) const {
    std::vector<std::byte> bytes(chunkSize);
    writeChunk(std::span<std::byte, chunkSize>(bytes), uniqueID,
               static_cast<std::int32_t>(current.value_or(0)), presets);
    return bytes;
}

std::optional<EffectBank> bankOf(const Effect& effect) {
    if (!effect.hasFlag(effFlagsProgramChunks))
        return std::nullopt;
    return EffectBank::in(effect.chunk(), effect.record().uniqueID);
}

bool giveBank(Effect& effect, const EffectBank& bank) {
    const std::vector<std::byte> chunk = bank.chunk(effect.record().uniqueID);
    return effect.setChunk(chunk) >= 0 && effect.chunk() == chunk;
}

} // namespace mirelon::hosting

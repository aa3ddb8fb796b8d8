#include "tools/bankchunk.h"

#include <algorithm>

namespace mirelon::tools {

std::optional<BankChunk> BankChunk::recognise(const std::vector<std::byte>& bytes,
                                              std::int32_t uniqueID) {
    if (bytes.size() != chunkSize)
        return std::nullopt;
    BankChunk chunk;
    std::ranges::copy(bytes, chunk.image.begin());
    // One that had to be turned round is not what the plug-in would write.
    if (readChunk(chunk.image, uniqueID) != ChunkVerdict::accepted ||
        !std::ranges::equal(bytes, chunk.image))
        return std::nullopt;
    copyChunkBank(chunk.image, chunk.bank);
    return chunk;
}

std::size_t BankChunk::currentPreset() const {
    return static_cast<std::size_t>(chunkPresetNo(image).value_or(kNumPresets));
}

void BankChunk::setCurrentPreset(std::uint32_t number) {
    setChunkPresetNo(image, static_cast<std::int32_t>(number));
}

BankChunk::Preset BankChunk::preset(std::size_t number) const {
    const PresetRecord& record = bank[number];
    Preset result{record.name().data(), {}};
    for (int i = 0; i < kNumPresetParams; ++i)
        result.values[static_cast<std::size_t>(i)] = record.value(i);
    return result;
}

} // namespace mirelon::tools

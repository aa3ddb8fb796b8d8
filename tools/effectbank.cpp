#include "tools/effectbank.h"

#include "presetsystem/chunkimage.h"
#include "tools/commanderror.h"
#include "tools/imagefile.h"

#include <algorithm>

namespace mirelon::tools {

namespace {

// A plug-in refuses values out of their range without a word.
void requireRange(const std::filesystem::path& file, const ImageFile& image) {
    for (std::size_t i = 0; i < image.presets.size(); ++i)
        for (int j = 0; j < kNumPresetParams; ++j)
            if (!isNormalised(image.presets[i].value(j)))
                throw CommandError(file.string() + ": value " + std::to_string(j) + " of preset " +
                                   std::to_string(i) + " is not 0 to 1 (`verify` says more)");
}

} // namespace

EffectBank bankOf(const hosting::Effect& effect) {
    std::vector<std::byte> chunk = effect.chunk();
    if (!effect.hasFlag(effFlagsProgramChunks) || chunk.size() != chunkSize)
        throw CommandError("the plug-in keeps no bank of presets in its state");
    const std::span<std::byte, chunkSize> image(chunk.data(), chunkSize);
    if (readChunk(image, effect.record().uniqueID) != ChunkVerdict::accepted)
        throw CommandError("the plug-in keeps no bank of presets in its state");
    EffectBank bank;
    copyChunkBank(image, bank.presets);
    bank.current = static_cast<std::size_t>(chunkPresetNo(image).value_or(0));
    return bank;
}

void giveBank(hosting::Effect& effect, const EffectBank& bank) {
    ChunkImage image{};
    writeChunk(image, effect.record().uniqueID, static_cast<std::int32_t>(bank.current),
               bank.presets);
    if (effect.setChunk(image) < 0 || !std::ranges::equal(effect.chunk(), image))
        throw CommandError("the plug-in does not take the presets");
}

void loadBankFile(hosting::Effect& effect, const std::filesystem::path& file) {
    const ImageFile image = readImageFile(file, effect.record().uniqueID, ImageKind::bank);
    requireRange(file, image);
    EffectBank bank = bankOf(effect);
    std::ranges::copy(image.presets, bank.presets.begin());
    bank.current = 0;
    giveBank(effect, bank);
}

void loadPresetFile(hosting::Effect& effect, const std::filesystem::path& file) {
    const ImageFile image = readImageFile(file, effect.record().uniqueID, ImageKind::preset);
    requireRange(file, image);
    EffectBank bank = bankOf(effect);
    bank.presets.at(bank.current) = image.presets.at(0);
    giveBank(effect, bank);
}

} // namespace mirelon::tools

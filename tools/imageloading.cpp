#include "tools/imageloading.h"

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

void give(hosting::Effect& effect, const hosting::EffectBank& bank) {
    if (!hosting::giveBank(effect, bank))
        throw CommandError("the plug-in does not take the presets");
}

} // namespace

hosting::EffectBank requiredBankOf(const hosting::Effect& effect) {
    auto bank = hosting::bankOf(effect);
    if (!bank)
        throw CommandError("the plug-in keeps no bank of presets in its state");
    return *bank;
}

void loadBankFile(hosting::Effect& effect, const std::filesystem::path& file) {
    const ImageFile image = readImageFile(file, effect.record().uniqueID, ImageKind::bank);
    requireRange(file, image);
    hosting::EffectBank bank = requiredBankOf(effect);
    std::ranges::copy(image.presets, bank.presets.begin());
    bank.current = 0;
    give(effect, bank);
}

void loadPresetFile(hosting::Effect& effect, const std::filesystem::path& file) {
    const ImageFile image = readImageFile(file, effect.record().uniqueID, ImageKind::preset);
    requireRange(file, image);
    hosting::EffectBank bank = requiredBankOf(effect);
    bank.presets.at(bank.current.value_or(0)) = image.presets.at(0);
    give(effect, bank);
}

} // namespace mirelon::tools

// Preset, bank and controller-map images: any bytes of the right size.
#include "fuzz/input.h"
#include "presetsystem/presetimages.h"

using namespace mirelon;
using fuzz::expect;

namespace {

constexpr std::int32_t owner = 0x4D724C6E;

bool sameBytes(const PresetRecord& a, const PresetRecord& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool allNormalised(const PresetRecord& preset) {
    for (int i = 0; i < kNumPresetParams; ++i)
        if (!isNormalised(preset.value(i)))
            return false;
    return true;
}

void preset(fuzz::Input& input, bool reversed) {
    presetfilestruct image;
    std::ranges::copy(input.bytes(image.bytes.size()), image.bytes.begin());
    PresetRecord before{};
    before.setName("before");
    PresetRecord target = before;
    const ImageReading reading = readPresetImage(image, owner, reversed, target);
    if (reading.verdict != ImageVerdict::accepted) {
        expect(sameBytes(target, before));
        return;
    }
    expect(allNormalised(target));
    presetfilestruct written;
    writePresetImage(written, owner, target);
    PresetRecord back{};
    expect(readPresetImage(written, owner, false, back).verdict == ImageVerdict::accepted);
    expect(sameBytes(back, target));
}

void bank(fuzz::Input& input, bool reversed) {
    bankfilestruct image;
    std::ranges::copy(input.bytes(image.bytes.size()), image.bytes.begin());
    for (int i = 0; i < kNumPresets; ++i)
        expect(bankImageName(image, i).back() == '\0');
    const PresetBank before{};
    PresetBank target = before;
    const ImageReading reading = readBankImage(image, owner, reversed, target);
    const bool accepted = reading.verdict == ImageVerdict::accepted;
    for (std::size_t i = 0; i < target.size(); ++i)
        expect(accepted ? allNormalised(target[i]) : sameBytes(target[i], before[i]));
    expect(isPresetIndex(reading.preset) && reading.value >= 0 && reading.value < kNumPresetParams);
}

void midi(fuzz::Input& input, bool reversed) {
    midifilestruct image;
    std::ranges::copy(input.bytes(image.bytes.size()), image.bytes.begin());
    const MidiImageValues values = readMidiImage(image, owner, reversed);
    expect(values.count >= 0 && values.count <= kNumPresetParams);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto choice = input.take<std::uint8_t>();
    const bool reversed = (choice & 4U) != 0;
    switch (choice % 3) {
    case 0:
        preset(input, reversed);
        break;
    case 1:
        bank(input, reversed);
        break;
    default:
        midi(input, reversed);
        break;
    }
    return 0;
}

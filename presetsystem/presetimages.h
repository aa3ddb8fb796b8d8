// The preset file, the bank file and the controller map as fixed byte images.
//
// All three begin with the owner ID (a word in the writer's byte order) and a
// type byte. Pure byte functions: no file, no effect, no editor.
#pragma once

#include "presetsystem/presetrecord.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

struct presetfilestruct {
    std::array<std::byte, 65> bytes{};
};
struct bankfilestruct {
    std::array<std::byte, 665> bytes{};
};
struct midifilestruct {
    std::array<std::byte, 41> bytes{};
};
static_assert(sizeof(presetfilestruct) == 65 && sizeof(bankfilestruct) == 665 &&
              sizeof(midifilestruct) == 41);

namespace mirelon {

inline constexpr std::byte presetImageType{0x21};
inline constexpr std::byte bankImageType{0x37};
inline constexpr std::byte midiImageType{0x0B};

// Where an image's parts lie.
inline constexpr std::size_t imageOwnerAt = 0;
inline constexpr std::size_t imageTypeAt = 4;
inline constexpr std::size_t imageHeaderSize = 5;
constexpr std::size_t imageRecordAt(std::size_t preset) noexcept {
    return imageHeaderSize + PresetRecord::imageSize * preset;
}
static_assert(imageRecordAt(1) == sizeof(presetfilestruct) &&
                  imageRecordAt(kNumPresets) == sizeof(bankfilestruct),
              "a file's image ends behind its last record");

// Whether the writer of an image had this machine's byte order.
enum class ImageOrder { native, foreign };

// The order in which the image's owner ID is `ownerId`; nothing when it is
// another effect's. Images have at least the header's size.
std::optional<ImageOrder> imageOrder(std::span<const std::byte> image,
                                     std::int32_t ownerId) noexcept;

enum class ImageVerdict {
    accepted,
    notOurs,    // another owner
    wrongType,  // ours, but another kind of image
    outOfRange, // a value that is not 0 to 1
};

// What became of reading an image. Of one that is out of range: which value of
// which preset is the first that is.
struct ImageReading {
    ImageVerdict verdict;
    int preset = 0;
    int value = 0;
};

// Each fills the whole image.
void writePresetImage(presetfilestruct& image, std::int32_t ownerId,
                      const PresetRecord& preset) noexcept;
void writeBankImage(bankfilestruct& image, std::int32_t ownerId, const PresetBank& bank) noexcept;
void writeMidiImage(midifilestruct& image, std::int32_t ownerId,
                    const PresetValues& values) noexcept;

// Each changes its target only when the image is accepted. The bytes of every
// value are swapped when exactly one of two holds: the image is of the
// foreign order, or the user has asked for it (`reversed`).
ImageReading readPresetImage(const presetfilestruct& image, std::int32_t ownerId, bool reversed,
                             PresetRecord& preset) noexcept;
ImageReading readBankImage(const bankfilestruct& image, std::int32_t ownerId, bool reversed,
                           PresetBank& bank) noexcept;

// The name at `preset` of any bank image, whatever its header says.
PresetName bankImageName(const bankfilestruct& image, int preset) noexcept;

// The values up to the first that is out of range; `count` says how many.
struct MidiImageValues {
    ImageVerdict verdict;
    int count = 0;
    PresetValues values{};
};
MidiImageValues readMidiImage(const midifilestruct& image, std::int32_t ownerId,
                              bool reversed) noexcept;

} // namespace mirelon

#include "presetsystem/presetimages.h"

#include <algorithm>
#include <cstring>

namespace mirelon {

namespace {

using RecordImage = std::span<const std::byte, PresetRecord::imageSize>;

void writeHeader(std::span<std::byte> image, std::int32_t ownerId, std::byte type) noexcept {
    std::memcpy(&image[imageOwnerAt], &ownerId, sizeof ownerId);
    image[imageTypeAt] = type;
}

void writeRecord(std::span<std::byte> image, std::size_t preset,
                 const PresetRecord& record) noexcept {
    record.writeTo(std::span<std::byte, PresetRecord::imageSize>(&image[imageRecordAt(preset)],
                                                                 PresetRecord::imageSize));
}

// What the header decides: whether values are to be byte-swapped, or why the
// image is refused.
struct HeaderReading {
    ImageVerdict verdict;
    bool swapped = false;
};

HeaderReading readHeader(std::span<const std::byte> image, std::int32_t ownerId, std::byte type,
                         bool reversed) noexcept {
    const std::optional<ImageOrder> order = imageOrder(image, ownerId);
    if (!order)
        return {ImageVerdict::notOurs};
    if (image[imageTypeAt] != type)
        return {ImageVerdict::wrongType};
    return {ImageVerdict::accepted, (*order == ImageOrder::foreign) != reversed};
}

float valueAt(std::span<const std::byte> image, std::size_t offset, bool swapped) noexcept {
    std::array<std::byte, 4> bytes{};
    std::ranges::copy(image.subspan(offset, bytes.size()), bytes.begin());
    if (swapped)
        mySwapBytes(bytes.data());
    return decodeValue(bytes.data());
}

// The index of the first value out of range; nothing when `record` is whole.
std::optional<int> readRecord(std::span<const std::byte> image, std::size_t preset, bool swapped,
                              PresetRecord& record) noexcept {
    const std::size_t at = imageRecordAt(preset);
    record.readFrom(RecordImage(&image[at], PresetRecord::imageSize));
    for (int j = 0; j < kNumPresetParams; ++j) {
        const float value =
            valueAt(image, at + kPresetNameLen + 4 * static_cast<std::size_t>(j), swapped);
        if (!isNormalised(value))
            return j;
        record.setValue(j, value);
    }
    return std::nullopt;
}

// Word by word: other threads may be reading `to`.
void store(const PresetRecord& from, PresetRecord& to) noexcept {
    std::array<std::byte, PresetRecord::imageSize> bytes{};
    from.writeTo(bytes);
    to.readFrom(bytes);
}

} // namespace

std::optional<ImageOrder> imageOrder(std::span<const std::byte> image,
                                     std::int32_t ownerId) noexcept {
    std::int32_t owner = 0;
    std::memcpy(&owner, &image[imageOwnerAt], sizeof owner);
    std::int32_t swappedId = ownerId;
    mySwapBytes(&swappedId);
    if (owner == swappedId)
        return ImageOrder::foreign;
    if (owner == ownerId)
        return ImageOrder::native;
    return std::nullopt;
}

void writePresetImage(presetfilestruct& image, std::int32_t ownerId,
                      const PresetRecord& preset) noexcept {
    writeHeader(image.bytes, ownerId, presetImageType);
    writeRecord(image.bytes, 0, preset);
}

void writeBankImage(bankfilestruct& image, std::int32_t ownerId, const PresetBank& bank) noexcept {
    writeHeader(image.bytes, ownerId, bankImageType);
    for (std::size_t preset = 0; preset < bank.size(); ++preset)
        writeRecord(image.bytes, preset, bank[preset]);
}

void writeMidiImage(midifilestruct& image, std::int32_t ownerId,
                    const PresetValues& values) noexcept {
    writeHeader(image.bytes, ownerId, midiImageType);
    for (std::size_t j = 0; j < values.size(); ++j)
        encodeValue(values[j], &image.bytes[imageHeaderSize + 4 * j]);
}

ImageReading readPresetImage(const presetfilestruct& image, std::int32_t ownerId, bool reversed,
                             PresetRecord& preset) noexcept {
    const HeaderReading header = readHeader(image.bytes, ownerId, presetImageType, reversed);
    if (header.verdict != ImageVerdict::accepted)
        return {header.verdict};
    PresetRecord read{};
    if (const auto bad = readRecord(image.bytes, 0, header.swapped, read))
        return {ImageVerdict::outOfRange, 0, *bad};
    store(read, preset);
    return {ImageVerdict::accepted};
}

ImageReading readBankImage(const bankfilestruct& image, std::int32_t ownerId, bool reversed,
                           PresetBank& bank) noexcept {
    const HeaderReading header = readHeader(image.bytes, ownerId, bankImageType, reversed);
    if (header.verdict != ImageVerdict::accepted)
        return {header.verdict};
    PresetBank read{};
    for (std::size_t preset = 0; preset < read.size(); ++preset)
        if (const auto bad = readRecord(image.bytes, preset, header.swapped, read[preset]))
            return {ImageVerdict::outOfRange, static_cast<int>(preset), *bad};
    for (std::size_t preset = 0; preset < read.size(); ++preset)
        store(read[preset], bank[preset]);
    return {ImageVerdict::accepted};
}

PresetName bankImageName(const bankfilestruct& image, int preset) noexcept {
    PresetName name{};
    std::memcpy(name.data(), &image.bytes[imageRecordAt(static_cast<std::size_t>(preset))],
                kPresetNameLen);
    return name;
}

MidiImageValues readMidiImage(const midifilestruct& image, std::int32_t ownerId,
                              bool reversed) noexcept {
    const HeaderReading header = readHeader(image.bytes, ownerId, midiImageType, reversed);
    MidiImageValues read{header.verdict};
    if (header.verdict != ImageVerdict::accepted)
        return read;
    for (std::size_t j = 0; j < read.values.size(); ++j) {
        const float value = valueAt(image.bytes, imageHeaderSize + 4 * j, header.swapped);
        if (!isNormalised(value)) {
            read.verdict = ImageVerdict::outOfRange;
            break;
        }
        read.values[j] = value;
        ++read.count;
    }
    return read;
}

} // namespace mirelon

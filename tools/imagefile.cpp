#include "tools/imagefile.h"

#include "tools/commanderror.h"
#include "tools/replacedfile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace mirelon::tools {

namespace {

constexpr std::size_t presetSize = sizeof(presetfilestruct);
constexpr std::size_t bankSize = sizeof(bankfilestruct);

constexpr std::endian otherOrder(std::endian order) {
    return order == std::endian::big ? std::endian::little : std::endian::big;
}

void swapValues(std::span<std::byte> bytes) {
    for (std::size_t record = imageHeaderSize; record + PresetRecord::imageSize <= bytes.size();
         record += PresetRecord::imageSize)
        for (std::size_t at = record + kPresetNameLen; at < record + PresetRecord::imageSize;
             at += 4)
            mySwapBytes(&bytes[at]);
}

std::vector<PresetRecord> recordsOf(std::span<const std::byte> bytes) {
    std::vector<PresetRecord> records((bytes.size() - imageHeaderSize) / PresetRecord::imageSize);
    for (std::size_t i = 0; i < records.size(); ++i)
        records[i].readFrom(bytes.subspan(imageRecordAt(i)).first<PresetRecord::imageSize>());
    return records;
}

// The range alone tells little: 0.5 with its bytes reversed is a tiny number
// above 0. What nobody sets counts as misread.
bool isPlausible(float value) {
    constexpr float smallestSet = 0x1p-24F;
    return value == 0.0F || (value >= smallestSet && value <= 1.0F);
}

bool allPlausible(const std::vector<PresetRecord>& records) {
    return std::ranges::all_of(records, [](const PresetRecord& record) {
        for (int j = 0; j < kNumPresetParams; ++j)
            if (!isPlausible(record.value(j)))
                return false;
        return true;
    });
}

} // namespace

std::size_t imageSize(ImageKind kind) {
    return kind == ImageKind::preset ? presetSize : bankSize;
}

const char* kindName(ImageKind kind) {
    return kind == ImageKind::preset ? "preset" : "bank";
}

const char* orderName(std::endian order) {
    return order == std::endian::big ? "big" : "little";
}

std::vector<std::byte> readBytes(const std::filesystem::path& file, std::size_t atMost) {
    std::error_code failure;
    const bool folder = std::filesystem::is_directory(file, failure);
    errno = folder ? EISDIR : 0;
    std::ifstream stream;
    if (!folder)
        stream.open(file, std::ios::binary);
    if (folder || !stream)
        throw CommandError(file.string() + ": cannot be read (" + std::strerror(errno) + ")");
    std::vector<std::byte> bytes(atMost);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(atMost));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

std::optional<ImageHeader> headerOf(std::span<const std::byte> bytes, VstInt32 ownerId) {
    if (bytes.size() < imageHeaderSize)
        return std::nullopt;
    const auto order = imageOrder(bytes, ownerId);
    if (!order)
        return std::nullopt;
    ImageHeader header{*order == ImageOrder::native ? std::endian::native
                                                    : otherOrder(std::endian::native),
                       std::nullopt};
    if (bytes[imageTypeAt] == presetImageType)
        header.kind = ImageKind::preset;
    else if (bytes[imageTypeAt] == bankImageType)
        header.kind = ImageKind::bank;
    return header;
}

ImageFile partsOf(std::span<const std::byte> bytes, const ImageHeader& header) {
    ImageFile image{header.kind.value(), header.ownerOrder, std::endian::big, recordsOf(bytes)};
    if (allPlausible(image.presets))
        return image;
    std::vector<std::byte> swapped(bytes.begin(), bytes.end());
    swapValues(swapped);
    if (std::vector<PresetRecord> records = recordsOf(swapped); allPlausible(records)) {
        image.valueOrder = std::endian::little;
        image.presets = std::move(records);
    }
    return image;
}

ImageFile readImageFile(const std::filesystem::path& file, VstInt32 ownerId,
                        std::optional<ImageKind> wanted) {
    const std::vector<std::byte> bytes = readBytes(file, bankSize + 1);
    const auto header = headerOf(bytes, ownerId);
    if (!header || !header->kind)
        throw CommandError(file.string() + ": no preset or bank of this plug-in");
    const ImageKind kind = *header->kind;
    if (wanted && kind != *wanted)
        throw CommandError(file.string() + ": a " + kindName(kind) + ", not a " +
                           kindName(*wanted));
    if (bytes.size() != imageSize(kind))
        throw CommandError(file.string() + ": not the size of a " + kindName(kind) + ", which is " +
                           std::to_string(imageSize(kind)) + " bytes");
    return partsOf(bytes, *header);
}

std::vector<std::byte> bytesOf(const ImageFile& image, VstInt32 ownerId) {
    if (image.ownerOrder != std::endian::native)
        mySwapBytes(&ownerId);
    std::vector<std::byte> bytes;
    if (image.kind == ImageKind::preset) {
        presetfilestruct preset;
        writePresetImage(preset, ownerId, image.presets.at(0));
        bytes.assign(preset.bytes.begin(), preset.bytes.end());
    } else {
        PresetBank presets{};
        std::copy_n(image.presets.begin(), presets.size(), presets.begin());
        bankfilestruct bank;
        writeBankImage(bank, ownerId, presets);
        bytes.assign(bank.bytes.begin(), bank.bytes.end());
    }
    if (image.valueOrder == std::endian::little)
        swapValues(bytes);
    return bytes;
}

void writeImageFile(const std::filesystem::path& file, const ImageFile& image, VstInt32 ownerId) {
    const std::vector<std::byte> bytes = bytesOf(image, ownerId);
    ReplacedFile replaced(file);
    replaced.write(bytes.data(), bytes.size());
    replaced.commit();
}

std::string nameOf(const PresetRecord& preset) {
    return preset.name().data();
}

} // namespace mirelon::tools

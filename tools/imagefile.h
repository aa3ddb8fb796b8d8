// Preset files (.dvp) and bank files (.dvb).
#pragma once

#include "presetsystem/presetimages.h"
#include "shell/vst24.h"

#include <bit>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::tools {

enum class ImageKind { preset, bank };

std::size_t imageSize(ImageKind kind);
// "preset" and "bank".
const char* kindName(ImageKind kind);
// "big" and "little".
const char* orderName(std::endian order);

// A file's contents in parts. The records hold their values as the bank does,
// whatever their order in the file.
struct ImageFile {
    ImageKind kind;
    std::endian ownerOrder;                    // the machine that wrote it
    std::endian valueOrder = std::endian::big; // all machines write big
    std::vector<PresetRecord> presets;         // one, or eleven
};

std::vector<std::byte> readBytes(const std::filesystem::path& file, std::size_t atMost);

// What the first five bytes say, of a file of the owner `ownerId`.
struct ImageHeader {
    std::endian ownerOrder;
    std::optional<ImageKind> kind; // nothing: a type that is neither
};
std::optional<ImageHeader> headerOf(std::span<const std::byte> bytes, VstInt32 ownerId);

// The parts of a whole image. Values count as little-endian where only that
// makes all of them what a control can be set to.
ImageFile partsOf(std::span<const std::byte> bytes, const ImageHeader& header);

// Throws CommandError when it cannot be read or is no file of this owner, of
// the wanted kind and of that kind's size.
ImageFile readImageFile(const std::filesystem::path& file, VstInt32 ownerId,
                        std::optional<ImageKind> wanted = std::nullopt);

std::vector<std::byte> bytesOf(const ImageFile& image, VstInt32 ownerId);
// Appears whole or not at all; throws CommandError.
void writeImageFile(const std::filesystem::path& file, const ImageFile& image, VstInt32 ownerId);

// The name up to its terminator.
std::string nameOf(const PresetRecord& preset);

} // namespace mirelon::tools

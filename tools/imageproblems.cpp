#include "tools/imageproblems.h"

#include "tools/imagefile.h"
#include "tools/nearestname.h"

#include <algorithm>
#include <cstdio>

namespace mirelon::tools {

namespace {

std::string hexadecimal(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", std::to_integer<unsigned>(byte));
        text.append(text.empty() ? "" : " ").append(digits);
    }
    return text;
}

std::string shownNumber(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

std::string presetTitle(const ImageFile& image, std::size_t preset) {
    const std::string name = '"' + nameOf(image.presets[preset]) + '"';
    return image.kind == ImageKind::bank ? "preset " + std::to_string(preset) + ' ' + name : name;
}

void examineSize(std::size_t size, ImageKind kind, ImageReport& report) {
    const std::size_t whole = imageSize(kind);
    const std::string wanted =
        std::string("a ") + kindName(kind) + " has " + std::to_string(whole) + " bytes";
    if (size < whole)
        report.problems.push_back({size, "ends here, " + wanted + ": what is missing loads as 0"});
    else if (size > whole)
        report.problems.push_back({whole, "more follows, " + wanted + ": it is not read"});
}

void examineName(std::span<const std::byte> bytes, const ImageFile& image, std::size_t preset,
                 ImageReport& report) {
    const auto name = bytes.subspan(imageRecordAt(preset), kPresetNameLen);
    const auto end = std::ranges::find(name, std::byte{0});
    if (end == name.begin())
        report.notes.push_back("preset " + std::to_string(preset) + " has no name");
    if (std::any_of(end, name.end(), [](std::byte byte) { return byte != std::byte{0}; }))
        report.notes.push_back(presetTitle(image, preset) + ": more bytes behind the name's end");
}

void examineValues(const ImageFile& image, std::size_t preset,
                   std::span<const std::string> parameters, ImageReport& report) {
    for (int j = 0; j < kNumPresetParams; ++j) {
        const float value = image.presets[preset].value(j);
        const auto index = static_cast<std::size_t>(j);
        if (!isNormalised(value))
            report.problems.push_back({imageRecordAt(preset) + kPresetNameLen + 4 * index,
                                       presetTitle(image, preset) + ", " + parameters[index] +
                                           ": " + shownNumber(value) + " is not 0 to 1"});
    }
}

} // namespace

ImageReport examine(const std::filesystem::path& file, std::span<const std::byte> bytes,
                    VstInt32 ownerId, std::span<const std::string> parameters) {
    ImageReport report;
    if (bytes.size() < imageHeaderSize) {
        report.problems.push_back({bytes.size(), "ends before its header does"});
        return report;
    }
    const auto header = headerOf(bytes, ownerId);
    if (!header) {
        report.problems.push_back(
            {imageOwnerAt, "the owner is " + hexadecimal(bytes.first(4)) + ", not this plug-in"});
        return report;
    }
    if (!header->kind) {
        report.problems.push_back({imageTypeAt, "the type is " + hexadecimal(bytes.subspan(4, 1)) +
                                                    ", neither preset (21) nor bank (37)"});
        return report;
    }
    const ImageKind kind = *header->kind;
    const char* const extension = kind == ImageKind::preset ? ".dvp" : ".dvb";
    const std::string claimed = file.extension().string();
    if ((sameName(claimed, ".dvp") || sameName(claimed, ".dvb")) && !sameName(claimed, extension))
        report.problems.push_back({imageTypeAt, std::string("a ") + kindName(kind) +
                                                    ", though the file's name ends in " + claimed});
    examineSize(bytes.size(), kind, report);

    std::vector<std::byte> whole(bytes.begin(), bytes.end());
    whole.resize(imageSize(kind));
    const ImageFile image = partsOf(whole, *header);
    for (std::size_t preset = 0; preset < image.presets.size(); ++preset) {
        examineName(whole, image, preset, report);
        examineValues(image, preset, parameters, report);
    }
    const bool loadsReversed =
        (header->ownerOrder != std::endian::native) != (image.valueOrder == std::endian::little);
    if (loadsReversed)
        report.notes.push_back("of the other byte order: the editor loads it with a right click on "
                               "the load button");
    return report;
}

} // namespace mirelon::tools

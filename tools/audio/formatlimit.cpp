#include "tools/audio/formatlimit.h"

#include "tools/audio/outputformat.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <sndfile.h>

namespace mirelon::tools {

namespace {

// Sizes of 32 bits count in bytes; a header is far smaller than what is kept free.
constexpr std::uint64_t headerBytes = std::uint64_t{1} << 20U;
constexpr std::uint64_t unsigned32 = 0xFFFF'FFFFU;
constexpr std::uint64_t signed32 = 0x7FFF'FFFFU;
constexpr std::uint64_t blockOf24 = 0xFF'FFFFU;
// FLAC counts frames in 36 bits.
constexpr std::uint64_t unsigned36 = 0xF'FFFF'FFFFU;

bool isWav(int format) {
    const int kind = format & SF_FORMAT_TYPEMASK;
    return kind == SF_FORMAT_WAV || kind == SF_FORMAT_WAVEX;
}

// Codecs that pack samples count as one byte each.
std::uint64_t bytesPerFrame(int format) {
    return 2 * static_cast<std::uint64_t>(std::max(bytesPerSample(format), 1));
}

std::optional<std::uint64_t> mostBytes(int format) {
    switch (format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_AU: // without a size beyond 2 GiB
    case SF_FORMAT_CAF:
    case SF_FORMAT_MPEG:
    case SF_FORMAT_OGG:
    case SF_FORMAT_RAW:
    case SF_FORMAT_RF64:
    case SF_FORMAT_W64:
        return std::nullopt;
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
        return unsigned32;
    case SF_FORMAT_VOC:
        return blockOf24;
    default: // AIFF among them, whose sizes are signed
        return signed32;
    }
}

bool fitsRf64(int format) {
    SF_INFO info{};
    info.format = SF_FORMAT_RF64 | (format & SF_FORMAT_SUBMASK);
    info.channels = 2;
    info.samplerate = 44100;
    return sf_format_check(&info) != 0;
}

} // namespace

std::optional<std::uint64_t> mostFrames(int format, std::uint64_t otherBytes) {
    if ((format & SF_FORMAT_TYPEMASK) == SF_FORMAT_FLAC)
        return unsigned36;
    const std::optional<std::uint64_t> bytes = mostBytes(format);
    if (!bytes)
        return std::nullopt;
    const std::uint64_t reserved = headerBytes + otherBytes;
    return reserved > *bytes ? 0 : (*bytes - reserved) / bytesPerFrame(format);
}

ChosenFormat formatForLength(int format, std::optional<std::uint64_t> frames,
                             std::uint64_t otherBytes, const std::string& name) {
    const std::optional<std::uint64_t> most = mostFrames(format, otherBytes);
    if (frames && (!most || *frames <= *most))
        return {format};
    if (isWav(format) && fitsRf64(format))
        return {SF_FORMAT_RF64 | (format & SF_FORMAT_SUBMASK), !frames};
    if (!frames)
        return {format};
    throw CommandError(name + ": " + formatName(format) + " holds at most " +
                       std::to_string(*most) + " frames of the " + std::to_string(*frames) +
                       "; rf64, w64 and caf hold them");
}

} // namespace mirelon::tools

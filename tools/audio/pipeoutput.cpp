#include "tools/audio/pipeoutput.h"

#include "tools/audio/outputformat.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace mirelon::tools {

namespace {

// What readers of WAV files from a pipe take for "until it ends". AU has a word
// of its own for that, which the library writes for anything this large.
constexpr std::uint64_t openLength = 0x7FFF'F000U;

// At a time.
constexpr std::uint64_t rehearsalBytes = std::uint64_t{4} << 20U;

enum class Header { none, withLength, withOpenLength };

Header headerOf(int format) {
    switch (format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_FLAC:
    case SF_FORMAT_MPEG:
    case SF_FORMAT_OGG:
    case SF_FORMAT_RAW:
        return Header::none;
    case SF_FORMAT_AU:
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
        return Header::withOpenLength;
    default:
        return Header::withLength;
    }
}

} // namespace

PipeOutput::PipeOutput(int descriptor, int format_, std::optional<std::uint64_t> frames_)
    : format(format_)
    , frames(frames_)
    , stream(descriptor) {
    const Header header = headerOf(format);
    if (header != Header::none && bytesPerSample(format) == 0)
        throw CommandError(name() + ": " + formatName(format) + " cannot be written to a pipe");
    if (header == Header::withLength && !frames)
        throw CommandError(
            name() + ": " + formatName(format) +
            " needs to know the length, which IN does not tell; wav, au and flac do not");
}

SoundHandle PipeOutput::open(SF_INFO& info) {
    return stream.open(SFM_WRITE, info);
}

void PipeOutput::begin(SNDFILE* handle) {
    // The highest samples, which some formats note in front of them, are unknown.
    sf_command(handle, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    if (headerOf(format) != Header::none) {
        sf_command(handle, SFC_UPDATE_HEADER_NOW, nullptr, 0);
        sf_seek(handle, 0, SEEK_SET);
        stream.rehearse();
        const auto frameBytes = 2 * static_cast<std::uint64_t>(bytesPerSample(format));
        std::uint64_t rest = frames ? *frames * frameBytes : openLength / frameBytes * frameBytes;
        const std::vector<std::byte> silence(rehearsalBytes / frameBytes * frameBytes);
        while (rest > 0) {
            const std::uint64_t part = std::min<std::uint64_t>(rest, silence.size());
            sf_write_raw(handle, silence.data(), static_cast<sf_count_t>(part));
            rest -= part;
        }
        sf_command(handle, SFC_UPDATE_HEADER_NOW, nullptr, 0);
        sf_seek(handle, 0, SEEK_SET);
    }
    stream.release();
}

void PipeOutput::finish(std::uint64_t /*frames*/) {
    if (stream.failure() != 0)
        throw CommandError(name() + ": cannot be written (" + std::strerror(stream.failure()) +
                           ")");
}

sf_count_t PipeOutput::Stream::length() const {
    if (!holding)
        return sent;
    return rehearsing ? rehearsed : static_cast<sf_count_t>(header.size());
}

void PipeOutput::Stream::rehearse() {
    header.resize(static_cast<std::size_t>(at()));
    rehearsed = at();
    rehearsing = true;
}

void PipeOutput::Stream::release() {
    holding = false;
    rehearsing = false;
    send(header);
    header.clear();
}

std::size_t PipeOutput::Stream::readAt(sf_count_t /*position*/, std::span<std::byte> /*bytes*/) {
    return 0;
}

std::size_t PipeOutput::Stream::writeAt(sf_count_t position, std::span<const std::byte> bytes) {
    rehearsed = std::max(rehearsed, position + static_cast<sf_count_t>(bytes.size()));
    if (rehearsing && position >= static_cast<sf_count_t>(header.size()))
        return bytes.size();
    if (holding) {
        const auto begin = static_cast<std::size_t>(position);
        header.resize(std::max(header.size(), begin + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), header.data() + begin);
        return bytes.size();
    }
    // Corrections of what is gone come to nothing.
    const auto old = static_cast<std::size_t>(std::max<sf_count_t>(sent - position, 0));
    if (old < bytes.size() && !send(bytes.subspan(old)))
        return 0;
    return bytes.size();
}

bool PipeOutput::Stream::send(std::span<const std::byte> bytes) {
    while (!bytes.empty() && error == 0) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            error = errno;
            break;
        }
        sent += written;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return error == 0;
}

} // namespace mirelon::tools

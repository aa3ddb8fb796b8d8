#include "tools/audio/audiofile.h"

#include "tools/audio/outputformat.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mirelon::tools {

namespace {

// Well above the library's default, which is made for small files.
constexpr double codecQuality = 0.8;

constexpr std::array copiedTexts{SF_STR_TITLE,   SF_STR_COPYRIGHT,   SF_STR_ARTIST,
                                 SF_STR_COMMENT, SF_STR_DATE,        SF_STR_ALBUM,
                                 SF_STR_LICENSE, SF_STR_TRACKNUMBER, SF_STR_GENRE};

std::string libraryMessage(SNDFILE* file) {
    std::string text = sf_strerror(file);
    while (!text.empty() && (text.back() == '.' || text.back() == '\n'))
        text.pop_back();
    return text;
}

int openForReading(const std::filesystem::path& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        return descriptor;
    const std::string reason = descriptor < 0 ? std::strerror(errno) : "it is not a regular file";
    if (descriptor >= 0)
        close(descriptor);
    throw CommandError(file.string() + ": cannot be read (" + reason + ")");
}

} // namespace

AudioReader::AudioReader(const std::filesystem::path& file)
    : path(file)
    , handle(sf_open_fd(openForReading(file), SFM_READ, &info, SF_TRUE)) {
    if (!handle)
        throw CommandError(path.string() + ": not an audio file (" + libraryMessage(nullptr) + ")");
    if (info.channels > 2)
        throw CommandError(path.string() + ": has " + std::to_string(info.channels) +
                           " channels; only mono and stereo can be processed");
}

std::size_t AudioReader::read(std::span<double> left, std::span<double> right) {
    const auto channelCount = static_cast<std::size_t>(info.channels);
    const std::size_t wanted = std::min(left.size(), right.size());
    interleaved.resize(wanted * channelCount);
    const auto got = static_cast<std::size_t>(
        sf_readf_double(handle.get(), interleaved.data(), static_cast<sf_count_t>(wanted)));
    position += static_cast<std::int64_t>(got);
    if (got < wanted) {
        if (sf_error(handle.get()) != SF_ERR_NO_ERROR)
            throw CommandError(path.string() + ": damaged (" + libraryMessage(handle.get()) + ")");
        // An MPEG file's length is an estimate.
        if (position < info.frames && (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG)
            throw CommandError(path.string() + ": damaged (it ends after " +
                               std::to_string(position) + " of " + std::to_string(info.frames) +
                               " frames)");
    }
    for (std::size_t i = 0; i < got; ++i) {
        left[i] = interleaved[i * channelCount];
        right[i] = interleaved[i * channelCount + channelCount - 1];
    }
    return got;
}

AudioWriter::AudioWriter(const std::filesystem::path& target, int format, int sampleRate)
    : path(target)
    , file(target)
    , bits(integerBits(format)) {
    SF_INFO info{};
    info.format = format;
    info.channels = 2;
    info.samplerate = sampleRate;
    handle.reset(sf_open_fd(file.descriptor(), SFM_WRITE, &info, SF_FALSE));
    if (!handle)
        throw CommandError(path.string() + ": " + formatName(format) + " at " +
                           std::to_string(sampleRate) + " Hz cannot be written (" +
                           libraryMessage(nullptr) + ")");
    double quality = codecQuality;
    sf_command(handle.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    sf_command(handle.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

void AudioWriter::copyTexts(const AudioReader& from) {
    for (const int kind : copiedTexts) {
        if (const char* const text = from.text(kind))
            sf_set_string(handle.get(), kind, text);
    }
}

// Left-aligned in 32 bits, as the library takes samples of any width. Full
// scale is 2^(bits-1), so that what was read from integers comes back as it was.
std::int32_t AudioWriter::quantised(double sample) {
    const double scale = std::ldexp(1.0, bits - 1);
    const double rounded = std::nearbyint(sample * scale);
    const double limited = std::clamp(rounded, -scale, scale - 1.0);
    if (!(rounded == limited))
        ++clippedSamples;
    if (std::isnan(limited))
        return 0;
    return static_cast<std::int32_t>(std::ldexp(limited, 32 - bits));
}

void AudioWriter::write(std::span<const double> left, std::span<const double> right) {
    const std::size_t frames = left.size();
    sf_count_t written = 0;
    if (bits != 0) {
        integers.resize(2 * frames);
        for (std::size_t i = 0; i < frames; ++i) {
            integers[2 * i] = quantised(left[i]);
            integers[2 * i + 1] = quantised(right[i]);
        }
        written = sf_writef_int(handle.get(), integers.data(), static_cast<sf_count_t>(frames));
    } else {
        interleaved.resize(2 * frames);
        for (std::size_t i = 0; i < frames; ++i) {
            interleaved[2 * i] = left[i];
            interleaved[2 * i + 1] = right[i];
        }
        written =
            sf_writef_double(handle.get(), interleaved.data(), static_cast<sf_count_t>(frames));
    }
    if (written != static_cast<sf_count_t>(frames))
        fail();
}

void AudioWriter::finish() {
    sf_write_sync(handle.get());
    if (sf_error(handle.get()) != SF_ERR_NO_ERROR)
        fail();
    if (const int failure = sf_close(handle.release()); failure != 0)
        throw CommandError(path.string() + ": cannot be written (" + sf_error_number(failure) +
                           ")");
    file.commit();
}

void AudioWriter::fail() const {
    throw CommandError(path.string() + ": cannot be written (" + libraryMessage(handle.get()) +
                       ")");
}

} // namespace mirelon::tools

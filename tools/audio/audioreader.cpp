#include "tools/audio/audioreader.h"

#include "tools/commanderror.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace mirelon::tools {

namespace {

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

// As many frames at a time as make the calls into the system few.
constexpr std::size_t bufferFrames = 16384;

sf_count_t readFrames(SNDFILE* file, std::vector<std::int16_t>& into, sf_count_t frames) {
    return sf_readf_short(file, into.data(), frames);
}
sf_count_t readFrames(SNDFILE* file, std::vector<std::int32_t>& into, sf_count_t frames) {
    return sf_readf_int(file, into.data(), frames);
}
sf_count_t readFrames(SNDFILE* file, std::vector<float>& into, sf_count_t frames) {
    return sf_readf_float(file, into.data(), frames);
}
sf_count_t readFrames(SNDFILE* file, std::vector<double>& into, sf_count_t frames) {
    return sf_readf_double(file, into.data(), frames);
}

template <typename Sample>
void dealOut(const Sample* from, int channels, std::span<double> left, std::span<double> right) {
    // The library puts integers into the upper bits.
    constexpr double scale =
        std::is_integral_v<Sample>
            ? 0.5 /
                  static_cast<double>(std::int64_t{1} << (std::numeric_limits<Sample>::digits - 1))
            : 1.0;
    if (channels == 1) {
        for (std::size_t i = 0; i < left.size(); ++i)
            left[i] = right[i] = static_cast<double>(from[i]) * scale;
    } else {
        for (std::size_t i = 0; i < left.size(); ++i) {
            left[i] = static_cast<double>(from[2 * i]) * scale;
            right[i] = static_cast<double>(from[2 * i + 1]) * scale;
        }
    }
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
    chooseBuffer();
}

void AudioReader::chooseBuffer() {
    const std::size_t samples = bufferFrames * static_cast<std::size_t>(info.channels);
    switch (info.format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_16:
        buffer = std::vector<std::int16_t>(samples);
        break;
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
        buffer = std::vector<std::int32_t>(samples);
        break;
    case SF_FORMAT_FLOAT:
        buffer = std::vector<float>(samples);
        break;
    default:
        buffer = std::vector<double>(samples);
    }
}

void AudioReader::refill() {
    buffered = static_cast<std::size_t>(std::visit(
        [this](auto& samples) {
            return readFrames(handle.get(), samples, static_cast<sf_count_t>(bufferFrames));
        },
        buffer));
    taken = 0;
    position += static_cast<std::int64_t>(buffered);
    if (buffered == bufferFrames)
        return;
    if (sf_error(handle.get()) != SF_ERR_NO_ERROR)
        throw CommandError(path.string() + ": damaged (" + libraryMessage(handle.get()) + ")");
    // An MPEG file's length is an estimate.
    if (position < info.frames && (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG)
        throw CommandError(path.string() + ": damaged (it ends after " + std::to_string(position) +
                           " of " + std::to_string(info.frames) + " frames)");
}

std::size_t AudioReader::read(std::span<double> left, std::span<double> right) {
    const std::size_t wanted = std::min(left.size(), right.size());
    std::size_t done = 0;
    while (done < wanted) {
        if (taken == buffered)
            refill();
        const std::size_t count = std::min(wanted - done, buffered - taken);
        if (count == 0)
            break;
        std::visit(
            [&](const auto& samples) {
                dealOut(samples.data() + taken * static_cast<std::size_t>(info.channels),
                        info.channels, left.subspan(done, count), right.subspan(done, count));
            },
            buffer);
        taken += count;
        done += count;
    }
    return done;
}

} // namespace mirelon::tools

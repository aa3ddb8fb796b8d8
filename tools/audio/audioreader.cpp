#include "tools/audio/audioreader.h"

#include "tools/audio/outputformat.h"
#include "tools/audio/soundextent.h"
#include "tools/audio/standardinput.h"
#include "tools/audio/tagnames.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

namespace mirelon::tools {

namespace {

InputDescriptor openForReading(const std::filesystem::path& file) {
    if (file == "-")
        return openStandardInput();
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        return {descriptor, false};
    const std::string reason = descriptor < 0 ? std::strerror(errno) : "it is not a regular file";
    if (descriptor >= 0)
        close(descriptor);
    throw CommandError(file.string() + ": cannot be read (" + reason + ")");
}

// As many frames at a time as make the calls into the system few, but not so many
// that what comes through a pipe in real time is held up.
constexpr std::size_t fileFrames = 16384;
constexpr std::size_t streamFrames = 1024;

// A pipe's header that promises about 2 GiB or more leaves the length open.
constexpr std::int64_t openLength = 0x7FFF'0000;

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
    : path(file == "-" ? "standard input" : file) {
    const InputDescriptor input = openForReading(file);
    stream = input.stream;
    handle.reset(sf_open_fd(input.descriptor, SFM_READ, &info, SF_TRUE));
    if (!handle)
        throw CommandError(path.string() + ": not an audio file (" + libraryMessage(nullptr) + ")");
    if (info.channels > 2)
        throw CommandError(path.string() + ": has " + std::to_string(info.channels) +
                           " channels; only mono and stereo can be processed");
    examine(input.descriptor);
    chooseBuffer();
}

void AudioReader::examine(int descriptor) {
    knowsLength = (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG;
    const std::int64_t frameBytes =
        static_cast<std::int64_t>(bytesPerSample(info.format)) * info.channels;
    if (stream) {
        knowsLength = frameBytes > 0 && info.frames > 0 && info.frames < openLength / frameBytes;
        if (!knowsLength)
            info.frames = 0;
        others = readMetadata(handle.get(), info);
        return;
    }
    if (info.frames == SF_COUNT_MAX) { // FLAC that came through a pipe
        knowsLength = false;
        info.frames = 0;
    }
    const std::optional<SoundExtent> extent = soundExtent(descriptor);
    std::vector<std::string> names = unreadTags(descriptor);
    if (extent)
        names.insert(names.end(), extent->chunks.begin(), extent->chunks.end());
    others = readMetadata(handle.get(), info);
    addChunks(others, handle.get(), names);
    if (!extent || (extent->promised <= extent->present && info.frames > 0))
        return;
    if (frameBytes > 0)
        missing = std::max<std::int64_t>(
            static_cast<std::int64_t>(extent->promised) / frameBytes - info.frames, 0);
    else if (extent->promised > extent->present && extent->present > 0)
        missing =
            static_cast<std::int64_t>(static_cast<double>(info.frames) *
                                      static_cast<double>(extent->promised - extent->present) /
                                      static_cast<double>(extent->present));
}

std::string AudioReader::shortfall() const {
    if (missing == 0)
        return {};
    std::array<char, 160> text{};
    std::snprintf(
        text.data(), text.size(), ": cut short: %.2f s (%lld frames) of %.2f s cannot be read",
        static_cast<double>(missing) / info.samplerate, static_cast<long long>(missing),
        static_cast<double>(missing + (stream ? position : info.frames)) / info.samplerate);
    return path.string() + text.data();
}

void AudioReader::chooseBuffer() {
    bufferFrames = stream ? streamFrames : fileFrames;
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
    if (position >= info.frames || !knowsLength)
        return;
    if (stream)
        missing = info.frames - position;
    else
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

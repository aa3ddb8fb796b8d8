#include "tools/audio/audiowriter.h"

#include "tools/audio/outputformat.h"
#include "tools/commanderror.h"

#include <algorithm>
#include <utility>

namespace mirelon::tools {

namespace {

// Well above the library's default, which is made for small files.
constexpr double codecQuality = 0.8;

// As many frames at a time as make the calls into the system few.
constexpr std::size_t bufferFrames = 16384;

} // namespace

AudioWriter::AudioWriter(std::unique_ptr<AudioOutput> output_, ChosenFormat chosen, int sampleRate,
                         std::optional<std::uint64_t> ditherSeed)
    : output(std::move(output_))
    , format(chosen.format)
    , ofShorts((format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16) {
    if (output->keepsSizes())
        most = mostFrames(format);
    if (const int bits = integerBits(format); bits != 0)
        quantizer.emplace(bits, ditherSeed);
    SF_INFO info{};
    info.format = format;
    info.channels = 2;
    info.samplerate = sampleRate;
    handle = output->open(info);
    if (!handle)
        throw CommandError(output->name() + ": " + formatName(format) + " at " +
                           std::to_string(sampleRate) + " Hz cannot be written (" +
                           libraryMessage(nullptr) + ")");
    double quality = codecQuality;
    sf_command(handle.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    sf_command(handle.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    if (chosen.plainWhenSmall)
        sf_command(handle.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
}

void AudioWriter::write(std::span<const double> left, std::span<const double> right) {
    const std::size_t count = 2 * left.size();
    const std::size_t start = 2 * waiting;
    const auto room = [&](auto& samples) {
        samples.resize(std::max(samples.size(), start + count));
        return std::span(samples).subspan(start, count);
    };
    if (quantizer && ofShorts) {
        quantizer->convert(left, right, room(shorts));
    } else if (quantizer) {
        quantizer->convert(left, right, room(integers));
    } else {
        const std::span<double> to = room(doubles);
        for (std::size_t i = 0; i < left.size(); ++i) {
            to[2 * i] = left[i];
            to[2 * i + 1] = right[i];
        }
    }
    waiting += left.size();
    if (waiting >= bufferFrames)
        flush();
}

void AudioWriter::flush() {
    if (!begun)
        output->begin(handle.get());
    begun = true;
    if (most && frames + waiting > *most)
        fail(formatName(format) + " holds no more than " + std::to_string(*most) + " frames");
    const auto count = static_cast<sf_count_t>(waiting);
    sf_count_t written = 0;
    if (quantizer && ofShorts)
        written = sf_writef_short(handle.get(), shorts.data(), count);
    else if (quantizer)
        written = sf_writef_int(handle.get(), integers.data(), count);
    else
        written = sf_writef_double(handle.get(), doubles.data(), count);
    if (written != count)
        fail(libraryMessage(handle.get()));
    frames += waiting;
    waiting = 0;
}

void AudioWriter::finish() {
    flush();
    sf_write_sync(handle.get());
    if (sf_error(handle.get()) != SF_ERR_NO_ERROR)
        fail(libraryMessage(handle.get()));
    if (const int failure = sf_close(handle.release()); failure != 0)
        fail(sf_error_number(failure));
    output->finish(frames);
}

void AudioWriter::fail(const std::string& why) const {
    throw CommandError(output->name() + ": cannot be written (" + why + ")");
}

} // namespace mirelon::tools

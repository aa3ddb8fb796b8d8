// Stereo frames into audio files.
#pragma once

#include "tools/audio/audiooutput.h"
#include "tools/audio/formatlimit.h"
#include "tools/audio/metadata.h"
#include "tools/audio/quantizer.h"
#include "tools/audio/soundhandle.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace mirelon::tools {

// Integer formats are rounded to nearest and clipped at full scale.
class AudioWriter {
  public:
    // Throws CommandError when `output` cannot be written to or the format does not
    // take the sample rate.
    AudioWriter(std::unique_ptr<AudioOutput> output, ChosenFormat format, int sampleRate,
                std::optional<std::uint64_t> ditherSeed = {});

    // Before the first frame.
    void copyMetadata(const Metadata& metadata) { writeMetadata(handle.get(), metadata); }

    // Throw CommandError when the disk or the format takes no more.
    void write(std::span<const double> left, std::span<const double> right);
    void finish();

    // Samples beyond full scale that were clipped so far.
    std::uint64_t clipped() const noexcept { return quantizer ? quantizer->clipped() : 0; }

  private:
    void flush();
    [[noreturn]] void fail(const std::string& why) const;

    std::unique_ptr<AudioOutput> output;
    SoundHandle handle;
    std::optional<Quantizer> quantizer; // none: the format is not of integers
    int format;
    bool ofShorts;
    std::optional<std::uint64_t> most; // frames
    bool begun = false;
    std::uint64_t frames = 0; // taken by the handle
    // Those still to be written, in the one type that is used.
    std::size_t waiting = 0;
    std::vector<double> doubles;
    std::vector<std::int32_t> integers;
    std::vector<std::int16_t> shorts;
};

} // namespace mirelon::tools

// Audio files as streams of stereo frames.
#pragma once

#include "tools/audio/metadata.h"
#include "tools/audio/soundhandle.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace mirelon::tools {

// Reads a file of one or two channels; a single one comes out on both sides.
class AudioReader {
  public:
    // "-" is standard input. Throws CommandError when the file cannot be read, is
    // no audio file or has more than two channels.
    explicit AudioReader(const std::filesystem::path& file);

    int channels() const noexcept { return info.channels; }
    int sampleRate() const noexcept { return info.samplerate; }
    int format() const noexcept { return info.format; }

    // As the header says; where it does not, 0 or, in MPEG files, an estimate.
    std::int64_t frames() const noexcept { return info.frames; }
    bool lengthKnown() const noexcept { return knowsLength; }

    // Those that the header promises and that are not there: known from the start
    // for a file, at the end for a pipe.
    std::int64_t missingFrames() const noexcept { return missing; }
    // "in.wav: cut short: 1.13 s (50000 frames) of 2.00 s cannot be read"; empty
    // when none are missing.
    std::string shortfall() const;

    // The next frames, at most as many as both spans hold; 0 at the end. Throws
    // CommandError when the file turns out to be damaged.
    std::size_t read(std::span<double> left, std::span<double> right);

    // For a writer of the same material.
    const Metadata& metadata() const noexcept { return others; }

  private:
    void examine(int descriptor);
    void chooseBuffer();
    void refill();

    std::filesystem::path path;
    SF_INFO info{};
    bool stream = false; // cannot be sought
    SoundHandle handle;
    bool knowsLength = true;
    std::int64_t missing = 0;
    Metadata others;
    std::int64_t position = 0;
    // The file's own samples, of the type that takes least work: each of these
    // becomes exactly the double that the library would have made of it.
    std::variant<std::vector<std::int16_t>, std::vector<std::int32_t>, std::vector<float>,
                 std::vector<double>>
        buffer;
    std::size_t bufferFrames = 0;
    std::size_t buffered = 0; // frames in it
    std::size_t taken = 0;    // of them
};

} // namespace mirelon::tools

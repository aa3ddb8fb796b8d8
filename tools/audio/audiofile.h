// Audio files as streams of stereo frames.
#pragma once

#include "tools/replacedfile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <sndfile.h>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

struct CloseSoundFile {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSoundFile>;

// Reads a file of one or two channels; a single one comes out on both sides.
class AudioReader {
  public:
    // Throws CommandError when the file cannot be read, is no audio file or has
    // more than two channels.
    explicit AudioReader(const std::filesystem::path& file);

    int channels() const noexcept { return info.channels; }
    int sampleRate() const noexcept { return info.samplerate; }
    int format() const noexcept { return info.format; }
    std::int64_t frames() const noexcept { return info.frames; } // as the file says

    // The next frames, at most as many as both spans hold; 0 at the end. Throws
    // CommandError when the file turns out to be damaged.
    std::size_t read(std::span<double> left, std::span<double> right);

    // Title, artist and the like, for a writer of the same material.
    const char* text(int kind) const { return sf_get_string(handle.get(), kind); }

  private:
    std::filesystem::path path;
    SF_INFO info{};
    SoundFile handle;
    std::int64_t position = 0;
    std::vector<double> interleaved;
};

// Writes a stereo file which takes the place of an existing one only when it is
// complete. Integer formats are rounded to nearest and clipped at full scale.
class AudioWriter {
  public:
    // `format` is libsndfile's. Throws CommandError when the file cannot be
    // written or the format does not take the sample rate.
    AudioWriter(const std::filesystem::path& file, int format, int sampleRate);

    void copyTexts(const AudioReader& from);

    // Throw CommandError when the disk takes no more.
    void write(std::span<const double> left, std::span<const double> right);
    void finish();

    // Samples beyond full scale that were clipped so far.
    std::uint64_t clipped() const noexcept { return clippedSamples; }

  private:
    std::int32_t quantised(double sample);
    [[noreturn]] void fail() const;

    std::filesystem::path path;
    ReplacedFile file;
    SoundFile handle;
    int bits; // 0: the format is not of integers
    std::uint64_t clippedSamples = 0;
    std::vector<double> interleaved;
    std::vector<std::int32_t> integers;
};

} // namespace mirelon::tools

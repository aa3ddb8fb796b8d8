// Rendering one audio file into another.
#pragma once

#include "tools/audio/loudness.h"
#include "tools/audio/outputformat.h"
#include "tools/audio/stereostatistics.h"
#include "tools/renderpass.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace mirelon::tools {

struct RenderJob {
    RenderOptions pass;
    std::string output; // "-" is standard output
    FormatRequest format;
    double headroom = 0.0; // decibels that the output is lowered by
    bool dither = false;
    bool overwrite = false;
    bool noClip = false; // samples beyond full scale are a failure
    bool loudness = false;
};

struct SignalReport {
    StereoStatistics levels;
    std::unique_ptr<Loudness> loudness; // null: not asked for

    void add(std::span<const double> left, std::span<const double> right);
};

struct RenderReport {
    std::string inputFormat;
    std::string outputFormat;
    int inputChannels = 0;
    int sampleRate = 0;
    std::string settings; // what the effect was told; empty: nothing
    SignalReport before;
    SignalReport after;
    double seconds = 0.0; // of wall clock, reading and encoding included
    std::uint64_t clipped = 0;
    std::int64_t missingFrames = 0;    // of those that the input promised
    std::vector<std::string> warnings; // each of one line, beginning with a file's name
};

// Throws CommandError or hosting::HostingError; an output file is then as it was.
// `showProgress` draws a bar on a terminal.
RenderReport render(const RenderJob& job, bool showProgress);

} // namespace mirelon::tools

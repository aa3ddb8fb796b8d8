// plot IN OUT.png: a file's stereo image before and after the plug-in.
#include "tools/audio/outputformat.h"
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "tools/nearestname.h"
#include "tools/plot/stereopicture.h"
#include "tools/progressbar.h"
#include "tools/renderpass.h"
#include "tools/warning.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

struct PlotOptions {
    RenderOptions pass;
    std::string picture;
};

// Shorter stretches say little about an image; there is no room for more.
constexpr double sliceSeconds = 0.05;
constexpr double mostImageSlices = 360.0;

struct Levels {
    StereoStatistics before;
    StereoStatistics after;
};

// What the second run needs to know of the first: length and largest sample.
Levels measure(const RenderOptions& options, ProgressBar& progress) {
    RenderPass pass(options);
    Levels levels;
    pass.run({.input = [&](auto left, auto right) { levels.before.add(left, right); },
              .output =
                  [&](auto left, auto right) {
                      levels.after.add(left, right);
                      progress.show(static_cast<std::int64_t>(levels.after.frames()));
                  }});
    return levels;
}

std::string subtitle(RenderPass& pass, double seconds) {
    const std::string settings = pass.settingsText().empty() ? "as it comes" : pass.settingsText();
    char length[64];
    std::snprintf(length, sizeof length, "%.2f s, %d Hz", seconds, pass.input().sampleRate());
    return pass.effectName() + ": " + settings + "   \xC2\xB7   " + length + ", " +
           (pass.input().channels() == 1 ? "mono" : "stereo");
}

void plot(const PlotOptions& options) {
    if (!sameName(std::filesystem::path(options.picture).extension().string(), ".png"))
        throw CommandError(options.picture + ": the picture is a PNG file, its name ends in .png");
    if (options.pass.input == "-")
        throw CommandError("a picture takes two runs through IN, standard input has but one");
    RenderPass pass(options.pass);
    const AudioReader& input = pass.input();
    for (const std::string& remark : pass.remarks())
        warn(remark);
    if (input.missingFrames() > 0)
        warn(input.shortfall());
    ProgressBar progress(2 * input.frames());
    const Levels levels = measure(options.pass, progress);

    const std::uint64_t frames = levels.before.frames();
    const double seconds = static_cast<double>(frames) / input.sampleRate();
    double largest = 0.0;
    for (const std::size_t channel : {0U, 1U})
        largest = std::max({largest, levels.before.peak(channel), levels.after.peak(channel)});
    // Infinite samples leave nothing to scale by.
    const double fullScale = largest > 0.0 && std::isfinite(largest) ? largest : 1.0;
    const auto slices =
        static_cast<std::size_t>(std::clamp(seconds / sliceSeconds, 8.0, mostImageSlices));
    const StereoSignal empty{{},
                             StereoHistory(frames, levelSlices),
                             StereoHistory(frames, slices),
                             Goniometer(goniometerSize, fullScale)};
    StereoSignal before = empty;
    StereoSignal after = empty;
    pass.run({.input = [&](auto left, auto right) { before.add(left, right); },
              .output =
                  [&](auto left, auto right) {
                      after.add(left, right);
                      progress.show(static_cast<std::int64_t>(frames + after.whole.frames()));
                  }});
    drawStereoPicture(
        options.picture,
        {std::filesystem::path(options.pass.input).filename().string(), subtitle(pass, seconds)},
        before, after, seconds);
    std::printf("%s: %s before and after\n", options.picture.c_str(), options.pass.input.c_str());
    if (input.missingFrames() > 0)
        throw ExitStatus{ExitStatus::incomplete};
}

Run definePlot(CLI::App& parser) {
    const auto options = std::make_shared<PlotOptions>();
    parser.add_option("IN", options->pass.input, "Any mono or stereo audio file")->required();
    parser.add_option("OUT", options->picture, "The picture, a .png")->required();
    addRenderOptions(parser, options->pass);
    return [options] { plot(*options); };
}

} // namespace

Command plotCommand() {
    return {"plot", "Draw a file's stereo image before and after the plug-in", definePlot};
}

} // namespace mirelon::tools

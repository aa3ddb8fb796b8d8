// render IN OUT: an audio file through the plug-in into another one.
#include "tools/audio/audiowriter.h"
#include "tools/audio/outputformat.h"
#include "tools/audio/stereostatistics.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/progressbar.h"
#include "tools/renderpass.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

struct Options {
    RenderOptions pass;
    std::string output;
};

struct Report {
    StereoStatistics before;
    StereoStatistics after;
    double seconds = 0.0; // of wall clock, reading and encoding included
    std::uint64_t clipped = 0;
};

void printLevels(const char* name, const StereoStatistics& statistics) {
    std::printf("  %-6s  %8.2f  %8.2f   %8.2f  %8.2f   %+6.3f  %+7.3f\n", name,
                decibels(statistics.peak(0)), decibels(statistics.rms(0)),
                decibels(statistics.peak(1)), decibels(statistics.rms(1)), statistics.width(),
                statistics.balance());
}

void print(const Options& options, const RenderPass& pass, int format, const Report& report) {
    const AudioReader& input = pass.input();
    const double length =
        static_cast<double>(report.before.frames()) / static_cast<double>(input.sampleRate());
    std::printf("input     %s (%s, %d Hz, %s)\n", options.pass.input.c_str(),
                formatName(input.format()).c_str(), input.sampleRate(),
                input.channels() == 1 ? "mono" : "stereo");
    std::printf("output    %s (%s)\n", options.output.c_str(), formatName(format).c_str());
    std::printf("settings  %s\n",
                pass.settingsText().empty() ? "the plug-in's own" : pass.settingsText().c_str());
    std::printf("frames    %llu (%.2f s)\n",
                static_cast<unsigned long long>(report.before.frames()), length);
    std::printf("speed     %.0f x real time\n", length / std::max(report.seconds, 1e-9));
    std::printf("\n  dBFS     L peak     L RMS     R peak     R RMS    width  balance\n");
    printLevels("before", report.before);
    printLevels("after", report.after);
    std::printf("\n  width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.\n"
                "  Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole "
                "file.\n");
    if (report.clipped > 0)
        std::printf("\n  %llu samples were beyond full scale and are clipped in the output\n",
                    static_cast<unsigned long long>(report.clipped));
}

void render(const Options& options) {
    RenderPass pass(options.pass);
    const AudioReader& input = pass.input();
    const int format = outputFormat(options.output, input.format(), input.sampleRate());
    AudioWriter writer(std::make_unique<FileOutput>(options.output), format, input.sampleRate());
    writer.copyTexts(input);

    Report report;
    const auto start = std::chrono::steady_clock::now();
    {
        ProgressBar progress(input.frames());
        pass.run({.input = [&](auto left, auto right) { report.before.add(left, right); },
                  .output =
                      [&](auto left, auto right) {
                          report.after.add(left, right);
                          writer.write(left, right);
                          progress.show(static_cast<std::int64_t>(report.after.frames()));
                      }});
    }
    report.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    writer.finish();
    report.clipped = writer.clipped();
    print(options, pass, format, report);
}

} // namespace

Run defineRender(CLI::App& parser) {
    const auto options = std::make_shared<Options>();
    parser.add_option("IN", options->pass.input, "Any mono or stereo audio file")->required();
    parser
        .add_option("OUT", options->output,
                    "The result; its extension says the format, by default that of IN")
        ->required();
    addRenderOptions(parser, options->pass);
    return [options] { render(*options); };
}

} // namespace mirelon::tools

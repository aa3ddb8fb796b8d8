#include "tools/renderreport.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;

double lengthOf(const RenderReport& report) {
    return static_cast<double>(report.before.levels.frames()) /
           static_cast<double>(report.sampleRate);
}

double speedOf(const RenderReport& report) {
    return lengthOf(report) / std::max(report.seconds, 1e-9);
}

// Minus infinity, the level of silence, becomes null.
Json toJson(const SignalReport& signal) {
    const StereoStatistics& levels = signal.levels;
    const auto channel = [&levels](std::size_t number) -> Json {
        return {{"peak", decibels(levels.peak(number))}, {"rms", decibels(levels.rms(number))}};
    };
    Json json{{"left", channel(0)},
              {"right", channel(1)},
              {"width", levels.width()},
              {"balance", levels.balance()},
              {"correlation", levels.correlation()},
              {"notFinite", levels.notFinite()}};
    if (signal.loudness) {
        json["loudness"] = signal.loudness->integrated();
        json["truePeak"] = decibels(signal.loudness->truePeak());
    }
    return json;
}

void printLevels(std::FILE* to, const char* name, const StereoStatistics& levels) {
    std::fprintf(to, "  %-6s  %8.2f  %8.2f   %8.2f  %8.2f   %+6.3f  %+7.3f  %+7.3f\n", name,
                 decibels(levels.peak(0)), decibels(levels.rms(0)), decibels(levels.peak(1)),
                 decibels(levels.rms(1)), levels.width(), levels.balance(), levels.correlation());
}

void printLoudness(std::FILE* to, const char* name, const SignalReport& signal) {
    if (signal.loudness)
        std::fprintf(to, "  %-6s  %8.2f LUFS, true peak %.2f dBTP\n", name,
                     signal.loudness->integrated(), decibels(signal.loudness->truePeak()));
}

} // namespace

Json toJson(const RenderJob& job, const RenderReport& report) {
    return {{"input",
             {{"file", job.pass.input},
              {"format", report.inputFormat},
              {"sampleRate", report.sampleRate},
              {"channels", report.inputChannels},
              {"missingFrames", report.missingFrames}}},
            {"output",
             {{"file", job.output},
              {"format", report.outputFormat},
              {"headroom", job.headroom},
              {"dither", job.dither},
              {"clippedSamples", report.clipped}}},
            {"settings", report.settings},
            {"frames", report.before.levels.frames()},
            {"seconds", lengthOf(report)},
            {"speed", speedOf(report)},
            {"before", toJson(report.before)},
            {"after", toJson(report.after)},
            {"warnings", report.warnings}};
}

void print(const RenderJob& job, const RenderReport& report, std::FILE* to) {
    std::fprintf(to, "input     %s (%s, %d Hz, %s)\n", job.pass.input.c_str(),
                 report.inputFormat.c_str(), report.sampleRate,
                 report.inputChannels == 1 ? "mono" : "stereo");
    std::fprintf(to, "output    %s (%s%s)\n", job.output.c_str(), report.outputFormat.c_str(),
                 job.dither ? ", dithered" : "");
    std::fprintf(to, "settings  %s\n",
                 report.settings.empty() ? "the plug-in's own" : report.settings.c_str());
    if (job.headroom != 0.0)
        std::fprintf(to, "headroom  the output is lowered by %.2f dB\n", job.headroom);
    std::fprintf(to, "frames    %llu (%.2f s)\n",
                 static_cast<unsigned long long>(report.before.levels.frames()), lengthOf(report));
    std::fprintf(to, "speed     %.0f x real time\n", speedOf(report));
    std::fprintf(to, "\n  dBFS     L peak     L RMS     R peak     R RMS    width  balance   "
                     "correl\n");
    printLevels(to, "before", report.before.levels);
    printLevels(to, "after", report.after.levels);
    std::fprintf(to,
                 "\n  width: -0.5 anti-phase to +0.5 mono; balance: -0.5 left to +0.5 right.\n"
                 "  Both are log16 of a ratio of RMS values (L+R to L-R, R to L) over the whole "
                 "file.\n");
    if (report.after.loudness) {
        std::fprintf(to, "\n  loudness after EBU R 128\n");
        printLoudness(to, "before", report.before);
        printLoudness(to, "after", report.after);
    }
    if (report.clipped > 0)
        std::fprintf(to, "\n  %llu samples were beyond full scale and are clipped in the output\n",
                     static_cast<unsigned long long>(report.clipped));
}

} // namespace mirelon::tools

#include "tools/rendering.h"

#include "tools/audio/audiowriter.h"
#include "tools/audio/pipeoutput.h"
#include "tools/commanderror.h"
#include "tools/progressbar.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <unistd.h>
#include <utility>

namespace mirelon::tools {

namespace {

// Any would do; the same makes the same file.
constexpr std::uint64_t ditherSeed = 1;

bool toPipe(const RenderJob& job) {
    return job.output == "-";
}

std::string outputName(const RenderJob& job) {
    return toPipe(job) ? "standard output" : job.output;
}

void refuseToOverwrite(const RenderJob& job) {
    std::error_code ignored;
    if (!toPipe(job) && !job.overwrite && std::filesystem::is_regular_file(job.output, ignored))
        throw CommandError(job.output + ": exists; --overwrite replaces it");
}

ChosenFormat chooseFormat(const RenderJob& job, const AudioReader& input) {
    const int format =
        outputFormat(toPipe(job) ? "" : job.output, input.format(), input.sampleRate(), job.format);
    if (job.dither && integerBits(format) == 0)
        throw CommandError(outputName(job) + ": " + formatName(format) +
                           " is not of integers, which dither is for");
    std::optional<std::uint64_t> frames;
    if (input.lengthKnown())
        frames = static_cast<std::uint64_t>(input.frames());
    else if (toPipe(job)) // which cannot be corrected at the end: no header with sizes
        return {format};
    return formatForLength(format, frames, input.metadata().bytes(), outputName(job));
}

std::unique_ptr<AudioOutput> openOutput(const RenderJob& job, const AudioReader& input,
                                        int format) {
    if (!toPipe(job))
        return std::make_unique<FileOutput>(job.output);
    std::optional<std::uint64_t> frames;
    if (input.lengthKnown())
        frames = static_cast<std::uint64_t>(input.frames());
    return std::make_unique<PipeOutput>(STDOUT_FILENO, format, frames);
}

void warnOfLostMetadata(const RenderJob& job, const AudioReader& input, int format,
                        std::vector<std::string>& warnings) {
    std::string list;
    for (const std::string& each : lostMetadata(input.metadata(), format, input.sampleRate()))
        list.append(list.empty() ? "" : ", ").append(each);
    if (!list.empty())
        warnings.push_back(job.pass.input + ": not carried over into " + outputName(job) + ": " +
                           list);
}

std::string clippingText(const RenderJob& job, const RenderReport& report) {
    const double peak =
        decibels(std::max(report.after.levels.peak(0), report.after.levels.peak(1)));
    std::array<char, 240> text{};
    std::snprintf(text.data(), text.size(),
                  ": %llu samples are beyond full scale, the highest by %.2f dB; --headroom %.1f "
                  "or --bits float keeps them whole",
                  static_cast<unsigned long long>(report.clipped), peak,
                  std::ceil((peak + job.headroom) * 10.0) / 10.0);
    return outputName(job) + text.data();
}

void warnOfBadSamples(const std::string& name, const StereoStatistics& levels,
                      std::vector<std::string>& warnings) {
    if (levels.notFinite() > 0)
        warnings.push_back(name + ": " + std::to_string(levels.notFinite()) +
                           " samples are infinite or no number");
}

// Lowers blocks by some decibels.
class Attenuator {
  public:
    explicit Attenuator(double decibels)
        : factor(std::pow(10.0, -decibels / 20.0)) {}

    std::span<const double> operator()(std::size_t channel, std::span<const double> samples) {
        if (factor == 1.0)
            return samples;
        std::vector<double>& scaled = buffers[channel];
        scaled.resize(samples.size());
        std::transform(samples.begin(), samples.end(), scaled.begin(),
                       [this](double sample) { return sample * factor; });
        return scaled;
    }

  private:
    double factor;
    std::array<std::vector<double>, 2> buffers;
};

} // namespace

void SignalReport::add(std::span<const double> left, std::span<const double> right) {
    levels.add(left, right);
    if (loudness)
        loudness->add(left, right);
}

RenderReport render(const RenderJob& job, bool showProgress) {
    refuseToOverwrite(job);
    RenderPass pass(job.pass);
    const AudioReader& input = pass.input();
    const ChosenFormat format = chooseFormat(job, input);

    RenderReport report;
    report.inputFormat = formatName(input.format());
    report.outputFormat = formatName(format.format);
    report.inputChannels = input.channels();
    report.sampleRate = input.sampleRate();
    report.settings = pass.settingsText();
    report.warnings = pass.remarks();
    if (job.loudness) {
        report.before.loudness = std::make_unique<Loudness>(input.sampleRate());
        report.after.loudness = std::make_unique<Loudness>(input.sampleRate());
    }
    warnOfLostMetadata(job, input, format.format, report.warnings);

    AudioWriter writer(openOutput(job, input, format.format), format, input.sampleRate(),
                       job.dither ? std::optional(ditherSeed) : std::nullopt);
    writer.copyMetadata(input.metadata());
    Attenuator lowered(job.headroom);
    const auto start = std::chrono::steady_clock::now();
    {
        ProgressBar progress(input.frames(), showProgress);
        pass.run({.input = [&](auto left, auto right) { report.before.add(left, right); },
                  .output =
                      [&](auto left, auto right) {
                          const auto lowLeft = lowered(0, left);
                          const auto lowRight = lowered(1, right);
                          report.after.add(lowLeft, lowRight);
                          writer.write(lowLeft, lowRight);
                          progress.show(static_cast<std::int64_t>(report.after.levels.frames()));
                      }});
    }
    report.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    report.clipped = writer.clipped();
    report.missingFrames = input.missingFrames();
    if (report.clipped > 0 && job.noClip)
        throw CommandError(clippingText(job, report));
    writer.finish();

    if (report.missingFrames > 0)
        report.warnings.push_back(input.shortfall());
    warnOfBadSamples(job.pass.input, report.before.levels, report.warnings);
    warnOfBadSamples(outputName(job), report.after.levels, report.warnings);
    if (report.clipped > 0)
        report.warnings.push_back(clippingText(job, report));
    return report;
}

} // namespace mirelon::tools

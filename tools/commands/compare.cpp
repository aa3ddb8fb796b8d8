// compare A B: whether two audio files hold the same sound.
#include "tools/audio/audioreader.h"
#include "tools/audio/nulltest.h"
#include "tools/audio/stereostatistics.h"
#include "tools/commanderror.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "tools/warning.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;

// Of the JSON that is printed; grows when a member changes its meaning or goes.
constexpr int comparisonVersion = 1;

constexpr std::size_t blockFrames = 8192;

struct CompareOptions {
    std::string a;
    std::string b;
    bool json = false;
    bool quiet = false;
};

struct Recording {
    explicit Recording(const std::string& file)
        : reader(file)
        , left(blockFrames)
        , right(blockFrames) {}

    std::size_t next() {
        const std::size_t count = reader.read(left, right);
        frames += count;
        return count;
    }

    AudioReader reader;
    std::vector<double> left;
    std::vector<double> right;
    std::uint64_t frames = 0;
};

NullTest compared(Recording& a, Recording& b) {
    NullTest test;
    while (true) {
        const std::size_t ofA = a.next();
        const std::size_t ofB = b.next();
        const std::size_t both = std::min(ofA, ofB);
        test.add({a.left.data(), both}, {a.right.data(), both}, {b.left.data(), both},
                 {b.right.data(), both});
        if (ofA == ofB && both > 0)
            continue;
        test.addExcess(std::max(ofA, ofB) - both);
        Recording& longer = ofA > ofB ? a : b;
        while (const std::size_t more = ofA == ofB ? 0 : longer.next())
            test.addExcess(more);
        return test;
    }
}

void printText(const CompareOptions& options, const Recording& a, const Recording& b,
               const NullTest& test, bool identical) {
    std::printf("%s and %s: %s\n", options.a.c_str(), options.b.c_str(),
                identical ? "identical" : "different");
    if (a.reader.sampleRate() != b.reader.sampleRate())
        std::printf("  rate        %d Hz and %d Hz\n", a.reader.sampleRate(),
                    b.reader.sampleRate());
    if (a.frames != b.frames)
        std::printf("  length      %llu and %llu frames\n",
                    static_cast<unsigned long long>(a.frames),
                    static_cast<unsigned long long>(b.frames));
    if (test.identical())
        return;
    const auto first = static_cast<unsigned long long>(*test.firstDifferent());
    std::printf("  first       frame %llu (%.3f s)\n", first,
                static_cast<double>(first) / a.reader.sampleRate());
    std::printf("  frames      %llu differ\n",
                static_cast<unsigned long long>(test.differentFrames()));
    std::printf("  difference  peak %.2f dBFS, RMS %.2f dBFS\n", decibels(test.peak()),
                decibels(test.rms()));
}

void printJson(const CompareOptions& options, const Recording& a, const Recording& b,
               const NullTest& test, bool identical) {
    const auto file = [](const std::string& name, const Recording& recording) -> Json {
        return {{"file", name},
                {"sampleRate", recording.reader.sampleRate()},
                {"channels", recording.reader.channels()},
                {"frames", recording.frames},
                {"missingFrames", recording.reader.missingFrames()}};
    };
    const auto first = test.firstDifferent();
    const Json all{
        {"version", comparisonVersion},
        {"a", file(options.a, a)},
        {"b", file(options.b, b)},
        {"identical", identical},
        {"firstDifferentFrame", first ? Json(*first) : Json()},
        {"differentFrames", test.differentFrames()},
        {"difference", {{"peak", decibels(test.peak())}, {"rms", decibels(test.rms())}}}};
    std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void compare(const CompareOptions& options) {
    if (options.a == "-" && options.b == "-")
        throw CommandError("standard input cannot be both");
    Recording a(options.a);
    Recording b(options.b);
    const NullTest test = compared(a, b);
    for (const Recording* const recording : {&a, &b}) {
        if (recording->reader.missingFrames() > 0)
            warn(recording->reader.shortfall());
    }
    const bool identical = test.identical() && a.reader.sampleRate() == b.reader.sampleRate();
    if (options.json)
        printJson(options, a, b, test, identical);
    else if (!options.quiet)
        printText(options, a, b, test, identical);
    if (!identical)
        throw ExitStatus{ExitStatus::different};
}

Run defineCompare(CLI::App& parser) {
    const auto options = std::make_shared<CompareOptions>();
    parser.add_option("A", options->a, "Any mono or stereo audio file, - is standard input")
        ->required();
    parser.add_option("B", options->b, "Another one")->required();
    parser.add_flag("--json", options->json, "Print the result as JSON");
    parser.add_flag("--quiet", options->quiet, "Print nothing, the exit status says it");
    return [options] { compare(*options); };
}

} // namespace

Command compareCommand() {
    return {"compare", "Say whether two audio files hold the same sound", defineCompare};
}

} // namespace mirelon::tools

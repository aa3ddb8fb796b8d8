// render IN OUT: audio files through the plug-in into others.
#include "tools/commanderror.h"
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "tools/renderbatch.h"
#include "tools/rendering.h"
#include "tools/renderreport.h"
#include "tools/warning.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;

struct RenderCommandOptions {
    RenderJob job;
    std::vector<std::string> files;
    std::string folder;
    unsigned parallel = 0; // 0: one for each processor
    bool json = false;
    bool quiet = false;
};

void printJson(Json files, bool toErrors) {
    const Json all{{"version", renderReportVersion}, {"files", std::move(files)}};
    (toErrors ? std::cerr : std::cout)
        << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void renderOne(const RenderJob& job, const RenderCommandOptions& options) {
    const RenderReport report = render(job, !options.quiet);
    for (const std::string& warning : report.warnings)
        warn(warning);
    // Where the sound goes, no report may.
    const bool toErrors = job.output == "-";
    if (options.json)
        printJson(Json::array({toJson(job, report)}), toErrors);
    else if (!options.quiet)
        print(job, report, toErrors ? stderr : stdout);
    if (report.missingFrames > 0)
        throw ExitStatus{ExitStatus::incomplete};
}

bool failed(const Json& file) {
    return file.contains("error");
}

void renderMany(const RenderCommandOptions& options) {
    std::error_code problem;
    std::filesystem::create_directories(options.folder, problem);
    if (problem)
        throw CommandError(options.folder + ": cannot be made (" + problem.message() + ")");
    const std::vector<RenderJob> jobs = jobsInto(options.folder, options.files, options.job);
    std::size_t failures = 0;
    bool incomplete = false;
    const unsigned parallel =
        options.parallel > 0 ? options.parallel : std::thread::hardware_concurrency();
    const std::vector<Json> files = renderAll(jobs, parallel, [&](const Json& file) {
        if (failed(file)) {
            ++failures;
            std::cerr << "mirelon-host: " << file["error"].get<std::string>() << '\n';
            return;
        }
        for (const Json& warning : file["warnings"])
            warn(warning.get<std::string>());
        incomplete = incomplete || file["input"]["missingFrames"].get<std::int64_t>() > 0;
        if (!options.json && !options.quiet) {
            std::printf("%s: %.2f s, %.0f x real time\n",
                        file["output"]["file"].get<std::string>().c_str(),
                        file["seconds"].get<double>(), file["speed"].get<double>());
            std::fflush(stdout);
        }
    });
    if (options.json) {
        printJson(files, false);
    } else if (!options.quiet) {
        std::printf("%zu of %zu files rendered\n", files.size() - failures, files.size());
        for (const Json& file : files) {
            if (failed(file))
                std::printf("failed    %s\n", file["input"]["file"].get<std::string>().c_str());
        }
    }
    std::fflush(stdout);
    if (failures > 0)
        throw ExitStatus{ExitStatus::failed};
    if (incomplete)
        throw ExitStatus{ExitStatus::incomplete};
}

void runRender(RenderCommandOptions& options) {
    if (!options.folder.empty()) {
        for (const std::string& file : options.files) {
            if (file == "-")
                throw CommandError("standard input has no name to go by in " + options.folder);
        }
        renderMany(options);
        return;
    }
    if (options.files.size() < 2)
        throw CommandError("OUT is required (--help shows how)");
    if (options.files.size() > 2)
        throw CommandError("one IN and one OUT, or any number of IN with --out-dir "
                           "(--help shows how)");
    RenderJob job = options.job;
    job.pass.input = options.files[0];
    job.output = options.files[1];
    renderOne(job, options);
}

void addOutputOptions(CLI::App& parser, RenderCommandOptions& options) {
    RenderJob& job = options.job;
    parser
        .add_option("--format", job.format.kind,
                    "Kind of file, whatever OUT is called: wav, rf64, w64, aiff, caf, flac, ...")
        ->type_name("KIND")
        ->check(CLI::IsMember(formatNames(), CLI::ignore_case));
    parser.add_option("--bits", job.format.bits, "Samples of OUT: 8, 16, 24, 32, float or double")
        ->type_name("BITS")
        ->check(CLI::IsMember(std::vector<std::string>(bitNames.begin(), bitNames.end())));
    parser.add_flag("--dither", job.dither,
                    "Add triangular noise of two steps before rounding, the same in every run");
    parser.add_option("--headroom", job.headroom, "Lower the output by so many decibels")
        ->type_name("DB")
        ->check(CLI::Range(0.0, 120.0));
    parser.add_flag("--no-clip", job.noClip, "Fail when samples are beyond full scale");
    parser.add_flag("--overwrite", job.overwrite, "Replace OUT when it exists");
    parser.add_option("--out-dir", options.folder, "Render every IN into this folder")
        ->type_name("FOLDER");
    parser
        .add_option("--jobs", options.parallel,
                    "Files at a time with --out-dir (default: one for each processor)")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1024));
    parser.add_flag("--loudness", job.loudness,
                    "Measure EBU R 128 loudness and true peak, which takes longer");
    parser.add_flag("--json", options.json, "Print the report as JSON");
    parser.add_flag("--quiet", options.quiet, "Print no report");
}

Run defineRender(CLI::App& parser) {
    const auto options = std::make_shared<RenderCommandOptions>();
    parser
        .add_option("FILE", options->files,
                    "IN, any mono or stereo audio file, and OUT, the result, whose extension says "
                    "the format, by default that of IN; - is standard input and output. With "
                    "--out-dir every FILE is an IN")
        ->required()
        ->type_name("");
    addRenderOptions(parser, options->job.pass);
    addOutputOptions(parser, *options);
    return [options] { runRender(*options); };
}

} // namespace

Command renderCommand() {
    return {"render", "Send an audio file through the plug-in", defineRender};
}

} // namespace mirelon::tools

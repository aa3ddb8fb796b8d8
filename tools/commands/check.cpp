// check: a validator for plug-ins.
#include "validator/check.h"
#include "hosting/displayhold.h"
#include "hosting/hostingerror.h"
#include "hosting/pluginfile.h"
#include "tools/checkreport.h"
#include "tools/commanderror.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "tools/loadedplugin.h"
#include "tools/warning.h"
#include "validator/runner.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace mirelon::tools {

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    int level = validator::highestLevel;
    std::vector<std::string> only;
    std::vector<std::string> skip;
    int timeout = 0; // seconds; 0: each check's own
    bool inProcess = false;
    bool strict = false;
    bool json = false;
    bool list = false;
    bool verbose = false;
    bool markdown = false;
    std::uint64_t seed = 0;
    bool seedGiven = false;
    std::string run;      // in the child: the one check
    int report = -1;      // in the child: where its result goes
    std::string activity; // in the child: the file for what it is at
};

// A path does not depend on where it is used; a URI stays as it is. Throws
// CommandError when there is none.
validator::Subject subjectOf(const std::string& given, std::uint64_t seed) {
    const std::string plugin = pluginFile(given);
    try {
        if (hosting::formatOf(plugin) == hosting::PluginFormat::lv2)
            hosting::openPlugin(plugin); // its data files alone: is it there?
    } catch (const hosting::HostingError& error) {
        throw CommandError(error.what());
    }
    const bool isFile = std::filesystem::exists(plugin);
    return {isFile ? std::filesystem::absolute(plugin).string() : plugin, seed};
}

std::vector<const validator::Check*> chosenChecks(const CheckOptions& options,
                                                  hosting::PluginFormat format) {
    const auto named = [](const std::vector<std::string>& names, const validator::Check& check) {
        return std::ranges::find(names, check.name) != names.end();
    };
    for (const auto* const names : {&options.only, &options.skip}) {
        for (const std::string& name : *names)
            if (validator::findCheck(name) == nullptr)
                throw CommandError("there is no check called " + name + " (--list shows them)");
    }
    for (const std::string& name : options.only) {
        const validator::Formats formats = validator::findCheck(name)->formats;
        if (!validator::includes(formats, format))
            throw CommandError("the check " + name + " is for " + validator::nameOf(formats) +
                               " alone");
    }
    std::vector<const validator::Check*> chosen;
    for (const validator::Check& each : validator::checks()) {
        const bool wanted =
            options.only.empty() ? each.level <= options.level : named(options.only, each);
        if (wanted && validator::includes(each.formats, format) && !named(options.skip, each))
            chosen.push_back(&each);
    }
    return chosen;
}

// Whether it reads the file only, which then may be no plug-in at all.
bool looksAtTheFileOnly(const validator::Check* check) {
    return std::string(check->name).starts_with("symbols-");
}

validator::Result runApart(const validator::Check& check, const validator::Subject& subject,
                           const validator::ScratchHome& home, const CheckOptions& options) {
    if (options.inProcess)
        return validator::runHere(check, subject, home);
    return validator::runInChild(check, subject, home,
                                 options.timeout > 0 ? options.timeout : check.seconds);
}

// Throws CommandError for a file that there is nothing to check in.
CheckReport checkOne(const std::string& file, std::uint64_t seed, const CheckOptions& options) {
    const validator::Subject subject = subjectOf(file, seed);
    const auto chosen = chosenChecks(options, hosting::formatOf(subject.plugin));
    const validator::ScratchHome home;
    if (!options.inProcess && !std::ranges::all_of(chosen, looksAtTheFileOnly)) {
        if (const auto why = validator::whyNotLoaded(subject, home))
            throw CommandError(*why);
    }
    CheckReport report(subject, options.level);
    for (const validator::Check* const each : chosen) {
        report.add(runApart(*each, subject, home, options));
        if (!options.json)
            report.printLast();
    }
    if (!options.json)
        report.printSummary();
    return report;
}

void checkAll(const CheckOptions& options) {
    const std::uint64_t seed = options.seedGiven ? options.seed : std::random_device()();
    std::vector<std::string> files = options.files;
    if (files.empty())
        files.emplace_back();
    std::vector<CheckReport> reports;
    std::vector<std::string> refused;
    const hosting::DisplayHold hold; // between the checks nobody may have a connection
    for (const std::string& file : files) {
        try {
            reports.push_back(checkOne(file, seed, options));
        } catch (const CommandError& error) {
            if (files.size() == 1)
                throw;
            warn(error.what());
            refused.emplace_back(error.what());
        }
    }
    if (options.json)
        printJson(reports, refused, seed);
    const auto failed = [&](const CheckReport& report) {
        return report.count(validator::Verdict::failed) > 0 ||
               (options.strict && report.count(validator::Verdict::warned) > 0);
    };
    if (std::ranges::any_of(reports, failed))
        throw ExitStatus{ExitStatus::different};
    if (!refused.empty() || std::ranges::all_of(reports, &CheckReport::saysNothing))
        throw CommandError("nothing could be checked" +
                           (refused.empty() ? ""
                                            : " in " + std::to_string(refused.size()) + " of " +
                                                  std::to_string(files.size()) + " files"));
}

void runCheck(const CheckOptions& options) {
    if (options.markdown)
        return printCheckPage();
    if (options.list)
        return printChecks(options.verbose);
    if (options.run.empty())
        return checkAll(options);
    if (options.files.size() != 1 ||
        !validator::runAndReport(options.run, {options.files[0], options.seed}, options.report,
                                 options.activity))
        throw CommandError("there is no check called " + options.run);
}

void addSelection(CLI::App& parser, const char* name, std::vector<std::string>& names,
                  const char* summary) {
    parser.add_option(name, names, summary)->type_name("CHECK")->allow_extra_args(false);
}

Run defineCheck(CLI::App& parser) {
    const auto options = std::make_shared<CheckOptions>();
    parser
        .add_option("FILE", options->files,
                    "Plug-ins: VST 2.4 .so files, LV2 bundles or URIs, .clap files (default: the "
                    "Mirelon found)")
        ->type_name("");
    parser
        .add_option("--level", options->level, "How strict to be: 1 loads it, 10 runs every check")
        ->check(CLI::Range(validator::lowestLevel, validator::highestLevel))
        ->capture_default_str();
    addSelection(parser, "--only", options->only,
                 "Only this check, whatever its level; repeatable");
    addSelection(parser, "--skip", options->skip, "Not this check; repeatable");
    parser.add_option("--timeout", options->timeout, "Time for each check, in seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 86400));
    parser.add_flag("--in-process", options->inProcess,
                    "Run the checks in this process, for a debugger");
    parser.add_option("--seed", options->seed, "Replay a run: its random numbers start here")
        ->each([options](const std::string&) { options->seedGiven = true; });
    parser.add_flag("--strict", options->strict, "Warnings count as failures");
    parser.add_flag("--json", options->json, "One JSON object instead of lines");
    parser.add_flag("--list", options->list, "Name the checks, their levels and formats");
    parser.add_flag("--verbose", options->verbose, "With --list: say what each check does");
    parser.add_flag("--markdown", options->markdown)->group("");
    parser.add_option("--run", options->run)->group("");
    parser.add_option("--report", options->report)->group("");
    parser.add_option("--activity", options->activity)->group("");
    parser.footer(
        "Exit status: 0 no check failed, 1 a check failed, 2 a file could not be checked.\n"
        "Checks of the editor need an X display and are skipped without one.");
    return [options] { runCheck(*options); };
}

} // namespace

Command checkCommand() {
    return {"check", "Find out what an effect gets wrong", defineCheck};
}

} // namespace mirelon::tools

// check: a validator for plug-ins.
#include "validator/check.h"

#include "hosting/pluginfile.h"
#include "tools/commanderror.h"
#include "tools/commands.h"
#include "tools/exitstatus.h"
#include "validator/runner.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

namespace mirelon::tools {

namespace {

struct Options {
    std::string plugin;
    int level = validator::highestLevel;
    std::vector<std::string> only;
    bool json = false;
    bool list = false;
    std::uint64_t seed = 0;
    bool seedGiven = false;
    std::string run; // in the child: the one check
    int report = -1; // in the child: where its result goes
};

// A path does not depend on where it is used; a URI stays as it is.
validator::Subject subjectOf(const Options& options) {
    const auto format = hosting::formatOf(options.plugin);
    if (format == hosting::PluginFormat::lv2)
        hosting::openPlugin(options.plugin); // its data files alone: is it there?
    return {std::filesystem::exists(options.plugin) ? std::filesystem::absolute(options.plugin).string()
                                                    : options.plugin,
            options.seedGiven ? options.seed : std::random_device()()};
}

std::vector<const validator::Check*> chosenChecks(const Options& options) {
    const auto format = hosting::formatOf(options.plugin);
    std::vector<const validator::Check*> chosen;
    for (const std::string& name : options.only) {
        const validator::Check* const each = validator::findCheck(name);
        if (each == nullptr)
            throw CommandError("there is no check called " + name + " (--list shows them)");
        if (!validator::includes(each->formats, format))
            throw CommandError("the check " + name + " is for " + validator::nameOf(each->formats) +
                               " alone");
    }
    for (const validator::Check& each : validator::checks()) {
        const bool named = std::ranges::find(options.only, each.name) != options.only.end();
        if (validator::includes(each.formats, format) &&
            (options.only.empty() ? each.level <= options.level : named))
            chosen.push_back(&each);
    }
    return chosen;
}

void list() {
    for (const validator::Check& each : validator::checks())
        std::printf("%2d  %-32s %s\n", each.level, each.name, validator::nameOf(each.formats));
}

struct Totals {
    int passed = 0;
    int failed = 0;
    int skipped = 0;

    void count(validator::Verdict verdict) {
        ++(verdict == validator::Verdict::passed   ? passed
           : verdict == validator::Verdict::failed ? failed
                                                   : skipped);
    }
};

void printLine(const validator::Result& result) {
    std::printf("%s  %2d  %-32s %6.2f s%s%s\n", nameOf(result.verdict), result.check->level,
                result.check->name, result.seconds, result.note.empty() ? "" : "  ",
                result.note.c_str());
    std::fflush(stdout);
}

nlohmann::json entryOf(const validator::Result& result) {
    constexpr std::array words{"passed", "failed", "skipped"};
    return {{"name", result.check->name},
            {"level", result.check->level},
            {"result", words[static_cast<std::size_t>(result.verdict)]},
            {"seconds", result.seconds},
            {"note", result.note}};
}

void print(const nlohmann::json& report) {
    using Json = nlohmann::json;
    std::printf("%s\n", report.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

void checkAll(const Options& options) {
    const validator::Subject subject = subjectOf(options);
    const validator::ScratchHome home;
    Totals totals;
    nlohmann::json entries = nlohmann::json::array();
    for (const validator::Check* each : chosenChecks(options)) {
        const validator::Result result = validator::runInChild(*each, subject, home);
        totals.count(result.verdict);
        if (options.json)
            entries.push_back(entryOf(result));
        else
            printLine(result);
    }
    if (options.json)
        print({{"plugin", subject.plugin},
               {"level", options.level},
               {"seed", subject.seed},
               {"checks", entries},
               {"passed", totals.passed},
               {"failed", totals.failed},
               {"skipped", totals.skipped}});
    else
        std::printf("%s, level %d, seed %llu: %d passed, %d failed, %d skipped\n",
                    std::filesystem::path(subject.plugin).filename().c_str(), options.level,
                    static_cast<unsigned long long>(subject.seed), totals.passed, totals.failed,
                    totals.skipped);
    if (totals.failed > 0)
        throw ExitStatus{1};
    if (totals.passed == 0)
        throw CommandError("nothing could be checked");
}

void runCheck(const Options& options) {
    if (options.list)
        return list();
    if (options.plugin.empty())
        throw CommandError("name the plug-in file to check");
    if (options.run.empty())
        return checkAll(options);
    const validator::Check* const each = validator::findCheck(options.run);
    if (each == nullptr)
        throw CommandError("there is no check called " + options.run);
    validator::runAndReport(*each, {options.plugin, options.seed}, options.report);
}

Run define(CLI::App& parser) {
    const auto options = std::make_shared<Options>();
    parser
        .add_option("file", options->plugin,
                    "The plug-in: a VST 2.4 .so, an LV2 bundle or an LV2 URI")
        ->type_name("PLUGIN");
    parser
        .add_option("--level", options->level, "How strict to be: 1 loads it, 10 runs every check")
        ->check(CLI::Range(validator::lowestLevel, validator::highestLevel))
        ->capture_default_str();
    parser.add_option("--only", options->only, "Only this check, whatever its level; repeatable")
        ->type_name("NAME")
        ->allow_extra_args(false);
    parser.add_option("--seed", options->seed, "Replay a run: its random numbers start here")
        ->each([options](const std::string&) { options->seedGiven = true; });
    parser.add_flag("--json", options->json, "One JSON object instead of lines");
    parser.add_flag("--list", options->list, "Name the checks, their levels and formats");
    parser.add_option("--run", options->run)->group("");
    parser.add_option("--report", options->report)->group("");
    parser.footer("Exit status: 0 all passed, 1 a check failed, 2 nothing could be checked.\n"
                  "Checks of the editor need an X display and are skipped without one.");
    return [options] { runCheck(*options); };
}

} // namespace

Command checkCommand() {
    return {"check", "Find out what an effect gets wrong", define};
}

} // namespace mirelon::tools

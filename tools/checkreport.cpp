#include "tools/checkreport.h"

#include "tools/shellquoting.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace mirelon::tools {

namespace {

using Json = nlohmann::ordered_json;
using validator::Result;
using validator::Verdict;

// Of the JSON that is printed; grows when a member changes its meaning or goes.
constexpr int reportVersion = 1;

constexpr const char* indent = "          ";

// In the order of Verdict.
constexpr std::array words{"passed", "failed", "warning", "skipped"};

bool isHappy(const Result& result) {
    return result.verdict == Verdict::passed || result.verdict == Verdict::skipped;
}

// Broken between words.
void printIndented(std::string_view text, std::size_t width) {
    while (!text.empty()) {
        std::size_t end = text.size();
        if (end > width) {
            end = text.rfind(' ', width);
            if (end == std::string_view::npos)
                end = std::min(text.find(' '), text.size());
        }
        std::printf("      %.*s\n", static_cast<int>(end), text.data());
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

} // namespace

CheckReport::CheckReport(const validator::Subject& subject_, int level_)
    : subject(subject_)
    , level(level_) {}

int CheckReport::count(Verdict verdict) const {
    return static_cast<int>(std::ranges::count(results, verdict, &Result::verdict));
}

bool CheckReport::saysNothing() const {
    return count(Verdict::skipped) == static_cast<int>(results.size());
}

std::string CheckReport::commandAgain(const Result& result) const {
    return "mirelon-host check " + shellWord(subject.plugin) + " --only " + result.check->name +
           " --seed " + std::to_string(subject.seed);
}

void CheckReport::printLast() const {
    const Result& result = results.back();
    std::printf("%s  %2d  %-32s %6.2f s%s%s\n", nameOf(result.verdict), result.check->level,
                result.check->name, result.seconds, result.note.empty() ? "" : "  ",
                result.note.c_str());
    if (!isHappy(result)) {
        if (!result.activity.empty())
            std::printf("%swhile: %s\n", indent, result.activity.c_str());
        for (const std::string& line : result.output)
            std::printf("%sprinted: %s\n", indent, line.c_str());
        std::printf("%sagain: %s\n", indent, commandAgain(result).c_str());
    }
    std::fflush(stdout);
}

void CheckReport::printSummary() const {
    std::printf("%s, level %d, seed %llu: %d passed, %d failed, %d warnings, %d skipped\n",
                std::filesystem::path(subject.plugin).filename().c_str(), level,
                static_cast<unsigned long long>(subject.seed), count(Verdict::passed),
                count(Verdict::failed), count(Verdict::warned), count(Verdict::skipped));
    std::fflush(stdout);
}

Json CheckReport::json() const {
    Json entries = Json::array();
    for (const Result& result : results) {
        Json entry{{"name", result.check->name},
                   {"level", result.check->level},
                   {"result", words[static_cast<std::size_t>(result.verdict)]},
                   {"seconds", result.seconds},
                   {"note", result.note}};
        if (!isHappy(result)) {
            entry["while"] = result.activity;
            entry["printed"] = result.output;
            entry["again"] = commandAgain(result);
        }
        entries.push_back(std::move(entry));
    }
    return {{"plugin", subject.plugin},
            {"level", level},
            {"checks", entries},
            {"passed", count(Verdict::passed)},
            {"failed", count(Verdict::failed)},
            {"warnings", count(Verdict::warned)},
            {"skipped", count(Verdict::skipped)}};
}

void printJson(const std::vector<CheckReport>& reports, const std::vector<std::string>& refused,
               std::uint64_t seed) {
    Json plugins = Json::array();
    for (const CheckReport& report : reports)
        plugins.push_back(report.json());
    const Json all{
        {"version", reportVersion}, {"seed", seed}, {"plugins", plugins}, {"refused", refused}};
    std::printf("%s\n", all.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    std::fflush(stdout);
}

void printChecks(bool verbose) {
    for (const validator::Check& each : validator::checks()) {
        std::printf("%2d  %-32s %s\n", each.level, each.name, nameOf(each.formats));
        if (verbose)
            printIndented(descriptionOf(each), 80);
    }
}

void printCheckPage() {
    std::puts(
        "# The checks of mirelon-host\n\n"
        "What `mirelon-host check` does to a plug-in, made of what `mirelon-host check --list\n"
        "--verbose` prints. A check that fails has done what a host does; what no known host\n"
        "does, and what is allowed but hardly ever done, gets a warning.\n\n"
        "| level | check | formats | what it does |\n"
        "|---|---|---|---|");
    for (const validator::Check& each : validator::checks())
        std::printf("| %d | `%s` | %s | %s |\n", each.level, each.name, nameOf(each.formats),
                    descriptionOf(each));
}

} // namespace mirelon::tools

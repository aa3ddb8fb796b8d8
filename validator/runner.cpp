#include "validator/runner.h"

#include "hosting/childprocess.h"
#include "hosting/hostingerror.h"
#include "hosting/pipe.h"
#include "validator/rtguard.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace mirelon::validator {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

fs::path ownProgram() {
    return fs::read_symlink("/proc/self/exe");
}

// Beside the program where it was built, or where it is installed; empty where
// there is none.
fs::path guardLibrary() {
    const fs::path folder = ownProgram().parent_path();
    for (const fs::path& candidate :
         {folder / rtGuardFile, folder / MIRELON_GUARD_FOLDER_FROM_PROGRAM / rtGuardFile}) {
        std::error_code failure;
        if (fs::is_regular_file(candidate, failure))
            return fs::weakly_canonical(candidate);
    }
    return {};
}

// The environment of the child, as texts NAME=VALUE.
std::vector<std::string> childEnvironment(const Check& check, const ScratchHome& home) {
    std::vector<std::string> variables = hosting::ownEnvironment();
    const std::array<std::string, 5> replaced{
        "HOME=", "XDG_CONFIG_HOME=", "XDG_DATA_HOME=", "XDG_CACHE_HOME=", "LD_PRELOAD="};
    std::erase_if(variables, [&](const std::string& variable) {
        return std::ranges::any_of(
            replaced, [&](const std::string& name) { return variable.starts_with(name); });
    });
    const std::string folder = home.folder().string();
    variables.push_back("HOME=" + folder);
    variables.push_back("XDG_CONFIG_HOME=" + folder + "/.config");
    variables.push_back("XDG_DATA_HOME=" + folder + "/.local/share");
    variables.push_back("XDG_CACHE_HOME=" + folder + "/.cache");
    // The display's key is looked for in the home that was.
    const char* const oldHome = std::getenv("HOME");
    if (oldHome != nullptr && std::getenv("XAUTHORITY") == nullptr)
        variables.push_back(std::string("XAUTHORITY=") + oldHome + "/.Xauthority");
    if (check.guard == Guard::realTime)
        variables.push_back("LD_PRELOAD=" + guardLibrary().string());
    return variables;
}

// A sanitizer's runtime must come first in a process and would be displaced.
constexpr bool sanitized =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#else
    false;
#endif

// Of an exit code, or minus a signal.
std::string endOf(int ending) {
    if (ending < 0)
        return std::string("dies: ") + strsignal(-ending);
    return "ends the host's process with exit status " + std::to_string(ending);
}

// A report is a letter and a text.
Result resultOf(const Check& check, const std::string& report, bool inTime, int ending) {
    Result result{&check, Verdict::failed, {}, 0.0};
    if (!inTime) {
        result.note = "still runs after " + std::to_string(check.seconds) + " s";
    } else if (report.empty() || ending != 0) {
        result.note = endOf(ending);
    } else {
        result.verdict = report[0] == 'P'   ? Verdict::passed
                         : report[0] == 'S' ? Verdict::skipped
                                            : Verdict::failed;
        result.note = report.substr(1);
    }
    return result;
}

} // namespace

const char* nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::passed:
        return "pass";
    case Verdict::failed:
        return "FAIL";
    case Verdict::skipped:
        break;
    }
    return "skip";
}

ScratchHome::ScratchHome() {
    std::string pattern = (fs::temp_directory_path() / "mirelon-check-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "no temporary folder");
    path = pattern;
}

ScratchHome::~ScratchHome() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

Result runInChild(const Check& check, const Subject& subject, const ScratchHome& home) {
    if (check.guard == Guard::realTime && sanitized)
        return {&check, Verdict::skipped, "this program is built with a sanitizer", 0.0};
    if (check.guard == Guard::realTime && guardLibrary().empty())
        return {&check, Verdict::skipped, std::string("there is no ") + rtGuardFile, 0.0};
    hosting::Pipe report;
    // The child's own output goes nowhere: the report has a line a check.
    const bool shown = std::getenv("MIRELON_CHECK_OUTPUT") != nullptr;
    const auto begin = Clock::now();
    hosting::ChildProcess child(hosting::ProgramStart{
        .program = "/proc/self/exe",
        .arguments = {"mirelon-host", "check", subject.plugin, "--run", check.name, "--seed",
                      std::to_string(subject.seed), "--report", std::to_string(report.writer())},
        .environment = childEnvironment(check, home),
        .errors = shown ? STDERR_FILENO : -1,
        .kept = report.writer()});
    report.closeWriter();
    std::string text;
    const bool inTime = report.readUntil(begin + std::chrono::seconds(check.seconds), text);
    if (!inTime)
        child.killGroup();
    Result result = resultOf(check, text, inTime, child.wait());
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    return result;
}

void runAndReport(const Check& check, const Subject& subject, int descriptor) {
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    std::string report;
    try {
        report = 'P' + check.run(subject);
    } catch (const Failed& failure) {
        report = std::string("F") + failure.what();
    } catch (const Skipped& reason) {
        report = std::string("S") + reason.what();
    } catch (const hosting::PluginError& failure) {
        report = std::string("F") + failure.what();
    }
    // Only what the effect itself does can keep this from arriving whole.
    static_cast<void>(!write(descriptor, report.data(), report.size()));
}

} // namespace mirelon::validator

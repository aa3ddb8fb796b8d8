#include "validator/runner.h"

#include "hosting/childprocess.h"
#include "hosting/hostingerror.h"
#include "hosting/ownprogram.h"
#include "hosting/pipe.h"
#include "hosting/sanitized.h"
#include "validator/instance.h"
#include "validator/rtguard.h"
#include "validator/xerrors.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace mirelon::validator {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

// Beside the program where it was built, or where it is installed; empty where
// there is none.
fs::path guardLibrary() {
    const fs::path folder = hosting::ownProgram().parent_path();
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

// Of an exit code, or minus a signal.
std::string endOf(int ending) {
    if (ending >= 0)
        return "ends the host's process with exit status " + std::to_string(ending);
    const char* const name = sigabbrev_np(-ending);
    return std::string("dies: ") + strsignal(-ending) + " (SIG" +
           (name != nullptr ? name : std::to_string(-ending)) + ')';
}

// The first word of a report; the rest is a text.
constexpr std::array<std::pair<char, Verdict>, 4> letters{{{'P', Verdict::passed},
                                                           {'F', Verdict::failed},
                                                           {'W', Verdict::warned},
                                                           {'S', Verdict::skipped}}};

char letterOf(Verdict verdict) {
    return std::ranges::find(letters, verdict, &std::pair<char, Verdict>::second)->first;
}

Verdict verdictOf(const Check& check, Verdict said, bool unusual) {
    unusual |= check.severity == Severity::unusual;
    return said == Verdict::failed && unusual ? Verdict::warned : said;
}

// Where a check was when its time was up.
enum class Progress { done, slow, stuck };

// Gives a check some time more to go on to something else: one that does is slow, as on a
// machine with other work, and no call of the effect hangs.
Progress progressAfter(const hosting::Pipe& report, const fs::path& activityFile, int seconds,
                       std::string& text) {
    constexpr int patience = 5;
    const std::string before = activityIn(activityFile);
    const auto end = Clock::now() + std::chrono::seconds(std::min(seconds, patience));
    while (Clock::now() < end) {
        if (report.readUntil(Clock::now() + std::chrono::milliseconds(50), text))
            return Progress::done;
        if (activityIn(activityFile) != before)
            return Progress::slow;
    }
    return Progress::stuck;
}

Result resultOf(const Check& check, const std::string& report, Progress progress, int ending,
                int seconds, bool unusual) {
    Result result{&check, verdictOf(check, Verdict::failed, unusual), {}, 0.0};
    if (progress == Progress::stuck) {
        result.note = "still runs after " + std::to_string(seconds) + " s";
    } else if (progress == Progress::slow) {
        result.verdict = Verdict::warned;
        result.note = "is too slow to be done in " + std::to_string(seconds) + " s";
    } else if (report.empty() || ending != 0) {
        result.note = endOf(ending);
    } else {
        const auto* const letter =
            std::ranges::find(letters, report[0], &std::pair<char, Verdict>::first);
        if (letter != letters.end())
            result.verdict = letter->second;
        result.note = report.substr(1);
    }
    return result;
}

// Takes out what tells a terminal to change colour: "\x1b[", numbers, "m".
void eraseColours(std::string& line) {
    for (std::size_t from = 0; (from = line.find("\x1b[", from)) != std::string::npos;) {
        const std::size_t end = line.find_first_not_of("0123456789;", from + 2);
        if (end != std::string::npos && line[end] == 'm')
            line.erase(from, end + 1 - from);
        else
            from += 2;
    }
}

// Its end, where a crash leaves its reason.
std::vector<std::string> lastLines(const fs::path& file) {
    constexpr std::size_t most = 5;
    constexpr std::streamoff farthest = 4096;
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(0, std::ios::end);
    stream.seekg(std::max<std::streamoff>(0, stream.tellg() - farthest));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        eraseColours(line);
        if (!line.empty())
            lines.push_back(std::move(line));
    }
    if (lines.size() > most)
        lines.erase(lines.begin(), lines.end() - most);
    return lines;
}

// What the X server refused, if nothing else was wrong. Throws Failed or Unusual.
void judgeXErrors() {
    const std::string errors = notedXErrors();
    if (errors.empty())
        return;
    if (areXErrorsOfSoftwareOpenGl())
        throw Unusual(errors + "; OpenGL asked for that, which has no graphics card here");
    require(!hasWindowManager(), errors);
    throw Unusual(errors + "; there is no window manager on this display, which it may rely on");
}

Result run(const Check& check, const Subject& subject) {
    Result result{&check, Verdict::passed, {}, 0.0};
    const auto end = [&](Verdict verdict, const std::exception& why) {
        result.verdict = verdictOf(check, verdict, isUnusual());
        result.note = why.what();
    };
    setActivity({});
    setUnusual(false);
    try {
        result.note = check.run(subject);
        judgeXErrors();
    } catch (const Failed& failure) {
        end(Verdict::failed, failure);
    } catch (const Unusual& what) {
        end(Verdict::warned, what);
    } catch (const Skipped& reason) {
        end(Verdict::skipped, reason);
    } catch (const hosting::PluginError& failure) {
        end(Verdict::failed, failure);
    }
    result.activity = activity();
    return result;
}

std::string loadAlone(const Subject& subject) {
    doing("loading the plug-in");
    const Instance instance(subject);
    return {};
}

// No check of the table: whether there is anything to check.
constexpr Check probe{"can-be-loaded", 0, Formats::all, loadAlone, 60};

} // namespace

const char* nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::passed:
        return "pass";
    case Verdict::failed:
        return "FAIL";
    case Verdict::warned:
        return "warn";
    case Verdict::skipped:
        break;
    }
    return "skip";
}

Result runInChild(const Check& check, const Subject& subject, const ScratchHome& home,
                  int seconds) {
    if (check.guard == Guard::realTime && hosting::sanitized)
        return {&check, Verdict::skipped, "this program is built with a sanitizer", 0.0};
    if (check.guard == Guard::realTime && guardLibrary().empty())
        return {&check, Verdict::skipped, std::string("there is no ") + rtGuardFile, 0.0};
    const fs::path activityFile = home.reports() / "activity";
    const fs::path outputFile = home.reports() / "output";
    fs::remove(activityFile);
    const int output =
        open(outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    hosting::Pipe report;
    // The child's own output is kept for the report, which has a line a check.
    const bool shown = std::getenv("MIRELON_CHECK_OUTPUT") != nullptr;
    const auto begin = Clock::now();
    hosting::ChildProcess child(hosting::ProgramStart{
        .program = hosting::ownProgram(),
        .arguments = {"mirelon-host", "check", subject.plugin, "--run", check.name, "--seed",
                      std::to_string(subject.seed), "--report", std::to_string(report.writer()),
                      "--activity", activityFile.string()},
        .environment = childEnvironment(check, home),
        .output = shown ? STDERR_FILENO : output,
        .errors = shown ? STDERR_FILENO : output,
        .kept = report.writer()});
    home.guard(child.id());
    close(output);
    report.closeWriter();
    std::string text;
    const Progress progress = report.readUntil(begin + std::chrono::seconds(seconds), text)
                                  ? Progress::done
                                  : progressAfter(report, activityFile, seconds, text);
    if (progress != Progress::done)
        child.killGroup();
    Result result =
        resultOf(check, text, progress, child.wait(), seconds, isUnusualIn(activityFile));
    home.guard(0);
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    result.activity = activityIn(activityFile);
    result.output = lastLines(outputFile);
    return result;
}

Result runHere(const Check& check, const Subject& subject, const ScratchHome& home) {
    for (const std::string& variable : childEnvironment(check, home)) {
        const auto equals = variable.find('=');
        const std::string name = variable.substr(0, equals);
        if (name != "LD_PRELOAD")
            setenv(name.c_str(), variable.c_str() + equals + 1, 1);
    }
    const auto begin = Clock::now();
    Result result = run(check, subject);
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    return result;
}

std::optional<std::string> whyNotLoaded(const Subject& subject, const ScratchHome& home) {
    const Result result = runInChild(probe, subject, home, probe.seconds);
    // Only what was reported is a reason; a crash is for the checks to find.
    if (result.verdict == Verdict::failed && result.activity.empty())
        return result.note;
    return std::nullopt;
}

bool runAndReport(const std::string& name, const Subject& subject, int descriptor,
                  const fs::path& activity) {
    const Check* const check = name == probe.name ? &probe : findCheck(name);
    if (check == nullptr)
        return false;
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    // It is not to outlive who asked.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    keepActivityIn(activity);
    const Result result = run(*check, subject);
    if (check == &probe)
        setActivity({});
    const std::string report = letterOf(result.verdict) + result.note;
    // Only what the effect itself does can keep this from arriving whole.
    static_cast<void>(!write(descriptor, report.data(), report.size()));
    return true;
}

} // namespace mirelon::validator

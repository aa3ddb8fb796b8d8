#include "validator/runner.h"

#include "hosting/argumentpointers.h"
#include "hosting/pluginerror.h"
#include "validator/rtguard.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace mirelon::check {

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
    std::vector<std::string> variables;
    const std::array<std::string, 5> replaced{
        "HOME=", "XDG_CONFIG_HOME=", "XDG_DATA_HOME=", "XDG_CACHE_HOME=", "LD_PRELOAD="};
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        bool kept = true;
        for (const std::string& name : replaced)
            kept = kept && !text.starts_with(name);
        if (kept)
            variables.push_back(text);
    }
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

class Pipe {
  public:
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
    }
    ~Pipe() {
        close(ends[0]);
        closeWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int reader() const { return ends[0]; }
    int writer() const { return ends[1]; }
    void closeWriter() {
        if (ends[1] >= 0)
            close(ends[1]);
        ends[1] = -1;
    }

  private:
    std::array<int, 2> ends{-1, -1};
};

// A sanitizer's runtime must come first in a process and would be displaced.
constexpr bool sanitized =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#else
    false;
#endif

// The child's own output goes nowhere: the report has a line a check.
[[noreturn]] void becomeChild(std::vector<std::string>& arguments,
                              std::vector<std::string>& environment, int report) {
    setpgid(0, 0);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    if (std::getenv("MIRELON_CHECK_OUTPUT") == nullptr)
        dup2(nowhere, STDERR_FILENO);
    const int kept = dup(report); // without close-on-exec
    arguments.push_back(std::to_string(kept));
    execve("/proc/self/exe", hosting::pointersTo(arguments).data(),
           hosting::pointersTo(environment).data());
    _exit(127);
}

// What comes through the pipe until its writers are gone or the time is up.
bool readUntil(int descriptor, Clock::time_point end, std::string& text) {
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd ready{descriptor, POLLIN, 0};
        if (poll(&ready, 1, static_cast<int>(left)) <= 0)
            continue;
        std::array<char, 4096> buffer{};
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count == 0)
            return true;
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::string endOf(int status) {
    if (WIFSIGNALED(status))
        return std::string("dies: ") + strsignal(WTERMSIG(status));
    return "ends the host's process with exit status " + std::to_string(WEXITSTATUS(status));
}

// A report is a letter and a text.
Result resultOf(const Check& check, const std::string& report, bool inTime, int status) {
    Result result{&check, Verdict::failed, {}, 0.0};
    if (!inTime) {
        result.note = "still runs after " + std::to_string(check.seconds) + " s";
    } else if (report.empty() || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        result.note = endOf(status);
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
    std::vector<std::string> arguments{
        "mirelon-host", "check",  subject.file.string(),        "--run",
        check.name,     "--seed", std::to_string(subject.seed), "--report"};
    std::vector<std::string> environment = childEnvironment(check, home);
    Pipe report;
    const auto begin = Clock::now();
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0)
        becomeChild(arguments, environment, report.writer());
    report.closeWriter();
    std::string text;
    const bool inTime =
        readUntil(report.reader(), begin + std::chrono::seconds(check.seconds), text);
    if (!inTime)
        kill(-child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    Result result = resultOf(check, text, inTime, status);
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

} // namespace mirelon::check

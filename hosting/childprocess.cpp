#include "hosting/childprocess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace mirelon::hosting {

namespace {

constexpr int cannotStart = 127; // as shells have it
constexpr std::chrono::milliseconds pollInterval{5};

// Pointers to the texts, which must outlive them, and a null pointer at the end.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

class FileActions {
  public:
    FileActions() { posix_spawn_file_actions_init(&actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    // `descriptor` under the number `as`; -1: what is written there is lost, and
    // nothing is to be read.
    void give(int descriptor, int as) {
        if (descriptor < 0)
            posix_spawn_file_actions_addopen(&actions, as, "/dev/null", O_RDWR, 0);
        else
            posix_spawn_file_actions_adddup2(&actions, descriptor, as);
    }
    const posix_spawn_file_actions_t* get() const { return &actions; }

  private:
    posix_spawn_file_actions_t actions{};
};

} // namespace

std::vector<std::string> ownEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable)
        variables.emplace_back(*variable);
    return variables;
}

ChildProcess::ChildProcess(const ProgramStart& start)
    : leadsGroup(true) {
    FileActions files;
    files.give(-1, STDIN_FILENO);
    files.give(start.output, STDOUT_FILENO);
    files.give(start.errors, STDERR_FILENO);
    if (start.kept)
        files.give(*start.kept, *start.kept); // takes close-on-exec off
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    std::vector<std::string> arguments = start.arguments;
    std::vector<std::string> environment = start.environment;
    if (posix_spawn(&process, start.program.c_str(), files.get(), &attributes,
                    pointersTo(arguments).data(), pointersTo(environment).data()) != 0)
        ending = cannotStart;
    posix_spawnattr_destroy(&attributes);
}

ChildProcess::ChildProcess(const std::function<int()>& work)
    : process(fork()) {
    if (process == 0)
        _exit(work());
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
}

ChildProcess::~ChildProcess() {
    if (isRunning()) {
        killGroup();
        wait();
    }
}

bool ChildProcess::reap(int options) {
    if (ending)
        return true;
    int status = 0;
    rusage usage{};
    pid_t ended = 0;
    do
        ended = wait4(process, &status, options, &usage);
    while (ended < 0 && errno == EINTR);
    if (ended != process)
        return false;
    ending = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    peak = usage.ru_maxrss;
    return true;
}

bool ChildProcess::isRunning() {
    return !reap(WNOHANG);
}

void ChildProcess::kill(int signal) {
    if (isRunning())
        ::kill(process, signal);
}

void ChildProcess::killGroup() {
    if (!isRunning())
        return;
    // It need not be in the group: it may have moved to another one.
    ::kill(process, SIGKILL);
    if (leadsGroup)
        ::kill(-process, SIGKILL);
}

int ChildProcess::wait() {
    reap(0);
    return ending.value_or(cannotStart);
}

bool ChildProcess::waitFor(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (isRunning()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

} // namespace mirelon::hosting

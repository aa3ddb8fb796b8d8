#include "tests/hosts/program.h"

#include "hosting/argumentpointers.h"
#include "tests/support/temporaryfolder.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirelon::test {

Program::Program(const std::vector<std::string>& command, const Environment& environment,
                 std::filesystem::path logFile)
    : log(std::move(logFile)) {
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment)
        variables.emplace_back(name).append("=").append(value);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, log.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    if (posix_spawn(&process, arguments.front().c_str(), &files, &attributes,
                    hosting::pointersTo(arguments).data(),
                    hosting::pointersTo(variables).data()) != 0) {
        process = -1;
        exitCode = 127;
    }
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
}

Program::~Program() {
    if (isRunning()) {
        killGroup();
        waitpid(process, nullptr, 0);
    }
}

// What it started itself goes with it.
void Program::killGroup() const {
    kill(-process, SIGKILL);
}

bool Program::isRunning() {
    if (exitCode)
        return false;
    int status = 0;
    if (waitpid(process, &status, WNOHANG) != process)
        return true;
    exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return false;
}

void Program::end(std::chrono::seconds limit) {
    if (!isRunning())
        return;
    kill(process, SIGTERM);
    wait(limit);
}

Outcome Program::wait(std::chrono::seconds limit) {
    Outcome outcome;
    outcome.inTime = eventually(limit, [this] { return !isRunning(); });
    if (!outcome.inTime) {
        killGroup();
        eventually(std::chrono::seconds(10), [this] { return !isRunning(); });
    }
    outcome.exitCode = exitCode.value_or(-1);
    outcome.output = contentsOf(log);
    return outcome;
}

bool isExecutable(const std::filesystem::path& file) {
    return access(file.c_str(), X_OK) == 0;
}

} // namespace mirelon::test

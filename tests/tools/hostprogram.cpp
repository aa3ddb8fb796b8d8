#include "tests/tools/hostprogram.h"

#include "hosting/argumentpointers.h"
#include "tests/support/temporaryfolder.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace mirelon::test {

RunningProgram::RunningProgram(const std::filesystem::path& program,
                               std::vector<std::string> arguments,
                               const std::filesystem::path& home_,
                               const std::vector<std::pair<std::string, std::string>>& environment,
                               int errorDescriptor)
    : home(home_) {
    arguments.insert(arguments.begin(), program.string());
    std::vector<std::string> variables{"HOME=" + home.string(), "PATH=/usr/bin:/bin", "LC_ALL=C"};
    // A sanitizer's options hold for the program as for its test.
    for (const char* const name :
         {"ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* const value = std::getenv(name))
            variables.emplace_back(name).append(1, '=').append(value);
    }
    for (const auto& [name, value] : environment)
        variables.emplace_back(name).append(1, '=').append(value);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    const std::string output = home / ".stdout";
    const std::string errors = home / ".stderr";
    const int create = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), create, 0600);
    if (errorDescriptor >= 0)
        posix_spawn_file_actions_adddup2(&files, errorDescriptor, STDERR_FILENO);
    else
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), create, 0600);
    const int failure =
        posix_spawn(&process, program.c_str(), &files, nullptr,
                    hosting::pointersTo(arguments).data(), hosting::pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0) {
        process = -1;
        ADD_FAILURE() << program << " does not start: " << std::strerror(failure);
    }
}

RunningProgram::~RunningProgram() {
    if (process > 0) {
        signal(SIGKILL);
        wait();
    }
}

void RunningProgram::signal(int number) const {
    if (process > 0)
        kill(process, number);
}

ProgramResult RunningProgram::wait() {
    ProgramResult result;
    int status = 0;
    rusage usage{};
    while (wait4(process, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    process = -1;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.peakMemory = usage.ru_maxrss;
    result.output = contentsOf(home / ".stdout");
    result.errors = contentsOf(home / ".stderr");
    return result;
}

ProgramResult runHost(std::vector<std::string> arguments) {
    const TemporaryFolder home;
    return RunningProgram(MIRELON_HOST_PROGRAM, std::move(arguments), home.path).wait();
}

ProgramResult runMirelon(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--plugin", MIRELON_PLUGIN_FILE});
    return runHost(std::move(arguments));
}

std::string testPlugin(const std::string& name) {
    return MIRELON_TEST_PLUGINS + name + ".so";
}

} // namespace mirelon::test

#include "platform/helperprocess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace mirelon {

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number = -1)
        : number(number) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    void reset(int next = -1) {
        if (number >= 0)
            close(number);
        number = next;
    }
    int get() const { return number; }

  private:
    int number;
};

std::vector<char*> cleanEnvironment() {
    std::vector<char*> kept;
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string_view(*variable).starts_with("LD_"))
            kept.push_back(*variable);
    kept.push_back(nullptr);
    return kept;
}

// 0 when it cannot be started.
pid_t start(const std::string& program, std::span<const std::string> arguments, int output) {
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    for (const int signal : {SIGINT, SIGHUP, SIGQUIT, SIGTERM, SIGPIPE, SIGCHLD, SIGALRM})
        sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    pid_t child = 0;
    const int failure = posix_spawn(&child, program.c_str(), &files, &attributes, argv.data(),
                                    cleanEnvironment().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? child : 0;
}

std::optional<std::string> readAll(int descriptor) {
    constexpr std::size_t longest = 1 << 16;
    std::string text;
    std::array<char, 1024> part{};
    for (;;) {
        const ssize_t count = read(descriptor, part.data(), part.size());
        if (count == 0)
            return text;
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || text.size() + static_cast<std::size_t>(count) > longest)
            return std::nullopt;
        text.append(part.data(), static_cast<std::size_t>(count));
    }
}

bool succeeded(pid_t child) {
    int status = 0;
    pid_t ended = 0;
    do
        ended = waitpid(child, &status, 0);
    while (ended < 0 && errno == EINTR);
    // A host that collects every child's end itself leaves no status to us.
    return ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace

std::optional<std::string> runHelper(const std::string& program,
                                     std::span<const std::string> arguments) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    Descriptor readEnd(ends[0]);
    Descriptor writeEnd(ends[1]);
    const pid_t child = start(program, arguments, writeEnd.get());
    if (child == 0)
        return std::nullopt;
    writeEnd.reset();
    std::optional<std::string> output = readAll(readEnd.get());
    readEnd.reset(); // a program that still writes ends by it
    return succeeded(child) ? std::move(output) : std::nullopt;
}

} // namespace mirelon

#include "platform/helperprocess.h"

#include "platform/runloop.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace mirelon {

namespace {

using namespace std::chrono_literals;

// How often a program is looked at whose output does not tell of its end.
constexpr auto lookInterval = 33ms;
// More than any path.
constexpr std::size_t longestOutput = 1 << 16;
// What a program has, to end when it is told to, before it is killed.
constexpr auto grace = 500ms;

std::vector<char*> cleanEnvironment() {
    std::vector<char*> kept;
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string_view(*variable).starts_with("LD_"))
            kept.push_back(*variable);
    kept.push_back(nullptr);
    return kept;
}

// 0 when it cannot be started.
pid_t spawn(const std::string& program, std::span<const std::string> arguments, int output) {
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
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETPGROUP);

    pid_t child = 0;
    const int failure = posix_spawn(&child, program.c_str(), &files, &attributes, argv.data(),
                                    cleanEnvironment().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? child : 0;
}

enum class Life { running, ended, unknown };

// Leaves a program that has ended in the table of processes, so that its number
// stays its own. A host that collects every child's end leaves nothing to ask of.
Life lifeOf(pid_t child) {
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0)
        return Life::unknown;
    return info.si_pid == 0 ? Life::running : Life::ended;
}

// Sends it to a program that has not been collected, and to its process group, which
// it need not be in: it may have moved to another one, or, in an emulator whose vfork
// does not wait for it, not have come so far.
void signalGroup(pid_t leader, int signal) {
    const bool elsewhere = getpgid(leader) != leader; // asked first: it may arrive meanwhile
    kill(-leader, signal);
    if (elsewhere)
        kill(leader, signal);
}

void collect(pid_t leader) {
    const auto deadline = std::chrono::steady_clock::now() + grace;
    Life life = lifeOf(leader);
    for (; life == Life::running && std::chrono::steady_clock::now() < deadline;
         life = lifeOf(leader))
        std::this_thread::sleep_for(10ms);
    if (life == Life::unknown)
        return;
    signalGroup(leader, SIGKILL);
    waitpid(leader, nullptr, 0);
}

// Tells a program and its process group to end, and sees to it that they do, on a
// thread of its own: there may be no loop any more by then.
void endGroup(pid_t leader) {
    if (lifeOf(leader) == Life::unknown)
        return; // the number may be another's already
    signalGroup(leader, SIGTERM);
    // The host's signals are none of that thread's business.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread(collect, leader).detach();
    } catch (const std::exception&) { // no thread to be had
        signalGroup(leader, SIGKILL);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace

HelperProcess::HelperProcess(Ended ended)
    : ended(std::move(ended)) {}

HelperProcess::~HelperProcess() {
    stop();
}

std::unique_ptr<HelperProcess> HelperProcess::start(const std::string& program,
                                                    std::span<const std::string> arguments,
                                                    Ended ended) {
    std::unique_ptr<HelperProcess> process(new HelperProcess(std::move(ended)));
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return nullptr;
    process->output = ends[0];
    fcntl(process->output, F_SETFL, O_NONBLOCK);
    process->child = spawn(program, arguments, ends[1]);
    close(ends[1]);
    if (process->child == 0)
        return nullptr;
    process->watch();
    return process;
}

void HelperProcess::watch() {
    RunLoop& loop = RunLoop::instance();
    outputWatch = loop.watchDescriptor(output, [this] { look(); });
    // Its output ends before the program does, or long after it where another
    // program has been left with it.
    endTimer = loop.addTimer(lookInterval, [this] { look(); });
}

void HelperProcess::look() {
    // In this order: what the program wrote is there once it has ended.
    State state = takeState();
    readOutput();
    if (text.size() > longestOutput)
        state = State::failed;
    if (state == State::running)
        return;
    stop();
    std::optional<std::string> written;
    if (state == State::succeeded)
        written = std::move(text);
    const Ended told = std::move(ended);
    told(std::move(written));
}

HelperProcess::State HelperProcess::takeState() {
    int status = 0;
    const pid_t taken = waitpid(child, &status, WNOHANG);
    if (taken == 0)
        return State::running;
    child = 0;
    // A host that collects every child's end itself leaves no status to us.
    const bool succeeded = taken < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return succeeded ? State::succeeded : State::failed;
}

void HelperProcess::readOutput() {
    std::array<char, 4096> part{};
    while (output >= 0 && text.size() <= longestOutput) {
        const ssize_t count = read(output, part.data(), part.size());
        if (count > 0)
            text.append(part.data(), static_cast<std::size_t>(count));
        else if (count == 0)
            closeOutput();
        else if (errno != EINTR)
            return;
    }
}

void HelperProcess::closeOutput() {
    RunLoop::instance().unwatchDescriptor(outputWatch);
    if (output >= 0)
        close(output);
    output = -1;
}

void HelperProcess::stop() {
    const auto held = EditorThread::instance().lock();
    closeOutput();
    RunLoop::instance().removeTimer(endTimer);
    if (child != 0)
        endGroup(child);
    child = 0;
}

} // namespace mirelon

// A process of our own: another program, or a part of this one.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace mirelon::hosting {

// How a program is started. Its standard input is empty.
struct ProgramStart {
    std::filesystem::path program{};
    std::vector<std::string> arguments{};   // the first is what it is called
    std::vector<std::string> environment{}; // NAME=VALUE; nothing else is inherited
    int output = -1;                        // a descriptor; -1: goes nowhere
    int errors = -1;
    std::optional<int> kept{}; // a descriptor that it gets under the same number
};

// This process's environment, as ProgramStart takes it.
std::vector<std::string> ownEnvironment();

// One thread at a time.
class ChildProcess {
  public:
    // A program, in a process group of its own. One that cannot be started has
    // ended with exit code 127.
    explicit ChildProcess(const ProgramStart& start);
    // Runs `work` in a fork of this process, which then ends at once with the
    // result as its exit code. Throws std::system_error when there is no fork.
    explicit ChildProcess(const std::function<int()>& work);
    // Kills what still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const noexcept { return process; }
    bool isRunning();

    // Sends a signal to the process, if it runs.
    void kill(int signal);
    // Kills the process and, of a program, what that has started itself.
    void killGroup();

    // The exit code, or minus the signal that ended it.
    int wait();
    // Whether it has ended within the limit.
    bool waitFor(std::chrono::milliseconds limit);

    // The most memory that it had resident, in KiB; known once it has ended.
    long peakMemory() const noexcept { return peak; }

  private:
    bool reap(int options); // whether it has ended

    pid_t process = -1;
    bool leadsGroup = false;
    std::optional<int> ending;
    long peak = 0;
};

} // namespace mirelon::hosting

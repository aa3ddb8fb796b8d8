// A helper program that runs apart from the host's surroundings, and that nobody
// waits for.
#pragma once

#include "platform/descriptorwatches.h"
#include "platform/timerschedule.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>

namespace mirelon {

// The run loop watches it: it needs an open editor. On the editors' thread or
// under their lock.
//
// The program gets the environment without the dynamic linker's variables (hosts
// that bring their own libraries set them for themselves), none of the host's open
// files, signals as in a fresh process, and a process group of its own.
class HelperProcess final {
  public:
    // What the program wrote to its standard output until it ended; nothing when it
    // failed or wrote more than a path can be.
    using Ended = std::function<void(std::optional<std::string> output)>;

    // Starts `program` (a path) with `arguments`; null when it cannot be started.
    // `ended` is called once, from the run loop, and may destroy this object. What
    // the program has left behind, holding its output open, delays it by nothing.
    static std::unique_ptr<HelperProcess>
    start(const std::string& program, std::span<const std::string> arguments, Ended ended);

    // A program that still runs is ended with all its process group; `ended` is not
    // called then. Waits for nothing.
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

  private:
    enum class State { running, succeeded, failed };

    explicit HelperProcess(Ended ended);
    void watch();
    void look();
    State takeState();
    void readOutput();
    void closeOutput();
    void stop();

    Ended ended;
    pid_t child = 0; // 0: none that is ours any more
    int output = -1;
    std::string text;
    DescriptorWatches::Id outputWatch = 0;
    TimerSchedule::Id endTimer = 0;
};

} // namespace mirelon

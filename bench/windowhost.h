// What benchmarks of open windows share: processor time, and a host's loop.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace mirelon::bench {

using Clock = std::chrono::steady_clock;

double median(std::vector<double> values); // of at least one
double seconds(Clock::duration time);

// --- Processor time, in seconds ---

double ownSeconds();
// The server is this process's only child.
std::string serverStatFile();
// Throws std::runtime_error when there is no such file.
double serverSeconds(const std::string& statFile);

// --- The host's loop ---

// Something that the host does again and again.
struct Job {
    Clock::duration interval;
    std::function<void()> work;
    Clock::time_point due{};
};

// Runs all jobs, and GLib's loop in between, which may sleep until the next.
void runFor(Clock::duration time, std::vector<Job> jobs, bool withGlib);

// --- Figures ---

// What `measure` has found, in a process and so on a display of its own. Throws
// std::runtime_error when it throws, dies or finds another number of figures.
std::vector<double> measuredInAProcess(std::size_t count,
                                       const std::function<std::vector<double>()>& measure);

} // namespace mirelon::bench

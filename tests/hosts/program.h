// Another program, run by a test and ended with it.
#pragma once

#include "hosting/childprocess.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace mirelon::test {

// The whole environment of a program; nothing is inherited.
using Environment = std::map<std::string, std::string>;

struct Outcome {
    int exitCode = -1;   // minus the signal that ended it
    bool inTime = false; // false: it ran into the limit and was killed
    std::string output;  // both streams
};

// Killed with what it has started itself when it still runs in the end.
class Program {
  public:
    // Both output streams go to `log`. A program that cannot be started exits
    // with 127.
    Program(const std::vector<std::string>& command, const Environment& environment,
            std::filesystem::path log);

    pid_t id() const { return process.id(); }
    bool isRunning() { return process.isRunning(); }
    // Kills the program when the limit is over.
    Outcome wait(std::chrono::seconds limit);
    // Asks the program to end and kills it when it has not within the limit.
    void end(std::chrono::seconds limit);

  private:
    std::filesystem::path log;
    hosting::ChildProcess process;
};

bool isExecutable(const std::filesystem::path& file);

// Asks again and again until `condition` holds or the limit is over.
template <typename Condition>
bool eventually(std::chrono::seconds limit, Condition condition) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

} // namespace mirelon::test

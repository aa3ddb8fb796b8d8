// A command line run to its end.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace mirelon::test {

struct Outcome {
    int status = -1;    // exit status; -1 when a signal ended it
    std::string output; // both streams
};

inline Outcome run(const std::string& command) {
    Outcome outcome;
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        return outcome;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        outcome.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

} // namespace mirelon::test

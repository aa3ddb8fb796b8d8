// Commands of the shell.
#pragma once

#include "hosting/childprocess.h"
#include "hosting/pipe.h"

#include <string>

namespace mirelon::test {

struct ShellResult {
    int status = 0;     // exit status, or minus the signal that ended it
    std::string output; // standard output; with 2>&1 in the command both streams
};

// Runs `command` to its end; what it writes to standard error is lost.
inline ShellResult runShell(const std::string& command) {
    hosting::Pipe output;
    hosting::ChildProcess shell(hosting::ProgramStart{.program = "/bin/sh",
                                                      .arguments = {"sh", "-c", command},
                                                      .environment = hosting::ownEnvironment(),
                                                      .output = output.writer()});
    output.closeWriter();
    ShellResult result;
    output.readUntil(std::chrono::steady_clock::time_point::max(), result.output);
    result.status = shell.wait();
    return result;
}

} // namespace mirelon::test

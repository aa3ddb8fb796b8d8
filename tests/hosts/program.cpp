#include "tests/hosts/program.h"

#include "tests/support/outputfile.h"
#include "tests/support/temporaryfolder.h"

#include <csignal>
#include <unistd.h>

namespace mirelon::test {

namespace {

hosting::ProgramStart startOf(const std::vector<std::string>& command,
                              const Environment& environment, const OutputFile& log) {
    hosting::ProgramStart start{.program = command.front(),
                                .arguments = command,
                                .environment = {},
                                .output = log.descriptor,
                                .errors = log.descriptor};
    for (const auto& [name, value] : environment)
        start.environment.emplace_back(name).append("=").append(value);
    return start;
}

} // namespace

Program::Program(const std::vector<std::string>& command, const Environment& environment,
                 std::filesystem::path logFile)
    : log(std::move(logFile))
    , process(startOf(command, environment, OutputFile(log))) {}

void Program::end(std::chrono::seconds limit) {
    process.kill(SIGTERM);
    wait(limit);
}

Outcome Program::wait(std::chrono::seconds limit) {
    Outcome outcome;
    outcome.inTime = process.waitFor(limit);
    if (!outcome.inTime)
        process.killGroup();
    outcome.exitCode = process.wait();
    outcome.output = contentsOf(log);
    return outcome;
}

bool isExecutable(const std::filesystem::path& file) {
    return access(file.c_str(), X_OK) == 0;
}

} // namespace mirelon::test

#include "tests/tools/hostprogram.h"

#include "tests/support/outputfile.h"
#include "tests/support/temporaryfolder.h"

#include <cstdlib>

namespace mirelon::test {

namespace {

using Variables = std::vector<std::pair<std::string, std::string>>;

std::vector<std::string> environmentOf(const std::filesystem::path& home, const Variables& more) {
    std::vector<std::string> all{"HOME=" + home.string(), "PATH=/usr/bin:/bin", "LC_ALL=C"};
    // A sanitizer's options and the choice of a mutation hold for the program as for its test.
    for (const char* const name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS",
                                   "MUTANT", "MUTANTS_REACHED"}) {
        if (const char* const value = std::getenv(name))
            all.emplace_back(name).append(1, '=').append(value);
    }
    for (const auto& [name, value] : more)
        all.emplace_back(name).append(1, '=').append(value);
    return all;
}

hosting::ProgramStart startOf(const std::filesystem::path& program,
                              std::vector<std::string> arguments,
                              std::vector<std::string> environment, int output, int errors) {
    arguments.insert(arguments.begin(), program.string());
    return {program, std::move(arguments), std::move(environment), output, errors};
}

} // namespace

RunningProgram::RunningProgram(const std::filesystem::path& program,
                               std::vector<std::string> arguments,
                               const std::filesystem::path& home_, const Variables& environment,
                               int errorDescriptor)
    : home(home_)
    , process(startOf(program, std::move(arguments), environmentOf(home, environment),
                      OutputFile(home / ".stdout").descriptor,
                      errorDescriptor >= 0 ? errorDescriptor
                                           : OutputFile(home / ".stderr").descriptor)) {}

ProgramResult RunningProgram::wait() {
    ProgramResult result;
    result.status = process.wait();
    result.peakMemory = process.peakMemory();
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

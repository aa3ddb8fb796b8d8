// mirelon-host as a user runs it: a process with arguments, texts and a status.
#pragma once

#include "hosting/childprocess.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace mirelon::test {

struct ProgramResult {
    int status = 0; // exit status, or minus the signal that ended it
    std::string output;
    std::string errors;
    long peakMemory = 0; // KiB
};

// A running process. Its home is `home`, so that nothing of the machine's user
// counts; its two texts are caught in files there. When the object goes, it is
// killed if it still runs.
class RunningProgram {
  public:
    RunningProgram(const std::filesystem::path& program, std::vector<std::string> arguments,
                   const std::filesystem::path& home,
                   const std::vector<std::pair<std::string, std::string>>& environment = {},
                   int errorDescriptor = -1);

    void signal(int number) { process.kill(number); }
    ProgramResult wait();

  private:
    std::filesystem::path home;
    hosting::ChildProcess process;
};

// Runs mirelon-host to its end, with a folder for a home that is empty at first
// and gone afterwards.
ProgramResult runHost(std::vector<std::string> arguments);

// The same with the built Mirelon.
ProgramResult runMirelon(std::vector<std::string> arguments);

std::string testPlugin(const std::string& name);

} // namespace mirelon::test

// A stand-in for the desktop's file dialog program.
#pragma once

#include "tests/support/temporaryfolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace mirelon::test {

// While it exists, the plug-in in this process finds this program where it
// looks for a desktop's dialog; without one it finds none.
class StandInDialog {
  public:
    // `answer` is what the program writes out: the path that "the user" chose,
    // or nothing. It takes `seconds` to answer.
    explicit StandInDialog(const std::string& answer, double seconds = 0.0);
    ~StandInDialog();
    StandInDialog(const StandInDialog&) = delete;
    StandInDialog& operator=(const StandInDialog&) = delete;

    int starts() const;
    // The arguments of the last start.
    std::vector<std::string> arguments() const;
    bool argumentsContain(const std::string& text) const;
    // What the program was told of the dynamic linker's variables.
    std::string linkerVariables() const;

  private:
    TemporaryFolder folder;
};

} // namespace mirelon::test

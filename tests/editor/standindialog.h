// A stand-in for the desktop's file dialog program.
#pragma once

#include "tests/support/temporaryfolder.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace mirelon::test {

// While it exists, the plug-in in this process finds this program where it
// looks for a desktop's dialog; without one it finds none.
class StandInDialog {
  public:
    // What the program does, as a shell script; in a folder of its own.
    struct Script {
        std::string text;
    };
    explicit StandInDialog(const Script& script);
    // It is answered at once: `answer` is what the program writes out, the path that
    // "the user" chose or nothing.
    explicit StandInDialog(const std::string& answer);
    // It stays open until answer() is called.
    StandInDialog();
    ~StandInDialog();
    StandInDialog(const StandInDialog&) = delete;
    StandInDialog& operator=(const StandInDialog&) = delete;

    // Lets the program that was started as `start`-th, from 0, write this and end.
    void answer(const std::string& text, std::size_t start = 0) const;

    std::size_t starts() const { return processes().size(); }
    // The program's process of each start.
    std::vector<pid_t> processes() const;
    // Whether the program has been started and one of its processes is still there;
    // one that has ended is until the plug-in has taken notice.
    bool isOpen() const;
    // Whether it has been started so many times and every time is over.
    bool isOver(std::size_t times = 1) const { return starts() >= times && !isOpen(); }

    // The arguments of the last start.
    std::vector<std::string> arguments() const;
    bool argumentsContain(const std::string& text) const;
    // What the program was told of the dynamic linker's variables.
    std::string linkerVariables() const;

    const TemporaryFolder folder;
};

} // namespace mirelon::test

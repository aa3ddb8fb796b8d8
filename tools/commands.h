// The sub-commands of mirelon-host: commands/NAME.cpp and NAME in the list in
// CMakeLists.txt, of which the build makes the table.
#pragma once

#include <functional>
#include <span>

namespace CLI {
class App;
}

namespace mirelon::tools {

// Runs once the command line has been read. Throws CommandError or
// hosting::HostingError when it cannot do what was asked.
using Run = std::function<void()>;

// What NAMECommand() in commands/NAME.cpp answers.
struct Command {
    const char* name;
    const char* summary; // one line of the help
    // Adds the command's options to its parser.
    Run (*define)(CLI::App& parser);
};

// All, in the order of the help.
std::span<const Command> commands();

} // namespace mirelon::tools

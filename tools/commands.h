// The sub-commands of mirelon-host.
//
// A new one is a file command_NAME.cpp with its define function, a declaration
// here and a row in the table of commands.cpp.
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

struct Command {
    const char* name;
    const char* summary; // one line of the help
    // Adds the command's options to its parser.
    Run (*define)(CLI::App& parser);
};

std::span<const Command> commands();

Run defineBank(CLI::App& parser);
Run defineCheck(CLI::App& parser);
Run defineChunk(CLI::App& parser);
Run defineCompare(CLI::App& parser);
Run defineConvert(CLI::App& parser);
Run defineEdit(CLI::App& parser);
Run defineInfo(CLI::App& parser);
Run definePlot(CLI::App& parser);
Run definePreset(CLI::App& parser);
Run defineRender(CLI::App& parser);
Run defineScreenshot(CLI::App& parser);
Run defineVerify(CLI::App& parser);

} // namespace mirelon::tools

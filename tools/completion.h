// Scripts with which a shell completes a command line.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace mirelon::tools {

// For a program with sub-commands, of which `program` is the parser: its commands,
// their options, the words that an option takes, else files or folders.
std::string bashCompletion(const CLI::App& program);
std::string zshCompletion(const CLI::App& program);

} // namespace mirelon::tools

// Text as a word of a shell's command line.
#pragma once

#include <string>

namespace mirelon::tools {

// Between single quotes, whatever it holds.
std::string shellQuoted(const std::string& text);

// As it is where no shell takes it for anything else, otherwise quoted.
std::string shellWord(const std::string& text);

} // namespace mirelon::tools

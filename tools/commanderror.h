// What a command cannot do as asked.
#pragma once

#include <stdexcept>

namespace mirelon::tools {

// The text is one line for the user; the program ends with exit status 2.
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace mirelon::tools

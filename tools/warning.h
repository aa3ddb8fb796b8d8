// What a user should know of work that is done nevertheless.
#pragma once

#include <iostream>
#include <string>

namespace mirelon::tools {

// One line on standard error.
inline void warn(const std::string& text) {
    std::cerr << "mirelon-host: warning: " << text << '\n';
}

} // namespace mirelon::tools

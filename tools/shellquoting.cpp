#include "tools/shellquoting.h"

#include <string_view>

namespace mirelon::tools {

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + '\'';
}

std::string shellWord(const std::string& text) {
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789/._-+=:@%";
    if (!text.empty() && text.find_first_not_of(plain) == std::string::npos)
        return text;
    return shellQuoted(text);
}

} // namespace mirelon::tools

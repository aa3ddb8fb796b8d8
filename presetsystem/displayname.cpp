#include "presetsystem/displayname.h"

#include <cstddef>
#include <cstdint>

namespace mirelon {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

constexpr bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Length of the whole, well-formed character at the start of `bytes`; 0 if
// there is none.
std::size_t characterLength(std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length > bytes.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(bytes[i]))
            return 0;
    if (length < 3)
        return length;
    // No overlong forms, no surrogates, nothing above U+10FFFF.
    const auto second = static_cast<unsigned char>(bytes[1]);
    const bool wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return wrong ? 0 : length;
}

} // namespace

std::string validUtf8(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        text += length > 0 ? bytes.substr(0, length) : replacement;
        bytes.remove_prefix(length > 0 ? length : 1);
    }
    return text;
}

} // namespace mirelon

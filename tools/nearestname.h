// Finding a name that a user typed, and the one that was probably meant.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace mirelon::tools {

// Equal but for the case of ASCII letters and blanks around.
bool sameName(std::string_view a, std::string_view b);

// The first name that is the same; the empty name is nobody's.
std::optional<std::size_t> findName(std::string_view wanted, std::span<const std::string> names);

// The name with the fewest letters to change, insert or drop, nameless ones
// aside; null when there is none.
const std::string* nearestName(std::string_view wanted, std::span<const std::string> names);

// `unknown KIND "WANTED", the nearest is "NEAREST"`.
std::string unknownName(std::string_view kind, std::string_view wanted,
                        std::span<const std::string> names);

// Blanks at both ends taken off.
std::string_view trimmed(std::string_view text);

} // namespace mirelon::tools

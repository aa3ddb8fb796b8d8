// Preset names as texts that the toolkit can show.
#pragma once

#include <string>
#include <string_view>

namespace mirelon {

// Names are bytes and may be cut in the middle of a character; every byte that
// is not part of a whole UTF-8 character becomes U+FFFD, the rest stays.
std::string validUtf8(std::string_view bytes);

} // namespace mirelon

#include "presetsystem/displayname.h"

#include <glib.h>
#include <memory>

namespace mirelon {

std::string validUtf8(std::string_view bytes) {
    if (bytes.empty())
        return {};
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size())), &g_free);
    return text.get();
}

} // namespace mirelon

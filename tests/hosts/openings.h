// How often a test opens a window of the plug-in in a host.
#pragma once

#include <cstdlib>

namespace mirelon::test {

// Five times, or as often as MIRELON_WINDOW_OPENINGS says: scripts/longrun has
// more time.
inline int openings() {
    const char* const wanted = std::getenv("MIRELON_WINDOW_OPENINGS");
    return wanted != nullptr ? std::atoi(wanted) : 5;
}

} // namespace mirelon::test

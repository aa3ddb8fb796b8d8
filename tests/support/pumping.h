// The editors' run loop in a test that has no host.
#pragma once

#include "platform/runloop.h"

#include <chrono>
#include <functional>
#include <thread>

namespace mirelon::test {

// Serves the loop until `reached`; false when that takes too long. Needs a user of
// the loop on this thread.
inline bool pumpUntil(const std::function<bool()>& reached) {
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!reached()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        RunLoop::instance().pump();
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

} // namespace mirelon::test

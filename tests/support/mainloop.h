// A host's main loop on GLib's default context.
#pragma once

#include <chrono>
#include <functional>
#include <glib.h>

namespace mirelon::test {

// Serves what is ready, without sleeping.
inline void iterateOnce() {
    g_main_context_iteration(nullptr, FALSE);
}

// Runs until `reached`, for so long at most, asleep while there is nothing to do.
// Answers how many times it woke up.
inline int iterateUntil(const std::function<bool()>& reached,
                        std::chrono::milliseconds most = std::chrono::seconds(20)) {
    bool over = false;
    const guint end = g_timeout_add(
        static_cast<guint>(most.count()),
        [](gpointer flag) -> gboolean {
            *static_cast<bool*>(flag) = true;
            return G_SOURCE_CONTINUE;
        },
        &over);
    int wakeUps = 0;
    while (!over && !reached()) {
        g_main_context_iteration(nullptr, TRUE);
        ++wakeUps;
    }
    g_source_remove(end);
    return wakeUps;
}

// As above, for all of the time.
inline int iterateFor(std::chrono::milliseconds time) {
    return iterateUntil([] { return false; }, time);
}

} // namespace mirelon::test

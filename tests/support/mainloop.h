// A host's main loop on GLib's default context.
#pragma once

#include <chrono>
#include <glib.h>

namespace mirelon::test {

// Serves what is ready, without sleeping.
inline void iterateOnce() {
    g_main_context_iteration(nullptr, FALSE);
}

// Runs for so long, asleep while there is nothing to do. Answers how many times
// it woke up.
inline int iterateFor(std::chrono::milliseconds time) {
    bool over = false;
    g_timeout_add(
        static_cast<guint>(time.count()),
        [](gpointer flag) -> gboolean {
            *static_cast<bool*>(flag) = true;
            return G_SOURCE_REMOVE;
        },
        &over);
    int wakeUps = 0;
    while (!over) {
        g_main_context_iteration(nullptr, TRUE);
        ++wakeUps;
    }
    return wakeUps;
}

} // namespace mirelon::test

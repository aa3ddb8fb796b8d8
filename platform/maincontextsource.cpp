#include "platform/maincontextsource.h"

#include <algorithm>
#include <atomic>
#include <glib-unix.h>
#include <limits>
#include <memory>
#include <mutex>

namespace mirelon {

namespace {

using Clock = MainContextSource::Clock;
using namespace std::chrono_literals;

// After a turn longer than this the rest of the thread has as much time, up to
// the longest rest: on a slow display, turns would otherwise follow each other
// without a gap, and GLib would never serve what the host does at a lower
// priority, its own drawing among it.
constexpr Clock::duration longTurn = 4ms;
constexpr Clock::duration longestRest = 16ms;
// When to ask a client again that could not answer.
constexpr Clock::duration retryAfter = 16ms;

// What a source knows besides GLib's part of it.
struct State {
    explicit State(MainContextSource::Client& client)
        : client(client) {}

    struct Armed {
        int descriptor;
        gpointer tag;
    };

    MainContextSource::Client& client;
    std::mutex mutex;
    std::vector<Armed> armed;
    Clock::time_point due = Clock::time_point::max();
    Clock::time_point restsUntil{};
};

struct Source {
    GSource base;
    State* state; // made by start, deleted with the source
};

// GLib's locks and counts already order all uses of a source among threads; the
// atomic access, and the lock around the last one, say so to a thread checker
// that cannot see into GLib.
std::atomic_ref<State*> stateSlot(GSource* source) {
    return std::atomic_ref(reinterpret_cast<Source*>(source)->state);
}

State& stateOf(GSource* source) {
    return *stateSlot(source).load(std::memory_order_acquire);
}

// Changing what is polled wakes the context up, so it happens only when needed.
void poll(GSource* source, State& state, const std::vector<int>& descriptors) {
    if (std::equal(
            state.armed.begin(), state.armed.end(), descriptors.begin(), descriptors.end(),
            [](const State::Armed& armed, int wanted) { return armed.descriptor == wanted; }))
        return;
    for (const State::Armed& armed : state.armed)
        g_source_remove_unix_fd(source, armed.tag);
    state.armed.clear();
    state.armed.reserve(descriptors.size());
    for (const int descriptor : descriptors)
        state.armed.push_back({descriptor, g_source_add_unix_fd(source, descriptor, G_IO_IN)});
}

// Milliseconds until `time`, rounded up; -1 for never.
gint timeoutUntil(Clock::time_point time, Clock::time_point now) {
    if (time == Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - now).count();
    return static_cast<gint>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<gint>::max()));
}

// Sets `due` and what is polled, for the thread that is about to sleep.
void arrangeWait(GSource* source, State& state, Clock::time_point now) {
    state.due = Clock::time_point::max();
    if (g_source_is_destroyed(source) != FALSE)
        return; // stopped since this iteration began
    if (!state.client.isServable()) {
        poll(source, state, {});
    } else if (now < state.restsUntil) {
        poll(source, state, {});
        state.due = state.restsUntil;
    } else if (const auto wait = state.client.nextWait()) {
        poll(source, state, wait->descriptors);
        state.due = wait->until;
    } else {
        state.due = now + retryAfter;
    }
}

gboolean prepare(GSource* source, gint* timeout) {
    State& state = stateOf(source);
    const std::lock_guard held(state.mutex);
    const auto now = Clock::now();
    try {
        arrangeWait(source, state, now);
    } catch (...) { // no exception may pass through GLib
        state.due = now + retryAfter;
    }
    *timeout = timeoutUntil(state.due, now);
    return *timeout == 0 ? TRUE : FALSE;
}

// GLib itself looks whether a descriptor is ready.
gboolean check(GSource* source) {
    State& state = stateOf(source);
    const std::lock_guard held(state.mutex);
    return Clock::now() >= state.due ? TRUE : FALSE;
}

gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    State& state = stateOf(source);
    const auto begin = Clock::now();
    bool failed = false;
    try {
        state.client.serve();
    } catch (...) { // as above; what failed may be pending still and fail again
        failed = true;
    }
    const auto end = Clock::now();
    const std::lock_guard held(state.mutex);
    if (failed)
        state.restsUntil = end + longestRest;
    else if (end - begin > longTurn)
        state.restsUntil = end + std::min(end - begin, longestRest);
    return G_SOURCE_CONTINUE;
}

void finalize(GSource* source) {
    const std::unique_ptr<State> last(&stateOf(source));
    const std::lock_guard held(last->mutex);
}

} // namespace

void MainContextSource::start() {
    static GSourceFuncs functions{prepare, check, dispatch, finalize, nullptr, nullptr};
    if (source != nullptr)
        return;
    auto state = std::make_unique<State>(client);
    source = g_source_new(&functions, sizeof(Source));
    stateSlot(source).store(state.release(), std::memory_order_release);
    // A turn may run a loop of the host's, in which the client is not servable.
    // GLib's own guard against that takes the descriptors out and in again, and
    // wakes the context up twice, around every dispatch.
    g_source_set_can_recurse(source, TRUE);
    g_source_attach(source, nullptr);
}

void MainContextSource::stop() noexcept {
    if (source == nullptr)
        return;
    {
        // Not while another thread's iteration says what the source polls, which
        // a destroyed one cannot be told.
        const std::lock_guard held(stateOf(source).mutex);
        g_source_destroy(source);
    }
    g_source_unref(source);
    source = nullptr;
}

void MainContextSource::wake() noexcept {
    g_main_context_wakeup(nullptr);
}

} // namespace mirelon

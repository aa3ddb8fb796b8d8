// When repeating timers are due: the arithmetic of the run loop, without clocks
// or windows.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

namespace mirelon {

// A set of repeating timers over a clock that the caller reads. A timer keeps
// its phase as long as it is served in time; ticks that were missed are dropped
// and never made up for. One thread.
class TimerSchedule {
  public:
    using Clock = std::chrono::steady_clock;
    using Id = std::uint64_t; // never reused

    // First due one interval after `now`. An interval below 1 ns counts as 1 ns.
    // A timer with a tolerance may be served that much later, together with
    // another one, and asks for no wake-up of its own before.
    Id add(Clock::duration interval, Clock::time_point now, Clock::duration tolerance = {});
    // Unknown ids do nothing.
    void remove(Id id);
    bool contains(Id id) const;
    bool empty() const { return timers.empty(); }

    // The latest time at which to serve what is due next; max() without timers.
    Clock::time_point next() const;

    // The timers due at `now`, each once and in the order of their adding; all
    // of them are set to their next time before this returns.
    std::vector<Id> takeDue(Clock::time_point now);

  private:
    struct Timer {
        Id id;
        Clock::duration interval;
        Clock::duration tolerance;
        Clock::time_point due;
    };
    std::vector<Timer> timers;
    Id lastId = 0;
};

} // namespace mirelon

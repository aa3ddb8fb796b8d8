#include "platform/timerschedule.h"

#include <algorithm>

namespace mirelon {

TimerSchedule::Id TimerSchedule::add(Clock::duration interval, Clock::time_point now,
                                     Clock::duration tolerance) {
    interval = std::max(interval, Clock::duration{1});
    timers.push_back({++lastId, interval, tolerance, now + interval});
    return lastId;
}

void TimerSchedule::remove(Id id) {
    std::erase_if(timers, [id](const Timer& timer) { return timer.id == id; });
}

bool TimerSchedule::contains(Id id) const {
    return std::any_of(timers.begin(), timers.end(),
                       [id](const Timer& timer) { return timer.id == id; });
}

TimerSchedule::Clock::time_point TimerSchedule::next() const {
    auto earliest = Clock::time_point::max();
    for (const Timer& timer : timers)
        earliest = std::min(earliest, timer.due + timer.tolerance);
    return earliest;
}

std::vector<TimerSchedule::Id> TimerSchedule::takeDue(Clock::time_point now) {
    std::vector<Id> due;
    for (Timer& timer : timers) {
        if (timer.due > now)
            continue;
        due.push_back(timer.id);
        timer.due += timer.interval;
        if (timer.due <= now)
            timer.due = now + timer.interval;
    }
    return due;
}

} // namespace mirelon

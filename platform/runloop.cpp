#include "platform/runloop.h"

#include "platform/display.h"
#include "platform/toolkitconnection.h"

#include <algorithm>
#include <chrono>

namespace mirelon {

namespace {

using Clock = TimerSchedule::Clock;
using namespace std::chrono_literals;

// The toolkit's timers that are as slow as the editors' idle timer are served
// together with it: this much later, which is a little more than its interval.
constexpr Clock::duration slowTimer = 33ms;
constexpr Clock::duration slowTimersTolerance = 34ms;

// The toolkit ends its handling of events with a request that is answered, in
// the size of all plain answers.
constexpr std::uint64_t answerSize = 32;
// How often a turn asks for events that came with an answer; what comes faster
// waits for the next turn.
constexpr int roundsOfEvents = 4;

// Raises a flag while it exists.
class Turn {
  public:
    explicit Turn(bool& flag_)
        : flag(flag_) {
        flag = true;
    }
    ~Turn() { flag = false; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    bool& flag;
};

} // namespace

RunLoop& RunLoop::instance() {
    // Never destroyed: the toolkit keeps hold of it and hosts may unload the
    // plug-in in any order.
    static RunLoop* const loop = new RunLoop;
    return *loop;
}

RunLoop::User::User()
    : granted(instance().addUser()) {}

RunLoop::User::~User() {
    if (granted)
        instance().removeUser();
}

bool RunLoop::addUser() {
    const auto held = thread.lock();
    if (!thread.addUser())
        return false;
    source.start();
    return true;
}

void RunLoop::removeUser() {
    const auto held = thread.lock();
    if (thread.removeUser())
        source.stop();
}

bool RunLoop::connectToDisplay() {
    const auto held = thread.lock();
    if (!connected) {
        if (!displayAvailable())
            return false;
        connectToolkit(*this);
        connected = true;
    }
    return toolkitConnectionAlive();
}

std::optional<MainContextSource::Wait> RunLoop::nextWait() {
    const auto held = thread.tryLock();
    if (!held)
        return {};
    MainContextSource::Wait wait{schedule.next(), watches.descriptors()};
    if (redrawWanted)
        wait.until = std::min(wait.until, nextRedraw);
    if (eventsMayBeQueued())
        wait.until = Clock::now();
    return wait;
}

void RunLoop::pump() {
    if (!thread.isOwnThread())
        return;
    const auto held = thread.lock();
    if (pumping || !thread.isOwnThread())
        return;
    {
        const Turn turn(pumping);
        dropBrokenConnection();
        const bool ticked = serveTimers();
        const bool handled = serveDescriptors();
        redraw(ticked, handled);
    }
    runTasks();
}

bool RunLoop::serveTimers() {
    const auto due = schedule.takeDue(Clock::now());
    for (const TimerSchedule::Id id : due) {
        const auto timer =
            std::find_if(timers.begin(), timers.end(), [id](const Timer& t) { return t.id == id; });
        if (timer == timers.end())
            continue;
        const auto tick = timer->tick;
        (*tick)();
    }
    return !due.empty();
}

bool RunLoop::serveDescriptors() {
    bool served = watches.serve();
    for (int round = 0; round < roundsOfEvents && eventsMayBeQueued(); ++round) {
        const auto handlers = eventHandlers;
        for (const EventHandler& each : handlers)
            if (std::any_of(eventHandlers.begin(), eventHandlers.end(),
                            [&](const EventHandler& e) { return e.watch == each.watch; }))
                callHandler(each.handler);
        served = true;
    }
    return served;
}

// The connection may hold events that were read while waiting for an answer; its
// descriptor stays silent then. They cannot be looked for without being taken,
// but whatever has been read since the queue was empty may be one.
bool RunLoop::eventsMayBeQueued() const {
    return connected && toolkitConnectionAlive() && emptyAt != toolkitBytesRead();
}

void RunLoop::callHandler(VSTGUI::X11::IEventHandler* handler) {
    const std::uint64_t before = connected ? toolkitBytesRead() : 0;
    handler->onEvent();
    const std::uint64_t after = connected ? toolkitBytesRead() : 0;
    // It takes every event from the queue and then waits for an answer: more than
    // that may have come with it.
    emptyAt.reset();
    if (after - before <= answerSize)
        emptyAt = after;
}

void RunLoop::dropBrokenConnection() {
    if (!connected || toolkitConnectionAlive())
        return;
    for (const EventHandler& each : eventHandlers)
        watches.remove(each.watch);
    eventHandlers.clear();
    redrawHandlers.clear();
}

// What a timer or an event may have changed shows at once; after events, not
// more often than the toolkit asks for.
void RunLoop::redraw(bool ticked, bool handled) {
    redrawWanted = redrawWanted || handled;
    const bool inTime = redrawWanted && Clock::now() >= nextRedraw;
    if (!ticked && !inTime)
        return;
    const auto handlers = redrawHandlers;
    for (VSTGUI::X11::ITimerHandler* handler : handlers)
        if (std::find(redrawHandlers.begin(), redrawHandlers.end(), handler) !=
            redrawHandlers.end())
            handler->onTimer();
    if (redrawWanted)
        nextRedraw = Clock::now() + redrawInterval;
    redrawWanted = false;
    if (connected)
        flushToolkit();
}

void RunLoop::runTasks() {
    while (!tasks.empty()) {
        const auto pending = std::move(tasks);
        tasks.clear();
        for (const auto& task : pending)
            task();
    }
}

void RunLoop::whenUnwound(std::function<void()> task) {
    const auto held = thread.lock();
    if (pumping)
        tasks.push_back(std::move(task));
    else
        task();
}

TimerSchedule::Id RunLoop::addTimer(Clock::duration interval, std::function<void()> tick) {
    const auto held = thread.lock();
    const auto id = schedule.add(interval, Clock::now());
    timers.push_back({id, nullptr, std::make_shared<std::function<void()>>(std::move(tick))});
    return id;
}

void RunLoop::removeTimer(TimerSchedule::Id id) {
    const auto held = thread.lock();
    schedule.remove(id);
    std::erase_if(timers, [id](const Timer& timer) { return timer.id == id; });
}

DescriptorWatches::Id RunLoop::watchDescriptor(int descriptor, std::function<void()> onReadable) {
    const auto held = thread.lock();
    return watches.add(descriptor, std::move(onReadable));
}

void RunLoop::unwatchDescriptor(DescriptorWatches::Id id) {
    const auto held = thread.lock();
    watches.remove(id);
}

bool RunLoop::registerEventHandler(int fd, VSTGUI::X11::IEventHandler* handler) {
    eventHandlers.push_back({watches.add(fd, [this, handler] { callHandler(handler); }), handler});
    return true;
}

bool RunLoop::unregisterEventHandler(VSTGUI::X11::IEventHandler* handler) {
    const auto found =
        std::find_if(eventHandlers.begin(), eventHandlers.end(),
                     [handler](const EventHandler& e) { return e.handler == handler; });
    if (found == eventHandlers.end())
        return false;
    watches.remove(found->watch);
    eventHandlers.erase(found);
    return true;
}

bool RunLoop::registerTimer(uint64_t milliseconds, VSTGUI::X11::ITimerHandler* handler) {
    const std::chrono::milliseconds interval(milliseconds);
    if (isRedrawTimer(*handler)) {
        redrawHandlers.push_back(handler);
        redrawInterval = interval;
        redrawWanted = true;
        return true;
    }
    const auto id = schedule.add(interval, Clock::now(),
                                 interval < slowTimer ? Clock::duration{} : slowTimersTolerance);
    timers.push_back(
        {id, handler, std::make_shared<std::function<void()>>([handler] { handler->onTimer(); })});
    return true;
}

bool RunLoop::unregisterTimer(VSTGUI::X11::ITimerHandler* handler) {
    if (std::erase(redrawHandlers, handler) > 0)
        return true;
    const auto timer = std::find_if(timers.begin(), timers.end(),
                                    [handler](const Timer& t) { return t.handler == handler; });
    if (timer == timers.end())
        return false;
    schedule.remove(timer->id);
    timers.erase(timer);
    return true;
}

} // namespace mirelon

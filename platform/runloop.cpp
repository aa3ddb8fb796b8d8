#include "platform/runloop.h"

#include "platform/display.h"
#include "platform/toolkitconnection.h"

#include <algorithm>
#include <chrono>
#include <glib.h>

namespace mirelon {

namespace {

// As often as a common display refreshes.
constexpr std::chrono::microseconds glibInterval = std::chrono::milliseconds(16);

// The interval runs from the end of a turn: were it from the beginning, turns on
// a slow display would follow each other without a gap, and GLib would never
// serve what the host does at a lower priority, its own drawing among it.
void pauseUntilNextTurn(GSource* source) {
    g_source_set_ready_time(source, g_get_monotonic_time() + glibInterval.count());
}

gboolean takeTurn(GSource* source, GSourceFunc, gpointer) {
    // No exception may pass through GLib; what failed is tried again.
    try {
        RunLoop::instance().pump();
    } catch (...) {
    }
    pauseUntilNextTurn(source);
    return G_SOURCE_CONTINUE;
}

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
    const auto held = lock();
    if (!thread.addUser())
        return false;
    if (glibSource == 0)
        startGlibTrigger();
    return true;
}

void RunLoop::removeUser() {
    const auto held = lock();
    if (thread.removeUser())
        stopGlibTrigger();
}

void RunLoop::startGlibTrigger() {
    static GSourceFuncs functions{nullptr, nullptr, takeTurn, nullptr, nullptr, nullptr};
    GSource* const source = g_source_new(&functions, sizeof(GSource));
    pauseUntilNextTurn(source);
    glibSource = g_source_attach(source, nullptr);
    g_source_unref(source);
}

void RunLoop::stopGlibTrigger() {
    if (GSource* source = g_main_context_find_source_by_id(nullptr, glibSource))
        g_source_destroy(source);
    glibSource = 0;
}

bool RunLoop::connectToDisplay() {
    const auto held = lock();
    if (!connected) {
        if (!displayAvailable())
            return false;
        connectToolkit(*this);
        connected = true;
    }
    return toolkitConnectionAlive();
}

void RunLoop::wake() noexcept {
    g_main_context_wakeup(nullptr);
}

void RunLoop::pump() {
    if (!isOwnThread())
        return;
    const auto held = lock();
    if (pumping || !isOwnThread())
        return;
    {
        const Turn turn(pumping);
        serveEvents();
        serveTimers();
    }
    runTasks();
}

void RunLoop::serveEvents() {
    // The connection may hold events that were read while waiting for a reply;
    // its descriptor stays silent then, so handlers are asked every time.
    if (!connected || !toolkitConnectionAlive())
        return;
    const auto handlers = eventHandlers;
    for (VSTGUI::X11::IEventHandler* handler : handlers)
        if (std::find(eventHandlers.begin(), eventHandlers.end(), handler) != eventHandlers.end())
            handler->onEvent();
}

void RunLoop::serveTimers() {
    for (const TimerSchedule::Id id : schedule.takeDue(TimerSchedule::Clock::now())) {
        const auto timer =
            std::find_if(timers.begin(), timers.end(), [id](const Timer& t) { return t.id == id; });
        if (timer == timers.end())
            continue;
        if (timer->handler != nullptr)
            timer->handler->onTimer();
        else if (const auto tick = timer->tick)
            (*tick)();
    }
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
    const auto held = lock();
    if (pumping)
        tasks.push_back(std::move(task));
    else
        task();
}

TimerSchedule::Id RunLoop::addTimer(TimerSchedule::Clock::duration interval,
                                    std::function<void()> tick) {
    const auto held = lock();
    const auto id = schedule.add(interval, TimerSchedule::Clock::now());
    timers.push_back({id, nullptr, std::make_shared<std::function<void()>>(std::move(tick))});
    return id;
}

void RunLoop::removeTimer(TimerSchedule::Id id) {
    const auto held = lock();
    schedule.remove(id);
    std::erase_if(timers, [id](const Timer& timer) { return timer.id == id; });
}

bool RunLoop::registerEventHandler(int /*fd*/, VSTGUI::X11::IEventHandler* handler) {
    eventHandlers.push_back(handler);
    return true;
}

bool RunLoop::unregisterEventHandler(VSTGUI::X11::IEventHandler* handler) {
    return std::erase(eventHandlers, handler) > 0;
}

bool RunLoop::registerTimer(uint64_t milliseconds, VSTGUI::X11::ITimerHandler* handler) {
    const auto id =
        schedule.add(std::chrono::milliseconds(milliseconds), TimerSchedule::Clock::now());
    timers.push_back({id, handler, nullptr});
    return true;
}

bool RunLoop::unregisterTimer(VSTGUI::X11::ITimerHandler* handler) {
    const auto timer = std::find_if(timers.begin(), timers.end(),
                                    [handler](const Timer& t) { return t.handler == handler; });
    if (timer == timers.end())
        return false;
    schedule.remove(timer->id);
    timers.erase(timer);
    return true;
}

} // namespace mirelon

// The run loop of all open editors: serves the toolkit's X11 connection and
// timers, driven by GLib's default main context and by the host's idle calls.
#pragma once

#include "platform/timerschedule.h"
#include "platform/toolkit.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace mirelon {

// One object for the process; it lives as long as the process does.
//
// The toolkit belongs to one thread at a time: the one that opened the first of
// the editors that are open. Only pump, on that thread, calls into it. Whoever
// enters an editor from the host (open, close, idle, news of the effect) holds
// `lock` meanwhile, so that an editor may also be closed from another thread.
//
// Either trigger alone keeps the editors alive: a source on GLib's default
// context (hosts that run it on another thread than the editors' are left
// alone), and the host's idle command. Without users there is no source.
class RunLoop final : public VSTGUI::X11::IRunLoop, public VSTGUI::NonAtomicReferenceCounted {
  public:
    static RunLoop& instance();

    // Holds the loop for the calling thread while it exists; false when editors
    // of another thread hold it.
    class User {
      public:
        User();
        ~User();
        User(const User&) = delete;
        User& operator=(const User&) = delete;
        explicit operator bool() const { return granted; }

      private:
        bool granted;
    };

    using Hold = std::unique_lock<std::recursive_mutex>;
    Hold lock() { return Hold(mutex); }
    // Without waiting: holds nothing while another thread does.
    Hold tryLock() noexcept { return Hold(mutex, std::try_to_lock); }

    // Connects the toolkit to the display, once and for the life of the process:
    // the toolkit's drawing library does not survive a second connection. False
    // without a display, or when the connection has broken.
    bool connectToDisplay();

    // Any thread, without a lock.
    bool isOwnThread() const noexcept {
        return owner.load(std::memory_order_acquire) == std::this_thread::get_id();
    }

    // Serves everything that is due, without waiting. Does nothing on a thread
    // that does not own the loop, nor when called from inside itself.
    void pump();
    bool isPumping() const noexcept { return pumping; }
    // Makes the GLib context turn round at once. Any thread.
    void wake() noexcept;

    // Runs `task` at the end of the pump that is under way, when nothing of the
    // toolkit is on the stack any more; at once outside of a pump.
    void whenUnwound(std::function<void()> task);

    // A repeating timer; as precise as the triggers. `tick` may add and remove
    // timers, itself among them.
    TimerSchedule::Id addTimer(TimerSchedule::Clock::duration interval, std::function<void()> tick);
    void removeTimer(TimerSchedule::Id id);

    // What the toolkit asks of a run loop.
    bool registerEventHandler(int fd, VSTGUI::X11::IEventHandler* handler) override;
    bool unregisterEventHandler(VSTGUI::X11::IEventHandler* handler) override;
    bool registerTimer(uint64_t milliseconds, VSTGUI::X11::ITimerHandler* handler) override;
    bool unregisterTimer(VSTGUI::X11::ITimerHandler* handler) override;

  private:
    RunLoop() = default;

    bool addUser();
    void removeUser();
    void startGlibTrigger();
    void stopGlibTrigger();
    void serveEvents();
    void serveTimers();
    void runTasks();

    struct Timer {
        TimerSchedule::Id id;
        VSTGUI::X11::ITimerHandler* handler; // null for timers of our own
        std::shared_ptr<std::function<void()>> tick;
    };

    std::recursive_mutex mutex;
    std::atomic<std::thread::id> owner{};
    int users = 0;
    bool pumping = false;
    bool connected = false;
    unsigned glibSource = 0;
    TimerSchedule schedule;
    std::vector<Timer> timers;
    std::vector<VSTGUI::X11::IEventHandler*> eventHandlers;
    std::vector<std::function<void()>> tasks;
};

} // namespace mirelon

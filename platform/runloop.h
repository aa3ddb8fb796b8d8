// The run loop of all open editors: serves the toolkit's X11 connection and
// timers, driven by GLib's default main context and by the host's idle calls.
#pragma once

#include "platform/editorthread.h"
#include "platform/timerschedule.h"
#include "platform/toolkit.h"

#include <functional>
#include <memory>
#include <vector>

namespace mirelon {

// One object for the process; it lives as long as the process does. Only pump,
// on the editors' thread, calls into the toolkit.
//
// Either trigger alone keeps the editors alive: a source on GLib's default
// context (hosts that run it on another thread than the editors' are left
// alone), and the host's idle command. Without users there is no source.
class RunLoop final : public VSTGUI::X11::IRunLoop, public VSTGUI::NonAtomicReferenceCounted {
  public:
    static RunLoop& instance();

    // Keeps the calling thread the editors' and the loop served while it exists;
    // false when the editors belong to another thread.
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

    using Hold = EditorThread::Hold;
    Hold lock() { return thread.lock(); }
    Hold tryLock() noexcept { return thread.tryLock(); }
    bool isOwnThread() const noexcept { return thread.isOwnThread(); }

    // Connects the toolkit to the display, once and for the life of the process:
    // the toolkit's drawing library does not survive a second connection. False
    // without a display, or when the connection has broken.
    bool connectToDisplay();

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

    EditorThread& thread = EditorThread::instance();
    bool pumping = false;
    bool connected = false;
    unsigned glibSource = 0;
    TimerSchedule schedule;
    std::vector<Timer> timers;
    std::vector<VSTGUI::X11::IEventHandler*> eventHandlers;
    std::vector<std::function<void()>> tasks;
};

} // namespace mirelon

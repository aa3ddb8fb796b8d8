// The run loop of all open editors: serves the toolkit's X11 connection and
// timers, driven by GLib's default main context and by the host's idle calls.
#pragma once

#include "platform/descriptorwatches.h"
#include "platform/editorthread.h"
#include "platform/maincontextsource.h"
#include "platform/timerschedule.h"
#include "platform/toolkit.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace mirelon {

// One object for the process; it lives as long as the process does. Only pump,
// on the editors' thread, calls into the toolkit.
//
// Either trigger alone keeps the editors alive: a source on GLib's default
// context (hosts that run it on another thread than the editors' are left
// alone), and the host's idle command. Without users there is no source.
class RunLoop final : public VSTGUI::X11::IRunLoop,
                      public VSTGUI::NonAtomicReferenceCounted,
                      private MainContextSource::Client {
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

    // Connects the toolkit to the display, once and for the life of the process:
    // the toolkit's drawing library does not survive a second connection. False
    // without a display, or when the connection has broken.
    bool connectToDisplay();

    // Serves everything that is due, without waiting. Does nothing on a thread
    // that does not own the loop, nor when called from inside itself.
    void pump();
    bool isPumping() const noexcept { return pumping; }
    // Makes the GLib context look at once for what is due. Any thread.
    static void wake() noexcept { MainContextSource::wake(); }

    // Runs `task` at the end of the pump that is under way, when nothing of the
    // toolkit is on the stack any more; at once outside of a pump.
    void whenUnwound(std::function<void()> task);

    // The editors' thread, or under the lock: what follows.

    // A repeating timer; as precise as the triggers. `tick` may add and remove
    // timers, itself among them.
    TimerSchedule::Id addTimer(TimerSchedule::Clock::duration interval, std::function<void()> tick);
    void removeTimer(TimerSchedule::Id id);

    // Watches a descriptor as DescriptorWatches does.
    DescriptorWatches::Id watchDescriptor(int descriptor, std::function<void()> onReadable);
    void unwatchDescriptor(DescriptorWatches::Id id);

    // What the toolkit asks of a run loop.
    bool registerEventHandler(int fd, VSTGUI::X11::IEventHandler* handler) override;
    bool unregisterEventHandler(VSTGUI::X11::IEventHandler* handler) override;
    bool registerTimer(uint64_t milliseconds, VSTGUI::X11::ITimerHandler* handler) override;
    bool unregisterTimer(VSTGUI::X11::ITimerHandler* handler) override;

  private:
    RunLoop() = default;

    bool addUser();
    void removeUser();
    bool isServable() const noexcept override { return thread.isOwnThread() && !pumping; }
    std::optional<MainContextSource::Wait> nextWait() override;
    void serve() override { pump(); }

    bool serveTimers();
    bool serveDescriptors();
    void redraw(bool ticked, bool handled);
    void runTasks();

    void callHandler(VSTGUI::X11::IEventHandler* handler);
    bool eventsMayBeQueued() const;
    void dropBrokenConnection();

    struct Timer {
        TimerSchedule::Id id;
        VSTGUI::X11::ITimerHandler* handler; // null for timers of our own
        std::shared_ptr<std::function<void()>> tick;
    };
    struct EventHandler {
        DescriptorWatches::Id watch;
        VSTGUI::X11::IEventHandler* handler;
    };

    EditorThread& thread = EditorThread::instance();
    MainContextSource source{*this};
    bool pumping = false;
    bool connected = false;

    TimerSchedule schedule;
    std::vector<Timer> timers;
    DescriptorWatches watches;
    std::vector<EventHandler> eventHandlers;
    // How much had been read when the connection's queue was last seen empty.
    std::optional<std::uint64_t> emptyAt;

    std::vector<VSTGUI::X11::ITimerHandler*> redrawHandlers;
    TimerSchedule::Clock::duration redrawInterval{};
    TimerSchedule::Clock::time_point nextRedraw{};
    bool redrawWanted = false;

    std::vector<std::function<void()>> tasks;
};

} // namespace mirelon

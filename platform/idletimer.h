// The heartbeat of an open editor's window: 30 calls of its idle a second.
#pragma once

#include "platform/runloop.h"

// What the run loop calls on every tick.
class IdleTimerListener {
  public:
    explicit IdleTimerListener(VSTGUI::AEffGUIEditor* editor)
        : editor(editor) {}
    // Without an editor: nothing.
    void tick();

    VSTGUI::AEffGUIEditor* editor; // not owned; may be null
};

// Runs from construction to destruction, on the thread that constructs it, at
// most one tick a pump. Without the run loop (editors of another thread hold
// it) it does not tick.
class IdleTimer {
  public:
    explicit IdleTimer(VSTGUI::AEffGUIEditor* editor);
    ~IdleTimer();
    IdleTimer(const IdleTimer&) = delete;
    IdleTimer& operator=(const IdleTimer&) = delete;

  private:
    mirelon::RunLoop::User loopUser;
    // Shared with the run loop, which may be inside a tick.
    std::shared_ptr<IdleTimerListener> listener;
    mirelon::TimerSchedule::Id timer;
};

// A new, running timer for `editor`; to be given back to destroyTimer.
IdleTimer* createTimer(VSTGUI::AEffGUIEditor* editor);
// No idle call reaches the editor afterwards. Null does nothing.
void destroyTimer(IdleTimer* timer);

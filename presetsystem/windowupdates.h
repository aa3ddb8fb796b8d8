// How the window comes to show what has changed in the effect.
#pragma once

#include "presetsystem/pendingupdates.h"
#include "presetsystem/windowaccess.h"

namespace mirelon {

// A change is shown at once by a thread that gets hold of the window; from every
// other thread, and while the window is closed, it is pending until an idle that
// does. What is shown is read from the effect then, so that nothing older than
// what it holds is ever shown.
class WindowUpdates {
  public:
    // Shows parameters; on the window's thread, while the window is held.
    class ParameterDisplay {
      public:
        // Any index.
        virtual void show(long index) = 0;

      protected:
        ~ParameterDisplay() = default;
    };

    // On the thread that opens or closes the window. What is pending stays.
    void open() noexcept { window.open(); }
    void close() noexcept { window.close(); }
    // Where parameters are shown from now on; not owned. Null: nowhere.
    void showParametersIn(ParameterDisplay* newDisplay) noexcept { display = newDisplay; }

    // Parameter `index` has another value; any index. Any thread, audio included.
    void parameterChanged(long index) {
        if (const auto held = window.tryHold())
            showParameter(index);
        else
            pending.addParameter(index);
    }
    // Something of the bank is another, which show() shows. Any thread.
    template <typename Show>
    void bankChanged(Show show) {
        if (const auto held = window.tryHold())
            show();
        else
            pending.addBank();
    }

    // Shows what is pending, the whole bank by showBank(), then does `work` on the
    // window. Nothing where the window cannot be had.
    template <typename ShowBank, typename Work>
    void idle(ShowBank showBank, Work work) {
        const auto held = window.tryHold();
        if (!held)
            return;
        const PendingUpdates::Taken updates = pending.take();
        for (int i = 0; i < kNumPresetParams; ++i)
            if (updates.parameter(i))
                showParameter(i);
        if (updates.bank())
            showBank();
        work();
    }

  private:
    void showParameter(long index) {
        if (display != nullptr)
            display->show(index);
    }

    WindowAccess window;
    PendingUpdates pending;
    ParameterDisplay* display = nullptr;
};

} // namespace mirelon

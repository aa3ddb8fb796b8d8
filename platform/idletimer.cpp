#include "platform/idletimer.h"

#include <memory>

namespace {

// 1/30 s in single precision.
constexpr std::chrono::duration<double> idleInterval{0.033333335F};

} // namespace

void IdleTimerListener::tick() {
    if (editor != nullptr)
        editor->idle();
}

IdleTimer::IdleTimer(VSTGUI::AEffGUIEditor* editor)
    : listener(std::make_shared<IdleTimerListener>(editor))
    , timer(loopUser ? mirelon::RunLoop::instance().addTimer(
                           std::chrono::duration_cast<mirelon::TimerSchedule::Clock::duration>(
                               idleInterval),
                           [target = listener] { target->tick(); })
                     : mirelon::TimerSchedule::Id{}) {}

IdleTimer::~IdleTimer() {
    listener->editor = nullptr;
    mirelon::RunLoop::instance().removeTimer(timer);
}

IdleTimer* createTimer(VSTGUI::AEffGUIEditor* editor) {
    return std::make_unique<IdleTimer>(editor).release();
}

void destroyTimer(IdleTimer* timer) {
    const std::unique_ptr<IdleTimer> owned(timer);
}

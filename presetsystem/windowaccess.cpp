#include "presetsystem/windowaccess.h"

namespace mirelon {

bool WindowAccess::isOpenOnThisThread() const noexcept {
    return windowOpen.load(std::memory_order_acquire) && EditorThread::instance().isOwnThread();
}

WindowAccess::Hold WindowAccess::tryHold() const noexcept {
    if (!isOpenOnThisThread())
        return {};
    Hold held = EditorThread::instance().tryLock();
    // The thread that has just let go of the loop may have closed the window.
    return held && isOpenOnThisThread() ? std::move(held) : Hold();
}

} // namespace mirelon

// Whether the editor's window may be touched here and now.
#pragma once

#include "platform/editorthread.h"

#include <atomic>

namespace mirelon {

class WindowAccess {
  public:
    // Keeps every other thread from closing the window while it holds something.
    using Hold = EditorThread::Hold;

    // Told by the editor, on the thread that opens or closes it.
    void open() noexcept { windowOpen.store(true, std::memory_order_release); }
    void close() noexcept { windowOpen.store(false, std::memory_order_release); }

    // Holds the window when it is open, belongs to this thread and no other
    // thread is about to close it; else nothing. Never waits; any thread.
    Hold tryHold() const noexcept;

  private:
    bool isOpenOnThisThread() const noexcept;

    std::atomic<bool> windowOpen{false};
};

} // namespace mirelon

// Which thread the open editors belong to, and the lock around them.
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

namespace mirelon {

// The toolkit serves one thread at a time: the one that opened the first of the
// editors that are open. It is the owner until the last of them is closed; the
// next may come from another thread.
//
// A thread that enters an editor from the host (open, close, idle, updates of
// the effect's state) holds the lock meanwhile, so that an editor may also be
// closed by a thread that does not own it.
class EditorThread final {
  public:
    // The one of this process, which lives as long as the process does.
    static EditorThread& instance();

    using Hold = std::unique_lock<std::recursive_mutex>;
    Hold lock() { return Hold(mutex); }
    // Without waiting: holds nothing while another thread does.
    Hold tryLock() noexcept { return Hold(mutex, std::try_to_lock); }

    // Any thread, without the lock.
    bool isOwnThread() const noexcept {
        return owner.load(std::memory_order_acquire) == std::this_thread::get_id();
    }

    // Adds a user; the first makes the calling thread the owner. False, and
    // without effect, while another thread is.
    bool addUser();
    // Takes back one successful addUser. Any thread. True when that was the last
    // user: there is no owner then.
    bool removeUser();

  private:
    std::recursive_mutex mutex;
    std::atomic<std::thread::id> owner{};
    int users = 0; // guarded by the lock
};

} // namespace mirelon

// Whose turn it is with a thing that one thread at a time may use.
#pragma once

#include <atomic>
#include <thread>

namespace mirelon::hosting {

// The thing is this thread's for as long as the object lives, if it says so.
class Turn {
  public:
    // `spun`: awaited without a system call, where others hold it for moments only.
    enum class Manner { tried, awaited, spun };
    Turn(std::atomic_flag& busy_, Manner manner) noexcept
        : busy(busy_)
        , taken(!busy.test_and_set(std::memory_order_acquire)) {
        while (!taken && manner != Manner::tried) {
            if (manner == Manner::awaited)
                std::this_thread::yield();
            taken = !busy.test_and_set(std::memory_order_acquire);
        }
    }
    ~Turn() {
        if (taken)
            busy.clear(std::memory_order_release);
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    explicit operator bool() const noexcept { return taken; }

  private:
    std::atomic_flag& busy;
    bool taken;
};

} // namespace mirelon::hosting

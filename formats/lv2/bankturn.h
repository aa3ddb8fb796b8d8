// Who may replace the bank, and whether somebody has.
#pragma once

#include <atomic>
#include <thread>

namespace mirelon::lv2 {

// A sequence lock around single words that are atomic by themselves: odd while
// the bank is being replaced. The audio thread never waits; the host's other
// threads wait for as long as copying 692 bytes takes.
class BankTurn {
  public:
    // On the audio thread: false when another replaces the bank just now.
    bool tryToReplace() noexcept {
        unsigned count = changes.load(std::memory_order_relaxed);
        return count % 2 == 0 &&
               changes.compare_exchange_strong(count, count + 1, std::memory_order_acquire);
    }
    void waitToReplace() noexcept {
        while (!tryToReplace())
            std::this_thread::yield();
    }
    void replaced() noexcept { changes.fetch_add(1, std::memory_order_release); }

    // Reads until nothing has been replaced meanwhile.
    template <typename Read>
    void readWhole(Read read) {
        for (;;) {
            const unsigned before = changes.load(std::memory_order_acquire);
            if (before % 2 == 0) {
                read();
                // As a write: the reads above cannot move behind it.
                if (changes.fetch_add(0, std::memory_order_acq_rel) == before)
                    return;
            }
            std::this_thread::yield();
        }
    }

  private:
    std::atomic<unsigned> changes{0};
};

} // namespace mirelon::lv2

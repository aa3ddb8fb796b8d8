// What the user does to the parameters, on its way from the window to the thread
// that may tell the host.
#pragma once

#include "processor/core/parameters.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

namespace mirelon::clap {

struct Change {
    enum class Kind { begin, value, end };
    Kind kind;
    int index;          // 0 to 8
    float value = 0.0F; // of a value
};

// One thread writes; of the threads that read, one at a time gets anything. Nothing
// here waits or allocates.
//
// When the host takes nothing for long, values are lost, and gestures that are not
// yet begun; there is always room for the end of one that is.
class ChangeRing {
  public:
    // The writer. `index` is 0 to 8; one gesture at a time for each.
    void begin(int index) noexcept;
    void value(int index, float value) noexcept;
    void end(int index) noexcept;
    // Whether values have been lost since the last question.
    bool takeLoss() noexcept { return std::exchange(lost, false); }

    // Any thread.
    bool isEmpty() const noexcept {
        return written.load(std::memory_order_acquire) == taken.load(std::memory_order_acquire);
    }

    // Hands the changes to `tell`, oldest first, up to the first that it answers
    // with false, which stays. Answers whether the ring has been emptied.
    template <typename Tell>
    bool take(Tell tell) noexcept;

  private:
    static constexpr std::size_t capacity = 256;

    std::size_t room() const noexcept {
        return capacity -
               (written.load(std::memory_order_relaxed) - taken.load(std::memory_order_acquire));
    }
    void write(Change change) noexcept {
        const std::size_t at = written.load(std::memory_order_relaxed);
        changes[at % capacity] = change;
        written.store(at + 1, std::memory_order_release);
    }

    std::array<Change, capacity> changes{};
    std::atomic<std::size_t> written{0}; // both count on without end
    std::atomic<std::size_t> taken{0};
    std::atomic<bool> reading{false};

    // The writer's own. Every open gesture has room for its end put aside.
    std::array<bool, kNumParams> open{};
    std::size_t gestures = 0;
    bool lost = false;
};

inline void ChangeRing::begin(int index) noexcept {
    bool& isOpen = open[static_cast<std::size_t>(index)];
    if (isOpen || room() < gestures + 2)
        return;
    isOpen = true;
    ++gestures;
    write({Change::Kind::begin, index});
}

inline void ChangeRing::value(int index, float value) noexcept {
    if (room() > gestures)
        write({Change::Kind::value, index, value});
    else
        lost = true;
}

inline void ChangeRing::end(int index) noexcept {
    if (!std::exchange(open[static_cast<std::size_t>(index)], false))
        return;
    --gestures;
    write({Change::Kind::end, index});
}

template <typename Tell>
bool ChangeRing::take(Tell tell) noexcept {
    if (isEmpty() || reading.exchange(true, std::memory_order_acquire))
        return false;
    std::size_t at = taken.load(std::memory_order_relaxed);
    const std::size_t end = written.load(std::memory_order_acquire);
    while (at != end && tell(changes[at % capacity]))
        taken.store(++at, std::memory_order_release);
    reading.store(false, std::memory_order_release);
    return at == end;
}

} // namespace mirelon::clap

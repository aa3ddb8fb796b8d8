// What other threads have changed and the window does not show yet.
#pragma once

#include "presetsystem/presetrecord.h"

#include <atomic>
#include <cstdint>

namespace mirelon {

// A dirty flag for each parameter and one for the bank with its names. The flags
// say only what to read again, not what it holds: by the time they are taken
// there may be newer values, or another current preset.
//
// Adding is for any thread, audio included: no lock, no allocation.
class PendingUpdates {
  public:
    // One moment's flags.
    class Taken {
      public:
        constexpr explicit Taken(std::uint32_t flags) noexcept
            : flags(flags) {}
        constexpr bool bank() const noexcept { return (flags & bankFlag) != 0; }
        // Index 0 to 8.
        constexpr bool parameter(int index) const noexcept {
            return (flags & parameterFlag(index)) != 0;
        }

      private:
        std::uint32_t flags;
    };

    // An index outside 0 to 8 adds nothing.
    void addParameter(long index) noexcept {
        if (index >= 0 && index < kNumPresetParams)
            add(parameterFlag(static_cast<int>(index)));
    }
    void addBank() noexcept { add(bankFlag); }

    // What has been added since the last taking, and is not pending any more.
    // Whatever was written before a flag was added can be read after this.
    Taken take() noexcept { return Taken(word.exchange(0, std::memory_order_acquire)); }

  private:
    static constexpr std::uint32_t bankFlag = 1U << kNumPresetParams;
    static constexpr std::uint32_t parameterFlag(int index) noexcept {
        return 1U << static_cast<unsigned>(index);
    }
    static_assert(kNumPresetParams < 32, "the flags share one word");

    void add(std::uint32_t flag) noexcept { word.fetch_or(flag, std::memory_order_release); }

    std::atomic<std::uint32_t> word{0};
    static_assert(decltype(word)::is_always_lock_free);
};

} // namespace mirelon

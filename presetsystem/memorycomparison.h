// Whether the current preset is what the compare memories hold.
#pragma once

#include "presetsystem/presetimages.h"
#include "presetsystem/storedpresets.h"

#include <atomic>
#include <optional>

namespace mirelon {

// Compares only when it can have become another: after a change of the preset or a
// storing by any instance of this process. A storing by another process is seen at
// the next opening.
class MemoryComparison {
  public:
    struct Equal {
        bool a = false;
        bool b = false;
        bool operator==(const Equal&) const = default;
    };

    // The current preset is another, or its name or a value. Any thread, audio
    // included.
    void presetChanged() noexcept { changed.store(true, std::memory_order_release); }

    // What follows: one thread.

    // The window has been opened: what is stored is read anew.
    void restart() noexcept;
    // Whether there is something to compare; true once.
    bool isDue() noexcept;
    // `current` as it would be stored.
    Equal compare(const presetfilestruct& current, const StoredPresets& stored);

  private:
    std::atomic<bool> changed{true};
    std::optional<unsigned> storings; // how many there were when the memories were read
    presetfilestruct memoryA;
    presetfilestruct memoryB;
};

} // namespace mirelon

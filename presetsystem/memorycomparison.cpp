#include "presetsystem/memorycomparison.h"

namespace mirelon {

void MemoryComparison::restart() noexcept {
    storings.reset();
}

bool MemoryComparison::isDue() noexcept {
    return changed.exchange(false, std::memory_order_acquire) ||
           storings != StoredPresets::storings();
}

MemoryComparison::Equal MemoryComparison::compare(const presetfilestruct& current,
                                                  const StoredPresets& stored) {
    if (const unsigned now = StoredPresets::storings(); storings != now) {
        storings = now;
        memoryA = stored.preset(PresetSlot::memoryA);
        memoryB = stored.preset(PresetSlot::memoryB);
    }
    return {current.bytes == memoryA.bytes, current.bytes == memoryB.bytes};
}

} // namespace mirelon

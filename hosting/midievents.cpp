#include "hosting/midievents.h"

#include <algorithm>
#include <new>

namespace mirelon::hosting {

VstEvents* MidiEvents::list() {
    // The record has room for two pointers; the others follow them.
    const std::size_t bytes = sizeof(VstEvents) + events.size() * sizeof(void*);
    storage.assign(bytes / sizeof(std::max_align_t) + 1, {});
    auto* const record = new (storage.data()) VstEvents{};
    record->numEvents = static_cast<VstInt32>(events.size());
    auto* const first = reinterpret_cast<std::byte*>(record) + offsetof(VstEvents, events);
    std::ranges::transform(events, reinterpret_cast<VstEvent**>(first),
                           [](VstEvent& event) { return &event; });
    return record;
}

} // namespace mirelon::hosting

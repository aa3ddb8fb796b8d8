// MIDI messages as a host hands them to an effect before a process call.
#pragma once

#include "shell/vst24.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace mirelon::hosting {

// A message as it comes over the wire; one shorter than three bytes ends in zeros.
using MidiMessage = std::array<std::uint8_t, 3>;

// Where a message stands in an event's data. The bytes around it are zero.
inline constexpr std::size_t midiMessageOffset = 8;

// The event that carries the message at this frame of the block.
inline VstEvent midiEvent(VstInt32 frame, const MidiMessage& message) noexcept {
    VstEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof event;
    event.deltaFrames = frame;
    std::memcpy(event.data + midiMessageOffset, message.data(), message.size());
    return event;
}

// The message in an event of the type kVstMidiType.
inline MidiMessage midiMessage(const VstEvent& event) noexcept {
    MidiMessage message{};
    std::memcpy(message.data(), event.data + midiMessageOffset, message.size());
    return message;
}

// Event `index` of a list, which has it: the record declares the first two only.
inline const VstEvent& eventAt(const VstEvents& list, std::size_t index) noexcept {
    const auto* const first =
        reinterpret_cast<const std::byte*>(&list) + offsetof(VstEvents, events);
    return *reinterpret_cast<const VstEvent* const*>(first)[index];
}

// For effProcessEvents. The effect may keep the pointers until its next process call has
// returned, so nothing is to be added or removed before. One thread at a time.
class MidiEvents {
  public:
    // Effects may expect the order of the frames; nothing is checked.
    void add(VstInt32 frame, const MidiMessage& message) { add(midiEvent(frame, message)); }
    void add(const VstEvent& event) { events.push_back(event); }
    void clear() noexcept { events.clear(); }

    // All of them, in the order in which they were added. Valid until something is
    // added or removed and until the next call.
    VstEvents* list();

  private:
    std::vector<VstEvent> events;
    std::vector<std::max_align_t> storage;
};

} // namespace mirelon::hosting

// The sequences of timed atoms in which hosts hand messages over.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <lv2/atom/atom.h>
#include <span>

namespace mirelon::lv2 {

// Calls `take` with the bytes of each atom of `sequence`, header included, up to
// the first whose size is more than there is. No sequence is no atom; one of
// another type is not looked into.
template <typename Take>
void forEachAtom(const LV2_Atom_Sequence* sequence, std::uint32_t sequenceType, Take take) {
    if (sequence == nullptr || sequence->atom.type != sequenceType ||
        sequence->atom.size < sizeof sequence->body)
        return;
    constexpr std::size_t timeSize = sizeof(LV2_Atom_Event) - sizeof(LV2_Atom);
    std::span<const std::byte> events(reinterpret_cast<const std::byte*>(sequence + 1),
                                      sequence->atom.size - sizeof sequence->body);
    while (events.size() >= sizeof(LV2_Atom_Event)) {
        LV2_Atom atom;
        std::memcpy(&atom, &events[timeSize], sizeof atom);
        if (atom.size > events.size() - sizeof(LV2_Atom_Event))
            return;
        take(events.subspan(timeSize, sizeof atom + atom.size));
        const std::size_t padded = sizeof(LV2_Atom_Event) + (std::size_t{atom.size} + 7) / 8 * 8;
        events = events.subspan(std::min(padded, events.size()));
    }
}

// An output sequence for one cycle: as the host leaves it, its size is the room
// in it. Every cycle may have another.
class EventWriter {
  public:
    // Empties the sequence; `sequence` may be null, and nothing has room then.
    EventWriter(LV2_Atom_Sequence* sequence, std::uint32_t sequenceType) noexcept
        : target(sequence) {
        if (target == nullptr)
            return;
        room = target->atom.size;
        const bool usable = sequenceType != 0 && room >= sizeof target->body;
        target->atom = {usable ? std::uint32_t{sizeof target->body} : 0, usable ? sequenceType : 0};
        if (usable)
            target->body = {0, 0};
        else
            target = nullptr;
    }

    // Appends a whole atom at the cycle's first frame; false when it does not fit.
    bool write(std::span<const std::byte> atom) noexcept {
        constexpr std::size_t timeSize = sizeof(LV2_Atom_Event) - sizeof(LV2_Atom);
        const std::size_t needed = timeSize + (atom.size() + 7) / 8 * 8;
        if (target == nullptr || needed > room - target->atom.size)
            return false;
        auto* const at =
            reinterpret_cast<std::byte*>(target) + sizeof(LV2_Atom) + target->atom.size;
        std::fill_n(at, needed, std::byte{0});
        std::ranges::copy(atom, at + timeSize);
        target->atom.size += static_cast<std::uint32_t>(needed);
        return true;
    }

  private:
    LV2_Atom_Sequence* target;
    std::uint32_t room = 0;
};

} // namespace mirelon::lv2

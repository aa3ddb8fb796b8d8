// What the test effect is told to play: it keeps the keys that are held, and lets one
// chosen thing spoil its sound.
#pragma once

#include "hosting/midievents.h"
#include "tests/validator/defects.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace mirelon::test::brokeneffects {

class Notes {
  public:
    // Answers effProcessEvents.
    VstIntPtr take(const VstEvents& list) {
        if (hasDefect("no-event-crash") && list.numEvents == 0)
            crash();
        if (hasDefect("realtime-notes"))
            allocate();
        poisoned = poisoned || (hasDefect("short-queue") && list.numEvents > 500);
        for (std::size_t i = 0; i < static_cast<std::size_t>(list.numEvents); ++i)
            take(hosting::eventAt(list, i));
        return 1;
    }

    // What becomes of the block that they are in.
    template <typename Sample>
    void spoil(Sample** out, VstInt32 length) {
        if (poisoned)
            out[0][0] = std::numeric_limits<Sample>::quiet_NaN();
        if (overruns)
            out[1][length] = 0;
        for (const VstInt32 frame : frames)
            out[0][frame] = 0;
        frames.clear();
    }

  private:
    void take(const VstEvent& event) {
        if (hasDefect("event-type-unchecked") && event.type > kVstMidiType)
            crash();
        if (event.type != kVstMidiType)
            return;
        if (hasDefect("note-frame-unchecked"))
            frames.push_back(event.deltaFrames);
        const hosting::MidiMessage message = hosting::midiMessage(event);
        const int kind = message[0] & 0xF0;
        const int channel = message[0] & 0x0F;
        const int key = message[1];
        if (hasDefect("note-data-unchecked") && key >= 128)
            crash();
        poisoned = poisoned || (hasDefect("note-system-poisons") && kind == 0xF0) ||
                   (hasDefect("note-highest-key") && kind == 0x90 && key == 127) ||
                   (hasDefect("note-last-channel") && kind == 0xD0 && channel == 15) ||
                   (hasDefect("note-pedal-poisons") && kind == 0xB0 && key == 64) ||
                   (hasDefect("note-sound-off-poisons") && kind == 0xB0 && key == 120);
        overruns = overruns || (hasDefect("note-wheel-overruns") && kind == 0xE0) ||
                   (hasDefect("note-status-overruns") && kind < 0x80);
        if (key >= 128 || (kind != 0x80 && kind != 0x90))
            return;
        bool& isHeld = held.at(static_cast<std::size_t>(channel)).at(static_cast<std::size_t>(key));
        const bool begins = kind == 0x90 && message[2] != 0;
        if (hasDefect("note-end-alone") && !begins && !isHeld)
            crash();
        isHeld = begins;
    }

    std::array<std::array<bool, 128>, 16> held{};
    std::vector<VstInt32> frames; // written to in the block, wherever they are
    bool poisoned = false;
    bool overruns = false;
};

} // namespace mirelon::test::brokeneffects

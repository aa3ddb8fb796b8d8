// What the test effect's functions are told.
#pragma once

#include "hosting/midievents.h"
#include "shell/vst24.h"
#include "tests/validator/transcript.h"

#include <cstddef>
#include <span>

namespace mirelon::test::brokeneffects {

inline Transcript transcript;
inline audioMasterCallback hostOfAll = nullptr;

inline void noteEvents(const VstEvents& list) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.numEvents); ++i) {
        const VstEvent& event = hosting::eventAt(list, i);
        const hosting::MidiMessage message = hosting::midiMessage(event);
        transcript.note("event", 0, event.type, event.deltaFrames,
                        std::as_bytes(std::span(message)));
    }
}

inline void noteDispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, const void* ptr,
                           float opt) {
    // Idle commands come by the clock; displays and windows are others each time.
    if (opcode == effEditIdle) {
        transcript.noteOnce("dispatcher", opcode);
        return;
    }
    if (opcode == effEditOpen)
        transcript.note("dispatcher", opcode);
    else
        transcript.note("dispatcher", opcode, index, value, opt);
    if (ptr == nullptr)
        return;
    if (opcode == effCanDo)
        transcript.note("question", 0, static_cast<const char*>(ptr));
    if (opcode == effSetChunk && value > 0)
        transcript.note(
            "state", 0,
            Transcript::Bytes(static_cast<const std::byte*>(ptr), static_cast<std::size_t>(value)));
    if (opcode == effProcessEvents)
        noteEvents(*static_cast<const VstEvents*>(ptr));
}

// What the host answers to what an effect may ask before it plays.
inline void noteHost(AEffect& record) {
    for (const VstInt32 question : {audioMasterGetSampleRate, audioMasterGetBlockSize})
        transcript.note("host", question, hostOfAll(&record, question, 0, 0, nullptr, 0.0F));
}

template <typename Sample>
void noteProcess(std::span<Sample* const> in, VstInt32 frames) {
    for (const Sample* const channel : in)
        transcript.note("process", 8 * sizeof(Sample),
                        std::as_bytes(std::span(channel, static_cast<std::size_t>(frames))));
}

} // namespace mirelon::test::brokeneffects

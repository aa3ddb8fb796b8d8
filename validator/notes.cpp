// Notes: what effects that take MIDI make of a player's hands, and of what no player
// sends.
#include "hosting/midievents.h"
#include "validator/audioblock.h"
#include "validator/instance.h"
#include "validator/realtimeguard.h"

#include <array>
#include <limits>

namespace mirelon::validator {

namespace {

using hosting::MidiMessage;

constexpr int channels = 16;
constexpr int keys = 128;
constexpr int blockFrames = 256;

// Kinds of messages; the channel is added.
constexpr int noteOff = 0x80;
constexpr int noteOn = 0x90;
constexpr int keyPressure = 0xA0;
constexpr int controller = 0xB0;
constexpr int program = 0xC0;
constexpr int channelPressure = 0xD0;
constexpr int pitchBend = 0xE0;

constexpr int sustainPedal = 64;
constexpr int allSoundOff = 120;
constexpr int allNotesOff = 123;

MidiMessage message(int kind, int channel, int first, int second = 0) {
    return {static_cast<std::uint8_t>(kind + channel), static_cast<std::uint8_t>(first),
            static_cast<std::uint8_t>(second)};
}

bool takesNotes(const hosting::Effect& effect) {
    return effect.hasFlag(effFlagsIsSynth) || effect.canDo("receiveVstMidiEvent") > 0;
}

// An effect that takes notes, and a host's audio thread that sends it some.
class Performance {
  public:
    explicit Performance(const Subject& subject)
        : instance(subject)
        , noise(subject.seed) {
        if (!takesNotes(instance.effect))
            throw Skipped("takes no notes");
        start(instance.effect, 48000, blockFrames);
    }

    hosting::MidiEvents& events() noexcept { return next; }
    Noise& random() noexcept { return noise; }
    // A message with data of its range.
    int data() { return static_cast<int>(noise.below(128)); }

    // A block with the events, which are used up. Fails as Buffers does.
    template <typename... When>
    void play(const When&... when) {
        sendThen([&] { buffers.process(instance.effect, when...); });
    }
    // The same where the sound may be anything within its buffers.
    template <typename... When>
    void endure(const When&... when) {
        sendThen([&] {
            instance.effect.process(buffers.in.data(), buffers.out.data(), blockFrames);
            require(buffers.in.guardsIntact() && buffers.out.guardsIntact(),
                    "wrote outside its buffers, ", when...);
        });
    }
    // With what the effect does in both calls watched.
    void playWatched(const RealTimeGuard& guard) {
        VstEvents* const list = next.list();
        float** const in = buffers.in.data();
        float** const out = buffers.out.data();
        guard.watch([&] {
            instance.effect.dispatch(effProcessEvents, 0, 0, list);
            instance.effect.process(in, out, blockFrames);
        });
        next.clear();
    }
    void restart() { start(instance.effect, 48000, blockFrames); }

  private:
    template <typename Process>
    void sendThen(Process process) {
        buffers.in.fill(noise);
        instance.effect.dispatch(effProcessEvents, 0, 0, next.list());
        process();
        next.clear();
    }

    Instance instance;
    Noise noise;
    hosting::MidiEvents next;
    Buffers<float> buffers{instance.effect, blockFrames};
};

// Adds notes that begin and end within the block, with all that a keyboard has besides,
// in the order of their frames.
void addPhrase(Performance& performance, int channel) {
    hosting::MidiEvents& events = performance.events();
    const int key = performance.data();
    const int velocity = 1 + performance.data() % 127;
    events.add(0, message(program, channel, performance.data()));
    events.add(0,
               message(controller, channel, performance.data() % allSoundOff, performance.data()));
    events.add(1, message(noteOn, channel, key, velocity));
    events.add(2, message(pitchBend, channel, performance.data(), performance.data()));
    events.add(2, message(keyPressure, channel, key, performance.data()));
    events.add(99, message(channelPressure, channel, performance.data()));
    // A second time without an end in between, and an end of what never began.
    events.add(100, message(noteOn, channel, key, velocity));
    events.add(101, message(noteOff, channel, (key + 1) % keys, 64));
    // Either of the ways in which keyboards end a note, at the very last frame.
    const bool byVelocity = performance.random().below(2) == 0;
    events.add(blockFrames - 1, message(byVelocity ? noteOn : noteOff, channel, key, 0));
}

// Every key of the channel at one frame.
void addAllKeys(Performance& performance, int channel, int kind, int frame) {
    for (int key = 0; key < keys; ++key)
        performance.events().add(frame, message(kind, channel, key, 127));
}

void silence(Performance& performance, int channel) {
    performance.events().add(0, message(controller, channel, sustainPedal, 0));
    performance.events().add(0, message(controller, channel, allNotesOff, 0));
    performance.events().add(0, message(controller, channel, allSoundOff, 0));
}

std::string played(const Subject& subject) {
    Performance performance(subject);
    for (int channel = 0; channel < channels; ++channel) {
        doing("playing phrases on channel ", channel + 1);
        for (int i = 0; i < 10; ++i) {
            addPhrase(performance, channel);
            performance.play("with a phrase on channel ", channel + 1);
        }
        doing("playing all keys of channel ", channel + 1);
        addAllKeys(performance, channel, noteOn, 0);
        performance.play("with all keys of channel ", channel + 1);
        for (int i = 0; i < 4; ++i)
            performance.play("while all keys of channel ", channel + 1, " are held");
        addAllKeys(performance, channel, noteOff, blockFrames - 1);
        performance.play("after all keys of channel ", channel + 1);
        silence(performance, channel);
        performance.play("after the controllers that end all notes");
    }
    return {};
}

// As many as a recording of a wheel, pressure and chords on all channels comes to.
std::string crowded(const Subject& subject) {
    Performance performance(subject);
    constexpr int aFrame = 2;
    for (int i = 0; i < 20; ++i) {
        doing("sending ", aFrame * blockFrames, " events in block ", i);
        for (int frame = 0; frame < blockFrames; ++frame)
            for (int n = 0; n < aFrame; ++n)
                performance.events().add(
                    frame, message(noteOff + 0x10 * static_cast<int>(performance.random().below(7)),
                                   static_cast<int>(performance.random().below(channels)),
                                   performance.data(), performance.data()));
        performance.play("with ", aFrame * blockFrames, " events in a block");
    }
    return {};
}

// What is no message: data with the top bit, no status, the system's own statuses.
MidiMessage strangeMessage(Noise& noise, int i) {
    const auto byte = [&noise](std::uint32_t from, std::uint32_t to) {
        return static_cast<std::uint8_t>(from + noise.below(to - from));
    };
    switch (i % 3) {
    case 0:
        return {byte(0x80, 0xF0), byte(0x80, 0x100), byte(0x80, 0x100)};
    case 1:
        return {byte(0, 0x80), byte(0, 0x100), byte(0, 0x100)};
    default:
        return {byte(0xF0, 0x100), byte(0, 0x100), byte(0, 0x100)};
    }
}

void requireOrdinaryNotes(Performance& performance) {
    doing("playing ordinary notes again");
    performance.restart();
    for (int channel = 0; channel < channels; ++channel) {
        silence(performance, channel);
        performance.play("with ordinary notes after strange ones");
        addPhrase(performance, channel);
        performance.play("with ordinary notes after strange ones");
    }
}

std::string strangeBytes(const Subject& subject) {
    Performance performance(subject);
    for (int i = 0; i < 2000; ++i) {
        const MidiMessage sent = strangeMessage(performance.random(), i);
        doing("sending the bytes ", +sent[0], " ", +sent[1], " ", +sent[2]);
        performance.events().add(static_cast<VstInt32>(performance.random().below(blockFrames)),
                                 sent);
        performance.endure("after bytes that are no message");
    }
    requireOrdinaryNotes(performance);
    return {};
}

// Events before and behind the block, in no order, of types that there are not, and
// none at all.
std::string strangeEvents(const Subject& subject) {
    using Limits = std::numeric_limits<VstInt32>;
    constexpr std::array frames{-1,      blockFrames,   blockFrames + 1,
                                1 << 20, Limits::max(), Limits::min()};
    // Without the one whose data is a pointer.
    constexpr std::array types{-1, 0, 2, 5, 7, Limits::max(), Limits::min()};
    Performance performance(subject);
    for (const VstInt32 frame : frames) {
        doing("sending a note at frame ", frame, " of ", blockFrames);
        performance.events().add(frame, message(noteOn, 0, 60, 100));
        performance.events().add(0, message(noteOn, 0, 61, 100));
        performance.endure("with a note at frame ", frame, " of ", blockFrames);
        performance.endure("after a note at frame ", frame, " of ", blockFrames);
    }
    for (const VstInt32 type : types) {
        doing("sending an event of the type ", type);
        VstEvent event = hosting::midiEvent(0, message(noteOn, 0, 60, 100));
        event.type = type;
        performance.events().add(event);
        performance.endure("with an event of the type ", type);
    }
    doing("sending no event");
    performance.endure("with no event");
    requireOrdinaryNotes(performance);
    return {};
}

std::string watched(const Subject& subject) {
    const RealTimeGuard guard;
    Performance performance(subject);
    for (int i = 0; i < 10; ++i)
        for (int channel = 0; channel < channels; ++channel) {
            doing("playing phrases on channel ", channel + 1);
            addPhrase(performance, channel);
            performance.playWatched(guard);
        }
    guard.requireNone("process with notes");
    return {};
}

constexpr std::array notesTable{
    Check{"notes-played", 5, Formats::vst2, played, 60},
    Check{"notes-crowded", 5, Formats::vst2, crowded, 60},
    Check{"notes-strange-bytes", 8, Formats::vst2, strangeBytes, 60, Guard::none,
          Severity::unusual},
    Check{"notes-strange-events", 8, Formats::vst2, strangeEvents, 60, Guard::none,
          Severity::unusual},
    Check{"realtime-notes", 10, Formats::vst2, watched, 60, Guard::realTime},
};

} // namespace

std::span<const Check> noteChecks() {
    return notesTable;
}

} // namespace mirelon::validator

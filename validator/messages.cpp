// Messages that no window would send: atoms of every wrong shape at the port for
// control messages.
#include "hosting/lv2effect.h"
#include "hosting/pluginfile.h"
#include "validator/audioblock.h"
#include "validator/realtimeguard.h"

#include <array>
#include <cstring>
#include <lv2/atom/atom.h>

namespace mirelon::validator {

namespace {

constexpr int block = 64;

// An LV2 instance that is sent messages and must stay whole.
class Receiver {
  public:
    explicit Receiver(const Subject& subject)
        : module(hosting::openPlugin(subject.plugin))
        , bundle(dynamic_cast<const hosting::Lv2Module&>(*module).files())
        , instance(bundle, 48000.0)
        , noise(subject.seed)
        , in(static_cast<int>(instance.audioInputs()), block)
        , out(static_cast<int>(instance.audioOutputs()), block) {
        if (instance.messageBytes().empty())
            throw Skipped("takes no messages");
    }

    // The input's sequence, prepared without an event.
    std::span<std::byte> emptySequence() {
        instance.prepareSequences();
        return instance.messageBytes();
    }
    // A cycle on what stands in the ports.
    void run(const char* after) {
        in.fill(noise);
        const AudioBlock<float> before = in;
        connect();
        instance.runOnly(block);
        require(in.guardsIntact() && out.guardsIntact(), "wrote outside its buffers after ", after);
        require(in.sameBits(before), "changed its input buffers after ", after);
        require(out.allFinite(), "put out something that is not a number after ", after);
    }
    // As a host's cycle; what was sent arrives in it.
    void send(std::span<const std::byte> atom, const char* what) {
        instance.send(atom);
        emptySequence();
        run(what);
    }
    // Answers how many of the plug-in's messages it has been sent back in so many
    // cycles; `watch` is handed each run.
    template <typename Watch>
    std::size_t echo(int cycles, Watch watch) {
        std::size_t echoed = 0;
        for (int i = 0; i < cycles; ++i) {
            if (i % 10 == 0)
                instance.restore(instance.save());
            in.fill(noise);
            connect();
            instance.prepareSequences();
            watch([this] { instance.runOnly(block); });
            echoed += sendBack();
        }
        return echoed;
    }
    LV2_URID number(const char* uri) const { return bundle.numbers().number(uri); }

    Noise& random() { return noise; }

  private:
    std::size_t sendBack() {
        std::size_t count = 0;
        instance.noteNotifications();
        for (; const auto message = instance.takeNotification(); ++count)
            instance.send(message->bytes);
        return count;
    }
    void connect() {
        std::size_t input = 0;
        std::size_t output = 0;
        float** const inputs = in.data();
        float** const outputs = out.data();
        for (std::uint32_t port = 0; port < instance.portCount(); ++port) {
            if (instance.isAudioInput(port))
                instance.connect(port, inputs[input++]);
            if (instance.isAudioOutput(port))
                instance.connect(port, outputs[output++]);
        }
    }

    std::unique_ptr<const hosting::PluginModule> module;
    const hosting::Lv2Bundle& bundle;
    hosting::Lv2Instance instance;
    Noise noise;
    AudioBlock<float> in;
    AudioBlock<float> out;
};

std::vector<std::byte> atomOf(std::uint32_t type, std::span<const std::byte> body) {
    const LV2_Atom head{static_cast<std::uint32_t>(body.size()), type};
    std::vector<std::byte> atom(sizeof head + body.size());
    std::memcpy(atom.data(), &head, sizeof head);
    std::ranges::copy(body, atom.begin() + sizeof head);
    return atom;
}

std::vector<std::byte> noiseOf(Noise& source, std::size_t size) {
    std::vector<std::byte> bytes(size);
    for (std::byte& each : bytes)
        each = static_cast<std::byte>(source.bits());
    return bytes;
}

// Whole atoms of known and unknown types, too short and too long for them, full
// of random bytes.
std::string strangeAtoms(const Subject& subject) {
    Receiver receiver(subject);
    Noise& random = receiver.random();
    constexpr std::array types{LV2_ATOM__Object, LV2_ATOM__Blank,  LV2_ATOM__Resource,
                               LV2_ATOM__Chunk,  LV2_ATOM__Float,  LV2_ATOM__Int,
                               LV2_ATOM__Tuple,  LV2_ATOM__Vector, LV2_ATOM__Sequence,
                               LV2_ATOM__String, LV2_ATOM__URID,   LV2_ATOM__Path};
    int count = 0;
    for (const char* const type : types)
        for (std::size_t size = 0; size < 128; size += size < 32 ? 1 : 12, ++count)
            receiver.send(atomOf(receiver.number(type), noiseOf(random, size)), type);
    for (int i = 0; i < 500; ++i, ++count)
        receiver.send(atomOf(random.below(64), noiseOf(random, random.below(2048))),
                      "an atom of a random type");
    return std::to_string(count) + " atoms";
}

// Objects whose properties do not fit into them.
std::string strangeObjects(const Subject& subject) {
    Receiver receiver(subject);
    Noise& random = receiver.random();
    int count = 0;
    for (; count < 2000; ++count) {
        // Its number, its class, then key, context, size and type of a property.
        const std::array<std::uint32_t, 6> words{random.below(8),
                                                 random.below(64),
                                                 random.below(64),
                                                 0,
                                                 count % 3 == 0 ? random.bits()
                                                                : random.below(1024),
                                                 random.below(64)};
        auto body = noiseOf(random, sizeof words + random.below(1024));
        std::memcpy(body.data(), words.data(), sizeof words);
        receiver.send(atomOf(receiver.number(LV2_ATOM__Object), body), "a strange object");
    }
    return std::to_string(count) + " objects";
}

// The sequence itself: of another type, or empty beneath its own head, with a
// unit and times that no host gives. A length beyond the buffer is the host's
// own fault, so there is none.
std::string strangeSequences(const Subject& subject) {
    Receiver receiver(subject);
    Noise& random = receiver.random();
    int count = 0;
    for (; count < 1000; ++count) {
        const auto bytes = receiver.emptySequence();
        auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(bytes.data());
        switch (count % 4) {
        case 0:
            sequence->atom.type = random.below(64);
            break;
        case 1:
            sequence->atom.size = random.below(sizeof(LV2_Atom_Sequence_Body));
            break;
        case 2:
            sequence->body = {random.bits(), random.bits()};
            break;
        default: {
            // One event that ends where the sequence does, or says that it is longer.
            const std::uint32_t size = random.below(512);
            LV2_Atom_Event event{};
            event.time.frames = static_cast<std::int64_t>(random.bits()) - (1LL << 31);
            event.body = {count % 8 < 4 ? size : random.bits(), random.below(64)};
            const auto noise = noiseOf(random, size);
            std::memcpy(bytes.data() + sizeof *sequence, &event, sizeof event);
            std::ranges::copy(noise, bytes.begin() + sizeof *sequence + sizeof event);
            sequence->atom.size =
                static_cast<std::uint32_t>(sizeof sequence->body + sizeof event + size);
            break;
        }
        }
        receiver.run("a strange sequence");
    }
    return std::to_string(count) + " sequences";
}

// What it sends to its window comes back to it, as from a window that has just
// changed everything; a restored state makes it tell its window all anew.
std::string echoedInRealTime(const Subject& subject) {
    const RealTimeGuard guard;
    Receiver receiver(subject);
    const std::size_t echoed = receiver.echo(300, [&](auto run) { guard.watch(run); });
    guard.requireNone("run");
    return std::to_string(echoed) + " messages";
}

constexpr std::array messagesTable{
    Check{"messages-strange-atoms", 9, Formats::lv2, strangeAtoms, 60, Guard::none,
          Severity::unusual},
    Check{"messages-strange-objects", 9, Formats::lv2, strangeObjects, 60, Guard::none,
          Severity::unusual},
    Check{"messages-strange-sequences", 9, Formats::lv2, strangeSequences, 60, Guard::none,
          Severity::unusual},
    Check{"realtime-messages", 10, Formats::lv2, echoedInRealTime, 60, Guard::realTime},
};

} // namespace

std::span<const Check> messageChecks() {
    return messagesTable;
}

} // namespace mirelon::validator

// States that no effect wrote.
#include "validator/audioblock.h"
#include "validator/instance.h"

#include <array>
#include <sys/mman.h>
#include <unistd.h>

namespace mirelon::validator {

namespace {

// Bytes that end where the process's memory does: reading past them is fatal.
class EdgeBytes {
  public:
    explicit EdgeBytes(std::span<const std::byte> bytes)
        : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
        , mapped((bytes.size() / page + 2) * page)
        , base(mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        if (base == MAP_FAILED)
            throw Skipped("there is no memory for the state");
        std::byte* const edge = static_cast<std::byte*>(base) + mapped - page;
        mprotect(edge, page, PROT_NONE);
        start = edge - bytes.size();
        std::ranges::copy(bytes, start);
    }
    ~EdgeBytes() { munmap(base, mapped); }
    EdgeBytes(const EdgeBytes&) = delete;
    EdgeBytes& operator=(const EdgeBytes&) = delete;

    std::byte* data() const { return start; }

  private:
    std::size_t page;
    std::size_t mapped;
    void* base;
    std::byte* start = nullptr;
};

// An effect that is given states and must stay whole.
class Patient {
  public:
    explicit Patient(const Subject& subject)
        : instance(subject)
        , seed(subject.seed) {
        if (!instance.effect.hasFlag(effFlagsProgramChunks))
            throw Skipped("keeps no state of its own");
        start(instance.effect, 48000, 64);
        valid = instance.effect.chunk();
        require(!valid.empty(), "answers with an empty state");
    }

    void give(std::span<const std::byte> bytes, const std::string& what) {
        doing(what);
        const EdgeBytes edge(bytes);
        for (const VstInt32 single : {0, 1})
            instance.effect.dispatch(effSetChunk, single, static_cast<VstIntPtr>(bytes.size()),
                                     edge.data());
        // Something that reads what the state has set.
        instance.effect.programName();
        for (VstInt32 i = 0; i < std::min<VstInt32>(instance.effect.record().numParams, 16); ++i)
            instance.effect.parameterDisplay(i);
        Buffers<float> buffers(instance.effect, 64);
        Noise noise(seed);
        buffers.in.fill(noise);
        instance.effect.process(buffers.in.data(), buffers.out.data(), 64);
        require(buffers.in.guardsIntact() && buffers.out.guardsIntact(),
                "wrote outside its buffers after a damaged state of ", bytes.size(), " bytes");
    }

    // Its own first state puts everything right.
    void requireRecovery() {
        doing("given its own state after damaged ones");
        instance.effect.setChunk(valid);
        start(instance.effect, 48000, 64);
        Buffers<float> buffers(instance.effect, 64);
        Noise noise(seed);
        buffers.in.fill(noise);
        buffers.process(instance.effect, "with a good state after damaged ones");
        expect(instance.effect.chunk() == valid, "writes another state than the good one given");
    }

    std::vector<std::byte> valid;

  private:
    Instance instance;
    std::uint64_t seed;
};

std::string lengths(const Subject& subject) {
    Patient patient(subject);
    std::vector<std::byte> bytes = patient.valid;
    bytes.resize(2000);
    for (std::size_t length = 0; length <= bytes.size(); ++length)
        patient.give({bytes.data(), length},
                     joined("given the first ", length, " bytes of its state"));
    patient.requireRecovery();
    return "0 to 2000 bytes";
}

std::string flips(const Subject& subject) {
    Patient patient(subject);
    const std::size_t step = std::max<std::size_t>(1, patient.valid.size() / 4096);
    std::size_t count = 0;
    for (std::size_t at = 0; at < patient.valid.size(); at += step, ++count) {
        std::vector<std::byte> bytes = patient.valid;
        bytes[at] = ~bytes[at];
        patient.give(bytes, joined("given its state with byte ", at, " flipped"));
    }
    patient.requireRecovery();
    return std::to_string(count) + " bytes flipped";
}

std::string noise(const Subject& subject) {
    Patient patient(subject);
    Noise source(subject.seed);
    const auto noiseOf = [&](std::size_t size) {
        std::vector<std::byte> bytes(size);
        for (std::byte& b : bytes)
            b = static_cast<std::byte>(source.bits());
        return bytes;
    };
    patient.give(noiseOf(std::size_t{1} << 20U), "given a state of 1 MiB of noise");
    for (int i = 0; i < 200; ++i)
        patient.give(noiseOf(patient.valid.size()), joined("given noise for a state, number ", i));
    patient.requireRecovery();
    return "1 MiB, and 200 of the state's own size";
}

std::string byteOrder(const Subject& subject) {
    Patient patient(subject);
    for (const std::size_t headerOnly : {std::size_t{32}, patient.valid.size()}) {
        std::vector<std::byte> bytes = patient.valid;
        const std::size_t end = std::min(headerOnly, bytes.size());
        for (std::size_t at = 0; at + 4 <= end; at += 4)
            std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         bytes.begin() + static_cast<std::ptrdiff_t>(at) + 4);
        patient.give(bytes,
                     joined("given its state with the first ", end, " bytes swapped in fours"));
        patient.give(patient.valid, "given its own state again");
    }
    patient.requireRecovery();
    return {};
}

constexpr std::array statefuzzTable{
    Check{"state-every-length", 9, Formats::all, lengths, 180, Guard::none, Severity::unusual},
    Check{"state-every-byte-flipped", 9, Formats::all, flips, 180, Guard::none, Severity::unusual},
    Check{"state-noise", 9, Formats::all, noise, 120, Guard::none, Severity::unusual},
    Check{"state-other-byte-order", 9, Formats::all, byteOrder, 60, Guard::none, Severity::unusual},
};

} // namespace

std::span<const Check> stateFuzzChecks() {
    return statefuzzTable;
}

} // namespace mirelon::validator

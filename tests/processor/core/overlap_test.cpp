// Buffers that overlap in part: frame by frame, each output is written after
// both inputs of its frame have been read and before those of the next.
#include "processor/core/parameters.h"
#include "processor/core/stereokernels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace mirelon {
namespace {

constexpr int frames = 64;
constexpr std::size_t room = 512;

template <typename Sample>
using Memory = std::array<Sample, room>;

// Where the four buffers lie in the memory.
struct Places {
    std::size_t inLeft;
    std::size_t inRight;
    std::size_t outLeft;
    std::size_t outRight;
};

constexpr std::array places{
    Places{100, 300, 101, 400}, Places{100, 300, 99, 400},  Places{100, 300, 200, 301},
    Places{100, 300, 200, 299}, Places{100, 300, 303, 200}, Places{100, 300, 200, 97},
    Places{100, 300, 163, 400}, Places{100, 300, 37, 400},  Places{100, 300, 400, 401},
    Places{100, 300, 400, 399}, Places{100, 300, 100, 300}, Places{100, 300, 300, 100},
};

Coefficients someCoefficients() {
    Coefficients coefficients;
    constexpr std::array values{0.7F, 0.4F, 0.6F, 0.3F, 0.55F, 1.0F, 0.0F, 1.0F, 0.0F};
    for (int i = 0; i < kNumParams; ++i)
        applyParameter(coefficients, i, values[static_cast<std::size_t>(i)]);
    return coefficients;
}

template <typename Sample>
Memory<Sample> filled() {
    Memory<Sample> memory;
    for (std::size_t i = 0; i < room; ++i)
        memory[i] = static_cast<Sample>(std::sin(static_cast<double>(i) * 0.37));
    return memory;
}

template <typename Sample>
void process(Memory<Sample>& memory, const Places& at, std::size_t from, int count,
             Envelopes& envelopes) {
    Sample* const base = memory.data() + from;
    processBlock(someCoefficients(), 0.001, envelopes,
                 StereoInput<Sample>{base + at.inLeft, base + at.inRight},
                 StereoOutput<Sample>{base + at.outLeft, base + at.outRight}, count);
}

template <typename Sample>
void expectFrameByFrame() {
    for (const Places& at : places) {
        Memory<Sample> whole = filled<Sample>();
        Envelopes wholeEnvelopes;
        process(whole, at, 0, frames, wholeEnvelopes);
        Memory<Sample> single = filled<Sample>();
        Envelopes singleEnvelopes;
        for (std::size_t i = 0; i < frames; ++i)
            process(single, at, i, 1, singleEnvelopes);
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): bit for bit
        EXPECT_EQ(std::memcmp(whole.data(), single.data(), sizeof whole), 0)
            << at.outLeft << ' ' << at.outRight;
        EXPECT_EQ(wholeEnvelopes.sum, singleEnvelopes.sum);
        EXPECT_EQ(wholeEnvelopes.right, singleEnvelopes.right);
    }
}

TEST(Overlap, InPartIsProcessedFrameByFrameInSinglePrecision) {
    expectFrameByFrame<float>();
}

TEST(Overlap, InPartIsProcessedFrameByFrameInDoublePrecision) {
    expectFrameByFrame<double>();
}

// The outputs of one frame lie side by side, so the frame after the last would
// be seen.
TEST(Overlap, InPartStopsAtTheLastFrame) {
    Memory<float> memory = filled<float>();
    const Memory<float> before = memory;
    Envelopes envelopes;
    process(memory, {100, 300, 101, 400}, 0, frames, envelopes);
    EXPECT_EQ(memory[101 + frames], before[101 + frames]);
    EXPECT_EQ(memory[400 + frames], before[400 + frames]);
}

// How many frames each block had that a kernel was handed.
std::vector<int>& handedOver() {
    static std::vector<int> frameCounts;
    return frameCounts;
}

template <typename Sample>
void record(const kernels::Block<Sample>& block) noexcept {
    handedOver().push_back(block.frames);
}

template <typename Sample>
std::vector<int> blocksFor(const Places& at, int count = frames) {
    constexpr kernels::Kernel recorder{"recorder", []() noexcept { return true; }, record<float>,
                                       record<double>};
    Memory<Sample> memory = filled<Sample>();
    Sample* const base = memory.data();
    const Coefficients coefficients = someCoefficients();
    Envelopes envelopes;
    handedOver().clear();
    kernels::processWith<Sample>(recorder, {coefficients,
                                            0.001,
                                            envelopes,
                                            {base + at.inLeft, base + at.inRight},
                                            {base + at.outLeft, base + at.outRight},
                                            count});
    return handedOver();
}

// The fast kernels take many frames at once, but never of a block
// whose next inputs would be overwritten.
template <typename Sample>
void expectWholeUnlessOverlapping() {
    const std::vector<int> whole{frames};
    const std::vector<int> single(frames, 1);
    for (const Places& apart :
         {Places{0, 100, 200, 300}, Places{100, 300, 100, 300}, Places{100, 300, 300, 100},
          Places{100, 300, 164, 400}, Places{100, 300, 36, 400}, Places{100, 300, 430, 364},
          Places{100, 300, 400, 236}, Places{100, 300, 164, 228}, Places{100, 300, 200, 200},
          Places{100, 100, 100, 300}})
        EXPECT_EQ(blocksFor<Sample>(apart), whole) << apart.outLeft << ' ' << apart.outRight;
    for (const Places& overlapping :
         {Places{100, 300, 163, 400}, Places{100, 300, 37, 400}, Places{100, 300, 363, 200},
          Places{100, 300, 237, 200}, Places{100, 300, 400, 163}, Places{100, 300, 400, 37},
          Places{100, 300, 400, 363}, Places{100, 300, 400, 237}, Places{100, 300, 200, 201},
          Places{100, 300, 200, 137}})
        EXPECT_EQ(blocksFor<Sample>(overlapping), single)
            << overlapping.outLeft << ' ' << overlapping.outRight;
}

TEST(Overlap, WithoutFramesNothingIsHandedOver) {
    for (const Places& at : {places[0], Places{100, 100, 100, 100}})
        for (const int count : {0, -1})
            EXPECT_TRUE(blocksFor<float>(at, count).empty()) << count;
}

TEST(Overlap, OnlyInPartTakesABlockApartInSinglePrecision) {
    expectWholeUnlessOverlapping<float>();
}

TEST(Overlap, OnlyInPartTakesABlockApartInDoublePrecision) {
    expectWholeUnlessOverlapping<double>();
}

} // namespace
} // namespace mirelon

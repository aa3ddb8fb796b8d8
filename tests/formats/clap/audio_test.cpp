// The CLAP plug-in's sound: that of the effect, bit for bit, with every change at
// the frame of its event.
#include "tests/formats/clap/clapfile.h"
#include "tests/support/plugin.h"
#include "tests/support/signals.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace mirelon::test {
namespace {

using hosting::ClapInputEvents;
using hosting::clapValueEvent;

constexpr double rate = 48000.0;

// A parameter's change at a frame of a long stretch of audio.
struct Move {
    std::size_t frame;
    int parameter;
    float value;
};

std::vector<Move> randomMoves(std::size_t count, std::size_t frames, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Move> moves(count);
    for (Move& move : moves) {
        move.frame = random() % frames;
        move.parameter = static_cast<int>(random() % kNumParams);
        const bool onOff = move.parameter >= kParamProcess;
        move.value =
            onOff ? static_cast<float>(random() % 2) : static_cast<float>(random() % 1000) / 999.0F;
    }
    std::ranges::stable_sort(moves, {}, &Move::frame);
    return moves;
}

template <typename Sample>
StereoBuffer<Sample> noise(std::size_t frames) {
    StereoBuffer<Sample> buffer(frames);
    signals::fill<Sample>(buffer.left, signals::Signal::noise, 1, 0);
    signals::fill<Sample>(buffer.right, signals::Signal::noise, 1, 1);
    return buffer;
}

template <typename Sample>
void expectSame(const StereoBuffer<Sample>& a, const StereoBuffer<Sample>& b) {
    const auto bytes = [](const std::vector<Sample>& samples) {
        return samples.size() * sizeof(Sample);
    };
    ASSERT_EQ(a.left.size(), b.left.size());
    EXPECT_EQ(std::memcmp(a.left.data(), b.left.data(), bytes(a.left)), 0);
    EXPECT_EQ(std::memcmp(a.right.data(), b.right.data(), bytes(a.right)), 0);
}

// The effect itself, called from move to move.
template <typename Sample>
StereoBuffer<Sample> direct(StereoBuffer<Sample>& input, const std::vector<Move>& moves) {
    PluginInstance vst;
    vst.effect.setSampleRate(static_cast<float>(rate));
    vst.effect.resume();
    StereoBuffer<Sample> output(input.left.size());
    std::size_t position = 0;
    const auto processUntil = [&](std::size_t end) {
        if (end == position)
            return;
        Sample* in[] = {&input.left[position], &input.right[position]};
        Sample* out[] = {&output.left[position], &output.right[position]};
        vst.effect.process(in, out, static_cast<VstInt32>(end - position));
        position = end;
    };
    for (const Move& move : moves) {
        processUntil(move.frame);
        vst.effect.setParameter(move.parameter, move.value);
    }
    processUntil(input.left.size());
    return output;
}

// The CLAP plug-in in blocks of these sizes, one after the other, with the moves
// as events.
template <typename Sample>
StereoBuffer<Sample> inBlocks(StereoBuffer<Sample>& input, const std::vector<Move>& moves,
                              const std::vector<std::uint32_t>& sizes) {
    ClapPlugIn plugIn;
    EXPECT_TRUE(plugIn.instance.activate(rate, *std::ranges::max_element(sizes)));
    StereoBuffer<Sample> output(input.left.size());
    ClapInputEvents events;
    auto move = moves.begin();
    std::size_t block = 0;
    for (std::size_t position = 0; position < input.left.size(); ++block) {
        const auto frames = static_cast<std::uint32_t>(
            std::min<std::size_t>(sizes[block % sizes.size()], input.left.size() - position));
        events.clear();
        for (; move != moves.end() && move->frame < position + frames; ++move)
            events.add(clapValueEvent(static_cast<std::uint32_t>(move->frame - position),
                                      static_cast<clap_id>(move->parameter),
                                      static_cast<double>(move->value)));
        Sample* in[] = {&input.left[position], &input.right[position]};
        Sample* out[] = {&output.left[position], &output.right[position]};
        EXPECT_EQ(plugIn.instance.process(in, out, frames, events.list()), CLAP_PROCESS_CONTINUE);
        position += frames;
    }
    return output;
}

class ClapAudio : public testing::Test {
  protected:
    EmptyPreferences preferences;
};

template <typename Sample>
class ClapAudioOf : public ClapAudio {};
using Samples = testing::Types<float, double>;
TYPED_TEST_SUITE(ClapAudioOf, Samples);

TYPED_TEST(ClapAudioOf, AMillionFramesWithFourThousandEventsIsThatOfDirectCalls) {
    constexpr std::size_t frames = 1'000'000;
    auto input = noise<TypeParam>(frames);
    const auto moves = randomMoves(4000, frames, 7);
    const auto expected = direct(input, moves);
    std::mt19937 random(3);
    std::vector<std::uint32_t> anySize(997);
    for (std::uint32_t& size : anySize)
        size = 1 + static_cast<std::uint32_t>(random() % 4096);
    expectSame(inBlocks(input, moves, anySize), expected);
    for (const std::uint32_t size : {17U, 512U, 4096U})
        expectSame(inBlocks(input, moves, {size}), expected);
}

TYPED_TEST(ClapAudioOf, BlocksOfEverySizeAreOfTheSameSound) {
    constexpr std::size_t frames = 4096;
    auto input = noise<TypeParam>(frames);
    const auto moves = randomMoves(200, frames, 5);
    const auto expected = direct(input, moves);
    for (std::uint32_t size = 1; size <= frames; size += size < 70 ? 1 : 61)
        expectSame(inBlocks(input, moves, {size}), expected);
}

TYPED_TEST(ClapAudioOf, AnEventAtEveryFrameCutsThereAndNowhereElse) {
    constexpr std::size_t frames = 3000;
    auto input = noise<TypeParam>(frames);
    std::vector<Move> moves;
    for (std::size_t frame = 0; frame < frames; ++frame)
        moves.push_back({frame, kParamGain, static_cast<float>(frame) / frames});
    expectSame(inBlocks(input, moves, {1024}), direct(input, moves));
}

TYPED_TEST(ClapAudioOf, SeveralEventsAtOneFrameCountInTheirOrder) {
    auto input = noise<TypeParam>(256);
    const std::vector<Move> moves{{100, kParamWidth, 0.9F},
                                  {100, kParamWidth, 0.2F},
                                  {100, kParamInvertL, 1.0F},
                                  {255, kParamGain, 0.0F}};
    expectSame(inBlocks(input, moves, {256}), direct(input, moves));
}

TYPED_TEST(ClapAudioOf, BuffersMayBeSharedByInputAndOutput) {
    auto input = noise<TypeParam>(2048);
    const auto moves = randomMoves(40, 2048, 2);
    const auto expected = direct(input, moves);
    ClapPlugIn plugIn;
    plugIn.instance.activate(rate, 2048);
    ClapInputEvents events;
    for (const Move& move : moves)
        events.add(clapValueEvent(static_cast<std::uint32_t>(move.frame),
                                  static_cast<clap_id>(move.parameter),
                                  static_cast<double>(move.value)));
    plugIn.instance.process(input.pointers(), input.pointers(), 2048, events.list());
    expectSame(input, expected);
}

// What the interface lets a host expect is nothing that it gives: events that are
// late by their order take effect where the block has got to, those beyond the
// block at its end.
TEST_F(ClapAudio, EventsOutOfOrderAndBeyondTheBlockCountWhereTheyStillCan) {
    auto input = noise<float>(128);
    ClapPlugIn plugIn;
    plugIn.instance.activate(rate, 64);
    StereoBuffer<float> output(128);
    ClapInputEvents events;
    events.add(clapValueEvent(40, kParamGain, 1.0));
    events.add(clapValueEvent(10, kParamPhase, 1.0));
    events.add(clapValueEvent(0xFFFFFFFF, kParamWidth, 0.0));
    events.add(clapValueEvent(20, kParamInvertR, 1.0));
    float* out[] = {output.left.data(), output.right.data()};
    plugIn.instance.process(input.pointers(), out, 64, events.list());
    float* in[] = {&input.left[64], &input.right[64]};
    float* rest[] = {&output.left[64], &output.right[64]};
    plugIn.instance.process(in, rest, 64);
    expectSame(output, direct(input, {{40, kParamGain, 1.0F},
                                      {40, kParamPhase, 1.0F},
                                      {64, kParamWidth, 0.0F},
                                      {64, kParamInvertR, 1.0F}}));
}

TEST_F(ClapAudio, EventsOfOthersSpacesKindsSizesAndParametersAreIgnored) {
    auto input = noise<float>(64);
    ClapPlugIn plugIn;
    plugIn.instance.activate(rate, 64);
    const auto good = clapValueEvent(3, kParamGain, 1.0);
    ClapInputEvents events;
    const auto changed = [&](auto change) {
        auto event = good;
        change(event);
        events.add(event);
    };
    changed([](auto& event) { event.header.space_id = 7; });
    changed([](auto& event) { event.header.type = CLAP_EVENT_PARAM_MOD; });
    changed([](auto& event) { event.header.type = CLAP_EVENT_NOTE_ON; });
    changed([](auto& event) { event.header.type = 0xFFFF; });
    changed([](auto& event) { event.header.size = sizeof(clap_event_header); });
    changed([](auto& event) { event.param_id = kNumParams; });
    changed([](auto& event) { event.param_id = 0xFFFFFFFF; });
    changed([](auto& event) { event.value = std::numeric_limits<double>::quiet_NaN(); });
    StereoBuffer<float> output(64);
    EXPECT_EQ(plugIn.instance.process(input.pointers(), output.pointers(), 64, events.list()),
              CLAP_PROCESS_CONTINUE);
    expectSame(output, direct(input, {}));
}

TEST_F(ClapAudio, ValuesBeyondTheEndsAreTakenToThem) {
    ClapPlugIn plugIn;
    plugIn.set(kParamGain, 17.0);
    EXPECT_EQ(plugIn.value(kParamGain), 1.0);
    plugIn.set(kParamGain, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(plugIn.value(kParamGain), 0.0);
}

// --- What a cycle may lack ---

class ClapCycle : public ClapAudio {
  protected:
    ClapCycle() { plugIn.instance.activate(rate, 64); }

    clap_process_status process(const clap_process& cycle) {
        const clap_plugin& made = plugIn.instance.plugin();
        return made.process(&made, &cycle);
    }

    StereoBuffer<float> samples = noise<float>(64);
    StereoBuffer<float> output{64};
    StereoBuffer<double> doubles{64};
    clap_audio_buffer in{samples.pointers(), nullptr, 2, 0, 0};
    clap_audio_buffer out{output.pointers(), nullptr, 2, 0, 0};
    ClapPlugIn plugIn;
};

TEST_F(ClapCycle, WithoutWholeBuffersWritesNothingAndTakesTheEvents) {
    float* halfPointers[] = {samples.left.data(), nullptr};
    clap_audio_buffer half{halfPointers, nullptr, 2, 0, 0};
    clap_audio_buffer mono{samples.pointers(), nullptr, 1, 0, 0};
    clap_audio_buffer none{nullptr, nullptr, 2, 0, 0};
    clap_audio_buffer wide{nullptr, doubles.pointers(), 2, 0, 0};
    struct Case {
        clap_audio_buffer* in;
        clap_audio_buffer* out;
        std::uint32_t ports;
    };
    double value = 0.0;
    for (const Case& each : {Case{&half, &out, 1}, Case{&in, &half, 1}, Case{&mono, &out, 1},
                             Case{&in, &none, 1}, Case{&wide, &out, 1}, Case{&in, &wide, 1},
                             Case{nullptr, nullptr, 1}, Case{&in, &out, 0}}) {
        value += 0.125;
        ClapInputEvents events;
        events.add(clapValueEvent(5, kParamGain, value));
        EXPECT_EQ(process({0, 64, nullptr, each.in, each.out, each.ports, each.ports, events.list(),
                           nullptr}),
                  CLAP_PROCESS_ERROR);
        EXPECT_EQ(plugIn.value(kParamGain), value);
    }
    EXPECT_EQ(output.left, std::vector<float>(64));
    EXPECT_EQ(doubles.left, std::vector<double>(64));
}

TEST_F(ClapCycle, OfNoFramesTakesTheEvents) {
    ClapInputEvents events;
    events.add(clapValueEvent(0, kParamGain, 0.25));
    EXPECT_EQ(process({0, 0, nullptr, &in, &out, 1, 1, events.list(), nullptr}),
              CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(process({0, 0, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr}),
              CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(plugIn.value(kParamGain), 0.25);
}

TEST_F(ClapCycle, WithMorePortsAndChannelsUsesTheFirst) {
    float* four[] = {samples.left.data(), samples.right.data(), nullptr, nullptr};
    clap_audio_buffer ins[] = {{four, nullptr, 4, 0, 0}, {}};
    EXPECT_EQ(process({0, 64, nullptr, ins, &out, 2, 1, nullptr, nullptr}), CLAP_PROCESS_CONTINUE);
    expectSame(output, direct(samples, {}));
}

TEST_F(ClapCycle, NoCycleIsAnError) {
    const clap_plugin& made = plugIn.instance.plugin();
    EXPECT_EQ(made.process(&made, nullptr), CLAP_PROCESS_ERROR);
}

TEST_F(ClapAudio, ResetStartsTheFollowersOver) {
    auto input = noise<float>(512);
    ClapPlugIn plugIn;
    plugIn.instance.activate(rate, 512);
    StereoBuffer<float> output(512);
    plugIn.instance.process(input.pointers(), output.pointers(), 512);
    const clap_plugin& made = plugIn.instance.plugin();
    made.reset(&made);
    StereoBuffer<float> again(512);
    plugIn.instance.process(input.pointers(), again.pointers(), 512);
    expectSame(again, output);
}

} // namespace
} // namespace mirelon::test

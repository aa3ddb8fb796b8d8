// Programs, names and state as a host sees them.
#include "tests/support/plugin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>

namespace {

using mirelon::hosting::ChunkKind;
using mirelon::hosting::Effect;
using mirelon::test::PluginInstance;
using mirelon::test::processed;
using mirelon::test::StereoBuffer;

constexpr std::array factoryNames{"init",
                                  "extended width",
                                  "reduced width",
                                  "balanse to the left",
                                  "balanse to the right",
                                  "side bal left",
                                  "side bal right",
                                  "center shift left",
                                  "center shift right",
                                  "out of phase",
                                  "swapped"};

using Chunk = std::vector<std::byte>;

void putWord(Chunk& chunk, std::size_t offset, std::uint32_t word) {
    std::memcpy(&chunk[offset], &word, sizeof word);
}

void reverseWord(Chunk& chunk, std::size_t offset) {
    std::reverse(chunk.begin() + static_cast<std::ptrdiff_t>(offset),
                 chunk.begin() + static_cast<std::ptrdiff_t>(offset + 4));
}

std::string storedName(const Chunk& chunk, std::size_t preset) {
    return {reinterpret_cast<const char*>(&chunk[32 + 60 * preset]), 24};
}

// Applies a preset the only way that is open to a host: through the state.
void applyPreset(Effect& effect, std::uint32_t preset) {
    Chunk chunk = effect.chunk();
    putWord(chunk, 12, preset);
    ASSERT_EQ(effect.setChunk(chunk), 0);
}

std::vector<std::uint32_t> values(Effect& effect) {
    std::vector<std::uint32_t> bits;
    for (VstInt32 index = 0; index < 9; ++index)
        bits.push_back(std::bit_cast<std::uint32_t>(effect.parameter(index)));
    return bits;
}

} // namespace

TEST(Programs, AreOneToTheHostWhichCannotSwitchThem) {
    PluginInstance plugin;
    EXPECT_EQ(plugin.effect.program(), 0);
    plugin.effect.setProgram(0);
    plugin.effect.setProgram(5);
    plugin.effect.setProgram(-1);
    EXPECT_EQ(plugin.effect.program(), 0);
    EXPECT_EQ(plugin.effect.programName(), "init");
}

TEST(Programs, AreNamedAsTheFactoryMadeThem) {
    PluginInstance plugin;
    for (std::size_t i = 0; i < factoryNames.size(); ++i)
        EXPECT_EQ(plugin.effect.programNameAt(static_cast<VstInt32>(i)), factoryNames[i]);
}

TEST(Programs, OutsideTheBankHaveNoName) {
    PluginInstance plugin;
    for (const VstInt32 index : {-1, 11, 1000, INT32_MAX, INT32_MIN}) {
        std::array<char, 32> text{"as it was"};
        EXPECT_EQ(plugin.effect.dispatch(effGetProgramNameIndexed, index, 0, text.data()), 0);
        EXPECT_STREQ(text.data(), "as it was");
    }
}

TEST(ProgramName, WritesTwentyFiveBytes) {
    PluginInstance plugin;
    std::array<char, 27> text{};
    text.fill('#');
    plugin.effect.dispatch(effGetProgramName, 0, 0, text.data());
    EXPECT_EQ(text[24], '\0');
    EXPECT_EQ(text[25], '#');
    text.fill('#');
    plugin.effect.dispatch(effGetProgramNameIndexed, 4, 0, text.data());
    EXPECT_EQ(text[24], '\0');
    EXPECT_EQ(text[25], '#');
}

TEST(ProgramName, OfMoreThanTwentyFourBytesIsCutAndStoredWithoutTerminator) {
    PluginInstance plugin;
    plugin.effect.setProgramName("123456789012345678901234567890");
    EXPECT_EQ(plugin.effect.programName(), "123456789012345678901234");
    EXPECT_EQ(storedName(plugin.effect.chunk(), 0), "123456789012345678901234");
}

TEST(ProgramName, OfTwentyThreeBytesIsStoredWithATerminator) {
    PluginInstance plugin;
    plugin.effect.setProgramName("123456789012345678901234");
    plugin.effect.setProgramName("abcdefghijklmnopqrstuvw");
    EXPECT_EQ(plugin.effect.programName(), "abcdefghijklmnopqrstuvw");
    EXPECT_EQ(storedName(plugin.effect.chunk(), 0), std::string("abcdefghijklmnopqrstuvw\0", 24));
}

TEST(ProgramName, LeavesNothingOfALongerOne) {
    PluginInstance plugin;
    plugin.effect.setProgramName("a rather long name");
    plugin.effect.setProgramName("x");
    EXPECT_EQ(storedName(plugin.effect.chunk(), 0), "x" + std::string(23, '\0'));
}

TEST(ProgramName, RenamesTheCurrentPresetOnly) {
    PluginInstance plugin;
    applyPreset(plugin.effect, 7);
    plugin.effect.setProgramName("seventh");
    EXPECT_EQ(plugin.effect.programNameAt(7), "seventh");
    EXPECT_EQ(plugin.effect.programNameAt(0), "init");
}

TEST(FactoryPresets, HoldTheirValues) {
    // Parameters that differ from "init", by preset.
    const std::array<std::vector<std::pair<VstInt32, float>>, 11> changes{{
        {},
        {{0, 0.625F}},
        {{0, 0.375F}},
        {{2, 0.7F}, {6, 1.0F}},
        {{2, 0.3F}, {6, 1.0F}},
        {{3, 0.75F}},
        {{3, 0.25F}},
        {{4, 0.8F}},
        {{4, 0.2F}},
        {{8, 1.0F}},
        {{6, 1.0F}},
    }};
    PluginInstance plugin;
    for (std::uint32_t preset = 0; preset < changes.size(); ++preset) {
        std::array<float, 9> wanted{0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 0.0F};
        for (const auto& [index, value] : changes[preset])
            wanted[static_cast<std::size_t>(index)] = value;
        applyPreset(plugin.effect, preset);
        for (VstInt32 index = 0; index < 9; ++index)
            EXPECT_EQ(plugin.effect.parameter(index), wanted[static_cast<std::size_t>(index)])
                << preset << " " << index;
    }
}

TEST(FactoryPresets, ShowTheirMark) {
    PluginInstance plugin;
    const auto shownBy = [&](std::uint32_t preset, VstInt32 index) {
        applyPreset(plugin.effect, preset);
        return plugin.effect.parameterDisplay(index);
    };
    EXPECT_EQ(shownBy(1, 0), "156.25");
    EXPECT_EQ(shownBy(2, 0), "56.25");
    EXPECT_EQ(shownBy(3, 2), "20L");
    EXPECT_EQ(shownBy(4, 2), "20R");
    EXPECT_EQ(shownBy(5, 3), "25L");
    EXPECT_EQ(shownBy(6, 3), "25R");
    EXPECT_EQ(shownBy(7, 4), "30L");
    EXPECT_EQ(shownBy(8, 4), "30R");
}

TEST(FactoryPresets, InvertAndSwapAsTheirNamesSay) {
    PluginInstance plugin;
    plugin.effect.resume();
    const StereoBuffer<float> input({0.5F, -0.25F}, {0.125F, 1.0F});
    applyPreset(plugin.effect, 9);
    auto output = processed(plugin.effect, input);
    EXPECT_EQ(output.left, input.left);
    EXPECT_EQ(output.right, (std::vector<float>{-0.125F, -1.0F}));
    applyPreset(plugin.effect, 10);
    output = processed(plugin.effect, input);
    EXPECT_EQ(output.left, input.right);
    EXPECT_EQ(output.right, input.left);
}

TEST(State, IsTheWholeBankBehindAHeader) {
    PluginInstance plugin;
    const Chunk chunk = plugin.effect.chunk();
    ASSERT_EQ(chunk.size(), 692U);
    const std::array<unsigned char, 32> header{0,  0, 0, 1, 0x6E, 0x4C, 0x72, 0x4D,
                                               11, 0, 0, 0, 0,    0,    0,    0};
    EXPECT_EQ(std::memcmp(chunk.data(), header.data(), header.size()), 0);
    // "extended width": its name, then 0.625 and 0.5 big-endian.
    EXPECT_EQ(storedName(chunk, 1), "extended width" + std::string(10, '\0'));
    const std::array<unsigned char, 8> firstValues{0x3F, 0x20, 0, 0, 0x3F, 0, 0, 0};
    EXPECT_EQ(std::memcmp(&chunk[32 + 60 + 24], firstValues.data(), firstValues.size()), 0);
}

TEST(State, IsTheSameForAProgramAsForABank) {
    PluginInstance plugin;
    plugin.effect.setParameter(3, 0.125F);
    EXPECT_EQ(plugin.effect.chunk(ChunkKind::program), plugin.effect.chunk(ChunkKind::bank));
}

TEST(State, TakesItsOwnChunkBack) {
    PluginInstance plugin;
    plugin.effect.setParameter(0, 0.875F);
    plugin.effect.setProgramName("changed");
    const Chunk saved = plugin.effect.chunk();
    EXPECT_EQ(plugin.effect.setChunk(saved), 0);
    EXPECT_EQ(plugin.effect.chunk(), saved);
}

TEST(State, TakesBackTheVeryBufferItHandedOut) {
    PluginInstance plugin;
    plugin.effect.setParameter(0, 0.875F);
    void* data = nullptr;
    const VstIntPtr size = plugin.effect.dispatch(effGetChunk, 0, 0, &data);
    const Chunk saved(static_cast<std::byte*>(data), static_cast<std::byte*>(data) + size);
    EXPECT_EQ(plugin.effect.dispatch(effSetChunk, 0, size, data), 0);
    EXPECT_EQ(plugin.effect.chunk(), saved);
}

TEST(State, MovesToAnotherInstance) {
    PluginInstance one;
    applyPreset(one.effect, 6);
    one.effect.setParameter(1, 0.75F);
    one.effect.setProgramName("moved");
    PluginInstance other;
    ASSERT_EQ(other.effect.setChunk(one.effect.chunk()), 0);
    EXPECT_EQ(values(other.effect), values(one.effect));
    EXPECT_EQ(other.effect.programName(), "moved");
    EXPECT_EQ(other.effect.chunk(), one.effect.chunk());
}

TEST(State, OfTheWrongSizeIsRefused) {
    PluginInstance plugin;
    const Chunk saved = plugin.effect.chunk();
    Chunk chunk = saved;
    chunk.resize(693);
    EXPECT_EQ(plugin.effect.setChunk(chunk), -1);
    chunk.resize(691);
    EXPECT_EQ(plugin.effect.setChunk(chunk), -1);
    EXPECT_EQ(plugin.effect.setChunk({}), -1);
    EXPECT_EQ(plugin.effect.dispatch(effSetChunk, 0, 692, nullptr), -1);
    EXPECT_EQ(plugin.effect.chunk(), saved);
}

TEST(State, OfAnotherEffectIsRefused) {
    PluginInstance plugin;
    plugin.effect.setParameter(0, 0.25F);
    const Chunk saved = plugin.effect.chunk();
    Chunk chunk = saved;
    chunk[60] = std::byte{'!'};
    putWord(chunk, 4, 0x12345678);
    EXPECT_EQ(plugin.effect.setChunk(chunk), -1);
    EXPECT_EQ(plugin.effect.chunk(), saved);
}

TEST(State, OfTheOtherByteOrderIsTakenButNotApplied) {
    PluginInstance plugin;
    const Chunk saved = plugin.effect.chunk();
    plugin.effect.setParameter(0, 0.25F);
    const Chunk before = plugin.effect.chunk();
    Chunk chunk = saved;
    for (std::size_t offset = 0; offset < 32; offset += 4)
        reverseWord(chunk, offset);
    EXPECT_EQ(plugin.effect.setChunk(chunk), 0);
    EXPECT_EQ(plugin.effect.chunk(), before);
}

TEST(State, WithAForeignMagicWordIsTakenButNotApplied) {
    PluginInstance plugin;
    plugin.effect.setParameter(0, 0.25F);
    const Chunk before = plugin.effect.chunk();
    Chunk chunk = before;
    putWord(chunk, 0, 0x02000000);
    chunk[40] = std::byte{'!'};
    EXPECT_EQ(plugin.effect.setChunk(chunk), 0);
    EXPECT_EQ(plugin.effect.chunk(), before);
}

TEST(State, WithAnotherPresetCountIsRefused) {
    PluginInstance plugin;
    const Chunk before = plugin.effect.chunk();
    Chunk chunk = before;
    chunk[40] = std::byte{'!'};
    for (const std::uint32_t count : {10U, 12U, 0U, 0xFFFFFFFFU}) {
        putWord(chunk, 8, count);
        EXPECT_EQ(plugin.effect.setChunk(chunk), -1);
    }
    EXPECT_EQ(plugin.effect.chunk(), before);
}

TEST(State, WithAPresetNumberOutsideTheBankReplacesItWithoutApplying) {
    PluginInstance plugin;
    Chunk chunk = plugin.effect.chunk();
    plugin.host.forgetCalls();
    for (const std::uint32_t presetNo : {11U, 0x80000000U, 0xFFFFFFFFU}) {
        putWord(chunk, 12, presetNo);
        std::memcpy(&chunk[32], "renamed", 8);
        const std::array<unsigned char, 4> quarter{0x3E, 0x80, 0, 0};
        std::memcpy(&chunk[32 + 24], quarter.data(), quarter.size());
        EXPECT_EQ(plugin.effect.setChunk(chunk), 0);
        EXPECT_EQ(plugin.effect.programName(), "renamed");
        EXPECT_EQ(plugin.effect.parameter(0), 0.5F);
    }
    EXPECT_EQ(plugin.host.count(audioMasterUpdateDisplay), 0U);
}

TEST(State, AppliedTellsTheHostToLookAgain) {
    PluginInstance plugin;
    Chunk chunk = plugin.effect.chunk();
    putWord(chunk, 12, 3);
    plugin.host.forgetCalls();
    ASSERT_EQ(plugin.effect.setChunk(chunk), 0);
    const auto calls = plugin.host.calls();
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0].opcode, audioMasterUpdateDisplay);
    EXPECT_EQ(calls[1].opcode, audioMasterBeginEdit);
    EXPECT_EQ(calls[1].index, 0);
    EXPECT_EQ(calls[2].opcode, audioMasterEndEdit);
    EXPECT_EQ(calls[2].index, 0);
    EXPECT_EQ(plugin.effect.programName(), "balanse to the left");
}

TEST(ParameterChanges, GoIntoTheCurrentPresetOnly) {
    PluginInstance plugin;
    plugin.effect.setParameter(0, 0.25F);
    applyPreset(plugin.effect, 1);
    EXPECT_EQ(plugin.effect.parameter(0), 0.625F);
    applyPreset(plugin.effect, 0);
    EXPECT_EQ(plugin.effect.parameter(0), 0.25F);
}

TEST(ParameterChanges, ArrivingWhileAPresetIsAppliedAreNotStored) {
    PluginInstance plugin;
    AEffect* effect = &plugin.effect.record();
    plugin.host.answer(audioMasterUpdateDisplay, [effect](const auto&) {
        effect->setParameter(effect, 0, 0.125F); // a host that automates at once
        return 0;
    });
    applyPreset(plugin.effect, 1);
    EXPECT_EQ(plugin.effect.parameter(0), 0.125F);
    plugin.host.answer(audioMasterUpdateDisplay, 0);
    applyPreset(plugin.effect, 1);
    EXPECT_EQ(plugin.effect.parameter(0), 0.625F);
}

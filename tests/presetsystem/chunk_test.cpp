#include "presetsystem/chunkimage.h"

#include "tests/presetsystem/recordingeffect.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::string_literals;

class Chunk : public testing::Test {
  protected:
    std::string chunkOf(RecordingEffect& from, bool single = false) {
        void* data = nullptr;
        const VstInt32 size = from.getChunk(&data, single);
        return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
    }
    VstInt32 give(std::string chunk, bool single = false) {
        return effect.setChunk(chunk.data(), static_cast<VstInt32>(chunk.size()), single);
    }
    static void reverseWord(std::string& chunk, std::size_t at) {
        std::reverse(&chunk[at], &chunk[at] + 4);
    }

    RecordingEffect effect;
};

TEST_F(Chunk, HasItsHeaderInNativeOrderAndTheBankByteForByte) {
    effect.setPresetNo(6);
    const std::string chunk = chunkOf(effect);
    // On a little-endian machine; 'TeSt' is 0x54655374.
    EXPECT_EQ(chunk.substr(0, 32),
              "\x00\x00\x00\x01tSeT\x0B\x00\x00\x00\x06\x00\x00\x00"s + std::string(16, '\0'));
    EXPECT_EQ(chunk.substr(32), effect.bytes());
    EXPECT_EQ(chunk.size(), 692U);
}

TEST_F(Chunk, HoldsTheLiteralBytesOfARecord) {
    effect.record(0).setName("init");
    for (int j = 0; j < kNumPresetParams; ++j)
        effect.record(0).setValue(j, j == 0 ? 0.625F : 1.0F);
    EXPECT_EQ(chunkOf(effect).substr(32, 32),
              "init"s + std::string(20, '\0') + "\x3F\x20\x00\x00\x3F\x80\x00\x00"s);
}

TEST_F(Chunk, IsTheSameForASingleProgram) {
    EXPECT_EQ(chunkOf(effect, true), chunkOf(effect, false));
}

TEST_F(Chunk, FormedInTheCallersMemoryHasTheSameBytes) {
    effect.setPresetNo(6);
    ChunkImage image;
    effect.writeChunk(image);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(image.data()), image.size()),
              chunkOf(effect));
}

TEST_F(Chunk, FormedOrAppliedInTheCallersMemoryLeavesTheHostsAlone) {
    void* data = nullptr;
    const VstInt32 size = effect.getChunk(&data, false);
    const std::string before(static_cast<const char*>(data), static_cast<std::size_t>(size));
    RecordingEffect other;
    other.setPresetNo(3);
    ChunkImage image;
    other.writeChunk(image);
    EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::accepted);
    effect.writeChunk(image);
    EXPECT_EQ(effect.getPresetNo(), 3);
    EXPECT_EQ(std::string(static_cast<const char*>(data), static_cast<std::size_t>(size)), before);
}

TEST_F(Chunk, AppliedFromTheCallersMemorySaysWhatBecameOfIt) {
    ChunkImage image;
    effect.writeChunk(image);
    image[4] ^= std::byte{1};
    EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::notOurs);
    effect.writeChunk(image);
    image[0] ^= std::byte{1};
    EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::ignored);
    effect.writeChunk(image);
    image[8] ^= std::byte{1};
    EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::badPresetCount);
    effect.writeChunk(image);
    EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::accepted);
}

TEST_F(Chunk, OfTheSameEffectIsHandedOutInTheSameBuffer) {
    void* first = nullptr;
    void* second = nullptr;
    effect.getChunk(&first, false);
    effect.getChunk(&second, true);
    EXPECT_EQ(first, second);
}

TEST_F(Chunk, GivenStraightBackKeepsTheBankAndAppliesThePreset) {
    effect.setPresetNo(8);
    void* data = nullptr;
    const VstInt32 size = effect.getChunk(&data, false);
    const std::string before = effect.bytes();
    effect.sets.clear();
    EXPECT_EQ(effect.setChunk(data, size, false), 0);
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_EQ(effect.getPresetNo(), 8);
    EXPECT_EQ(effect.sets.size(), 9U);
}

TEST_F(Chunk, ReplacesTheWholeBankNamesIncludedAndSelectsItsPreset) {
    RecordingEffect other;
    other.setPresetName("theirs");
    other.setParameter(2, 0.75F);
    other.setPresetNo(9);
    EXPECT_EQ(give(chunkOf(other)), 0);
    EXPECT_EQ(effect.bytes(), other.bytes());
    EXPECT_EQ(effect.getPresetNo(), 9);
    EXPECT_EQ(effect.sets.back(), std::pair(8, RecordingEffect::startValue(9, 8)));
}

TEST_F(Chunk, IsTakenWholeForASingleProgramToo) {
    RecordingEffect other;
    other.record(10).setName("last");
    EXPECT_EQ(give(chunkOf(other), true), 0);
    EXPECT_EQ(effect.name(10), "last");
}

TEST_F(Chunk, OfAnyOtherSizeIsRefused) {
    const std::string before = effect.bytes();
    RecordingEffect other;
    other.setPresetName("theirs");
    const std::string chunk = chunkOf(other);
    EXPECT_EQ(give(chunk.substr(0, 691)), -1);
    EXPECT_EQ(give(chunk + '\0'), -1);
    EXPECT_EQ(give(""), -1);
    EXPECT_EQ(effect.setChunk(nullptr, 692, false), -1);
    EXPECT_EQ(effect.bytes(), before);
}

TEST_F(Chunk, OfAnotherEffectIsRefusedAndLeavesTheBankAlone) {
    const std::string before = effect.bytes();
    RecordingEffect other;
    other.setPresetName("theirs");
    other.setUniqueID(fourCharacters("Else"));
    EXPECT_EQ(give(chunkOf(other)), -1);
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_TRUE(effect.sets.empty());
}

TEST_F(Chunk, OfTheOtherByteOrderIsTakenWithoutEffect) {
    const std::string before = effect.bytes();
    RecordingEffect other;
    other.setPresetName("theirs");
    std::string chunk = chunkOf(other);
    for (std::size_t at = 0; at < 32; at += 4)
        reverseWord(chunk, at);
    EXPECT_EQ(give(chunk), 0);
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_TRUE(effect.sets.empty());
}

TEST_F(Chunk, WithAnotherMagicWordIsTakenWithoutEffectWhateverItsCount) {
    const std::string before = effect.bytes();
    RecordingEffect other;
    other.setPresetName("theirs");
    std::string chunk = chunkOf(other);
    chunk[0] = 1;
    chunk[8] = 12;
    EXPECT_EQ(give(chunk), 0);
    EXPECT_EQ(effect.bytes(), before);
}

TEST_F(Chunk, WithAnotherPresetCountIsRefused) {
    const std::string before = effect.bytes();
    RecordingEffect other;
    other.setPresetName("theirs");
    std::string chunk = chunkOf(other);
    chunk[8] = 12;
    EXPECT_EQ(give(chunk), -1);
    EXPECT_EQ(effect.bytes(), before);
}

TEST_F(Chunk, WithAReversedOwnerButNativeMagicHasItsCountReversedAndIsRefused) {
    const std::string before = effect.bytes();
    std::string chunk = chunkOf(effect);
    reverseWord(chunk, 4);
    EXPECT_EQ(give(chunk), -1);
    EXPECT_EQ(effect.bytes(), before);
}

// Read as written: only owner, count, preset and values are of the other order.
TEST_F(Chunk, WithAReversedOwnerAndNativeMagicIsAppliedByteSwapped) {
    RecordingEffect other;
    other.setPresetName("theirs");
    other.setPresetNo(4);
    std::string chunk = chunkOf(other);
    for (const std::size_t at : {4U, 8U, 12U})
        reverseWord(chunk, at);
    for (std::size_t preset = 0; preset < kNumPresets; ++preset)
        for (std::size_t j = 0; j < kNumPresetParams; ++j)
            reverseWord(chunk, 32 + 60 * preset + 24 + 4 * j);
    EXPECT_EQ(give(chunk), 0);
    EXPECT_EQ(effect.bytes(), other.bytes());
    EXPECT_EQ(effect.getPresetNo(), 4);
}

TEST_F(Chunk, WithAPresetOutsideTheBankReplacesTheBankAndAppliesNothing) {
    effect.setPresetNo(5);
    effect.sets.clear();
    HostCallLog::calls.clear();
    for (const char outside : {'\x0B', '\xFF'}) {
        RecordingEffect other;
        other.setPresetName(outside == '\xFF' ? "one" : "two");
        std::string chunk = chunkOf(other);
        chunk[12] = outside;
        chunk[15] = outside == '\xFF' ? '\xFF' : '\0';
        HostCallLog::calls.clear();
        EXPECT_EQ(give(chunk), 0);
        EXPECT_EQ(effect.bytes(), other.bytes());
        EXPECT_EQ(effect.getPresetNo(), 5);
    }
    EXPECT_TRUE(effect.sets.empty());
    EXPECT_TRUE(HostCallLog::calls.empty());
}

TEST_F(Chunk, CarriesValuesThatAreNoNumbersUnchanged) {
    std::string chunk = chunkOf(effect);
    const std::string strange = "\x7F\xC0\x00\x01\xFF\x80\x00\x00"s;
    chunk.replace(32 + 24, 8, strange);
    EXPECT_EQ(give(chunk), 0);
    EXPECT_EQ(effect.bytes().substr(24, 8), strange);
}

TEST_F(Chunk, TellsTheEditorThatTheBankIsNew) {
    struct Link : EditorLink {
        void setParameter(long /*index*/, float /*value*/) override {}
        void nameChangedExternal(char* /*name*/) override {}
        void loadDefaults() override {}
        void bankReplaced() override { ++replaced; }
        int replaced = 0;
    } link;
    effect.setEditorLink(&link);
    EXPECT_EQ(give(chunkOf(effect)), 0);
    EXPECT_EQ(link.replaced, 1);
    EXPECT_EQ(give("too short"), -1);
    EXPECT_EQ(link.replaced, 1);
    effect.setEditorLink(nullptr);
}

} // namespace
} // namespace mirelon::test

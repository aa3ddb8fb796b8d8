#include "tools/bankchunk.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

namespace mirelon::tools {
namespace {

constexpr std::int32_t owner = 0x4D724C6E;

std::vector<std::byte> validChunk() {
    std::vector<std::byte> bytes(692);
    const std::uint32_t words[] = {0x01000000, static_cast<std::uint32_t>(owner), 11, 3};
    std::memcpy(bytes.data(), words, sizeof words);
    std::byte* const last = bytes.data() + 32 + 10 * 60;
    std::memcpy(last, "exactly 24 characters ..", 24);
    // 0.5 and 1.0, big-endian.
    last[24] = std::byte{0x3F};
    last[56] = std::byte{0x3F};
    last[57] = std::byte{0x80};
    return bytes;
}

TEST(BankChunk, IsRecognised) {
    const auto chunk = BankChunk::recognise(validChunk(), owner);
    ASSERT_TRUE(chunk);
    EXPECT_EQ(chunk->currentPreset(), 3U);
}

TEST(BankChunk, GivesNamesAndValues) {
    const auto preset = BankChunk::recognise(validChunk(), owner)->preset(10);
    EXPECT_EQ(preset.name, "exactly 24 characters ..");
    EXPECT_EQ(preset.values.front(), 0.5F);
    EXPECT_EQ(preset.values.back(), 1.0F);
    EXPECT_EQ(BankChunk::recognise(validChunk(), owner)->preset(0).name, "");
}

TEST(BankChunk, ChangesItsCurrentPresetAndNothingElse) {
    auto chunk = BankChunk::recognise(validChunk(), owner);
    chunk->setCurrentPreset(10);
    std::vector<std::byte> expected = validChunk();
    expected[12] = std::byte{10};
    EXPECT_TRUE(
        std::equal(expected.begin(), expected.end(), chunk->bytes().begin(), chunk->bytes().end()));
}

TEST(BankChunk, IsNotRecognisedWithAnotherSizeOwnerMagicOrCount) {
    EXPECT_FALSE(BankChunk::recognise(validChunk(), owner + 1));
    EXPECT_FALSE(BankChunk::recognise({}, owner));
    for (const std::size_t size : {691U, 693U}) {
        std::vector<std::byte> bytes = validChunk();
        bytes.resize(size);
        EXPECT_FALSE(BankChunk::recognise(bytes, owner));
    }
    for (const std::size_t place : {3U, 8U}) {
        std::vector<std::byte> bytes = validChunk();
        bytes[place] ^= std::byte{0x10};
        EXPECT_FALSE(BankChunk::recognise(bytes, owner));
    }
}

TEST(BankChunk, IsNotRecognisedWhenItHadToBeTurnedRound) {
    std::vector<std::byte> bytes = validChunk();
    for (const std::ptrdiff_t word : {4, 8, 12})
        std::reverse(bytes.begin() + word, bytes.begin() + word + 4);
    EXPECT_FALSE(BankChunk::recognise(bytes, owner));
}

} // namespace
} // namespace mirelon::tools

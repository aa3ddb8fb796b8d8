#include "hosting/effectbank.h"

#include "hosting/module.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

namespace mirelon::hosting {
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

TEST(EffectBank, IsFoundInItsChunk) {
    const auto bank = EffectBank::in(validChunk(), owner);
    ASSERT_TRUE(bank);
    EXPECT_EQ(bank->current, 3U);
}

TEST(EffectBank, HasNamesAndValues) {
    const auto bank = EffectBank::in(validChunk(), owner);
    EXPECT_STREQ(bank->presets[10].name().data(), "exactly 24 characters ..");
    EXPECT_EQ(bank->presets[10].value(0), 0.5F);
    EXPECT_EQ(bank->presets[10].value(8), 1.0F);
    EXPECT_STREQ(bank->presets[0].name().data(), "");
}

TEST(EffectBank, BecomesTheSameChunkAgain) {
    EXPECT_EQ(EffectBank::in(validChunk(), owner)->chunk(owner), validChunk());
}

TEST(EffectBank, ChangesItsCurrentPresetAndNothingElse) {
    auto bank = EffectBank::in(validChunk(), owner);
    bank->current = 10;
    std::vector<std::byte> expected = validChunk();
    expected[12] = std::byte{10};
    EXPECT_EQ(bank->chunk(owner), expected);
}

TEST(EffectBank, OfAChunkWithoutACurrentPresetHasNone) {
    std::vector<std::byte> bytes = validChunk();
    bytes[12] = std::byte{11};
    EXPECT_EQ(EffectBank::in(bytes, owner)->current, std::nullopt);
}

TEST(EffectBank, IsKeptByNoEffectWithoutAChunk) {
    const Module module(MIRELON_TEST_PLUGINS "gain.so");
    RecordingHost host;
    Effect effect(module, host);
    EXPECT_FALSE(bankOf(effect));
}

TEST(EffectBank, IsNotFoundWithAnotherSizeOwnerMagicOrCount) {
    EXPECT_FALSE(EffectBank::in(validChunk(), owner + 1));
    EXPECT_FALSE(EffectBank::in({}, owner));
    for (const std::size_t size : {691U, 693U}) {
        std::vector<std::byte> bytes = validChunk();
        bytes.resize(size);
        EXPECT_FALSE(EffectBank::in(bytes, owner));
    }
    for (const std::size_t place : {3U, 8U}) {
        std::vector<std::byte> bytes = validChunk();
        bytes[place] ^= std::byte{0x10};
        EXPECT_FALSE(EffectBank::in(bytes, owner));
    }
}

TEST(EffectBank, IsNotFoundInAChunkOfTheOtherByteOrder) {
    std::vector<std::byte> bytes = validChunk();
    for (const std::ptrdiff_t word : {4, 8, 12})
        std::reverse(bytes.begin() + word, bytes.begin() + word + 4);
    EXPECT_FALSE(EffectBank::in(bytes, owner));
}

} // namespace
} // namespace mirelon::hosting

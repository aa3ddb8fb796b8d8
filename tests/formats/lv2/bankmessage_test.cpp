#include "formats/lv2/bankmessage.h"

#include "tests/formats/lv2/urids.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <lv2/atom/util.h>
#include <random>
#include <vector>

namespace mirelon::lv2 {
namespace {

class Message : public testing::Test {
  protected:
    Message() {
        for (std::size_t i = 0; i < bank.size(); ++i)
            bank[i] = static_cast<std::byte>(i * 7);
    }
    MessageKind read(std::span<const std::byte> bytes) { return readMessage(bytes, types, taken); }

    test::Urids urids;
    MessageTypes types{urids.map()};
    ChunkImage bank{};
    ChunkImage taken{};
};

TEST_F(Message, WithABankIsReadAsItWasFormed) {
    EXPECT_EQ(read(formBankMessage(types, bank)), MessageKind::bank);
    EXPECT_EQ(taken, bank);
}

TEST_F(Message, ThatAsksIsReadAsSuch) {
    EXPECT_EQ(read(formGetMessage(types)), MessageKind::get);
}

// By the LV2 library's own reader.
TEST_F(Message, IsAnObjectWithTheBankAsAChunk) {
    const BankMessage message = formBankMessage(types, bank);
    const auto* const object = reinterpret_cast<const LV2_Atom_Object*>(message.data());
    EXPECT_EQ(object->atom.type, urids.number(LV2_ATOM__Object));
    EXPECT_EQ(object->body.id, 0U) << "it has no name";
    EXPECT_EQ(object->body.otype, urids.number("http://dravik.example/mirelon#Bank"));
    EXPECT_EQ(lv2_atom_total_size(&object->atom), message.size());
    const LV2_Atom* value = nullptr;
    ASSERT_EQ(
        lv2_atom_object_get(object, urids.number("http://dravik.example/mirelon#bank"), &value, 0),
        1);
    EXPECT_EQ(value->type, urids.number(LV2_ATOM__Chunk));
    ASSERT_EQ(value->size, bank.size());
    EXPECT_EQ(std::memcmp(value + 1, bank.data(), bank.size()), 0);
}

TEST_F(Message, IsReadWithoutAlignment) {
    const BankMessage message = formBankMessage(types, bank);
    std::vector<std::byte> moved(message.size() + 1);
    std::ranges::copy(message, moved.begin() + 1);
    EXPECT_EQ(read(std::span(moved).subspan(1)), MessageKind::bank);
    EXPECT_EQ(taken, bank);
}

// A property takes up a multiple of eight bytes, whatever the size of its value.
TEST_F(Message, MayHaveOtherPropertiesBeforeTheBank) {
    for (const std::uint32_t valueSize : {0U, 1U, 5U, 7U, 8U, 9U, 16U}) {
        const BankMessage formed = formBankMessage(types, bank);
        const LV2_Atom_Property_Body other{4711, 0, {valueSize, types.chunk}};
        std::vector<std::byte> message(formed.begin(), formed.end());
        std::vector<std::byte> inserted(sizeof other + lv2_atom_pad_size(valueSize));
        std::memcpy(inserted.data(), &other, sizeof other);
        message.insert(message.begin() + 16, inserted.begin(), inserted.end());
        const auto size = static_cast<std::uint32_t>(message.size() - 8);
        std::memcpy(message.data(), &size, sizeof size);
        taken = {};
        EXPECT_EQ(read(message), MessageKind::bank) << valueSize;
        EXPECT_EQ(taken, bank) << valueSize;
    }
}

TEST_F(Message, MayEndWithTheLastByteOfTheBank) {
    const BankMessage formed = formBankMessage(types, bank);
    const auto exact = static_cast<std::uint32_t>(32 + bank.size());
    std::vector<std::byte> message(formed.begin(), formed.begin() + exact);
    const std::uint32_t size = exact - 8;
    std::memcpy(message.data(), &size, sizeof size);
    EXPECT_EQ(read(message), MessageKind::bank);
    EXPECT_EQ(taken, bank);
}

TEST_F(Message, TooSmallForItsClassIsNotRead) {
    for (std::uint32_t size = 0; size < 8; ++size) {
        GetMessage message = formGetMessage(types);
        std::memcpy(message.data(), &size, sizeof size);
        EXPECT_EQ(read(message), MessageKind::other) << size;
    }
}

TEST_F(Message, OfAnotherTypeOrClassIsNotOurs) {
    for (const std::size_t word :
         {std::size_t{1}, std::size_t{3}, std::size_t{4}, std::size_t{7}}) {
        BankMessage message = formBankMessage(types, bank);
        message[4 * word + 2] ^= std::byte{1};
        EXPECT_EQ(read(message), MessageKind::other) << "word " << word;
    }
}

TEST_F(Message, ThatEndsTooEarlyIsNotRead) {
    const BankMessage message = formBankMessage(types, bank);
    for (std::size_t size = 0; size < message.size(); ++size)
        ASSERT_EQ(read(std::span(message).first(size)), MessageKind::other) << size;
}

TEST_F(Message, WithABankOfAnotherSizeIsNotRead) {
    for (const std::uint32_t size : {0U, 691U, 693U, 0xFFFFFFFFU}) {
        BankMessage message = formBankMessage(types, bank);
        std::memcpy(&message[24], &size, sizeof size);
        EXPECT_EQ(read(message), MessageKind::other) << size;
    }
}

TEST_F(Message, IsNeverReadBeyondItsEndWhateverItsBytes) {
    std::minstd_rand random(1);
    const BankMessage whole = formBankMessage(types, bank);
    int accepted = 0;
    for (int turn = 0; turn < 20000; ++turn) {
        // On the heap, exactly as long: a sanitizer sees every byte too far.
        std::vector<std::byte> message(whole.begin(), whole.end());
        message.resize(random() % 2 == 0 ? message.size() : random() % message.size());
        for (unsigned changes = random() % 4; changes > 0 && !message.empty(); --changes)
            message[random() % std::min<std::size_t>(message.size(), 40)] =
                static_cast<std::byte>(random());
        accepted += read(message) == MessageKind::bank ? 1 : 0;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_LT(accepted, 19000);
}

TEST(MessageTypes, AreUnknownWithoutAHostThatMapsThem) {
    const MessageTypes types(nullptr);
    EXPECT_FALSE(types.known());
    ChunkImage bank{};
    EXPECT_EQ(readMessage(formBankMessage(types, bank), types, bank), MessageKind::other);
}

} // namespace
} // namespace mirelon::lv2

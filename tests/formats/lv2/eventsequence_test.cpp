#include "formats/lv2/eventsequence.h"

#include <gtest/gtest.h>
#include <lv2/atom/util.h>
#include <random>
#include <vector>

namespace mirelon::lv2 {
namespace {

constexpr std::uint32_t sequenceType = 77;

// A sequence with room for `room` bytes behind its header, on the heap and no
// longer than that.
class Sequence {
  public:
    explicit Sequence(std::uint32_t room, std::uint32_t type = 0)
        : words(1 + (room + 7) / 8) {
        get()->atom = {room, type};
    }
    LV2_Atom_Sequence* get() { return reinterpret_cast<LV2_Atom_Sequence*>(words.data()); }
    void openForWriting(std::uint32_t room) { get()->atom = {room, 0}; }

  private:
    std::vector<std::uint64_t> words;
};

std::vector<std::byte> atomOf(std::uint32_t type, std::uint32_t size) {
    std::vector<std::byte> atom(sizeof(LV2_Atom) + size);
    const LV2_Atom header{size, type};
    std::memcpy(atom.data(), &header, sizeof header);
    std::fill(atom.begin() + sizeof header, atom.end(), std::byte{0x5A});
    return atom;
}

std::vector<std::vector<std::byte>> atomsIn(const LV2_Atom_Sequence* sequence) {
    std::vector<std::vector<std::byte>> atoms;
    forEachAtom(sequence, sequenceType, [&](std::span<const std::byte> atom) {
        atoms.emplace_back(atom.begin(), atom.end());
    });
    return atoms;
}

TEST(EventSequence, GivesTheAtomsThatWereWritten) {
    Sequence sequence(256);
    EventWriter writer(sequence.get(), sequenceType);
    EXPECT_TRUE(writer.write(atomOf(1, 5)));
    EXPECT_TRUE(writer.write(atomOf(2, 0)));
    EXPECT_TRUE(writer.write(atomOf(3, 16)));
    EXPECT_EQ(atomsIn(sequence.get()), (std::vector{atomOf(1, 5), atomOf(2, 0), atomOf(3, 16)}));
}

TEST(EventSequence, GivesAtomsOfAnySizeOneAfterTheOther) {
    Sequence sequence(1024);
    EventWriter writer(sequence.get(), sequenceType);
    std::vector<std::vector<std::byte>> written;
    for (std::uint32_t size = 0; size <= 24; ++size) {
        written.push_back(atomOf(size + 1, size));
        ASSERT_TRUE(writer.write(written.back()));
    }
    EXPECT_EQ(atomsIn(sequence.get()), written);
}

// By the LV2 library's own reader.
TEST(EventSequence, IsReadByOthers) {
    Sequence sequence(256);
    EventWriter writer(sequence.get(), sequenceType);
    writer.write(atomOf(1, 5));
    writer.write(atomOf(2, 8));
    std::vector<std::uint32_t> sizes;
    LV2_ATOM_SEQUENCE_FOREACH(sequence.get(), event) {
        sizes.push_back(event->body.size);
        EXPECT_EQ(event->time.frames, 0);
    }
    EXPECT_EQ(sizes, (std::vector<std::uint32_t>{5, 8}));
}

TEST(EventSequence, TakesWhatJustFitsAndRefusesMore) {
    const std::uint32_t needed = 8 + 8 + 8 + 16; // its head, the time, the atom
    Sequence enough(needed);
    EXPECT_TRUE(EventWriter(enough.get(), sequenceType).write(atomOf(1, 16)));
    EXPECT_EQ(enough.get()->atom.size, needed);
    Sequence tight(needed - 1);
    EXPECT_FALSE(EventWriter(tight.get(), sequenceType).write(atomOf(1, 16)));
    EXPECT_TRUE(atomsIn(tight.get()).empty());
}

TEST(EventSequence, MayHaveAnotherRoomInEveryCycle) {
    Sequence sequence(256);
    sequence.openForWriting(16);
    EXPECT_FALSE(EventWriter(sequence.get(), sequenceType).write(atomOf(1, 16)));
    sequence.openForWriting(256);
    EXPECT_TRUE(EventWriter(sequence.get(), sequenceType).write(atomOf(1, 16)));
}

TEST(EventSequence, WithoutRoomForItsHeadIsLeftEmpty) {
    Sequence sequence(16);
    sequence.openForWriting(7);
    EXPECT_FALSE(EventWriter(sequence.get(), sequenceType).write(atomOf(1, 0)));
    EXPECT_EQ(sequence.get()->atom.size, 0U);
    EXPECT_FALSE(EventWriter(nullptr, sequenceType).write(atomOf(1, 0)));
    EXPECT_TRUE(atomsIn(nullptr).empty());
}

TEST(EventSequence, OfAnotherTypeIsNotLookedInto) {
    Sequence sequence(256);
    EventWriter(sequence.get(), sequenceType).write(atomOf(1, 16));
    sequence.get()->atom.type = sequenceType + 1;
    EXPECT_TRUE(atomsIn(sequence.get()).empty());
}

TEST(EventSequence, IsNeverReadBeyondItsEndWhateverItsBytes) {
    std::minstd_rand random(1);
    for (int turn = 0; turn < 20000; ++turn) {
        const auto size = static_cast<std::uint32_t>(8 * (random() % 12));
        Sequence sequence(size, sequenceType);
        auto* const bytes = reinterpret_cast<unsigned char*>(sequence.get());
        for (std::size_t i = 8; i < 8 + size; ++i)
            bytes[i] = static_cast<unsigned char>(random() % 3 == 0 ? random() % 20 : 0);
        std::size_t total = 0;
        for (const auto& atom : atomsIn(sequence.get()))
            total += atom.size();
        ASSERT_LE(total, size);
    }
}

} // namespace
} // namespace mirelon::lv2

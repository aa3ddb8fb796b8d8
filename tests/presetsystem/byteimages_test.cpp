// The byte images' parts that other tests reach only through a whole effect.
#include "presetsystem/chunkimage.h"
#include "presetsystem/presetimages.h"

#include <gtest/gtest.h>

namespace mirelon {
namespace {

constexpr std::int32_t owner = 0x54655374;

TEST(ChunkImage, OfItsOwnBankIsAcceptedAndTellsItsPreset) {
    PresetBank bank{};
    bank[10].setName("the last");
    bank[10].setValue(8, 0.75F);
    ChunkImage image{};
    writeChunk(image, owner, 10, bank);
    ASSERT_EQ(readChunk(image, owner), ChunkVerdict::accepted);
    EXPECT_EQ(chunkPresetNo(image), 10);
    PresetBank read{};
    copyChunkBank(image, read);
    EXPECT_STREQ(read[10].name().data(), "the last");
    EXPECT_EQ(read[10].value(8), 0.75F);
}

TEST(ChunkImage, WithAPresetOutsideTheBankTellsNone) {
    const PresetBank bank{};
    ChunkImage image{};
    for (const std::int32_t presetNo : {11, -1, 1000000}) {
        writeChunk(image, owner, presetNo, bank);
        ASSERT_EQ(readChunk(image, owner), ChunkVerdict::accepted);
        EXPECT_FALSE(chunkPresetNo(image).has_value()) << presetNo;
    }
}

TEST(PresetImage, OutOfRangeTellsWhichValueOfItsOnlyPreset) {
    PresetRecord bad{};
    bad.setValue(4, 1.5F);
    presetfilestruct image;
    writePresetImage(image, owner, bad);
    PresetRecord target{};
    const ImageReading reading = readPresetImage(image, owner, false, target);
    EXPECT_EQ(reading.verdict, ImageVerdict::outOfRange);
    EXPECT_EQ(reading.preset, 0);
    EXPECT_EQ(reading.value, 4);
}

TEST(PresetImage, ThatIsInRangeOrRefusedNamesNoValue) {
    presetfilestruct image;
    writePresetImage(image, owner, PresetRecord{});
    PresetRecord target{};
    for (const std::int32_t id : {owner, owner + 1}) {
        const ImageReading reading = readPresetImage(image, id, false, target);
        EXPECT_EQ(reading.verdict, id == owner ? ImageVerdict::accepted : ImageVerdict::notOurs);
        EXPECT_EQ(reading.preset, 0);
        EXPECT_EQ(reading.value, 0);
    }
}

} // namespace
} // namespace mirelon

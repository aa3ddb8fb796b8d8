#include "presetsystem/presetimages.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace mirelon::test {
namespace {

using namespace std::string_literals;

constexpr std::int32_t ownerId = 0x4D724C6E; // "MrLn"

// The file of preset "init", width 0.625, gain 0.1, then halves and switches,
// as a little-endian machine writes it.
const std::string initFile = "nLrM\x21"
                             "init\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
                             "\x3F\x20\x00\x00\x3D\xCC\xCC\xCD\x3F\x00\x00\x00"
                             "\x3F\x00\x00\x00\x3F\x00\x00\x00\x3F\x80\x00\x00"
                             "\x00\x00\x00\x00\x00\x00\x00\x00\x3F\x80\x00\x00"s;
constexpr PresetValues initValues{0.625F, 0.1F, 0.5F, 0.5F, 0.5F, 1.0F, 0.0F, 0.0F, 1.0F};

PresetRecord recordOf(std::string_view name, const PresetValues& values) {
    PresetRecord record{};
    record.setName(name);
    for (int j = 0; j < kNumPresetParams; ++j)
        record.setValue(j, values[static_cast<std::size_t>(j)]);
    return record;
}

template <typename Image>
Image imageOf(const std::string& bytes) {
    Image image;
    EXPECT_EQ(bytes.size(), image.bytes.size());
    std::memcpy(image.bytes.data(), bytes.data(), image.bytes.size());
    return image;
}

std::string bytesOf(const auto& image) {
    return {reinterpret_cast<const char*>(image.bytes.data()), image.bytes.size()};
}

std::string bytesOf(const PresetRecord& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

std::string bytesOf(const PresetBank& bank) {
    return {reinterpret_cast<const char*>(bank.data()), sizeof bank};
}

void reverseWord(std::string& bytes, std::size_t at) {
    std::reverse(&bytes[at], &bytes[at] + 4);
}

// Owner, or values, of the other byte order.
std::string foreignOwner(std::string bytes) {
    reverseWord(bytes, 0);
    return bytes;
}

std::string swappedValues(std::string bytes, std::size_t firstValue, std::size_t stride = 60) {
    for (std::size_t record = firstValue; record < bytes.size(); record += stride)
        for (std::size_t j = 0; j < 9; ++j)
            reverseWord(bytes, record + 4 * j);
    return bytes;
}

PresetBank numberedBank() {
    PresetBank bank{};
    for (int i = 0; i < kNumPresets; ++i) {
        PresetValues values{};
        for (int j = 0; j < kNumPresetParams; ++j)
            values[static_cast<std::size_t>(j)] = static_cast<float>(i * 9 + j) / 99.0F;
        bank[static_cast<std::size_t>(i)] = recordOf("preset " + std::to_string(i), values);
    }
    return bank;
}

TEST(PresetImage, IsWrittenAsItsLiteralBytes) {
    presetfilestruct image;
    writePresetImage(image, ownerId, recordOf("init", initValues));
    EXPECT_EQ(bytesOf(image), initFile);
}

TEST(PresetImage, ANameOf24FillsItsPlaceWithoutTerminator) {
    presetfilestruct image;
    writePresetImage(image, ownerId, recordOf("abcdefghijklmnopqrstuvwx", initValues));
    EXPECT_EQ(bytesOf(image).substr(0, 29), "nLrM\x21"
                                            "abcdefghijklmnopqrstuvwx");
}

TEST(PresetImage, IsReadBackToTheSameBytes) {
    PresetRecord preset{};
    EXPECT_EQ(readPresetImage(imageOf<presetfilestruct>(initFile), ownerId, false, preset).verdict,
              ImageVerdict::accepted);
    EXPECT_EQ(bytesOf(preset), initFile.substr(5));
}

TEST(PresetImage, KeepsWhatStandsBehindTheNamesTerminator) {
    std::string file = initFile;
    file.replace(5, 24, "ab\0behind\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s);
    PresetRecord preset{};
    readPresetImage(imageOf<presetfilestruct>(file), ownerId, false, preset);
    EXPECT_EQ(bytesOf(preset), file.substr(5));
}

// The image is of the foreign order or not, the user asks for reversal or not:
// values are byte-swapped when exactly one of the two holds.
struct OrderCase {
    bool foreign;
    bool reversed;
};

void PrintTo(const OrderCase& order, std::ostream* out) {
    *out << (order.foreign ? "foreign" : "native") << (order.reversed ? ", reversed" : "");
}

class ByteOrder : public testing::TestWithParam<OrderCase> {
  protected:
    std::string arranged(std::string file) const {
        const auto [foreign, reversed] = GetParam();
        if (foreign)
            file = foreignOwner(file);
        return foreign != reversed ? swappedValues(file, 29) : file;
    }
};

TEST_P(ByteOrder, OfAPresetIsUndone) {
    PresetRecord preset{};
    const auto image = imageOf<presetfilestruct>(arranged(initFile));
    EXPECT_EQ(readPresetImage(image, ownerId, GetParam().reversed, preset).verdict,
              ImageVerdict::accepted);
    EXPECT_EQ(bytesOf(preset), initFile.substr(5));
}

TEST_P(ByteOrder, OfABankIsUndone) {
    bankfilestruct native;
    writeBankImage(native, ownerId, numberedBank());
    PresetBank bank{};
    const auto image = imageOf<bankfilestruct>(arranged(bytesOf(native)));
    EXPECT_EQ(readBankImage(image, ownerId, GetParam().reversed, bank).verdict,
              ImageVerdict::accepted);
    EXPECT_EQ(bytesOf(bank), bytesOf(numberedBank()));
}

TEST_P(ByteOrder, MistakenIsRefusedWhereValuesLeaveTheRange) {
    // 0.625 the wrong way round is 0x0000203F, which is in range; 0.1 is
    // 0xCDCCCC3D, which is far below 0.
    PresetRecord preset = recordOf("before", initValues);
    const std::string before = bytesOf(preset);
    const auto image = imageOf<presetfilestruct>(arranged(initFile));
    const ImageReading reading = readPresetImage(image, ownerId, !GetParam().reversed, preset);
    EXPECT_EQ(reading.verdict, ImageVerdict::outOfRange);
    EXPECT_EQ(reading.value, 1);
    EXPECT_EQ(bytesOf(preset), before);
}

INSTANTIATE_TEST_SUITE_P(All, ByteOrder,
                         testing::Values(OrderCase{false, false}, OrderCase{false, true},
                                         OrderCase{true, false}, OrderCase{true, true}),
                         [](const auto& info) {
                             return std::string(info.param.foreign ? "Foreign" : "Native") +
                                    (info.param.reversed ? "Reversed" : "AsItStands");
                         });

TEST(PresetImage, OfAnotherOwnerIsRefused) {
    std::string file = initFile;
    file[0] = 'm';
    PresetRecord preset = recordOf("before", initValues);
    EXPECT_EQ(readPresetImage(imageOf<presetfilestruct>(file), ownerId, false, preset).verdict,
              ImageVerdict::notOurs);
    EXPECT_STREQ(preset.name().data(), "before");
}

TEST(PresetImage, OfZerosIsAnotherOwners) {
    PresetRecord preset = recordOf("before", initValues);
    EXPECT_EQ(readPresetImage({}, ownerId, false, preset).verdict, ImageVerdict::notOurs);
    EXPECT_STREQ(preset.name().data(), "before");
}

TEST(PresetImage, OfAnotherTypeIsRefused) {
    std::string file = initFile;
    for (const char type : {'\x37', '\x0B', '\x00', '\x20'}) {
        file[4] = type;
        PresetRecord preset = recordOf("before", initValues);
        EXPECT_EQ(readPresetImage(imageOf<presetfilestruct>(file), ownerId, false, preset).verdict,
                  ImageVerdict::wrongType);
        EXPECT_STREQ(preset.name().data(), "before");
    }
}

TEST(PresetImage, OfAnOwnerThatReadsTheSameBothWaysCountsAsForeign) {
    const std::int32_t palindrome = 0x41424241;
    presetfilestruct image;
    writePresetImage(image, palindrome, recordOf("init", initValues));
    EXPECT_EQ(imageOrder(image.bytes, palindrome), ImageOrder::foreign);
}

class OutOfRange : public testing::TestWithParam<float> {};

TEST_P(OutOfRange, ValueRefusesThePresetNameIncluded) {
    for (int j = 0; j < kNumPresetParams; ++j) {
        PresetValues values = initValues;
        values[static_cast<std::size_t>(j)] = GetParam();
        presetfilestruct image;
        writePresetImage(image, ownerId, recordOf("bad", values));
        PresetRecord preset = recordOf("before", initValues);
        const std::string before = bytesOf(preset);
        const ImageReading reading = readPresetImage(image, ownerId, false, preset);
        EXPECT_EQ(reading.verdict, ImageVerdict::outOfRange);
        EXPECT_EQ(reading.value, j);
        EXPECT_EQ(bytesOf(preset), before);
    }
}

TEST_P(OutOfRange, ValueAnywhereRefusesTheWholeBank) {
    for (const auto& [i, j] : {std::pair{0, 0}, {0, 8}, {5, 4}, {10, 0}, {10, 8}}) {
        PresetBank bad = numberedBank();
        bad[static_cast<std::size_t>(i)].setValue(j, GetParam());
        bankfilestruct image;
        writeBankImage(image, ownerId, bad);
        PresetBank bank{};
        const ImageReading reading = readBankImage(image, ownerId, false, bank);
        EXPECT_EQ(reading.verdict, ImageVerdict::outOfRange);
        EXPECT_EQ(reading.preset, i);
        EXPECT_EQ(reading.value, j);
        EXPECT_EQ(bytesOf(bank), std::string(660, '\0'));
    }
}

INSTANTIATE_TEST_SUITE_P(Values, OutOfRange,
                         testing::Values(1.5F, -0.25F, std::nextafter(1.0F, 2.0F),
                                         -std::numeric_limits<float>::denorm_min(),
                                         std::numeric_limits<float>::quiet_NaN(),
                                         std::numeric_limits<float>::infinity(),
                                         -std::numeric_limits<float>::infinity()));

TEST(PresetImage, TakesTheEndsOfTheRangeAndBothZeros) {
    const PresetValues ends{0.0F,
                            -0.0F,
                            1.0F,
                            std::numeric_limits<float>::denorm_min(),
                            std::nextafter(1.0F, 0.0F),
                            0.0F,
                            1.0F,
                            0.0F,
                            1.0F};
    presetfilestruct image;
    writePresetImage(image, ownerId, recordOf("ends", ends));
    PresetRecord preset{};
    EXPECT_EQ(readPresetImage(image, ownerId, false, preset).verdict, ImageVerdict::accepted);
    EXPECT_EQ(bytesOf(preset), bytesOf(recordOf("ends", ends)));
}

TEST(BankImage, IsWrittenAsHeaderAndRecords) {
    const PresetBank bank = numberedBank();
    bankfilestruct image;
    writeBankImage(image, ownerId, bank);
    EXPECT_EQ(bytesOf(image), "nLrM\x37" + bytesOf(bank));
}

TEST(BankImage, HoldsTheLiteralBytesOfItsLastRecord) {
    PresetBank bank{};
    bank[10] = recordOf("init", initValues);
    bankfilestruct image;
    writeBankImage(image, ownerId, bank);
    EXPECT_EQ(bytesOf(image).substr(605), initFile.substr(5));
}

TEST(BankImage, OfAnotherTypeIsRefused) {
    bankfilestruct image;
    writeBankImage(image, ownerId, numberedBank());
    image.bytes[4] = presetImageType;
    PresetBank bank{};
    EXPECT_EQ(readBankImage(image, ownerId, false, bank).verdict, ImageVerdict::wrongType);
    EXPECT_EQ(bytesOf(bank), std::string(660, '\0'));
}

TEST(BankImage, TellsItsNames) {
    PresetBank bank = numberedBank();
    bank[3].setName("abcdefghijklmnopqrstuvwx");
    bankfilestruct image;
    writeBankImage(image, ownerId, bank);
    EXPECT_STREQ(bankImageName(image, 3).data(), "abcdefghijklmnopqrstuvwx");
    EXPECT_STREQ(bankImageName(image, 10).data(), "preset 10");
}

TEST(MidiImage, IsWrittenAsItsLiteralBytes) {
    midifilestruct image;
    writeMidiImage(image, ownerId, {-1.0F, 0.5F, 1.0F});
    EXPECT_EQ(bytesOf(image),
              "nLrM\x0B\xBF\x80\x00\x00\x3F\x00\x00\x00\x3F\x80\x00\x00"s + std::string(24, '\0'));
}

TEST(MidiImage, IsReadUpToItsFirstValueOutOfRange) {
    midifilestruct image;
    writeMidiImage(image, ownerId, {0.25F, 0.5F, 1.5F, 0.75F});
    const MidiImageValues read = readMidiImage(image, ownerId, false);
    EXPECT_EQ(read.verdict, ImageVerdict::outOfRange);
    EXPECT_EQ(read.count, 2);
    EXPECT_EQ(read.values[1], 0.5F);
}

TEST(MidiImage, OfEitherByteOrderIsRead) {
    midifilestruct image;
    const PresetValues values{0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0.7F, 0.8F, 0.9F};
    writeMidiImage(image, ownerId, values);
    const auto swapped =
        imageOf<midifilestruct>(foreignOwner(swappedValues(bytesOf(image), 5, 36)));
    EXPECT_EQ(readMidiImage(image, ownerId, false).values, values);
    EXPECT_EQ(readMidiImage(swapped, ownerId, false).values, values);
    EXPECT_EQ(readMidiImage(image, ownerId, true).verdict, ImageVerdict::outOfRange);
}

TEST(MidiImage, OfAnotherOwnerOrTypeHasNoValues) {
    midifilestruct image;
    writeMidiImage(image, ownerId, initValues);
    EXPECT_EQ(readMidiImage(image, ownerId + 1, false).verdict, ImageVerdict::notOurs);
    image.bytes[4] = bankImageType;
    EXPECT_EQ(readMidiImage(image, ownerId, false).verdict, ImageVerdict::wrongType);
    EXPECT_EQ(readMidiImage(image, ownerId, false).count, 0);
}

TEST(SwappingBytes, ReversesFourBytesWhereverTheyLie) {
    char bytes[] = "xabcdy";
    mySwapBytes(bytes + 1);
    EXPECT_STREQ(bytes, "xdcbay");
}

} // namespace
} // namespace mirelon::test

#include "tools/audio/formatlimit.h"

#include "tools/commanderror.h"

#include <gtest/gtest.h>
#include <sndfile.h>

namespace mirelon::tools {
namespace {

constexpr std::uint64_t gibi = std::uint64_t{1} << 30U;
constexpr std::uint64_t mebi = std::uint64_t{1} << 20U;

ChosenFormat chosen(int format, std::optional<std::uint64_t> frames) {
    return formatForLength(format, frames, 0, "out");
}

TEST(FormatLimit, LeavesAFormatThatIsLargeEnough) {
    constexpr int wav24 = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    const std::uint64_t nearly = (4 * gibi - 2 * mebi) / 6;
    EXPECT_EQ(chosen(wav24, nearly).format, wav24);
    EXPECT_FALSE(chosen(wav24, nearly).plainWhenSmall);
}

TEST(FormatLimit, PutsRf64InPlaceOfAWavThatIsTooSmall) {
    for (const int kind : {+SF_FORMAT_WAV, +SF_FORMAT_WAVEX, SF_FORMAT_WAV | SF_ENDIAN_BIG}) {
        for (const auto& [subtype, frameBytes] : {std::pair{+SF_FORMAT_PCM_16, 4U},
                                                  {+SF_FORMAT_PCM_24, 6U},
                                                  {+SF_FORMAT_FLOAT, 8U},
                                                  {+SF_FORMAT_DOUBLE, 16U}}) {
            const ChosenFormat large = chosen(kind | subtype, 4 * gibi / frameBytes);
            EXPECT_EQ(large.format, SF_FORMAT_RF64 | subtype);
            EXPECT_FALSE(large.plainWhenSmall);
        }
    }
}

TEST(FormatLimit, LeavesRoomForWhatElseIsInTheFile) {
    constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::uint64_t frames = (4 * gibi - 8 * mebi) / 4;
    EXPECT_EQ(formatForLength(wav16, frames, 0, "out").format, wav16);
    EXPECT_EQ(formatForLength(wav16, frames, 16 * mebi, "out").format,
              SF_FORMAT_RF64 | SF_FORMAT_PCM_16);
}

TEST(FormatLimit, PreparesAWavOfUnknownLengthToGrow) {
    const ChosenFormat open = chosen(SF_FORMAT_WAV | SF_FORMAT_FLOAT, std::nullopt);
    EXPECT_EQ(open.format, SF_FORMAT_RF64 | SF_FORMAT_FLOAT);
    EXPECT_TRUE(open.plainWhenSmall);
    constexpr int flac = SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    EXPECT_EQ(chosen(flac, std::nullopt).format, flac);
}

TEST(FormatLimit, RefusesWhatTheFormatCannotHold) {
    EXPECT_THROW(chosen(SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 2 * gibi / 6), CommandError);
    EXPECT_THROW(chosen(SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM, 4 * gibi), CommandError);
    EXPECT_THROW(chosen(SF_FORMAT_VOC | SF_FORMAT_PCM_16, 16 * mebi / 4), CommandError);
    EXPECT_THROW(chosen(SF_FORMAT_FLAC | SF_FORMAT_PCM_16, std::uint64_t{1} << 36U), CommandError);
    EXPECT_NO_THROW(chosen(SF_FORMAT_FLAC | SF_FORMAT_PCM_16, (std::uint64_t{1} << 36U) - 1));
    try {
        chosen(SF_FORMAT_AIFF | SF_FORMAT_PCM_24, gibi);
    } catch (const CommandError& error) {
        EXPECT_STREQ(error.what(), "out: AIFF, Signed 24 bit PCM holds at most 357739178 frames of "
                                   "the 1073741824; rf64, w64 and caf hold them");
    }
}

TEST(FormatLimit, KnowsTheFormatsWithSizesOf64Bits) {
    for (const int kind : {SF_FORMAT_W64, SF_FORMAT_CAF, SF_FORMAT_RF64, SF_FORMAT_AU})
        EXPECT_EQ(mostFrames(kind | SF_FORMAT_DOUBLE), std::nullopt) << std::hex << kind;
}

} // namespace
} // namespace mirelon::tools

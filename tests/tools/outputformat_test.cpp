#include "tools/audio/outputformat.h"

#include "tools/commanderror.h"

#include <gtest/gtest.h>
#include <sndfile.h>

namespace mirelon::tools {
namespace {

constexpr int rate = 48000;
constexpr int wav24 = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
constexpr int vorbis = SF_FORMAT_OGG | SF_FORMAT_VORBIS;

TEST(OutputFormat, IsTheInputsWithoutAnExtension) {
    EXPECT_EQ(outputFormat("out", wav24, rate), wav24);
    EXPECT_EQ(outputFormat("out.", wav24, rate), wav24);
}

TEST(OutputFormat, IsTheInputsWithAnExtensionOfItsKind) {
    EXPECT_EQ(outputFormat("a.WAV", wav24, rate), wav24);
    const int extensible = SF_FORMAT_WAVEX | SF_FORMAT_FLOAT;
    EXPECT_EQ(outputFormat("a.wav", extensible, rate), extensible);
    const int bigEndian = SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG;
    EXPECT_EQ(outputFormat("a.aif", bigEndian, rate), bigEndian);
    EXPECT_EQ(outputFormat("a.ogg", vorbis, rate), vorbis);
    EXPECT_EQ(outputFormat("a.oga", vorbis, rate), vorbis);
}

TEST(OutputFormat, KeepsTheSubtypeWhereTheOtherKindTakesIt) {
    EXPECT_EQ(outputFormat("a.flac", wav24, rate), SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
    EXPECT_EQ(outputFormat("a.aiff", SF_FORMAT_WAV | SF_FORMAT_DOUBLE, rate),
              SF_FORMAT_AIFF | SF_FORMAT_DOUBLE);
    EXPECT_EQ(outputFormat("a.rf64", wav24, rate), SF_FORMAT_RF64 | SF_FORMAT_PCM_24);
}

TEST(OutputFormat, ElseTakesTheBestThereIs) {
    EXPECT_EQ(outputFormat("a.wav", vorbis, rate), SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(outputFormat("a.flac", vorbis, rate), SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
    EXPECT_EQ(outputFormat("a.flac", SF_FORMAT_WAV | SF_FORMAT_FLOAT, rate),
              SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
    EXPECT_EQ(outputFormat("a.ogg", wav24, rate), vorbis);
}

TEST(OutputFormat, OpusIsACodecOfItsOwn) {
    EXPECT_EQ(outputFormat("a.opus", vorbis, rate), SF_FORMAT_OGG | SF_FORMAT_OPUS);
}

TEST(OutputFormat, IsTheOneAskedForWhateverTheExtension) {
    EXPECT_EQ(outputFormat("a.wav", wav24, rate, {"flac", {}}), SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
    EXPECT_EQ(outputFormat("a", wav24, rate, {"CAF", {}}), SF_FORMAT_CAF | SF_FORMAT_PCM_24);
}

TEST(OutputFormat, TakesTheBitsAskedFor) {
    EXPECT_EQ(outputFormat("a.wav", wav24, rate, {{}, "float"}), SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(outputFormat("a", wav24, rate, {{}, "double"}), SF_FORMAT_WAV | SF_FORMAT_DOUBLE);
    EXPECT_EQ(outputFormat("a.flac", wav24, rate, {{}, "16"}), SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
    EXPECT_EQ(outputFormat("a.wav", wav24, rate, {{}, "8"}), SF_FORMAT_WAV | SF_FORMAT_PCM_U8);
    EXPECT_EQ(outputFormat("a.flac", wav24, rate, {{}, "8"}), SF_FORMAT_FLAC | SF_FORMAT_PCM_S8);
    const int bigEndian = SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG;
    EXPECT_EQ(outputFormat("a.aif", bigEndian, rate, {{}, "24"}),
              SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_BIG);
}

TEST(OutputFormat, RefusesBitsThatTheKindDoesNotTake) {
    EXPECT_THROW(outputFormat("a.flac", wav24, rate, {{}, "float"}), CommandError);
    EXPECT_THROW(outputFormat("a.ogg", wav24, rate, {{}, "16"}), CommandError);
}

TEST(OutputFormat, RefusesAnExtensionThatNamesNone) {
    EXPECT_THROW(outputFormat("a.docx", wav24, rate), CommandError);
}

TEST(OutputFormat, KnowsTheBitsOfIntegers) {
    EXPECT_EQ(integerBits(wav24), 24);
    EXPECT_EQ(integerBits(SF_FORMAT_WAV | SF_FORMAT_PCM_U8), 8);
    EXPECT_EQ(integerBits(SF_FORMAT_WAV | SF_FORMAT_FLOAT), 0);
    EXPECT_EQ(integerBits(vorbis), 0);
}

} // namespace
} // namespace mirelon::tools

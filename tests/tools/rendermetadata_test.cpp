// mirelon-host render: what files hold besides their sound.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Close {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, Close>;

File openFile(const std::filesystem::path& path) {
    SF_INFO info{};
    File file(sf_open(path.c_str(), SFM_READ, &info));
    EXPECT_NE(file, nullptr) << path;
    return file;
}

// Chunks as they stand in a WAV file, and such a file of them and 100 frames.
std::string chunk(const std::string& id, std::string content) {
    const auto size = static_cast<std::uint32_t>(content.size());
    std::string bytes = id + std::string(4, '\0');
    std::memcpy(bytes.data() + 4, &size, 4);
    if (size % 2 != 0)
        content += '\0';
    return bytes + content;
}

std::string wavOf(const std::string& chunks) {
    const std::string format("\x01\0\x02\0\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0", 16);
    return chunk("RIFF",
                 "WAVE" + chunk("fmt ", format) + chunks + chunk("data", std::string(400, '\x11')));
}

class RenderMetadata : public testing::Test {
  protected:
    void writeRich() {
        SF_INFO info{};
        info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
        info.channels = 2;
        info.samplerate = 44100;
        const File file(sf_open((folder / "in.wav").c_str(), SFM_WRITE, &info));
        ASSERT_NE(file, nullptr);
        SF_BROADCAST_INFO broadcast{};
        std::strcpy(broadcast.description, "Take 7");
        std::strcpy(broadcast.originator, "Studio B");
        broadcast.time_reference_low = 123456;
        broadcast.version = 1;
        EXPECT_TRUE(sf_command(file.get(), SFC_SET_BROADCAST_INFO, &broadcast, sizeof broadcast));
        SF_CART_INFO cart{};
        std::strcpy(cart.title, "Spot");
        EXPECT_TRUE(sf_command(file.get(), SFC_SET_CART_INFO, &cart, sizeof cart));
        SF_CUES cues{};
        cues.cue_count = 2;
        cues.cue_points[0].indx = 1;
        cues.cue_points[0].sample_offset = 10;
        cues.cue_points[1].indx = 2;
        cues.cue_points[1].sample_offset = 70;
        EXPECT_TRUE(sf_command(file.get(), SFC_SET_CUE, &cues, sizeof cues));
        SF_INSTRUMENT instrument{};
        instrument.basenote = 60;
        instrument.loop_count = 1;
        instrument.loops[0] = {SF_LOOP_FORWARD, 5, 90, 0};
        EXPECT_TRUE(sf_command(file.get(), SFC_SET_INSTRUMENT, &instrument, sizeof instrument));
        sf_set_string(file.get(), SF_STR_ARTIST, "Somebody");
        const std::vector<short> silence(200);
        sf_writef_short(file.get(), silence.data(), 100);
    }

    ProgramResult render(const std::string& out) {
        return runMirelon({"render", "--overwrite", folder / "in.wav", folder / out});
    }

    TemporaryFolder folder;
};

TEST_F(RenderMetadata, GoesOverIntoAWav) {
    writeRich();
    const ProgramResult result = render("out.wav");
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    const File file = openFile(folder / "out.wav");
    SF_BROADCAST_INFO broadcast{};
    ASSERT_TRUE(sf_command(file.get(), SFC_GET_BROADCAST_INFO, &broadcast, sizeof broadcast));
    EXPECT_STREQ(broadcast.description, "Take 7");
    EXPECT_STREQ(broadcast.originator, "Studio B");
    EXPECT_EQ(broadcast.time_reference_low, 123456U);
    SF_CART_INFO cart{};
    ASSERT_TRUE(sf_command(file.get(), SFC_GET_CART_INFO, &cart, sizeof cart));
    EXPECT_STREQ(cart.title, "Spot");
    SF_CUES cues{};
    ASSERT_TRUE(sf_command(file.get(), SFC_GET_CUE, &cues, sizeof cues));
    ASSERT_EQ(cues.cue_count, 2U);
    EXPECT_EQ(cues.cue_points[1].sample_offset, 70U);
    SF_INSTRUMENT instrument{};
    ASSERT_TRUE(sf_command(file.get(), SFC_GET_INSTRUMENT, &instrument, sizeof instrument));
    EXPECT_EQ(instrument.loops[0].end, 90U);
    EXPECT_STREQ(sf_get_string(file.get(), SF_STR_ARTIST), "Somebody");
}

TEST_F(RenderMetadata, IsNamedWhereTheFormatHasNoPlaceForIt) {
    writeRich();
    const ProgramResult result = render("out.flac");
    EXPECT_EQ(result.status, 0);
    for (const char* const lost : {"broadcast information (bext)", "radio traffic data (cart)",
                                   "2 cue points", "instrument data"})
        EXPECT_THAT(result.errors, HasSubstr(lost));
    EXPECT_THAT(result.errors, Not(HasSubstr("artist")));
    EXPECT_THAT(render("out.rf64").errors, HasSubstr("2 cue points"));
    EXPECT_THAT(render("out.w64").errors, HasSubstr("artist"));
}

TEST_F(RenderMetadata, OfTheSpeakersGoesOverWhereTheFormatHasAPlaceForIt) {
    SF_INFO info{};
    info.format = SF_FORMAT_WAVEX | SF_FORMAT_PCM_16;
    info.channels = 2;
    info.samplerate = 44100;
    {
        const File file(sf_open((folder / "in.wav").c_str(), SFM_WRITE, &info));
        ASSERT_NE(file, nullptr);
        std::array<int, 2> rear{SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT};
        ASSERT_TRUE(sf_command(file.get(), SFC_SET_CHANNEL_MAP_INFO, rear.data(), sizeof rear));
        const std::vector<short> silence(200);
        sf_writef_short(file.get(), silence.data(), 100);
    }
    EXPECT_EQ(render("out.wav").errors, "");
    std::array<int, 2> kept{};
    ASSERT_TRUE(sf_command(openFile(folder / "out.wav").get(), SFC_GET_CHANNEL_MAP_INFO,
                           kept.data(), sizeof kept));
    EXPECT_EQ(kept, (std::array<int, 2>{SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT}));
    EXPECT_THAT(render("out.flac").errors, HasSubstr("channel map"));
}

TEST_F(RenderMetadata, OfDescriptiveChunksGoesOverAsItIs) {
    writeFile(folder / "in.wav", wavOf(chunk("iXML", "<a>b</a>!")));
    const ProgramResult result = render("out.wav");
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(contentsOf(folder / "out.wav"), HasSubstr("<a>b</a>!"));
    EXPECT_THAT(contentsOf(folder / "out.wav"), HasSubstr("iXML"));
    EXPECT_THAT(render("out.flac").errors, HasSubstr("chunk \"iXML\""));
}

TEST_F(RenderMetadata, OfUnknownChunksIsNamed) {
    writeFile(folder / "in.wav",
              wavOf(chunk("ABCD", "hello") + chunk("LIST", "INFO" + chunk("IENG", "Someone")) +
                    chunk("LIST", "INFO" + chunk("INAM", "Nocturne")) +
                    chunk("LIST", "exif" + chunk("ecor", "Someone")) + chunk("zero", "")));
    const ProgramResult result = render("out.wav");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("chunk \"ABCD\""));
    EXPECT_THAT(result.errors, HasSubstr("chunk \"IENG\""));
    EXPECT_THAT(result.errors, HasSubstr("chunk \"LIST\" of exif"));
    EXPECT_THAT(result.errors, Not(HasSubstr("INAM")));
    EXPECT_STREQ(sf_get_string(openFile(folder / "out.wav").get(), SF_STR_TITLE), "Nocturne");
}

TEST_F(RenderMetadata, OfLoudnessIsLeftOutAsItTellsOfTheSoundBefore) {
    std::string broadcast(602, '\0');
    broadcast[346] = 2;                                    // version
    broadcast.replace(412, 2, std::string("\x04\xF7", 2)); // -23.00 LUFS
    writeFile(folder / "in.wav", wavOf(chunk("bext", broadcast)));
    EXPECT_THAT(render("out.wav").errors, HasSubstr("loudness measured before (in bext)"));
    SF_BROADCAST_INFO info{};
    ASSERT_TRUE(
        sf_command(openFile(folder / "out.wav").get(), SFC_GET_BROADCAST_INFO, &info, sizeof info));
    EXPECT_EQ(info.loudness_value, 0x7FFF);
}

TEST_F(RenderMetadata, OfReplayGainIsNamed) {
    SF_INFO info{};
    info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    info.channels = 2;
    info.samplerate = 44100;
    {
        const File file(sf_open((folder / "in.wav").c_str(), SFM_WRITE, &info));
        ASSERT_NE(file, nullptr);
        sf_set_string(file.get(), SF_STR_TITLE, "Nocturne");
        sf_set_string(file.get(), SF_STR_COMMENT, "-6.50 dB................");
        const std::vector<short> silence(200);
        sf_writef_short(file.get(), silence.data(), 100);
    }
    // A comment of the same length becomes the tag.
    std::string bytes = contentsOf(folder / "in.wav");
    const std::string comment = "comment=-6.50 dB................";
    const std::size_t place = bytes.find(comment);
    ASSERT_NE(place, std::string::npos);
    bytes.replace(place, comment.size(), "REPLAYGAIN_TRACK_GAIN=-6.50 dB..");
    writeFile(folder / "in.wav", bytes);
    const ProgramResult result = render("out.flac");
    EXPECT_THAT(result.errors, HasSubstr("not carried over"));
    EXPECT_THAT(result.errors, HasSubstr("REPLAYGAIN_TRACK_GAIN"));
    EXPECT_THAT(result.errors, Not(HasSubstr("title")));
}

TEST_F(RenderMetadata, OfBlocksOfAFlacFileIsNamedAndItsPaddingIsNot) {
    writeSound(folder / "in.wav",
               {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2, std::vector<double>(200)});
    const auto block = [](char kind, const std::string& content) {
        return std::string{kind, '\0', '\0', static_cast<char>(content.size())} + content;
    };
    std::string bytes = contentsOf(folder / "in.wav");
    constexpr std::size_t behindTheFirst = 4 + 4 + 34;
    bytes.insert(behindTheFirst, block(1, std::string(8, '\0')) + block(2, "riffdata") +
                                     block(6, std::string(32, '\0')));
    writeFile(folder / "in.wav", bytes);
    const ProgramResult result = render("out.flac");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("application data of riff"));
    EXPECT_THAT(result.errors, HasSubstr("picture"));
    EXPECT_EQ(result.errors.find("application"), result.errors.rfind("application"));
}

} // namespace
} // namespace mirelon::test

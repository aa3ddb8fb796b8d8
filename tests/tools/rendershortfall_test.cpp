// mirelon-host with inputs that are shorter than their headers say.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

class RenderShortfall : public testing::Test {
  protected:
    // 44100 frames of which the last 11025 and `more` bytes are cut off.
    void writeCut(const std::string& name, int format, int frameBytes, std::size_t more = 0) {
        writeSound(folder / name, stereoNoise(format, 44100));
        const auto cut = static_cast<std::uintmax_t>(11025 * frameBytes) + more;
        resize_file(folder / name, file_size(folder / name) - cut);
    }

    ProgramResult run(const std::string& command, const std::string& in, const std::string& out,
                      const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{command, folder / in, folder / out};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runMirelon(arguments);
    }

    TemporaryFolder folder;
};

TEST_F(RenderShortfall, IsReportedWithAStatusOfItsOwn) {
    for (const auto& [name, format, frameBytes] :
         {std::tuple{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4},
          {"b.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 6},
          {"c.rf64", SF_FORMAT_RF64 | SF_FORMAT_PCM_24, 6},
          {"d.w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16, 4},
          {"e.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 4},
          {"f.au", SF_FORMAT_AU | SF_FORMAT_PCM_16, 4},
          {"g.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG, 4},
          {"h.au", SF_FORMAT_AU | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, 4}}) {
        writeCut(name, format, frameBytes);
        const ProgramResult result = run("render", name, std::string("out-") + name);
        EXPECT_EQ(result.status, 3) << name << result.errors;
        EXPECT_THAT(result.errors,
                    HasSubstr("cut short: 0.25 s (11025 frames) of 1.00 s cannot be read"))
            << name;
        EXPECT_EQ(readSound(folder / (std::string("out-") + name)).frames(), 33075U) << name;
    }
}

TEST_F(RenderShortfall, IsCountedInWholeFrames) {
    writeCut("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4, 1);
    EXPECT_THAT(run("render", "a.wav", "out.wav").errors, HasSubstr("(11026 frames)"));
}

// A frame is no number of bytes there.
TEST_F(RenderShortfall, OfACompressedFileIsEstimated) {
    writeSound(folder / "a.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM, 44100));
    resize_file(folder / "a.wav", file_size(folder / "a.wav") / 2);
    const ProgramResult result = run("render", "a.wav", "out.wav");
    EXPECT_EQ(result.status, 3) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("cut short: "));
}

TEST_F(RenderShortfall, IsInTheReport) {
    writeCut("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4);
    const auto json = nlohmann::json::parse(run("render", "a.wav", "out.wav", {"--json"}).output);
    EXPECT_EQ(json["files"][0]["input"]["missingFrames"], 11025);
}

TEST_F(RenderShortfall, IsRefusedWhenStrict) {
    writeCut("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4);
    for (const char* const command : {"render", "plot"}) {
        const ProgramResult result = run(command, "a.wav", "out.png", {"--strict"});
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, HasSubstr("cut short"));
        EXPECT_FALSE(exists(folder / "out.png"));
    }
}

TEST_F(RenderShortfall, IsToldOfByPlotToo) {
    writeCut("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4);
    const ProgramResult result = run("plot", "a.wav", "out.png");
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.errors, HasSubstr("cut short"));
    EXPECT_TRUE(exists(folder / "out.png"));
}

TEST_F(RenderShortfall, OfSeveralFilesShowsInTheStatus) {
    writeCut("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 4);
    writeSound(folder / "b.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 100));
    const ProgramResult result =
        runMirelon({"render", "--out-dir", folder / "out", folder / "a.wav", folder / "b.wav"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.errors, HasSubstr("cut short"));
}

TEST_F(RenderShortfall, IsNoneWhereChunksFollowTheSound) {
    writeSound(folder / "a.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1000));
    writeFile(folder / "a.wav",
              contentsOf(folder / "a.wav") + std::string("JUNK\x04\0\0\0abcd", 12));
    const ProgramResult result = run("render", "a.wav", "out.wav");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

// What programs write into the header of a stream.
TEST_F(RenderShortfall, IsNoneWhereTheHeaderLeavesTheLengthOpen) {
    for (const char* const size : {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F"}) {
        writeSound(folder / "a.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1000));
        std::string bytes = contentsOf(folder / "a.wav");
        bytes.replace(bytes.find("data") + 4, 4, size, 4);
        writeFile(folder / "a.wav", bytes);
        const ProgramResult result = run("render", "a.wav", "out.wav", {"--overwrite"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(readSound(folder / "out.wav").frames(), 1000U);
    }
}

// A recorder that lost its power never came to write the size.
TEST_F(RenderShortfall, IsWhatAnUnfinishedHeaderHides) {
    writeSound(folder / "a.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100));
    std::string bytes = contentsOf(folder / "a.wav");
    bytes.replace(bytes.find("data") + 4, 4, 4, '\0');
    writeFile(folder / "a.wav", bytes);
    const ProgramResult result = run("render", "a.wav", "out.wav");
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.errors, HasSubstr("(44100 frames) of 1.00 s cannot be read"));
}

} // namespace
} // namespace mirelon::test

// mirelon-host render between real pipes.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using testing::HasSubstr;

constexpr int wav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class RenderPipes : public testing::Test {
  protected:
    // In the folder; $RENDER stands for the command with the built plug-in.
    ProgramResult shell(const std::string& command) {
        const TemporaryFolder home;
        const std::string render =
            "'" MIRELON_HOST_PROGRAM "' render --plugin '" MIRELON_PLUGIN_FILE "'";
        return RunningProgram("/bin/bash",
                              {"-c", "set -o pipefail; cd '" + folder.path.string() +
                                         "'; RENDER() { " + render + " \"$@\"; }; " + command},
                              home.path)
            .wait();
    }

    TemporaryFolder folder;
    Sound noise = stereoNoise(wav16, 50000);
};

TEST_F(RenderPipes, CarryEveryKindOfInput) {
    for (const int format :
         {wav16, SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_AU | SF_FORMAT_PCM_16,
          SF_FORMAT_CAF | SF_FORMAT_PCM_16, SF_FORMAT_W64 | SF_FORMAT_PCM_16,
          SF_FORMAT_RF64 | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16}) {
        Sound input = noise;
        input.format = format;
        writeSound(folder / "in", input);
        const ProgramResult result = shell("cat in | RENDER --overwrite - out.wav");
        ASSERT_EQ(result.status, 0) << std::hex << format << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(readSound(folder / "out.wav").samples, noise.samples) << std::hex << format;
    }
}

TEST_F(RenderPipes, CarryEveryKindOfOutputWithItsLengthInTheHeader) {
    writeSound(folder / "in.wav", noise);
    for (const auto& [kind, format] : {std::pair{"wav", SF_FORMAT_WAV},
                                       {"au", SF_FORMAT_AU},
                                       {"aiff", SF_FORMAT_AIFF},
                                       {"caf", SF_FORMAT_CAF},
                                       {"w64", SF_FORMAT_W64},
                                       {"rf64", SF_FORMAT_RF64}}) {
        for (const char* const bits : {"16", "float"}) {
            const ProgramResult result = shell(std::string("RENDER --format ") + kind + " --bits " +
                                               bits + " in.wav - | cat > out");
            ASSERT_EQ(result.status, 0) << kind << result.errors;
            const Sound out = readSound(folder / "out");
            EXPECT_EQ(out.format & SF_FORMAT_TYPEMASK, format) << kind;
            EXPECT_EQ(out.samples, noise.samples) << kind << bits;
        }
    }
    ASSERT_EQ(shell("RENDER --format flac in.wav - | cat > out").status, 0);
    EXPECT_EQ(shell("'" MIRELON_HOST_PROGRAM "' compare in.wav out").status, 0);
}

TEST_F(RenderPipes, CanFollowEachOther) {
    writeSound(folder / "in.wav", noise);
    const ProgramResult result = shell("cat in.wav | RENDER --preset swapped - - | "
                                       "RENDER --preset swapped - - | cat > out.wav");
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(contentsOf(folder / "out.wav"), contentsOf(folder / "in.wav"));
}

TEST_F(RenderPipes, TellTheReportOnStandardError) {
    writeSound(folder / "in.wav", noise);
    const ProgramResult result = shell("RENDER in.wav - > out.wav");
    ASSERT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("frames    50000"));
    EXPECT_EQ(readSound(folder / "out.wav").samples, noise.samples);
}

// A header as programs write it that cannot go back.
TEST_F(RenderPipes, CarryASoundOfUnknownLength) {
    writeSound(folder / "in.wav", noise);
    std::string bytes = contentsOf(folder / "in.wav");
    bytes.replace(4, 4, 4, '\xFF');
    bytes.replace(bytes.find("data") + 4, 4, 4, '\xFF');
    writeFile(folder / "open.wav", bytes);
    for (const char* const kind : {"wav", "au"}) {
        const ProgramResult result = shell(
            std::string("cat open.wav | RENDER - - --quiet --format ") + kind + " | cat > piped");
        ASSERT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(shell("'" MIRELON_HOST_PROGRAM "' compare in.wav piped").status, 0) << kind;
        // A second pass through a pipe and into a file, which has a length again.
        ASSERT_EQ(shell("cat piped | RENDER --overwrite --format wav - out.wav").status, 0);
        EXPECT_EQ(readSound(folder / "out.wav").samples, noise.samples) << kind;
        EXPECT_EQ(contentsOf(folder / "out.wav").substr(0, 4), "RIFF");
    }
    const ProgramResult aiff = shell("cat open.wav | RENDER --format aiff - -");
    EXPECT_EQ(aiff.status, 2);
    EXPECT_THAT(aiff.errors, HasSubstr("needs to know the length"));
    const ProgramResult ramp = shell("cat open.wav | RENDER --automate gain=0:1 - ramp.wav");
    EXPECT_EQ(ramp.status, 2);
    EXPECT_THAT(ramp.errors, HasSubstr("--automate needs to know"));
}

TEST_F(RenderPipes, ThatEndEarlyAreReported) {
    writeSound(folder / "in.wav", noise);
    const ProgramResult result = shell("head -c 100044 in.wav | RENDER - out.wav");
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.errors, HasSubstr("standard input: cut short: 0.57 s (25000 frames)"));
    EXPECT_EQ(readSound(folder / "out.wav").frames(), 25000U);
    const ProgramResult strict = shell("head -c 100044 in.wav | RENDER --strict - strict.wav");
    EXPECT_EQ(strict.status, 2);
    EXPECT_FALSE(exists(folder / "strict.wav"));
}

// The input is a hole: the header says 4.2 GB.
TEST_F(RenderPipes, BeginWithAnRf64HeaderWhereAWavWouldBeTooSmall) {
    writeSound(folder / "in.rf64", {SF_FORMAT_RF64 | SF_FORMAT_PCM_24, 44100, 2, {}});
    std::string bytes = contentsOf(folder / "in.rf64");
    constexpr std::uint64_t frames = 16000 * 44100;
    constexpr std::uint64_t size = frames * 6;
    const std::size_t sizes = bytes.find("ds64") + 8;
    for (std::size_t i = 0; i < 8; ++i) {
        bytes[sizes + i] = static_cast<char>((size + bytes.size() - 8) >> (8 * i));
        bytes[sizes + 8 + i] = static_cast<char>(size >> (8 * i));
        bytes[sizes + 16 + i] = static_cast<char>(frames >> (8 * i));
    }
    writeFile(folder / "in.rf64", bytes);
    resize_file(folder / "in.rf64", bytes.size() + size);
    // The reader of the pipe has seen enough after the header.
    const ProgramResult result = shell("RENDER --format wav in.rf64 - | head -c 4");
    EXPECT_EQ(result.output, "RF64");
    const ProgramResult aiff = shell("RENDER in.rf64 out.aiff");
    EXPECT_EQ(aiff.status, 2);
    EXPECT_THAT(aiff.errors, HasSubstr("holds at most 357739178 frames of the 705600000"));
    EXPECT_FALSE(exists(folder / "out.aiff"));
}

} // namespace
} // namespace mirelon::test

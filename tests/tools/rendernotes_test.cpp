// mirelon-host render and plot: what an effect is told and given.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sndfile.h>
#include <sstream>
#include <utility>

namespace mirelon::test {
namespace {

using testing::ElementsAre;

class RenderNotes : public testing::Test {
  protected:
    // What the effect has noted of a render of 100 frames.
    std::vector<std::string> notesOf(std::vector<std::string> options) const {
        options.emplace_back("--overwrite");
        return notesOf("render", "out.wav", std::move(options));
    }
    // The same of a command that makes a file of the input.
    std::vector<std::string> notesOf(const std::string& command, const std::string& output,
                                     std::vector<std::string> options) const {
        writeSound(folder / "in.wav",
                   stereoNoise(SF_FORMAT_WAV | SF_FORMAT_DOUBLE, 100, 24, 48000));
        options.insert(options.begin(), {command, folder / "in.wav", folder / output, "--plugin",
                                         testPlugin("notes")});
        const ProgramResult result =
            RunningProgram(MIRELON_HOST_PROGRAM, options, folder.path,
                           {{"MIRELON_TEST_NOTES", (folder / "notes").string()}})
                .wait();
        EXPECT_EQ(result.status, 0) << result.errors;
        std::istringstream notes(contentsOf(folder / "notes"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(notes, line);)
            lines.push_back(line);
        return lines;
    }

    TemporaryFolder folder;
};

TEST_F(RenderNotes,
       RateBlocksAndPrecisionAreToldBeforeTheSoundThatIsFollowedByAsMuchSilenceAsIsLate) {
    EXPECT_THAT(notesOf({"--block", "64"}),
                ElementsAre("sample rate 48000.0", "block size 64", "precision 0",
                            "resume, the host says 48000 Hz, blocks of 64",
                            "process 64 frames of 32 bits", "process 36 frames of 32 bits",
                            "process 64 frames of 32 bits, silent",
                            "process 36 frames of 32 bits, silent",
                            "suspend, the host says 48000 Hz, blocks of 64"));
}

TEST_F(RenderNotes, DoublePrecisionIsToldAndGiven) {
    EXPECT_THAT(notesOf({"--block", "128", "--double"}),
                ElementsAre("sample rate 48000.0", "block size 128", "precision 1",
                            "resume, the host says 48000 Hz, blocks of 128",
                            "process 100 frames of 64 bits",
                            "process 100 frames of 64 bits, silent",
                            "suspend, the host says 48000 Hz, blocks of 128"));
}

// Once for the extent of the picture and once for what is in it.
TEST_F(RenderNotes, APlotTellsTheSameAndGivesTheSoundTwice) {
    for (const bool useDouble : {false, true}) {
        std::vector<std::string> options{"--block", "64"};
        if (useDouble)
            options.emplace_back("--double");
        const auto told = notesOf("plot", "out.png", options);
        std::filesystem::remove(folder / "notes");
        const std::vector<std::string> format{"sample rate 48000.0", "block size 64",
                                              useDouble ? "precision 1" : "precision 0"};
        const std::string ofBits = useDouble ? " frames of 64 bits" : " frames of 32 bits";
        const std::vector<std::string> sound{"resume, the host says 48000 Hz, blocks of 64",
                                             "process 64" + ofBits,
                                             "process 36" + ofBits,
                                             "process 64" + ofBits + ", silent",
                                             "process 36" + ofBits + ", silent",
                                             "suspend, the host says 48000 Hz, blocks of 64"};
        std::vector<std::string> expected;
        for (const auto* const part : {&format, &format, &sound, &sound})
            expected.insert(expected.end(), part->begin(), part->end());
        EXPECT_EQ(told, expected);
    }
}

} // namespace
} // namespace mirelon::test

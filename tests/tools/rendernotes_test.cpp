// mirelon-host render: what an effect is told and given.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <gmock/gmock.h>
#include <sndfile.h>
#include <sstream>

namespace mirelon::test {
namespace {

using testing::ElementsAre;

class RenderNotes : public testing::Test {
  protected:
    // What the effect has noted of a run over 100 frames.
    std::vector<std::string> notesOf(std::vector<std::string> options) const {
        writeSound(folder / "in.wav",
                   stereoNoise(SF_FORMAT_WAV | SF_FORMAT_DOUBLE, 100, 24, 48000));
        options.insert(options.begin(), {"render", folder / "in.wav", folder / "out.wav",
                                         "--overwrite", "--plugin", testPlugin("notes")});
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

} // namespace
} // namespace mirelon::test

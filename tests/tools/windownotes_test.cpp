// mirelon-host edit and screenshot: what an effect is told of the sound beside its window.
#include "tests/support/temporaryfolder.h"
#include "tests/support/virtualdisplay.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <sndfile.h>
#include <thread>

namespace mirelon::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;
using namespace std::chrono_literals;

// What comes of a sound at 48 kHz, however long the run was.
const char* const begin = "sample rate 48000.0\nblock size 512\nprecision 0\n"
                          "resume, the host says 48000 Hz, blocks of 512\n"
                          "process 512 frames of 32 bits\n";
const char* const end = "suspend, the host says 48000 Hz, blocks of 512\n";

class WindowNotes : public testing::Test {
  protected:
    WindowNotes() {
        writeSound(folder / "in.wav",
                   stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 24, 48000));
    }
    RunningProgram start(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--plugin", testPlugin("notes")});
        return {MIRELON_HOST_PROGRAM,
                std::move(arguments),
                folder.path,
                {{"DISPLAY", display}, {"MIRELON_TEST_NOTES", (folder / "notes").string()}}};
    }
    std::string notes() const {
        return exists(folder / "notes") ? contentsOf(folder / "notes") : "";
    }

    TemporaryFolder folder;
    std::string display = VirtualDisplay::start().name();
};

TEST_F(WindowNotes, AnEditTellsTheRateOfItsFileBlockSizeAndPrecisionAndTheHostSaysTheSame) {
    RunningProgram program = start({"edit", folder / "in.wav"});
    for (int i = 0; i < 3000 && notes().find("process") == std::string::npos; ++i)
        std::this_thread::sleep_for(10ms);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait().status, 0);
    EXPECT_THAT(notes(), StartsWith(begin));
    EXPECT_THAT(notes(), EndsWith(end));
}

TEST_F(WindowNotes, AScreenshotTellsTheSameOfItsInput) {
    RunningProgram program =
        start({"screenshot", folder / "out.png", "--input", folder / "in.wav"});
    EXPECT_EQ(program.wait().status, 0);
    EXPECT_THAT(notes(), StartsWith(begin));
    EXPECT_THAT(notes(), EndsWith(end));
}

TEST_F(WindowNotes, AScreenshotWithoutSoundTellsNothingAndProcessesNothing) {
    RunningProgram program = start({"screenshot", folder / "out.png"});
    EXPECT_EQ(program.wait().status, 0);
    EXPECT_EQ(notes(), "");
}

} // namespace
} // namespace mirelon::test

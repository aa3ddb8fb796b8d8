// mirelon-host edit with a file: what is played, and the keys for it.
#include "tests/support/temporaryfolder.h"
#include "tests/support/xwindow.h"
#include "tests/tools/hostprogram.h"
#include "tests/tools/soundfile.h"

#include <X11/keysym.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <memory>
#include <sndfile.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace mirelon::test {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using namespace std::chrono_literals;

constexpr const char* name = "Dravik Mirelon";

// Asks for at most half a minute.
bool becomes(auto condition) {
    for (int i = 0; i < 3000; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

bool titleBecomes(const ::testing::Matcher<std::string>& wanted) {
    return becomes([&] { return wanted.Matches(titleOfWindowNamed(name)); });
}

class EditPlayer : public ::testing::Test {
  protected:
    std::unique_ptr<RunningProgram> start(const std::string& program,
                                          const std::vector<std::string>& arguments) {
        return std::make_unique<RunningProgram>(
            program, arguments, home.path,
            std::vector<std::pair<std::string, std::string>>{{"DISPLAY", display}});
    }
    std::unique_ptr<RunningProgram> edit(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "edit");
        arguments.insert(arguments.end(), {"--plugin", MIRELON_PLUGIN_FILE});
        return start(MIRELON_HOST_PROGRAM, arguments);
    }
    std::string file(int seconds) {
        const auto path = home / "noise.wav";
        writeSound(path, stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                                     44100 * static_cast<std::size_t>(seconds)));
        return path;
    }
    // In the window, on the plug-in's background.
    static void press(unsigned long keysym) { pressKeyAt(5, 5, keysym); }

    TemporaryFolder home;
    std::string display = VirtualDisplay::start().name();
};

TEST_F(EditPlayer, TheWindowsTitleTellsWhatIsPlayed) {
    const auto program = edit({file(70)});
    EXPECT_TRUE(titleBecomes(
        AllOf(StartsWith("Dravik Mirelon - playing 0:0"), HasSubstr(" of 1:10, loop, processed"))));
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait().status, 0);
}

TEST_F(EditPlayer, TheEditorSendsOnTheKeysThatItDoesNotNeed) {
    const auto program = edit({file(70)});
    ASSERT_TRUE(titleBecomes(HasSubstr("playing")));
    press(XK_space);
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped"))) << titleOfWindowNamed(name);
    press(XK_Home);
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped 0:00")));
    press(XK_Right);
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped 0:05"))) << titleOfWindowNamed(name);
    press(XK_l);
    EXPECT_TRUE(titleBecomes(Not(HasSubstr("loop"))));
    press(XK_b);
    EXPECT_TRUE(titleBecomes(HasSubstr("original 0.0 dB")));
    press(XK_q);
    EXPECT_EQ(program->wait().status, 0);
}

TEST_F(EditPlayer, StopsAtTheEndWhenItIsToPlayOnce) {
    const auto program = edit({file(1), "--once"});
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped 0:01 of 0:01, processed")));
    press(XK_q);
    EXPECT_EQ(program->wait().status, 0);
}

// In a terminal of its own, which is what script(1) makes.
TEST_F(EditPlayer, TakesKeysFromTheTerminal) {
    const std::string keys = home / "keys";
    ASSERT_EQ(mkfifo(keys.c_str(), 0600), 0);
    const std::string command = std::string(MIRELON_HOST_PROGRAM) + " edit " + file(70) +
                                " --plugin " + MIRELON_PLUGIN_FILE;
    const auto program =
        start("/bin/sh", {"-c", "script -qec '" + command + "' /dev/null < " + keys});
    const int typing = open(keys.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(typing, 0);
    const auto type = [typing](std::string_view text) {
        EXPECT_EQ(write(typing, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    };
    EXPECT_TRUE(titleBecomes(HasSubstr("playing")));
    type(" \x1b[H");
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped 0:00")));
    type("\x1b[C\x1b[C");
    EXPECT_TRUE(titleBecomes(HasSubstr("stopped 0:10")));
    type("q");
    const ProgramResult result = program->wait();
    close(typing);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("space: play or stop"));
    EXPECT_THAT(result.output, HasSubstr("\r\x1b[Kstopped 0:10"));
}

TEST_F(EditPlayer, ASoundCardThatIsNotThereIsOneLine) {
    const ProgramResult result = edit({file(1), "--device", "no such card"})->wait();
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("there is no sound card"));
    EXPECT_FALSE(windowNamed(name));
}

TEST_F(EditPlayer, ListsTheSoundCardsOrSaysThatThereIsNone) {
    const ProgramResult result = edit({"--list-devices"})->wait();
    if (result.status == 0) {
        EXPECT_THAT(result.output, AnyOf(StartsWith("* "), HasSubstr("\n* ")));
    } else {
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "mirelon-host: there is no sound card to play on\n");
    }
}

TEST_F(EditPlayer, RefusesWhatCannotBePlayed) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--device", "any"}, {"--once"}, {"--input", file(1)}, {home / "nothing.wav"}}) {
        const ProgramResult result = edit(arguments)->wait();
        EXPECT_EQ(result.status, 2) << result.output;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    }
}

} // namespace
} // namespace mirelon::test

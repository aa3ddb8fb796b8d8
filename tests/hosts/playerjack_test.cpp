// mirelon-host edit as it is heard: its sound over a JACK server that needs no card.
#include "tests/hosts/jackrecorder.h"
#include "tests/hosts/screen.h"
#include "tests/tools/soundfile.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <memory>
#include <sndfile.h>

namespace mirelon::test {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;

class PlayerOverJack : public testing::Test {
  protected:
    void SetUp() override {
        if (!JackServer::isInstalled())
            GTEST_SKIP() << "the JACK server is not installed (scripts/setup hosts)";
        home.addEnvironment({{"DISPLAY", Screen::display()}});
        jack = std::make_unique<JackServer>(home);
        home.addEnvironment(jack->variables());
    }

    std::unique_ptr<Program> edit(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {MIRELON_HOST_PROGRAM, "edit"});
        return std::make_unique<Program>(arguments, home.environment(), home / "edit.log");
    }
    std::string logged() const { return contentsOf(home / "edit.log"); }

    HostHome home{MIRELON_PLUGIN_FILE};
    std::unique_ptr<JackServer> jack;
};

TEST_F(PlayerOverJack, ListsTheServer) {
    const Outcome listed = home.run({MIRELON_HOST_PROGRAM, "edit", "--list-devices"}, seconds(60));
    EXPECT_EQ(listed.exitCode, 0) << listed.output;
    EXPECT_THAT(listed.output, HasSubstr("Jack: system (2 out, 2 in) 48000 Hz"));
}

TEST_F(PlayerOverJack, TheFileIsHeardToTheBitAndLoopsAtItsEnd) {
    const Sound sound = stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 30000, 16, JackServer::rate);
    writeSound(home / "noise.wav", sound);
    const auto program = edit({(home / "noise.wav").string(), "--device", "system"});
    JackRecorder recorder(*jack);
    ASSERT_TRUE(eventually(seconds(60), [&] { return recorder.recordFrom("mirelon-host"); }))
        << logged();
    // The neutral plug-in: the file's end and its begin, one after the other.
    constexpr std::size_t about = 200;
    for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
        std::vector<float> turn;
        for (std::size_t i = 0; i < 2 * about; ++i)
            turn.push_back(static_cast<float>(
                sound.samples[2 * ((sound.frames() - about + i) % sound.frames()) + side]));
        EXPECT_TRUE(eventually(seconds(50), [&] {
            const auto heard = recorder.heard(side);
            return std::search(heard.begin(), heard.end(), turn.begin(), turn.end()) != heard.end();
        })) << side;
    }
    program->end(seconds(20));
    EXPECT_THAT(logged(), HasSubstr("playing on system"));
}

TEST_F(PlayerOverJack, RefusesARateThatTheServerDoesNotHave) {
    writeSound(home / "noise.wav", stereoNoise(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1000));
    const Outcome refused = home.run({MIRELON_HOST_PROGRAM, "edit", (home / "noise.wav").string(),
                                      "--play", "--device", "system"},
                                     seconds(60));
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.output, HasSubstr("system: does not play 44100 Hz (it has 48000)"));
}

TEST_F(PlayerOverJack, LiveInputGoesThroughThePlugIn) {
    const auto program = edit({"--input", "--device", "system"});
    JackRecorder recorder(*jack);
    recorder.playConstantly(0.25F);
    ASSERT_TRUE(eventually(seconds(60), [&] { return recorder.recordFrom("mirelon-host"); }))
        << logged();
    ASSERT_TRUE(recorder.playTo("mirelon-host"));
    EXPECT_TRUE(eventually(seconds(30), [&] {
        return std::ranges::find(recorder.heard(0), 0.25F) != recorder.heard(0).end() &&
               std::ranges::find(recorder.heard(1), 0.25F) != recorder.heard(1).end();
    }));
    program->end(seconds(20));
}

} // namespace
} // namespace mirelon::test

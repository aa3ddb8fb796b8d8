#include "tools/playersession.h"

#include "hosting/hosting.h"

#include <gmock/gmock.h>

namespace mirelon::tools {
namespace {

using ::testing::HasSubstr;

constexpr int rate = 8000;

Material tone(int seconds) {
    Material material{rate, {}};
    for (auto& channel : material.channels)
        for (int i = 0; i < rate * seconds; ++i)
            channel.push_back(i % 8 < 4 ? 0.1F : -0.1F);
    return material;
}

class ASession : public ::testing::Test {
  protected:
    const hosting::Module module{MIRELON_TEST_PLUGINS "gain.so"};
    hosting::RecordingHost host;
    hosting::Effect effect{module, host};
    Player player{effect, tone(125)};
    PlayerSession session{player};
};

TEST_F(ASession, SaysWhereItIsAndWhatIsHeard) {
    EXPECT_EQ(session.status(), "playing 0:00 of 2:05, loop, processed");
    player.seek(61 * rate);
    session.act(PlayerAction::playOrStop);
    session.act(PlayerAction::loop);
    EXPECT_EQ(session.status(), "stopped 1:01 of 2:05, processed");
}

TEST_F(ASession, GoesBackAndForwardByFiveSeconds) {
    session.act(PlayerAction::forward);
    EXPECT_EQ(player.position(), 5 * rate);
    session.act(PlayerAction::forward);
    session.act(PlayerAction::back);
    EXPECT_EQ(player.position(), 5 * rate);
    session.act(PlayerAction::toBegin);
    EXPECT_EQ(player.position(), 0);
}

TEST_F(ASession, TheFirstBypassComparesAtEqualLoudness) {
    session.act(PlayerAction::bypass);
    session.serve();
    EXPECT_THAT(session.status(), HasSubstr("original 0.0 dB"));
    session.act(PlayerAction::equalLoudness);
    session.act(PlayerAction::bypass);
    EXPECT_THAT(session.status(), ::testing::EndsWith("processed"));
    session.act(PlayerAction::bypass);
    EXPECT_THAT(session.status(), ::testing::EndsWith("original"));
}

TEST_F(ASession, TurnsTheOriginalDownToALesserOutput) {
    effect.setProgram(1); // half
    std::vector<float> heard(2 * rate);
    player.fill(heard, {});
    session.act(PlayerAction::bypass);
    session.serve();
    EXPECT_THAT(session.status(), HasSubstr("original -6.0 dB"));
}

TEST_F(ASession, EndsWhenItIsTold) {
    EXPECT_FALSE(session.hasEnded());
    session.act(PlayerAction::quit);
    EXPECT_TRUE(session.hasEnded());
}

} // namespace
} // namespace mirelon::tools

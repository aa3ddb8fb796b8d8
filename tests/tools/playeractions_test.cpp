#include "tools/playeractions.h"

#include <X11/keysym.h>
#include <gmock/gmock.h>

namespace mirelon::tools {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum PlayerAction;

TEST(PlayerActions, AWindowsKeysMeanWhatATerminalsDo) {
    EXPECT_EQ(actionOfKeysym(XK_space), playOrStop);
    EXPECT_EQ(actionOfKeysym(XK_Left), back);
    EXPECT_EQ(actionOfKeysym(XK_Home), toBegin);
    EXPECT_EQ(actionOfKeysym(XK_q), quit);
    EXPECT_THAT(actionsOfText(" \x1b[D\x1b[Hq"), ElementsAre(playOrStop, back, toBegin, quit));
}

TEST(PlayerActions, ATerminalInApplicationModeIsUnderstood) {
    EXPECT_THAT(actionsOfText("\x1bOD\x1bOC\x1bOH\x1b[1~"),
                ElementsAre(back, forward, toBegin, toBegin));
}

TEST(PlayerActions, OtherKeysMeanNothing) {
    EXPECT_EQ(actionOfKeysym(XK_F1), std::nullopt);
    EXPECT_EQ(actionOfKeysym(XK_x), std::nullopt);
    // Page down and Control-left have letters of others in them.
    EXPECT_THAT(actionsOfText("x\n\x1b[6~\x1b[1;5Q\x1b"), IsEmpty());
    EXPECT_THAT(actionsOfText("\x1b[6"), IsEmpty());
}

} // namespace
} // namespace mirelon::tools

// The window of the CLAP plug-in in the shape of an effect.
#include "tests/formats/effectwindow.h"

namespace mirelon::test {

std::string EffectWindow::file() {
    return MIRELON_CLAP_FILE;
}
INSTANTIATE_TEST_SUITE_P(Clap, EffectWindow, testing::Values("clap"));

namespace {

class ClapEffectWindow : public EffectWindow {};
INSTANTIATE_TEST_SUITE_P(Clap, ClapEffectWindow, testing::Values("clap"));

TEST_P(ClapEffectWindow, TellsThatAnotherPresetIsShown) {
    effect.dispatch(effEditOpen, 0, 0, parent->asParent());
    run();
    press(rockerRight.x, rockerRight.y);
    parent->release();
    EXPECT_TRUE(runUntil([&] { return host.count(audioMasterUpdateDisplay) > 0; }));
    EXPECT_TRUE(runUntil([&] { return effect.programName() == "extended width"; }));
    EXPECT_EQ(host.count(audioMasterAutomate), 0U);
}

} // namespace
} // namespace mirelon::test

// The window of the CLAP plug-in in the shape of an effect.
#include "hosting/clapeffect.h"
#include "hosting/effect.h"
#include "tests/editor/positions.h"
#include "tests/formats/clap/clapfile.h"
#include "tests/support/xwindow.h"

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

class ClapEffectWindow : public testing::Test {
  protected:
    ClapEffectWindow() {
        VirtualDisplay::start();
        parent = std::make_unique<XWindow>(editorWidth, editorHeight);
    }

    void run(std::chrono::milliseconds time = 60ms) {
        const auto end = std::chrono::steady_clock::now() + time;
        do {
            effect.dispatch(effEditIdle);
            std::this_thread::sleep_for(4ms);
        } while (std::chrono::steady_clock::now() < end);
    }
    bool runUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + 20s;
        while (!condition() && std::chrono::steady_clock::now() < end)
            run(4ms);
        return condition();
    }
    void press(int x, int y) {
        parent->moveTo(x, y);
        run();
        parent->press();
        run();
    }

    EmptyPreferences preferences;
    std::unique_ptr<XWindow> parent;
    hosting::ClapModule module{MIRELON_CLAP_FILE};
    hosting::RecordingHost host;
    hosting::Effect effect{module, host};
};

TEST_F(ClapEffectWindow, OpensAndCloses) {
    EXPECT_EQ(effect.dispatch(effEditOpen, 0, 0, parent->asParent()), 1);
    EXPECT_EQ(parent->children().size(), 1U);
    effect.dispatch(effEditClose);
    EXPECT_TRUE(parent->becomesEmpty());
}

TEST_F(ClapEffectWindow, TellsADragAsOneGesture) {
    effect.dispatch(effEditOpen, 0, 0, parent->asParent());
    run();
    press(handlePosition(0.5), 94);
    parent->moveTo(handlePosition(0.75), 94);
    run();
    parent->release();
    ASSERT_TRUE(runUntil([&] { return host.count(audioMasterEndEdit) == 1; }));
    EXPECT_EQ(host.count(audioMasterBeginEdit), 1U);
    const auto values = host.calls(audioMasterAutomate);
    ASSERT_FALSE(values.empty());
    EXPECT_EQ(values.back().index, kParamGain);
    EXPECT_EQ(values.back().opt, effect.parameter(kParamGain));
    EXPECT_NEAR(values.back().opt, 0.75F, 0.02F);
}

TEST_F(ClapEffectWindow, TellsThatAnotherPresetIsShown) {
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

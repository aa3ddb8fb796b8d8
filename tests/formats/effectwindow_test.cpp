// What the window of an effect does in every format; which they are stands in their rooms.
#include "tests/formats/effectwindow.h"

#include "processor/core/parameters.h"

namespace mirelon::test {

TEST_P(EffectWindow, OpensAndCloses) {
    EXPECT_EQ(effect.dispatch(effEditOpen, 0, 0, parent->asParent()), 1);
    EXPECT_EQ(parent->children().size(), 1U);
    effect.dispatch(effEditClose);
    EXPECT_TRUE(parent->becomesEmpty());
}

TEST_P(EffectWindow, TellsItsSizeAndStays) {
    effect.dispatch(effEditOpen, 0, 0, parent->asParent());
    run();
    ERect* rect = nullptr;
    ASSERT_EQ(effect.dispatch(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect->right - rect->left, editorWidth);
    EXPECT_EQ(rect->bottom - rect->top, editorHeight);
    run();
    EXPECT_EQ(parent->children().size(), 1U);
}

TEST_P(EffectWindow, DoesNotOpenWithoutAParent) {
    EXPECT_EQ(effect.dispatch(effEditOpen), 0);
    EXPECT_EQ(effect.dispatch(effEditOpen, 0, 0, parent->asParent()), 1);
}

TEST_P(EffectWindow, TellsADragAsOneGesture) {
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

} // namespace mirelon::test

// The button classes through their handlers.
#include "editor/cpskickbutton.h"
#include "editor/cpsonoffbutton.h"
#include "editor/cpsrockerswitch.h"
#include "editor/csaveloadbutton.h"
#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>
#include <vector>

using namespace VSTGUI;

namespace {

// What a listener was told, and the value that stood then.
struct Listener : IControlListener {
    void valueChanged(CControl* control) override { values.push_back(control->getValue()); }
    std::vector<float> values;
};
using Values = std::vector<float>;

const CRect area(10, 20, 40, 34);

template <typename Button>
struct Pressed {
    Pressed() { mirelon::setUpToolkit(); }
    Listener listener;
    SharedPointer<Button> button;
    CPoint where{12, 25};

    CMouseEventResult down(int32_t buttons) { return button->onMouseDown(where, buttons); }
    CMouseEventResult up(int32_t buttons = kLButton) { return button->onMouseUp(where, buttons); }
};

struct KickButton : Pressed<CPSKickButton> {
    explicit KickButton(bool doubleClickOnly) {
        button = makeOwned<CPSKickButton>(area, &listener, 7, 14, nullptr, CPoint(0, 0),
                                          doubleClickOnly);
    }
};

TEST(KickButton, SendsItsPressAndReturnsSilently) {
    KickButton kick(false);
    EXPECT_EQ(kick.down(kLButton), kMouseEventHandled);
    EXPECT_EQ(kick.button->getValue(), 1.0F);
    EXPECT_EQ(kick.up(), kMouseEventHandled);
    EXPECT_EQ(kick.button->getValue(), 0.0F);
    EXPECT_EQ(kick.listener.values, Values{1.0F});
}

TEST(KickButton, SendsOneEvenWithTheControlKeyHeld) {
    KickButton kick(false);
    kick.down(kLButton | kControl);
    EXPECT_EQ(kick.listener.values, Values{1.0F});
}

TEST(KickButton, IgnoresTheOtherButtons) {
    KickButton kick(false);
    for (const int32_t buttons : {int32_t{kRButton}, int32_t{kMButton}, 0})
        EXPECT_EQ(kick.down(buttons), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_TRUE(kick.listener.values.empty());
}

TEST(KickButton, ForDoubleClicksIgnoresSingleOnes) {
    KickButton kick(true);
    EXPECT_EQ(kick.down(kLButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(kick.down(kRButton | kDoubleClick), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_TRUE(kick.listener.values.empty());
    EXPECT_EQ(kick.down(kLButton | kDoubleClick), kMouseEventHandled);
    EXPECT_EQ(kick.listener.values, Values{1.0F});
}

TEST(KickButton, ForDoubleClicksSendsAHalfWithTheControlKey) {
    KickButton kick(true);
    EXPECT_EQ(kick.down(kLButton | kDoubleClick | kControl), kMouseEventHandled);
    EXPECT_EQ(kick.listener.values, Values{0.5F});
}

TEST(KickButton, WorksWithoutAListener) {
    const auto button =
        makeOwned<CPSKickButton>(area, nullptr, 7, 14, nullptr, CPoint(0, 0), false);
    CPoint where(12, 25);
    EXPECT_EQ(button->onMouseDown(where, kLButton), kMouseEventHandled);
}

TEST(KickButton, TakesNoKeys) {
    KickButton kick(false);
    KeyboardEvent event;
    event.type = EventType::KeyDown;
    event.virt = VirtualKey::Return;
    kick.button->onKeyboardEvent(event);
    EXPECT_FALSE(event.consumed);
    EXPECT_TRUE(kick.listener.values.empty());
}

TEST(KickButton, TakesHoverAsHandled) {
    KickButton kick(false);
    EXPECT_EQ(kick.button->onMouseEntered(kick.where, 0), kMouseEventHandled);
    EXPECT_EQ(kick.button->onMouseExited(kick.where, 0), kMouseEventHandled);
}

struct OnOffButton : Pressed<CPSOnOffButton> {
    OnOffButton() { button = makeOwned<CPSOnOffButton>(area, &listener, 7, nullptr); }
};

TEST(OnOffButton, TogglesOnThePress) {
    OnOffButton onOff;
    EXPECT_EQ(onOff.down(kLButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(onOff.down(kLButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(onOff.listener.values, (Values{1.0F, 0.0F}));
    onOff.up();
    EXPECT_EQ(onOff.listener.values.size(), 2U);
}

TEST(OnOffButton, LeavesTheOtherButtonsToOthers) {
    OnOffButton onOff;
    EXPECT_EQ(onOff.down(kRButton), kMouseEventNotHandled);
    EXPECT_TRUE(onOff.listener.values.empty());
}

struct Rocker : Pressed<CPSRockerSwitch> {
    Rocker() {
        button = makeOwned<CPSRockerSwitch>(area, &listener, 7, 14, nullptr, CPoint(0, 0),
                                            CRockerSwitch::kHorizontal);
    }
};

TEST(Rocker, SendsTheSideOfThePressAndReturnsSilently) {
    Rocker rocker;
    EXPECT_EQ(rocker.down(kLButton), kMouseEventHandled);
    EXPECT_EQ(rocker.button->getValue(), -1.0F);
    EXPECT_EQ(rocker.up(), kMouseEventHandled);
    EXPECT_EQ(rocker.button->getValue(), 0.0F);
    rocker.where.x = 39;
    rocker.down(kLButton);
    EXPECT_EQ(rocker.listener.values, (Values{-1.0F, 1.0F}));
}

TEST(Rocker, ItsMiddleBelongsToTheRight) {
    Rocker rocker;
    rocker.where.x = 25;
    rocker.down(kLButton);
    rocker.where.x = 24;
    rocker.down(kLButton);
    EXPECT_EQ(rocker.listener.values, (Values{1.0F, -1.0F}));
}

TEST(Rocker, LeavesTheOtherButtonsToOthers) {
    Rocker rocker;
    EXPECT_EQ(rocker.down(kRButton), kMouseEventNotHandled);
    EXPECT_TRUE(rocker.listener.values.empty());
}

struct SaveLoad : Pressed<CSaveLoadButton> {
    SaveLoad() {
        button = makeOwned<CSaveLoadButton>(area, &listener, 7, 14, nullptr, CPoint(0, 0));
    }
};

TEST(SaveLoad, TellsALeftClickFromARightOneAndIsBackAtZero) {
    SaveLoad button;
    EXPECT_EQ(button.down(kLButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(button.button->getValue(), 0.0F);
    EXPECT_EQ(button.down(kRButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(button.button->getValue(), 0.0F);
    EXPECT_EQ(button.listener.values, (Values{1.0F, 0.5F}));
}

TEST(SaveLoad, ARightClickWithAnythingElseIsALeftOne) {
    SaveLoad button;
    for (const int32_t more : {int32_t{kShift}, int32_t{kControl}, int32_t{kAlt},
                               int32_t{kDoubleClick}, int32_t{kLButton}, int32_t{kMButton}})
        button.down(kRButton | more);
    EXPECT_EQ(button.listener.values, Values(6, 1.0F));
}

TEST(SaveLoad, LeavesTheMiddleButtonToOthers) {
    SaveLoad button;
    EXPECT_EQ(button.down(kMButton), kMouseEventNotHandled);
    EXPECT_TRUE(button.listener.values.empty());
}

TEST(SaveLoad, WithoutAListenerIgnoresPresses) {
    const auto button = makeOwned<CSaveLoadButton>(area, nullptr, 7, 14, nullptr, CPoint(0, 0));
    CPoint where(12, 25);
    EXPECT_EQ(button->onMouseDown(where, kLButton), kMouseEventNotHandled);
}

TEST(SaveLoad, TakesNoKeys) {
    SaveLoad button;
    VstKeyCode key{};
    EXPECT_EQ(button.button->onKeyDown(key), -1);
    EXPECT_EQ(button.button->onKeyUp(key), -1);
    KeyboardEvent event;
    event.type = EventType::KeyDown;
    event.virt = VirtualKey::Return;
    button.button->onKeyboardEvent(event);
    EXPECT_FALSE(event.consumed);
    EXPECT_TRUE(button.listener.values.empty());
}

} // namespace

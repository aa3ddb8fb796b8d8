// When each button class asks to be drawn anew.
#include "editor/cpskickbutton.h"
#include "editor/cpsonoffbutton.h"
#include "editor/cpsrockerswitch.h"
#include "editor/csaveloadbutton.h"
#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>

using namespace VSTGUI;

namespace {

const CRect buttonArea(0, 0, 30, 14);

// Counts how often it has asked.
template <typename Button>
struct Watched : Button {
    using Button::Button;
    void invalidRect(const CRect& /*rect*/) override { ++redraws; }
    int redraws = 0;
};

// Of one thing that happens to the button.
template <typename Button, typename Happening>
int redrawsBy(Watched<Button>& button, Happening happening) {
    const int before = button.redraws;
    CPoint where(20, 5);
    happening(where);
    return button.redraws - before;
}

template <typename Button>
void expectRedraws(Watched<Button>& button, bool byRelease) {
    EXPECT_EQ(redrawsBy(button, [&](CPoint& at) { button.onMouseEntered(at, 0); }), 1) << "entry";
    EXPECT_EQ(redrawsBy(button, [&](CPoint& at) { button.onMouseDown(at, kLButton); }), 1)
        << "press";
    if (byRelease) {
        EXPECT_EQ(redrawsBy(button, [&](CPoint& at) { button.onMouseUp(at, kLButton); }), 1)
            << "release";
    }
    EXPECT_EQ(redrawsBy(button, [&](CPoint& at) { button.onMouseExited(at, 0); }), 1) << "exit";
}

struct NoListener : IControlListener {
    void valueChanged(CControl* /*control*/) override {}
};

class ButtonRedraws : public testing::Test {
  protected:
    ButtonRedraws() { mirelon::setUpToolkit(); }
    NoListener listener;
};

TEST_F(ButtonRedraws, OfAKickButtonAreByHoverPressAndRelease) {
    const auto button = makeOwned<Watched<CPSKickButton>>(buttonArea, &listener, 7, 14, nullptr,
                                                          CPoint(0, 0), false);
    expectRedraws(*button, true);
}

TEST_F(ButtonRedraws, OfAnOnOffButtonAreByHoverAndPress) {
    const auto button = makeOwned<Watched<CPSOnOffButton>>(buttonArea, &listener, 7, nullptr);
    expectRedraws(*button, false);
}

TEST_F(ButtonRedraws, OfARockerAreByHoverPressAndRelease) {
    const auto button = makeOwned<Watched<CPSRockerSwitch>>(
        buttonArea, &listener, 7, 14, nullptr, CPoint(0, 0), CRockerSwitch::kHorizontal);
    expectRedraws(*button, true);
}

TEST_F(ButtonRedraws, OfASaveLoadButtonAreByHoverAndPress) {
    const auto button =
        makeOwned<Watched<CSaveLoadButton>>(buttonArea, &listener, 7, 14, nullptr, CPoint(0, 0));
    expectRedraws(*button, false);
}

// The pointer may go from one side to the other without leaving it.
TEST_F(ButtonRedraws, OfARockerAreByAPointerThatMovesButNotWhileItIsPressed) {
    const auto button = makeOwned<Watched<CPSRockerSwitch>>(
        buttonArea, &listener, 7, 14, nullptr, CPoint(0, 0), CRockerSwitch::kHorizontal);
    EXPECT_EQ(
        redrawsBy(*button,
                  [&](CPoint& at) { EXPECT_EQ(button->onMouseMoved(at, 0), kMouseEventHandled); }),
        1);
    EXPECT_EQ(redrawsBy(*button,
                        [&](CPoint& at) {
                            EXPECT_EQ(button->onMouseMoved(at, kLButton), kMouseEventHandled);
                        }),
              0);
}

} // namespace

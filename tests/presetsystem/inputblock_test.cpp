#include "presetsystem/inputblock.h"

#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>

#include <optional>

namespace mirelon::test {
namespace {

using namespace VSTGUI;

// Counts what reaches it, over the whole of its frame.
class CountingView final : public CView {
  public:
    using CView::CView;
    void onMouseDownEvent(MouseDownEvent& event) override {
        ++presses;
        event.consumed = true;
    }
    void onMouseMoveEvent(MouseMoveEvent& event) override {
        ++motions;
        event.consumed = true;
    }
    void onMouseWheelEvent(MouseWheelEvent& event) override {
        ++wheelTurns;
        event.consumed = true;
    }
    void onKeyboardEvent(KeyboardEvent& event) override {
        ++keys;
        event.consumed = true;
    }
    void onMouseEnterEvent(MouseEnterEvent& /*event*/) override { isHovered = true; }
    void onMouseExitEvent(MouseExitEvent& /*event*/) override { isHovered = false; }
    void looseFocus() override { hasFocus = false; }
    void takeFocus() override { hasFocus = true; }

    int presses = 0;
    int motions = 0;
    int wheelTurns = 0;
    int keys = 0;
    bool isHovered = false;
    bool hasFocus = false;
};

class InputBlocks : public testing::Test {
  protected:
    InputBlocks() {
        setUpToolkit();
        frame = new CFrame(CRect(0, 0, 100, 100), nullptr);
        // As if it were open and had the keys.
        frame->attached(frame);
        frame->onActivate(true);
        view = new CountingView(CRect(0, 0, 100, 100));
        view->setWantsFocus(true);
        frame->addView(view);
        frame->setFocusView(view);
    }
    ~InputBlocks() override { frame->forget(); }

    void send(MousePositionEvent& event) {
        event.mousePosition(50, 50);
        frame->dispatchEvent(event);
    }
    void move() {
        MouseMoveEvent motion;
        send(motion);
    }
    // One of each kind of input.
    void sendAll() {
        move();
        MouseDownEvent press;
        press.buttonState.add(MouseButton::Left);
        send(press);
        MouseUpEvent release;
        send(release);
        MouseWheelEvent turn;
        turn.deltaY = 1;
        send(turn);
        for (const VirtualKey key : {VirtualKey::Tab, VirtualKey::Return, VirtualKey::None}) {
            KeyboardEvent event;
            event.virt = key;
            frame->dispatchEvent(event);
        }
    }

    CFrame* frame;
    CountingView* view; // the frame's
};

TEST_F(InputBlocks, KeepEverythingFromTheViews) {
    const InputBlock block(*frame);
    sendAll();
    EXPECT_EQ(view->presses, 0);
    EXPECT_EQ(view->motions, 0);
    EXPECT_EQ(view->wheelTurns, 0);
    EXPECT_EQ(view->keys, 0);
    EXPECT_FALSE(view->isHovered);
    EXPECT_FALSE(view->hasFocus);
}

TEST_F(InputBlocks, LeaveNothingBehind) {
    std::optional<InputBlock> block(std::in_place, *frame);
    const auto blocked = frame->getNbViews();
    block.reset();
    EXPECT_EQ(frame->getNbViews(), blocked - 1);
    frame->setFocusView(view);
    sendAll();
    EXPECT_EQ(view->presses, 1);
    EXPECT_GE(view->motions, 1);
    EXPECT_EQ(view->wheelTurns, 1);
    EXPECT_EQ(view->keys, 3);
    EXPECT_TRUE(view->isHovered);
}

TEST_F(InputBlocks, TakeTheFocusAndEndWhatIsHoveredOver) {
    move();
    ASSERT_TRUE(view->isHovered);
    ASSERT_TRUE(view->hasFocus);
    const InputBlock block(*frame);
    EXPECT_FALSE(view->isHovered);
    EXPECT_FALSE(view->hasFocus);
}

TEST_F(InputBlocks, LeaveKeysToTheHost) {
    const InputBlock block(*frame);
    for (const VirtualKey virt : {VirtualKey::Space, VirtualKey::Return, VirtualKey::None}) {
        KeyboardEvent event;
        event.virt = virt;
        frame->dispatchEvent(event);
        EXPECT_FALSE(event.consumed);
    }
}

TEST_F(InputBlocks, StayWhenTheWindowLosesTheKeysAndGetsThemBack) {
    const InputBlock block(*frame);
    frame->onActivate(false);
    frame->onActivate(true);
    sendAll();
    EXPECT_EQ(view->keys, 0);
    EXPECT_FALSE(view->hasFocus);
}

TEST_F(InputBlocks, CoverNothingOfTheWindow) {
    const InputBlock block(*frame);
    EXPECT_EQ(frame->getModalView()->getViewSize(), CRect());
}

} // namespace
} // namespace mirelon::test

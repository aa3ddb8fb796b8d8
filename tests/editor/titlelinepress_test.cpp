// A press on the title's line, without a display.
#include "editor/myframe.h"
#include "editor/titleline.h"
#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>

using namespace VSTGUI;

namespace {

class Editor : public VSTGUIEditorInterface {};

struct Counter : IControlListener {
    void valueChanged(CControl* /*control*/) override { ++presses; }
    int presses = 0;
};

class TitleLinePress : public testing::Test {
  protected:
    TitleLinePress() {
        mirelon::setUpToolkit();
        frame = makeOwned<MyFrame>(CRect(0, 0, 100, 80), 1.0, &editor);
        frame->attached(frame); // as if it were opened
        line = new mirelon::TitleLine(CRect(0, 0, 100, 20), CRect(10, 0, 90, 20), &listener, 7);
        frame->addView(line);
    }
    CMouseEventResult press(int32_t buttons) {
        CPoint where(30, 10);
        return line->onMouseDown(where, buttons);
    }

    Editor editor;
    Counter listener;
    SharedPointer<MyFrame> frame;
    mirelon::TitleLine* line = nullptr; // the frame's
};

TEST_F(TitleLinePress, WithTheRightButtonIsReportedAndDone) {
    EXPECT_EQ(press(kRButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(listener.presses, 1);
}

TEST_F(TitleLinePress, WithAnotherButtonIsLeftToOthers) {
    EXPECT_EQ(press(kLButton), kMouseEventNotHandled);
    EXPECT_EQ(listener.presses, 0);
}

} // namespace

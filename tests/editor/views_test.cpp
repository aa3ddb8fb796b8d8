// The frame's captured view and the about picture through their
// handlers, without a display.
#include "editor/cabout.h"
#include "editor/csplashscreenmyview.h"
#include "editor/myframe.h"
#include "platform/toolkitconnection.h"

#include <gtest/gtest.h>
#include <string>

using namespace VSTGUI;

namespace {

class RecordingView : public CView {
  public:
    RecordingView()
        : CView(CRect(0, 0, 10, 10)) {}
    CMouseEventResult onMouseDown(CPoint& where, const CButtonState& buttons) override {
        return note('d', where, buttons);
    }
    CMouseEventResult onMouseUp(CPoint& where, const CButtonState& buttons) override {
        return note('u', where, buttons);
    }
    CMouseEventResult onMouseMoved(CPoint& where, const CButtonState& buttons) override {
        return note('m', where, buttons);
    }
    void onMouseWheelEvent(MouseWheelEvent& event) override {
        heard += 'w';
        event.consumed = true;
    }

    std::string heard;
    CPoint lastPoint;
    int32_t lastButtons = 0;

  private:
    CMouseEventResult note(char what, const CPoint& where, const CButtonState& buttons) {
        heard += what;
        lastPoint = where;
        lastButtons = buttons();
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
};

class Editor : public VSTGUIEditorInterface {};

// A frame that is on no screen.
class FrameTest : public testing::Test {
  protected:
    FrameTest() {
        mirelon::setUpToolkit();
        frame = makeOwned<MyFrame>(CRect(0, 0, 100, 80), 1.0, &editor);
        frame->attached(frame); // as if it were opened
    }
    Editor editor;
    SharedPointer<MyFrame> frame;
};

TEST_F(FrameTest, HandsEveryMouseEventToTheHeldViewWherePointed) {
    const auto view = makeOwned<RecordingView>();
    frame->makeModal(view);
    EXPECT_EQ(frame->getModal(), view.get());
    CPoint where(90, 70); // outside the view
    EXPECT_EQ(frame->onMouseDown(where, kLButton),
              kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(frame->onMouseMoved(where, kLButton),
              kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(frame->onMouseUp(where, kLButton | kShift),
              kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    MouseWheelEvent wheel;
    frame->onMouseWheelEvent(wheel);
    EXPECT_EQ(view->heard, "dmuw");
    EXPECT_EQ(view->lastPoint, CPoint(90, 70));
    EXPECT_EQ(view->lastButtons, kLButton | kShift);
}

TEST_F(FrameTest, WithoutAHeldViewDispatchesAsTheToolkitDoes) {
    const auto view = makeOwned<RecordingView>();
    frame->makeModal(view);
    frame->closeModal();
    EXPECT_EQ(frame->getModal(), nullptr);
    CPoint where(50, 50);
    frame->onMouseDown(where, kLButton);
    frame->onMouseMoved(where, 0);
    frame->onMouseUp(where, kLButton);
    EXPECT_EQ(view->heard, "");
}

TEST_F(FrameTest, IsAsManyTimesLargerAsItsScaleSays) {
    const auto larger = makeOwned<MyFrame>(CRect(0, 0, 100, 80), 1.5, &editor);
    EXPECT_EQ(larger->getViewSize().getWidth(), 150);
    EXPECT_EQ(larger->getViewSize().getHeight(), 120);
}

class AboutTest : public FrameTest {
  protected:
    AboutTest() {
        about = new CAbout(CRect(0, 60, 100, 80), nullptr, 10, nullptr, CRect(10, 10, 90, 50),
                           CPoint(0, 0), CPoint(0, 8));
        frame->addView(about);
    }
    CSplashScreenMyView* shown() {
        return dynamic_cast<CSplashScreenMyView*>(frame->getModalView());
    }
    CAbout* about; // the frame's
    CPoint where{50, 70};
};

TEST_F(AboutTest, ALeftPressShowsThePictureAsTheModalView) {
    EXPECT_EQ(about->onMouseDown(where, kLButton), kMouseEventHandled);
    EXPECT_EQ(about->getValue(), 1.0F);
    ASSERT_NE(shown(), nullptr);
    EXPECT_EQ(shown()->getViewSize(), CRect(10, 10, 90, 50));
    shown()->end();
}

TEST_F(AboutTest, APressWhileShownOnlyClearsTheValue) {
    about->onMouseDown(where, kLButton);
    EXPECT_EQ(about->onMouseDown(where, kLButton), kMouseEventHandled);
    EXPECT_EQ(about->getValue(), 0.0F);
    shown()->end();
}

TEST_F(AboutTest, OtherButtonsDoNothing) {
    EXPECT_EQ(about->onMouseDown(where, kRButton), kMouseEventNotHandled);
    EXPECT_EQ(about->getValue(), 0.0F);
    about->onMouseDown(where, kLButton);
    EXPECT_EQ(shown()->onMouseDown(where, kRButton), kMouseEventNotHandled);
    EXPECT_EQ(about->getValue(), 1.0F);
    shown()->end();
}

TEST_F(AboutTest, ALeftPressOnThePictureEndsIt) {
    about->onMouseDown(where, kLButton);
    EXPECT_EQ(shown()->onMouseDown(where, kLButton), kMouseEventHandled);
    EXPECT_EQ(about->getValue(), 0.0F);
    EXPECT_EQ(frame->getModalView(), nullptr);
    about->endSplash(); // nothing is shown any more
    about->onMouseDown(where, kLButton);
    EXPECT_NE(shown(), nullptr);
    about->endSplash();
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(AboutTest, ThePicturesViewKnowsItsTypesAndCanBeCopied) {
    about->onMouseDown(where, kLButton);
    EXPECT_TRUE(shown()->isTypeOf("CSplashScreenMyView"));
    EXPECT_TRUE(shown()->isTypeOf("CControl"));
    EXPECT_FALSE(shown()->isTypeOf("CAbout"));
    const auto copy = owned(shown()->newCopy());
    EXPECT_NE(dynamic_cast<CSplashScreenMyView*>(copy.get()), nullptr);
    shown()->end();
}

} // namespace

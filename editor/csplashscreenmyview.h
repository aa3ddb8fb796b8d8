// The about picture on show, with its text.
#pragma once

#include "platform/toolkit.h"

// Modal in its frame: a press anywhere in the window comes here and takes the
// picture away, and so does the escape key. The frame and the view itself share its life; nobody
// else keeps it.
class CSplashScreenMyView : public VSTGUI::CControl {
  public:
    // `textOrigin` is where the first line of text starts, from the picture's
    // top left corner. The owner outlives the view.
    CSplashScreenMyView(const VSTGUI::CRect& rect, VSTGUI::CSplashScreen* owner,
                        const VSTGUI::CPoint& textOrigin);

    void draw(VSTGUI::CDrawContext* context) override;
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;
    // Whether `className` names this class or one that it derives from.
    virtual bool isTypeOf(const char* className) const;
    VSTGUI::CBaseObject* newCopy() const override;

    // Takes the picture off its frame and releases the view. Not while the frame
    // is handing it an event.
    void end();

  private:
    void endWhenHandled();

    VSTGUI::CSplashScreen* owner; // not owned
    VSTGUI::CPoint textOrigin;
};

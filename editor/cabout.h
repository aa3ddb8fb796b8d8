// Where a click tells about the plug-in.
#pragma once

#include "platform/toolkit.h"

class CSplashScreenMyView;

// Its value is 1 while the picture is shown and 0 otherwise.
class CAbout : public VSTGUI::CSplashScreen {
  public:
    // The picture is shown in `toDisplay`; its text starts `textOrigin` from
    // the corner of that.
    CAbout(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, int32_t tag,
           VSTGUI::CBitmap* picture, const VSTGUI::CRect& toDisplay, const VSTGUI::CPoint& offset,
           const VSTGUI::CPoint& textOrigin);

    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    bool isShown() const { return getValue() != 0.0F; }
    // Takes the picture away, if it is shown.
    void endSplash();

  private:
    VSTGUI::CPoint textOrigin;
};

// A button that stays down until the next press, and lights up under the pointer
// while it is not.
#pragma once

#include "platform/toolkit.h"

// Toggles on the press. Three pictures of equal height from the top: off, off
// and hovered, on.
class CPSOnOffButton : public VSTGUI::COnOffButton {
  public:
    CPSOnOffButton(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, int32_t tag,
                   VSTGUI::CBitmap* pictures);

    void draw(VSTGUI::CDrawContext* context) override;
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseEntered(VSTGUI::CPoint& where,
                                             const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseExited(VSTGUI::CPoint& where,
                                            const VSTGUI::CButtonState& buttons) override;

  private:
    bool hovered = false;
};

// The two-way button of the preset panel: one half for each direction.
#pragma once

#include "platform/toolkit.h"

// Reports -1 for a press on its left half and +1 for one on its right, never
// the release. Pictures from the top: at rest, left hovered, right hovered,
// left pressed, right pressed.
class CPSRockerSwitch : public VSTGUI::CRockerSwitch {
  public:
    CPSRockerSwitch(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, int32_t tag,
                    int32_t heightOfOneImage, VSTGUI::CBitmap* pictures,
                    const VSTGUI::CPoint& offset, int32_t style);

    void draw(VSTGUI::CDrawContext* context) override;
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseUp(VSTGUI::CPoint& where,
                                        const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseMoved(VSTGUI::CPoint& where,
                                           const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseEntered(VSTGUI::CPoint& where,
                                             const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseExited(VSTGUI::CPoint& where,
                                            const VSTGUI::CButtonState& buttons) override;
    // A wheel that turns on its way over the rocker changes no preset.
    void onMouseWheelEvent(VSTGUI::MouseWheelEvent& /*event*/) override {}

  private:
    // -1 left half, +1 right half; the middle line belongs to the right.
    int sideOf(const VSTGUI::CPoint& where) const;

    int hoverSide = 0;
};

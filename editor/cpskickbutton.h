// The push button of the preset panel. It can be told to want a double click.
#pragma once

#include "platform/toolkit.h"

// Reports the press to its listener, never the release, and takes no keys.
// Pictures from the top: at rest, hovered, pressed.
class CPSKickButton : public VSTGUI::CKickButton {
  public:
    // `heightOfOneImage` in pixels; `offset` is where the first picture starts
    // in `pictures`.
    CPSKickButton(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, int32_t tag,
                  int32_t heightOfOneImage, VSTGUI::CBitmap* pictures, const VSTGUI::CPoint& offset,
                  bool doubleClickOnly);

    void draw(VSTGUI::CDrawContext* context) override;
    // Sends 1; a button for double clicks sends 0.5 with the control key down.
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseUp(VSTGUI::CPoint& where,
                                        const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseEntered(VSTGUI::CPoint& where,
                                             const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseExited(VSTGUI::CPoint& where,
                                            const VSTGUI::CButtonState& buttons) override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;

  private:
    bool hovered = false;
    bool pressed = false;
    bool doubleClickOnly;
};

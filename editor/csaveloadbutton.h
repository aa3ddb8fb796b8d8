// The button for files of the preset panel. The right mouse button asks for the
// same action in its other form.
#pragma once

#include "platform/toolkit.h"

// Reports on the press and is back at 0 when the listener returns. Pictures
// from the top: at rest, hovered, and while the listener is at work.
class CSaveLoadButton : public VSTGUI::CKickButton {
  public:
    CSaveLoadButton(VSTGUI::CRect rect, VSTGUI::IControlListener* listener, int32_t tag,
                    int32_t heightOfOneImage, VSTGUI::CBitmap* pictures,
                    const VSTGUI::CPoint& offset);

    void draw(VSTGUI::CDrawContext* context) override;
    // Sends 0.5 for the right button alone, 1 for everything else that holds a
    // left or right button. The listener may run a dialog and may close the
    // window meanwhile.
    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseEntered(VSTGUI::CPoint& where,
                                             const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseExited(VSTGUI::CPoint& where,
                                            const VSTGUI::CButtonState& buttons) override;
    // Keys are not taken.
    int32_t onKeyDown(VstKeyCode& keyCode) override;
    int32_t onKeyUp(VstKeyCode& keyCode) override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;

  private:
    bool hovered = false;
};

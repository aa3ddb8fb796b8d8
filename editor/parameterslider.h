// A parameter's slider.
#pragma once

#include "editor/ringed.h"
#include "platform/toolkit.h"

#include <functional>
#include <optional>
#include <utility>

// The toolkit's slider, whose handle stays under the pointer that takes hold of
// it; a press beside the handle fetches it. It moves with the vertical wheel as
// well (most mice have no other), and to the right when the horizontal wheel
// turns right. Wheel and keys step by a hundredth of the range, with shift by a
// thousandth; the return key is for typing a value.
class ParameterSlider : public VSTGUI::CHorizontalSlider, public Ringed {
  public:
    ParameterSlider(const VSTGUI::CRect& rect, VSTGUI::IControlListener* listener, int32_t tag,
                    int32_t firstPosition, int32_t lastPosition, VSTGUI::CBitmap* handle,
                    VSTGUI::CBitmap* background, const VSTGUI::CPoint& offset, int32_t style);

    VSTGUI::CMouseEventResult onMouseDown(VSTGUI::CPoint& where,
                                          const VSTGUI::CButtonState& buttons) override;
    VSTGUI::CMouseEventResult onMouseMoved(VSTGUI::CPoint& where,
                                           const VSTGUI::CButtonState& buttons) override;
    // Ends where the release was, whether or not word of the way there came.
    VSTGUI::CMouseEventResult onMouseUp(VSTGUI::CPoint& where,
                                        const VSTGUI::CButtonState& buttons) override;
    void onMouseWheelEvent(VSTGUI::MouseWheelEvent& event) override;
    void onKeyboardEvent(VSTGUI::KeyboardEvent& event) override;

    // What the return key does while the slider has the keys; else nothing.
    void setTyping(std::function<void()> begin) { beginTyping = std::move(begin); }

    // Where the handle is seen: its picture without the clear rows.
    VSTGUI::CRect visibleHandle() const;

    VSTGUI::CRect ringedArea() const override;
    VSTGUI::CRect inFrontOfRing() const override { return visibleHandle(); }

  private:
    // Where the handle would have to be pressed to stand where it does.
    VSTGUI::CCoord gripOfHandle(const VSTGUI::CRect& handle) const;

    std::function<void()> beginTyping;
    VSTGUI::CCoord gripOffset = 0;              // from the pointer, while it is held
    std::optional<VSTGUI::CCoord> lastPosition; // of the pointer, while it is held
};

// The frame that lights up round a control under the pointer, in the colour of the
// panel's hovered buttons.
#pragma once

#include "platform/toolkit.h"

#include <optional>

// Of sliders (whose handle it surrounds), switches, the menu button and the about
// strip; the panel's other buttons have pictures of their own for it.
class HoverFrame final : private VSTGUI::IMouseObserver {
  public:
    // `frame` outlives it.
    explicit HoverFrame(VSTGUI::CFrame& frame);
    ~HoverFrame() override;
    HoverFrame(const HoverFrame&) = delete;
    HoverFrame& operator=(const HoverFrame&) = delete;

    // On top of the views; `updateRect` in pixels of the screen.
    void draw(VSTGUI::CDrawContext& context, const VSTGUI::CRect& updateRect) const;

  private:
    void onMouseEntered(VSTGUI::CView* view, VSTGUI::CFrame* entered) override;
    void onMouseExited(VSTGUI::CView* view, VSTGUI::CFrame* exited) override;
    void onMouseEvent(VSTGUI::MouseEvent& /*event*/, VSTGUI::CFrame* /*sender*/) override {}

    VSTGUI::CFrame& frame;
    VSTGUI::CView* hovered = nullptr; // the frame tells before it goes
};

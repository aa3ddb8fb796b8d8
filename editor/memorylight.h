// The letter of a compare memory, which lights up.
#pragma once

#include "platform/toolkit.h"

namespace mirelon {

// Draws the lit letter, or nothing: the background has the other. Takes no clicks.
class MemoryLight final : public VSTGUI::CView {
  public:
    // `offset` is where the letter starts in `pictures`.
    MemoryLight(const VSTGUI::CRect& rect, VSTGUI::CBitmap* pictures, const VSTGUI::CPoint& offset);

    void light(bool on);
    void draw(VSTGUI::CDrawContext* context) override;

  private:
    VSTGUI::SharedPointer<VSTGUI::CBitmap> pictures;
    VSTGUI::CPoint offset;
    bool lit = false;
};

} // namespace mirelon

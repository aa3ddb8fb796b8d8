// A meter: a bar of light, a whole number of segments long.
#pragma once

#include "platform/toolkit.h"

// Draws the lit picture up to its level and the unlit one beyond it, in whole
// segments. The level is the value, falling by at most the decrease step a
// drawing.
class CVuMeter1 : public VSTGUI::CVuMeter {
  public:
    CVuMeter1(const VSTGUI::CRect& rect, VSTGUI::CBitmap* lit, VSTGUI::CBitmap* unlit,
              int32_t segments, int32_t style);

    void draw(VSTGUI::CDrawContext* context) override;
};

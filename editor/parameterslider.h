// A parameter's slider.
#pragma once

#include "platform/toolkit.h"

// The toolkit's slider, which moves with the vertical wheel as well (most mice
// have no other), and to the right when the horizontal wheel turns right.
class ParameterSlider : public VSTGUI::CHorizontalSlider {
  public:
    using CHorizontalSlider::CHorizontalSlider;

    void onMouseWheelEvent(VSTGUI::MouseWheelEvent& event) override;
};

// A parameter's slider.
#pragma once

#include "platform/toolkit.h"

// The toolkit's slider, which moves with the vertical wheel as well: it listens
// to the horizontal one only, which most mice do not have.
class ParameterSlider : public VSTGUI::CHorizontalSlider {
  public:
    using CHorizontalSlider::CHorizontalSlider;

    void onMouseWheelEvent(VSTGUI::MouseWheelEvent& event) override;
};

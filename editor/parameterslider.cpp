#include "editor/parameterslider.h"

using namespace VSTGUI;

void ParameterSlider::onMouseWheelEvent(MouseWheelEvent& event) {
    // Up and right both raise the value; the toolkit's horizontal distances
    // grow to the left.
    if (event.deltaX == 0.0)
        event.deltaX = -event.deltaY;
    CHorizontalSlider::onMouseWheelEvent(event);
}

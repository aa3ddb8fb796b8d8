#include "editor/parameterslider.h"

using namespace VSTGUI;

void ParameterSlider::onMouseWheelEvent(MouseWheelEvent& event) {
    // Up and right raise the value. The toolkit's slider looks at the horizontal
    // distance alone and lowers the value when that is positive, which on this
    // platform means to the right.
    event.deltaX = -(event.deltaX != 0.0 ? event.deltaX : event.deltaY);
    CHorizontalSlider::onMouseWheelEvent(event);
}

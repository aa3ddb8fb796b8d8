#include "editor/cpsonoffbutton.h"

using namespace VSTGUI;

CPSOnOffButton::CPSOnOffButton(const CRect& rect, IControlListener* listener, int32_t tag,
                               CBitmap* pictures)
    : COnOffButton(rect, listener, tag, pictures, 0) {}

void CPSOnOffButton::draw(CDrawContext* context) {
    CBitmap* pictures = getDrawBackground();
    if (pictures == nullptr)
        return;
    const int height = static_cast<int>(pictures->getHeight()) / 3;
    const int picture = hovered && value == 0.0F ? 1 : value == 1.0F ? 2 : 0;
    pictures->draw(context, getViewSize(), CPoint(0, picture * height), 1.0F);
    setDirty(false);
}

CMouseEventResult CPSOnOffButton::onMouseDown(CPoint& /*where*/, const CButtonState& buttons) {
    if ((buttons & kLButton) == 0)
        return kMouseEventNotHandled;
    value = 1.0F - value;
    const auto self = shared(this);
    if (listener != nullptr)
        listener->valueChanged(this);
    invalid();
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

CMouseEventResult CPSOnOffButton::onMouseEntered(CPoint& /*where*/,
                                                 const CButtonState& /*buttons*/) {
    hovered = true;
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSOnOffButton::onMouseExited(CPoint& /*where*/,
                                                const CButtonState& /*buttons*/) {
    hovered = false;
    invalid();
    return kMouseEventHandled;
}

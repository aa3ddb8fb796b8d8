#include "editor/cpskickbutton.h"

#include "presetsystem/panelcontrols.h"

using namespace VSTGUI;

CPSKickButton::CPSKickButton(const CRect& rect, IControlListener* listener, int32_t tag,
                             int32_t heightOfOneImage, CBitmap* pictures, const CPoint& offset,
                             bool doubleClickOnly)
    : CKickButton(rect, listener, tag, static_cast<CCoord>(heightOfOneImage), pictures, offset)
    , doubleClickOnly(doubleClickOnly) {
    setWantsFocus(false);
}

void CPSKickButton::draw(CDrawContext* context) {
    CBitmap* pictures = getDrawBackground();
    if (pictures == nullptr)
        return;
    const int picture = pressed ? 2 : hovered ? 1 : 0;
    pictures->draw(context, getViewSize(), CPoint(offset.x, picture * heightOfOneImage + offset.y),
                   1.0F);
    setDirty(false);
}

CMouseEventResult CPSKickButton::onMouseDown(CPoint& /*where*/, const CButtonState& buttons) {
    if ((buttons & kLButton) == 0 || (doubleClickOnly && !buttons.isDoubleClick()))
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    pressed = true;
    value = doubleClickOnly && buttons.isControlSet() ? 0.5F : 1.0F;
    // The listener may close the window.
    const auto self = shared(this);
    if (listener != nullptr)
        listener->valueChanged(this);
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSKickButton::onMouseUp(CPoint& /*where*/, const CButtonState& /*buttons*/) {
    value = 0.0F;
    pressed = false;
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSKickButton::onMouseEntered(CPoint& /*where*/,
                                                const CButtonState& /*buttons*/) {
    hovered = true;
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSKickButton::onMouseExited(CPoint& /*where*/, const CButtonState& /*buttons*/) {
    hovered = false;
    invalid();
    return kMouseEventHandled;
}

// The base would report a key's press and its release, and no key can be a
// double click.
void CPSKickButton::onKeyboardEvent(KeyboardEvent& event) {
    CView::onKeyboardEvent(event);
}

namespace mirelon {

CControl* newKickButton(const CRect& rect, IControlListener* listener, int32_t tag,
                        CBitmap* pictures, bool doubleClickOnly) {
    return new CPSKickButton(rect, listener, tag, static_cast<int32_t>(rect.getHeight()), pictures,
                             CPoint(0, 0), doubleClickOnly);
}

} // namespace mirelon

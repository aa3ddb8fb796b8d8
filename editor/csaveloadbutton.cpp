#include "editor/csaveloadbutton.h"

#include "presetsystem/panelcontrols.h"

using namespace VSTGUI;

namespace {

constexpr int32_t keyNotTaken = -1;

} // namespace

CSaveLoadButton::CSaveLoadButton(CRect rect, IControlListener* listener, int32_t tag,
                                 int32_t heightOfOneImage, CBitmap* pictures, const CPoint& offset)
    : CKickButton(rect, listener, tag, static_cast<CCoord>(heightOfOneImage), pictures, offset) {
    setWantsFocus(false);
}

void CSaveLoadButton::draw(CDrawContext* context) {
    CBitmap* pictures = getDrawBackground();
    if (pictures == nullptr)
        return;
    const int picture = value != 0.0F ? 2 : hovered ? 1 : 0;
    pictures->draw(context, getViewSize(), CPoint(offset.x, picture * heightOfOneImage + offset.y),
                   1.0F);
    setDirty(false);
}

CMouseEventResult CSaveLoadButton::onMouseDown(CPoint& /*where*/, const CButtonState& buttons) {
    if ((buttons & (kLButton | kRButton)) == 0 || listener == nullptr)
        return kMouseEventNotHandled;
    value = buttons() == kRButton ? 0.5F : 1.0F;
    const auto self = shared(this);
    listener->valueChanged(this);
    value = 0.0F;
    invalid();
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

CMouseEventResult CSaveLoadButton::onMouseEntered(CPoint& /*where*/,
                                                  const CButtonState& /*buttons*/) {
    hovered = true;
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CSaveLoadButton::onMouseExited(CPoint& /*where*/,
                                                 const CButtonState& /*buttons*/) {
    hovered = false;
    invalid();
    return kMouseEventHandled;
}

int32_t CSaveLoadButton::onKeyDown(VstKeyCode& /*keyCode*/) {
    return keyNotTaken;
}

int32_t CSaveLoadButton::onKeyUp(VstKeyCode& /*keyCode*/) {
    return keyNotTaken;
}

// The base would press itself on the return key; the plain view asks the two
// handlers above.
void CSaveLoadButton::onKeyboardEvent(KeyboardEvent& event) {
    CView::onKeyboardEvent(event);
}

namespace mirelon {

CControl* newSaveLoadButton(const CRect& rect, IControlListener* listener, int32_t tag,
                            CBitmap* pictures) {
    return new CSaveLoadButton(rect, listener, tag, static_cast<int32_t>(rect.getHeight()),
                               pictures, CPoint(0, 0));
}

} // namespace mirelon

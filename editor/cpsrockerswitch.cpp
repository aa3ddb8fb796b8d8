#include "editor/cpsrockerswitch.h"

#include "presetsystem/panelcontrols.h"

using namespace VSTGUI;

CPSRockerSwitch::CPSRockerSwitch(const CRect& rect, IControlListener* listener, int32_t tag,
                                 int32_t heightOfOneImage, CBitmap* pictures, const CPoint& offset,
                                 int32_t style)
    : CRockerSwitch(rect, listener, tag, static_cast<CCoord>(heightOfOneImage), pictures, offset,
                    style) {}

int CPSRockerSwitch::sideOf(const CPoint& where) const {
    return where.x >= (getViewSize().left + getViewSize().right) / 2 ? 1 : -1;
}

void CPSRockerSwitch::draw(CDrawContext* context) {
    CBitmap* pictures = getDrawBackground();
    if (pictures == nullptr)
        return;
    int picture = hoverSide < 0 ? 1 : hoverSide > 0 ? 2 : 0;
    if (value == -1.0F)
        picture = 3;
    else if (value == 1.0F)
        picture = 4;
    pictures->draw(context, getViewSize(), CPoint(0, picture * heightOfOneImage), 1.0F);
    setDirty(false);
}

CMouseEventResult CPSRockerSwitch::onMouseDown(CPoint& where, const CButtonState& buttons) {
    if ((buttons & kLButton) == 0)
        return kMouseEventNotHandled;
    value = static_cast<float>(sideOf(where));
    invalid();
    const auto self = shared(this);
    if (listener != nullptr)
        listener->valueChanged(this);
    return kMouseEventHandled;
}

CMouseEventResult CPSRockerSwitch::onMouseUp(CPoint& /*where*/, const CButtonState& /*buttons*/) {
    value = 0.0F;
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSRockerSwitch::onMouseMoved(CPoint& where, const CButtonState& buttons) {
    return (buttons & kLButton) != 0 ? kMouseEventHandled : onMouseEntered(where, buttons);
}

CMouseEventResult CPSRockerSwitch::onMouseEntered(CPoint& where, const CButtonState& /*buttons*/) {
    hoverSide = sideOf(where);
    invalid();
    return kMouseEventHandled;
}

CMouseEventResult CPSRockerSwitch::onMouseExited(CPoint& /*where*/,
                                                 const CButtonState& /*buttons*/) {
    hoverSide = 0;
    invalid();
    return kMouseEventHandled;
}

namespace mirelon {

CControl* newRockerSwitch(const CRect& rect, IControlListener* listener, int32_t tag,
                          CBitmap* pictures) {
    return new CPSRockerSwitch(rect, listener, tag, static_cast<int32_t>(rect.getHeight()),
                               pictures, CPoint(0, 0), CRockerSwitch::kHorizontal);
}

} // namespace mirelon

#include "editor/parameterslider.h"

#include "editor/layout.h"

using namespace VSTGUI;

namespace {

constexpr float step = 0.01F;

// The words above and below are so close that the ring, which is two pixels wide, has
// to run inside of the slider to stay a pixel off them at every scale; above, a letter
// reaches below its line.
constexpr CCoord ringBelowTop = 4;
constexpr CCoord ringAboveBottom = 3;

} // namespace

ParameterSlider::ParameterSlider(const CRect& rect, IControlListener* listener, int32_t tag,
                                 int32_t firstPosition, int32_t lastPosition, CBitmap* handle,
                                 CBitmap* background, const CPoint& offset, int32_t style)
    : CHorizontalSlider(rect, listener, tag, firstPosition, lastPosition, handle, background,
                        offset, style) {
    setSliderMode(CSliderMode::FreeClick);
    setWheelInc(step); // the toolkit takes a tenth of it with shift
}

CRect ParameterSlider::visibleHandle() const {
    CRect handle = calculateHandleRect(getValueNormalized());
    handle.bottom = handle.top + mirelon::layout::handleBottom;
    handle.top += mirelon::layout::handleTop;
    return handle;
}

CRect ParameterSlider::ringedArea() const {
    CRect area(getViewSize());
    area.top += ringBelowTop;
    area.bottom -= ringAboveBottom;
    return area;
}

// The toolkit holds a handle one pixel left of its middle.
CCoord ParameterSlider::gripOfHandle(const CRect& handle) const {
    const CCoord range = getWidth() - handle.getWidth() - 2 * getOffsetHandle().x;
    return getViewSize().left + getOffsetHandle().x + handle.getWidth() / 2 - 1 +
           static_cast<CCoord>(getValueNormalized()) * range;
}

CMouseEventResult ParameterSlider::onMouseDown(CPoint& where, const CButtonState& buttons) {
    const CRect handle = calculateHandleRect(getValueNormalized());
    const bool onHandle = where.x >= handle.left && where.x < handle.right;
    gripOffset = onHandle ? gripOfHandle(handle) - where.x : 0;
    lastPosition.reset();
    if (onHandle)
        lastPosition = where.x;
    return CHorizontalSlider::onMouseDown(where, buttons);
}

CMouseEventResult ParameterSlider::onMouseMoved(CPoint& where, const CButtonState& buttons) {
    if (!isEditing() || lastPosition == where.x)
        return isEditing() ? kMouseEventHandled : CHorizontalSlider::onMouseMoved(where, buttons);
    lastPosition = where.x;
    CPoint grip(where.x + gripOffset, where.y);
    return CHorizontalSlider::onMouseMoved(grip, buttons);
}

CMouseEventResult ParameterSlider::onMouseUp(CPoint& where, const CButtonState& buttons) {
    onMouseMoved(where, buttons);
    return CHorizontalSlider::onMouseUp(where, buttons);
}

void ParameterSlider::onKeyboardEvent(KeyboardEvent& event) {
    const bool isReturn = event.virt == VirtualKey::Return || event.virt == VirtualKey::Enter;
    if (!isReturn || event.type != EventType::KeyDown || !event.modifiers.empty() || !beginTyping)
        return CHorizontalSlider::onKeyboardEvent(event);
    event.consumed = true;
    beginTyping();
}

void ParameterSlider::onMouseWheelEvent(MouseWheelEvent& event) {
    // Up and right raise the value. The toolkit's slider looks at the horizontal
    // distance alone and lowers the value when that is positive, which on this
    // platform means to the right.
    event.deltaX = -(event.deltaX != 0.0 ? event.deltaX : event.deltaY);
    CHorizontalSlider::onMouseWheelEvent(event);
}

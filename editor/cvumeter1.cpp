#include "editor/cvumeter1.h"

#include <algorithm>
#include <cmath>

using namespace VSTGUI;

namespace {

// `share` of `length`, in whole segments.
CCoord segmented(int32_t segments, float share, CCoord length) {
    return std::floor(static_cast<float>(segments) * share + 0.5F) / static_cast<float>(segments) *
           static_cast<float>(length);
}

} // namespace

CVuMeter1::CVuMeter1(const CRect& rect, CBitmap* lit, CBitmap* unlit, int32_t segments,
                     int32_t style)
    : CVuMeter(rect, lit, unlit, segments, style) {}

void CVuMeter1::draw(CDrawContext* context) {
    CBitmap* lit = getOnBitmap();
    if (lit == nullptr)
        return;
    bounceValue();
    const float level = std::max(getOldValue() - getDecreaseStepValue(), getValue());
    setOldValue(level);

    CPoint litOffset;
    CPoint unlitOffset;
    if ((getStyle() & kHorizontal) != 0) {
        const CCoord t = segmented(getNbLed(), level, lit->getWidth());
        rectOn.right = rectOff.left = getViewSize().left + t;
        unlitOffset.x = t;
    } else {
        const CCoord t = segmented(getNbLed(), getMax() - level, lit->getHeight());
        rectOn.top = rectOff.bottom = getViewSize().top + t;
        litOffset.y = t;
    }
    if (CBitmap* unlit = getOffBitmap())
        unlit->draw(context, rectOff, unlitOffset, 1.0F);
    lit->draw(context, rectOn, litOffset, 1.0F);
    setDirty(false);
}

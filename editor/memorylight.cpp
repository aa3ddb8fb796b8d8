#include "editor/memorylight.h"

using namespace VSTGUI;

namespace mirelon {

MemoryLight::MemoryLight(const CRect& rect, CBitmap* pictures, const CPoint& offset)
    : CView(rect)
    , pictures(pictures)
    , offset(offset) {
    setMouseEnabled(false);
}

void MemoryLight::light(bool on) {
    if (lit == on)
        return;
    lit = on;
    invalid();
}

void MemoryLight::draw(CDrawContext* context) {
    if (lit && pictures != nullptr)
        pictures->draw(context, getViewSize(), offset);
    setDirty(false);
}

} // namespace mirelon

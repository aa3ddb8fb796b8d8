// What a control draws, without a display.
#pragma once

#include "platform/toolkit.h"

#include <vector>

namespace mirelon::test {

// The colours of a control's area row by row, transparent where it draws
// nothing; the control stands at the origin.
inline std::vector<VSTGUI::CColor> drawn(VSTGUI::CControl& control) {
    const VSTGUI::CPoint size = control.getViewSize().getSize();
    const auto context = VSTGUI::COffscreenContext::create(size);
    context->beginDraw();
    control.draw(context);
    context->endDraw();
    const auto pixels = owned(VSTGUI::CBitmapPixelAccess::create(context->getBitmap()));
    std::vector<VSTGUI::CColor> all(static_cast<std::size_t>(size.x * size.y));
    for (VSTGUI::CColor& colour : all) {
        pixels->getColor(colour);
        ++*pixels;
    }
    return all;
}

} // namespace mirelon::test

// The text fields of the window: captions and read-outs.
#pragma once

#include "editor/layout.h"

namespace mirelon {

// A field that shows `value` as `converter` writes it, on the window's own
// background. With one reference, which the caller hands on to a frame.
VSTGUI::CParamDisplay* newTextField(const layout::TextField& field, VSTGUI::CBitmap* background,
                                    VSTGUI::CHoriTxtAlign alignment, layout::Converter converter,
                                    float maximum, float value);

} // namespace mirelon

// The text fields of the window: captions and read-outs.
#pragma once

#include "editor/layout.h"

namespace mirelon {

// Makes `display` show `value` as `converter` writes it. It stands at `field`, on the
// window's own background.
void setUpTextField(VSTGUI::CParamDisplay& display, const layout::TextField& field,
                    VSTGUI::CHoriTxtAlign alignment, layout::Converter converter, float maximum,
                    float value);

// Such a field, with one reference, which the caller hands on to a frame.
VSTGUI::CParamDisplay* newTextField(const layout::TextField& field, VSTGUI::CBitmap* background,
                                    VSTGUI::CHoriTxtAlign alignment, layout::Converter converter,
                                    float maximum, float value);

} // namespace mirelon

// The menu of the sizes that the window can have.
#pragma once

#include "platform/toolkit.h"

#include <optional>

namespace mirelon::sizemenu {

// Opens the menu at `where` in `frame`, with the mark at what is chosen (in
// percent, or nothing: as large as the desktop says). The listener is told of a
// choice by a control with this tag, unless the frame has let go of it by then.
void open(VSTGUI::CFrame& frame, const VSTGUI::CPoint& where, std::optional<int> chosen,
          VSTGUI::IControlListener* listener, int32_t tag);

// What such a control's value stands for.
std::optional<int> percentOf(float value);

} // namespace mirelon::sizemenu

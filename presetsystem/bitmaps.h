// The pictures of the window, from what is compiled into the plug-in.
#pragma once

#include "platform/toolkit.h"

namespace mirelon {

// The scale at which pictures exist that is nearest to `wanted`, the larger of
// two that are equally near; 1 for anything that is no positive number.
double nearestPictureScale(double wanted) noexcept;

// Picture `number` as a toolkit bitmap that is drawn crisply at every scale at
// which there are pictures. Its size is that of scale 1 whatever the scale, in the
// coordinates that views are laid out in. An unknown number gives a bitmap of size
// 0. The toolkit must be set up; needs no display.
VSTGUI::SharedPointer<VSTGUI::CBitmap> loadBitmap(int number);

} // namespace mirelon

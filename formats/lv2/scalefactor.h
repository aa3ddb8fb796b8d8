// The scale that an LV2 host asks its windows for.
#pragma once

#include <lv2/core/lv2.h>

namespace mirelon::lv2 {

// The option ui:scaleFactor, if the host gives it as a number; else 1. The type
// is looked at first: what stands behind an option of another type is no float.
double scaleFactor(const LV2_Feature* const* features);

} // namespace mirelon::lv2

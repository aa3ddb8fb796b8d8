// The data files of the LV2 bundle as the tables of the product give them.
#pragma once

#include <string>

namespace mirelon::test::lv2data {

std::string manifest(); // manifest.ttl
std::string plugin();   // mirelon.ttl
std::string presets();  // presets.ttl

} // namespace mirelon::test::lv2data

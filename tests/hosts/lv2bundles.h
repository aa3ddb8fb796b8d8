// Where a host finds the LV2 plug-in: the built bundle and the specifications,
// and no other plug-in of the machine's.
#pragma once

#include "tests/hosts/program.h"

namespace mirelon::test {

// A folder of links; for the environment of a host. `folder` is made.
Environment lv2Environment(const std::filesystem::path& folder);

} // namespace mirelon::test

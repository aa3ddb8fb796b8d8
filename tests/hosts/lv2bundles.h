// Where a host finds the LV2 plug-in: the built bundle and the specifications,
// and no other plug-in of the machine's.
#pragma once

#include "tests/hosts/program.h"

namespace mirelon::test {

// A folder of links; for the environment of a host. `folder` is made.
Environment lv2Environment(const std::filesystem::path& folder);

// The same with the observing window in the place of the real one, which it loads;
// what passes goes to `record`, as observations.h reads it.
Environment observedLv2Environment(const std::filesystem::path& folder,
                                   const std::filesystem::path& record);

} // namespace mirelon::test

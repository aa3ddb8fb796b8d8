// Tests that run once for each version of the loop.
#pragma once

#include "processor/core/stereokernels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace mirelon::kernels {
inline void PrintTo(const Version* version, std::ostream* out) {
    *out << version->name;
}
} // namespace mirelon::kernels

namespace mirelon {

// Skips what this processor has no instructions for.
class VersionTest : public testing::TestWithParam<const kernels::Version*> {
  protected:
    void SetUp() override {
        if (!GetParam()->runsHere())
            GTEST_SKIP() << "this processor lacks the instructions of " << GetParam()->name;
    }
};

// All but the plain one, to which they are held.
inline std::vector<const kernels::Version*> versionsToCompare() {
    std::vector<const kernels::Version*> all(kernels::versions().begin(),
                                             kernels::versions().end());
    std::erase(all, &kernels::portable);
    return all;
}

inline std::string versionName(const testing::TestParamInfo<const kernels::Version*>& info) {
    return info.param->name;
}

} // namespace mirelon

// Tests that run once for each kernel.
#pragma once

#include "processor/core/stereokernels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace mirelon::kernels {
inline void PrintTo(const Kernel* kernel, std::ostream* out) {
    *out << kernel->name;
}
} // namespace mirelon::kernels

namespace mirelon {

// Skips what this processor has no instructions for.
class KernelTest : public testing::TestWithParam<const kernels::Kernel*> {
  protected:
    void SetUp() override {
        if (!GetParam()->runsHere())
            GTEST_SKIP() << "this processor lacks the instructions of " << GetParam()->name;
    }
};

// All but the plain one, to which they are held.
inline std::vector<const kernels::Kernel*> kernelsToCompare() {
    std::vector<const kernels::Kernel*> all(kernels::builtKernels().begin(),
                                            kernels::builtKernels().end());
    std::erase(all, &kernels::portable);
    return all;
}

inline std::string kernelName(const testing::TestParamInfo<const kernels::Kernel*>& info) {
    return info.param->name;
}

} // namespace mirelon

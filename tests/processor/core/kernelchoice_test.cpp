// Which kernels there are, and which one is run.
#include "processor/core/stereokernels.h"

#include <gtest/gtest.h>

namespace {

using namespace mirelon::kernels;

TEST(KernelChoice, AreDistinctAndThePlainOneIsTheLastResort) {
    ASSERT_FALSE(builtKernels().empty());
    EXPECT_EQ(builtKernels().back(), &portable);
    EXPECT_TRUE(portable.runsHere());
    for (const Kernel* a : builtKernels())
        for (const Kernel* b : builtKernels())
            if (a != b) {
                EXPECT_STRNE(a->name, b->name);
                EXPECT_NE(a->processFloat, b->processFloat);
                EXPECT_NE(a->processDouble, b->processDouble);
            }
}

TEST(KernelChoice, TheChosenOneIsTheFirstThatRunsHere) {
    for (const Kernel* kernel : builtKernels()) {
        if (kernel == &chosen())
            break;
        EXPECT_FALSE(kernel->runsHere()) << kernel->name;
    }
    EXPECT_TRUE(chosen().runsHere());
    RecordProperty("kernel", chosen().name);
}

#if defined(__x86_64__)
TEST(KernelChoice, APlainX86ProcessorHasOneOfItsOwn) {
    EXPECT_TRUE(sse2.runsHere());
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        EXPECT_TRUE(&chosen() == &avx2 || &chosen() == &avx512) << chosen().name;
    else
        EXPECT_EQ(&chosen(), &sse2);
}
#endif

} // namespace

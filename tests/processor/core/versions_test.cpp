// Which versions of the loop there are, and which one is run.
#include "processor/core/stereokernels.h"

#include <gtest/gtest.h>

namespace {

using namespace mirelon::kernels;

TEST(Versions, AreDistinctAndThePlainOneIsTheLastResort) {
    ASSERT_FALSE(versions().empty());
    EXPECT_EQ(versions().back(), &portable);
    EXPECT_TRUE(portable.runsHere());
    for (const Version* a : versions())
        for (const Version* b : versions())
            if (a != b) {
                EXPECT_STRNE(a->name, b->name);
                EXPECT_NE(a->processFloat, b->processFloat);
                EXPECT_NE(a->processDouble, b->processDouble);
            }
}

TEST(Versions, TheChosenOneIsTheFirstThatRunsHere) {
    for (const Version* version : versions()) {
        if (version == &chosen())
            break;
        EXPECT_FALSE(version->runsHere()) << version->name;
    }
    EXPECT_TRUE(chosen().runsHere());
    RecordProperty("version", chosen().name);
}

#if defined(__x86_64__)
TEST(Versions, APlainX86ProcessorHasOneOfItsOwn) {
    EXPECT_TRUE(sse2.runsHere());
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        EXPECT_TRUE(&chosen() == &avx2 || &chosen() == &avx512) << chosen().name;
    else
        EXPECT_EQ(&chosen(), &sse2);
}
#endif

} // namespace

// Which versions of the loop there are, and which one is run.
#include "processor/core/stereokernels.h"
#include "tests/support/neutralcoefficients.h"
#include "tests/support/signals.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace {

using namespace mirelon;
using namespace mirelon::kernels;
using signals::Signal;

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

// Hosts switch their audio threads to flushing denormals; some to worse.
TEST(Versions, TheHostsArithmeticModeChangesNoBitAndComesBack) {
    constexpr unsigned flush = 0x8040;
    constexpr unsigned roundDown = 0x2000;
    constexpr unsigned standard = 0x1F80;
    std::vector<float> left(200);
    std::vector<float> right(200);
    signals::fill<float>(left, Signal::mixture, 1, 0);
    signals::fill<float>(right, Signal::mixture, 1, 1);
    const auto run = [&](unsigned mode) {
        auto l = left;
        auto r = right;
        Envelopes followers;
        const unsigned before = _mm_getcsr();
        _mm_setcsr(mode);
        processBlock(neutralCoefficients(), 1e-3, followers, {l.data(), r.data()},
                     {l.data(), r.data()}, 200);
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        EXPECT_EQ(after & ~0x3FU, mode);
        l.insert(l.end(), r.begin(), r.end());
        return l;
    };
    const auto expected = run(standard);
    for (const unsigned mode : {standard | flush, standard | roundDown, flush | roundDown}) {
        const auto actual = run(mode);
        EXPECT_EQ(std::memcmp(actual.data(), expected.data(), expected.size() * sizeof(float)), 0)
            << std::hex << mode;
    }
}
#endif

} // namespace

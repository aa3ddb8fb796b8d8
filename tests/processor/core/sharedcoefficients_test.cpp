#include "processor/core/sharedcoefficients.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

using mirelon::applyParameter;
using mirelon::Coefficients;
using mirelon::SharedCoefficients;

bool identical(const Coefficients& a, const Coefficients& b) {
    return std::memcmp(&a, &b, sizeof a) == 0; // NOLINT(bugprone-suspicious-memory-comparison)
}

// Every parameter at a value of its own, so that no coefficient equals another.
float valueOf(int index) {
    return 0.1F + 0.08F * static_cast<float>(index);
}

TEST(SharedCoefficients, StartAtZero) {
    EXPECT_TRUE(identical(SharedCoefficients().snapshot(), Coefficients()));
}

TEST(SharedCoefficients, ASnapshotHasEveryCoefficientThatWasApplied) {
    SharedCoefficients shared;
    Coefficients expected;
    for (int i = 0; i < kNumParams; ++i) {
        shared.apply(i, valueOf(i));
        applyParameter(expected, i, valueOf(i));
        EXPECT_TRUE(identical(shared.snapshot(), expected)) << i;
    }
}

TEST(SharedCoefficients, AnotherValueReplacesTheFirst) {
    SharedCoefficients shared;
    Coefficients expected;
    for (int i = 0; i < kNumParams; ++i) {
        shared.apply(i, valueOf(i));
        shared.apply(i, 1.0F - valueOf(i));
        applyParameter(expected, i, 1.0F - valueOf(i));
    }
    EXPECT_TRUE(identical(shared.snapshot(), expected));
}

TEST(SharedCoefficients, AnIndexOutsideTheTableChangesNothing) {
    SharedCoefficients shared;
    shared.apply(kParamGain, 0.7F);
    const Coefficients before = shared.snapshot();
    for (const int index :
         {-1, 9, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        shared.apply(index, 0.25F);
        EXPECT_TRUE(identical(shared.snapshot(), before)) << index;
    }
}

} // namespace

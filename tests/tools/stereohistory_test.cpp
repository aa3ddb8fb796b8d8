#include "tools/plot/stereohistory.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace mirelon::tools {
namespace {

TEST(StereoHistory, CutsTimeIntoEqualSlicesWhateverTheBlocks) {
    StereoHistory history(10, 4);
    std::vector<double> ramp{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    history.add(std::span(ramp).first(3), std::span(ramp).first(3));
    history.add(std::span(ramp).subspan(3), std::span(ramp).subspan(3));
    std::vector<std::uint64_t> frames;
    std::vector<double> peaks;
    for (const StereoStatistics& slice : history.slices()) {
        frames.push_back(slice.frames());
        peaks.push_back(slice.peak(0));
    }
    EXPECT_EQ(frames, (std::vector<std::uint64_t>{2, 3, 2, 3}));
    EXPECT_EQ(peaks, (std::vector<double>{1, 4, 6, 9}));
}

TEST(StereoHistory, HasEmptySlicesWhenThereAreFewerFrames) {
    StereoHistory history(2, 4);
    history.add(std::vector{1.0, 1.0}, std::vector{1.0, 1.0});
    std::uint64_t frames = 0;
    for (const StereoStatistics& slice : history.slices())
        frames += slice.frames();
    EXPECT_EQ(frames, 2U);
}

TEST(StereoHistory, TakesMoreFramesThanItWasToldOf) {
    StereoHistory history(0, 2);
    history.add(std::vector{0.5, 1.0}, std::vector{0.5, 1.0});
    EXPECT_EQ(history.slices().back().frames(), 2U);
}

TEST(Goniometer, DrawsMonoUpwardsAndOneSideAslant) {
    Goniometer mono(100, 1.0);
    mono.add(std::vector{0.5}, std::vector{0.5});
    EXPECT_EQ(mono.density(50, 25), 1.0);

    Goniometer left(100, 1.0);
    left.add(std::vector{0.5}, std::vector{0.0});
    EXPECT_EQ(left.density(37, 37), 1.0);

    Goniometer antiPhase(100, 1.0);
    antiPhase.add(std::vector{-0.5}, std::vector{0.5});
    EXPECT_EQ(antiPhase.density(75, 50), 1.0);
}

TEST(Goniometer, IsBrightestWhereTheSignalIsMost) {
    Goniometer goniometer(10, 1.0);
    goniometer.add(std::vector{0.5, 0.0, 0.0}, std::vector{0.5, 0.0, 0.0});
    EXPECT_EQ(goniometer.density(5, 5), 1.0);
    EXPECT_GT(goniometer.density(5, 2), 0.0);
    EXPECT_LT(goniometer.density(5, 2), 1.0);
    EXPECT_EQ(goniometer.density(0, 0), 0.0);
}

TEST(Goniometer, LeavesOutWhatIsNoNumberOrTooLarge) {
    Goniometer goniometer(10, 1.0);
    goniometer.add(std::vector{std::nan(""), 1e30, 5.0}, std::vector{0.0, 0.0, 5.0});
    for (std::size_t row = 0; row < 10; ++row) {
        for (std::size_t column = 0; column < 10; ++column)
            EXPECT_EQ(goniometer.density(column, row), 0.0);
    }
}

} // namespace
} // namespace mirelon::tools

#include "tools/audio/equalloudness.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace mirelon::tools {
namespace {

constexpr int rate = 48000;

std::vector<float> tone(float height) {
    std::vector<float> samples(rate);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = height * static_cast<float>(std::sin(0.13 * static_cast<double>(i)));
    return samples;
}

void hear(EqualLoudness& meter, float original, float processed) {
    const auto before = tone(original);
    const auto after = tone(processed);
    meter.add({before, before}, {after, after});
}

TEST(EqualLoudness, TurnsTheLouderDown) {
    EqualLoudness louder(rate);
    hear(louder, 0.1F, 0.2F);
    EXPECT_NEAR(louder.gains().processed, 0.5F, 1e-4F);
    EXPECT_EQ(louder.gains().original, 1.0F);

    EqualLoudness quieter(rate);
    hear(quieter, 0.4F, 0.1F);
    EXPECT_EQ(quieter.gains().processed, 1.0F);
    EXPECT_NEAR(quieter.gains().original, 0.25F, 1e-4F);
}

TEST(EqualLoudness, LeavesBothWhileOneIsSilent) {
    EqualLoudness meter(rate);
    hear(meter, 0.1F, 0.0F);
    EXPECT_EQ(meter.gains().original, 1.0F);
    EXPECT_EQ(meter.gains().processed, 1.0F);
}

TEST(EqualLoudness, ForgetsWhatWasBeforeARestart) {
    EqualLoudness meter(rate);
    hear(meter, 0.1F, 0.8F);
    ASSERT_NEAR(meter.gains().processed, 0.125F, 1e-4F);
    meter.restart();
    EXPECT_NEAR(meter.gains().processed, 0.125F, 1e-4F) << "until it is known anew";
    hear(meter, 0.1F, 0.2F);
    EXPECT_NEAR(meter.gains().processed, 0.5F, 1e-4F);
}

} // namespace
} // namespace mirelon::tools

#include "tools/audio/material.h"

#include "tests/support/temporaryfolder.h"
#include "tests/tools/soundfile.h"
#include "tools/commanderror.h"

#include <gtest/gtest.h>
#include <sndfile.h>

namespace mirelon::tools {
namespace {

// More than is read at a time.
constexpr std::size_t frames = 10000;

TEST(Material, HoldsEveryFrameOfTheFileOnce) {
    const test::TemporaryFolder folder;
    const test::Sound sound = test::stereoNoise(SF_FORMAT_WAV | SF_FORMAT_FLOAT, frames);
    test::writeSound(folder / "in.wav", sound);
    const Material material = readMaterial(folder / "in.wav");
    EXPECT_EQ(material.rate, 44100);
    ASSERT_EQ(material.frames(), frames);
    ASSERT_EQ(material.channels[1].size(), frames);
    for (std::size_t i = 0; i < frames; ++i) {
        ASSERT_EQ(material.channels[0][i], sound.left(i)) << i;
        ASSERT_EQ(material.channels[1][i], sound.right(i)) << i;
    }
}

TEST(Material, IsRefusedWhereThereIsNoSound) {
    const test::TemporaryFolder folder;
    test::writeSound(folder / "in.wav", {SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, {}});
    EXPECT_THROW(readMaterial(folder / "in.wav"), CommandError);
}

} // namespace
} // namespace mirelon::tools

#include "resources/resources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace mirelon {
namespace {

struct Expected {
    int number;
    int picturesDown;
};

void PrintTo(const Expected& expected, std::ostream* out) {
    *out << "picture " << expected.number;
}

constexpr Expected expectedPictures[] = {
    {128, 1}, {133, 1}, {134, 1},   {135, 1},   {136, 1},   {137, 2},   {138, 2},   {139, 2},
    {140, 2}, {141, 1}, {19990, 3}, {19991, 2}, {19993, 3}, {19994, 3}, {19997, 5},
};

std::span<const unsigned char> png(int number, std::size_t scaleIndex) {
    const auto picture = embeddedPicture(number, scaleIndex);
    return {picture.data, picture.size};
}

std::uint32_t bigEndian(std::span<const unsigned char> bytes) {
    std::uint32_t value = 0;
    for (const auto byte : bytes.first(4))
        value = value << 8U | byte;
    return value;
}

struct Raster {
    int width;
    int height;
};

/// Width and height as the IHDR chunk, the first of a PNG file, gives them.
Raster raster(std::span<const unsigned char> file) {
    return {static_cast<int>(bigEndian(file.subspan(16))),
            static_cast<int>(bigEndian(file.subspan(20)))};
}

class EveryPicture : public testing::TestWithParam<Expected> {};

TEST_P(EveryPicture, IsAWholePngFileAtEveryScale) {
    const std::vector<unsigned char> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    const std::vector<unsigned char> end{0, 0, 0, 0, 'I', 'E', 'N', 'D', 0xAE, 0x42, 0x60, 0x82};
    for (std::size_t scale = 0; scale < pictureScales.size(); ++scale) {
        const auto file = png(GetParam().number, scale);
        ASSERT_GT(file.size(), signature.size() + 25 + end.size());
        EXPECT_TRUE(std::ranges::equal(file.first(signature.size()), signature));
        EXPECT_TRUE(std::ranges::equal(file.last(end.size()), end));
    }
}

TEST_P(EveryPicture, HasItsSizeTimesTheScaleRoundedUpAndSoHasEachOfAStrip) {
    const auto size = pictureSize(GetParam().number);
    const int down = GetParam().picturesDown;
    for (std::size_t scale = 0; scale < pictureScales.size(); ++scale) {
        const auto [width, height] = raster(png(GetParam().number, scale));
        const auto factor = static_cast<double>(pictureScales[scale]);
        EXPECT_EQ(width, std::ceil(size.width * factor)) << "at " << factor;
        const int heightOfOne = size.height / down;
        EXPECT_EQ(height, down * std::ceil(heightOfOne * factor)) << "at " << factor;
    }
}

TEST_P(EveryPicture, DividesIntoWholePicturesAtEveryScale) {
    EXPECT_EQ(picturesInStrip(GetParam().number), GetParam().picturesDown);
    EXPECT_EQ(pictureSize(GetParam().number).height % GetParam().picturesDown, 0);
    if (GetParam().picturesDown == 1)
        return;
    for (std::size_t scale = 0; scale < pictureScales.size(); ++scale)
        EXPECT_EQ(raster(png(GetParam().number, scale)).height % GetParam().picturesDown, 0);
}

TEST_P(EveryPicture, IsNullAtAScaleThatDoesNotExist) {
    EXPECT_EQ(embeddedPicture(GetParam().number, pictureScales.size()).data, nullptr);
    EXPECT_EQ(embeddedPicture(GetParam().number, pictureScales.size()).size, 0U);
}

INSTANTIATE_TEST_SUITE_P(Resources, EveryPicture, testing::ValuesIn(expectedPictures),
                         [](const auto& info) { return std::to_string(info.param.number); });

// The neighbours of those that there are, and two that no picture has.
std::vector<int> unknownNumbers() {
    std::vector<int> numbers{-1, 0};
    for (const Expected& expected : expectedPictures)
        for (const int number : {expected.number - 1, expected.number + 1})
            if (std::ranges::count(expectedPictures, number, &Expected::number) == 0)
                numbers.push_back(number);
    return numbers;
}

TEST(Resources, AnUnknownNumberGivesNullAndSizeZero) {
    for (const int number : unknownNumbers()) {
        EXPECT_EQ(embeddedPicture(number, 0).data, nullptr);
        EXPECT_EQ(embeddedPicture(number, 0).size, 0U);
        EXPECT_EQ(pictureSize(number).width, 0);
        EXPECT_EQ(pictureSize(number).height, 0);
        EXPECT_EQ(picturesInStrip(number), 1);
    }
}

TEST(Resources, TheWindowHoldsEveryControl) {
    const auto window = pictureSize(kPictureBackground);
    EXPECT_GE(window.width, 324);
    EXPECT_GE(window.height, 346);
}

TEST(Resources, AMeterSegmentIsOnePixelWide) {
    EXPECT_EQ(pictureSize(kPictureMeterLit).width, 182);
    EXPECT_EQ(pictureSize(kPictureMeterUnlit).width, 182);
    EXPECT_EQ(pictureSize(kPictureMeterLit).height, pictureSize(kPictureMeterUnlit).height);
}

TEST(Resources, TheSwitchesStandSideBySide) {
    EXPECT_LE(68 + pictureSize(kPictureProcess).width, 122);
    EXPECT_LE(122 + pictureSize(kPictureInvertL).width, 156);
    EXPECT_LE(156 + pictureSize(kPictureInvertL).width, 190);
    EXPECT_EQ(pictureSize(kPictureInvertL).width, pictureSize(kPictureInvertR).width);
    for (const int number : {kPicturePhase, kPictureInvertL, kPictureInvertR})
        EXPECT_EQ(pictureSize(number).height, pictureSize(kPictureProcess).height);
}

TEST(Resources, TheAboutPictureHoldsItsLinesAndIsCentredOnWholePixels) {
    const auto about = pictureSize(kPictureAbout);
    EXPECT_GE(about.height, 94);
    EXPECT_EQ((302 - about.width) % 2, 0);
    EXPECT_EQ((311 - about.height) % 2, 0);
}

TEST(Resources, ThePanelStripsFitTheirButtons) {
    EXPECT_EQ(pictureSize(kPictureSquareButton).width, 12);
    EXPECT_EQ(pictureSize(kPictureSquareButton).height, 3 * 14);
    EXPECT_EQ(pictureSize(kPictureDefaultBank).width, 37);
    EXPECT_EQ(pictureSize(kPictureDefaultBank).height, 3 * 10);
    EXPECT_EQ(pictureSize(kPictureDefaultPreset).width, 47);
    EXPECT_EQ(pictureSize(kPictureDefaultPreset).height, 3 * 10);
    EXPECT_EQ(pictureSize(kPictureRocker).width, 31);
    EXPECT_EQ(pictureSize(kPictureRocker).height, 5 * 14);
}

} // namespace
} // namespace mirelon

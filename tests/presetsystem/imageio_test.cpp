#include "presetsystem/imageio.h"

#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

namespace mirelon::test {
namespace {

class ImageIo : public testing::Test {
  protected:
    ChosenFile file(std::string_view name) const {
        ChosenFile chosen;
        std::ranges::copy(folder.directory(), chosen.directory.begin());
        std::ranges::copy(name, chosen.name.begin());
        return chosen;
    }
    static std::string text(std::span<const std::byte> image) {
        return {reinterpret_cast<const char*>(image.data()), image.size()};
    }

    const TemporaryFolder folder;
    std::array<std::byte, 4> image{std::byte{'a'}, std::byte{'b'}, std::byte{'c'}, std::byte{'d'}};
};

TEST_F(ImageIo, WritesAllBytesInPlaceOfWhatWasThere) {
    writeFile(folder / "x", "something longer");
    writeImage(file("x"), image);
    EXPECT_EQ(contentsOf(folder / "x"), "abcd");
}

TEST_F(ImageIo, ReadsTheFirstBytesOfALongerFile) {
    writeFile(folder / "x", "123456");
    readImage(file("x"), image);
    EXPECT_EQ(text(image), "1234");
}

TEST_F(ImageIo, LeavesWhatAShorterFileLacks) {
    writeFile(folder / "x", "12");
    readImage(file("x"), image);
    EXPECT_EQ(text(image), "12cd");
}

TEST_F(ImageIo, LeavesEverythingWithoutAFile) {
    readImage(file("none"), image);
    EXPECT_EQ(text(image), "abcd");
    EXPECT_FALSE(exists(folder / "none"));
}

} // namespace
} // namespace mirelon::test

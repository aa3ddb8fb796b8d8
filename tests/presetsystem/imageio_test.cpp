#include "presetsystem/imageio.h"

#include "tests/support/childprocess.h"
#include "tests/support/processes.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

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

TEST_F(ImageIo, AnswersWithNoErrorWhenAllIsWell) {
    EXPECT_EQ(writeImage(file("x"), image), 0);
    EXPECT_EQ(readImage(file("x"), image), 0);
    writeFile(folder / "short", "12");
    EXPECT_EQ(readImage(file("short"), image), 0);
}

TEST_F(ImageIo, AnswersWithTheSystemsErrorOtherwise) {
    create_directory(folder / "folder");
    create_symlink("/dev/full", folder / "full");
    EXPECT_EQ(readImage(file("none"), image), ENOENT);
    EXPECT_EQ(writeImage(file("folder"), image), EISDIR);
    EXPECT_EQ(writeImage(file("none/x"), image), ENOENT);
    EXPECT_EQ(writeImage(file("full"), image), ENOSPC);
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

// In a process that may write files of two bytes only, as on a full disk.
TEST_F(ImageIo, LeavesNoFileThatDoesNotHoldAllBytes) {
    writeFile(folder / "old", "123456");
    EXPECT_EQ(inChild([&] {
                  const rlimit two{2, 2};
                  std::signal(SIGXFSZ, SIG_IGN);
                  if (setrlimit(RLIMIT_FSIZE, &two) != 0)
                      return 1;
                  const bool told = writeImage(file("new"), image) == EFBIG &&
                                    writeImage(file("old"), image) == EFBIG;
                  return told ? 0 : 2;
              }),
              0);
    EXPECT_FALSE(exists(folder / "new"));
    EXPECT_FALSE(exists(folder / "old"));
}

TEST_F(ImageIo, LeavesWhatIsNoPlainFileWhereItIs) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    create_symlink("/dev/full", folder / "full");
    writeImage(file("pipe"), image);
    writeImage(file("full"), image);
    EXPECT_TRUE(is_fifo(folder / "pipe"));
    EXPECT_TRUE(is_symlink(folder / "full"));
}

TEST_F(ImageIo, LeavesNoFileOpen) {
    const auto before = openFiles();
    create_symlink("/dev/full", folder / "full");
    for (const char* name : {"x", "full", "none/x"}) {
        writeImage(file(name), image);
        readImage(file(name), image);
    }
    EXPECT_EQ(openFiles(), before);
}

TEST_F(ImageIo, WritesNothingWhereNoFileCanBeMade) {
    create_directory(folder / "x");
    writeImage(file("x"), image);
    EXPECT_TRUE(is_directory(folder / "x"));
}

} // namespace
} // namespace mirelon::test

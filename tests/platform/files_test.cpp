#include "platform/files.h"

#include "tests/support/childprocess.h"
#include "tests/support/temporaryfolder.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

TEST(Files, OpeningForWritingCreatesTheFileInTheFolder) {
    const TemporaryFolder folder;
    XPlatFile file = nullptr;
    EXPECT_NE(XPlatFileOpen("a.dvb", folder.directory().c_str(), &file, true), nullptr);
    ASSERT_NE(file, nullptr);
    XPlatFileWrite(file, "abc", 3);
    XPlatFileClose(file);
    EXPECT_EQ(contentsOf(folder / "a.dvb"), "abc");
}

TEST(Files, OpeningForWritingTruncatesAnExistingFile) {
    const TemporaryFolder folder;
    writeFile(folder / "a.dvb", "old and long");
    XPlatFile file = nullptr;
    XPlatFileOpen("a.dvb", folder.directory().c_str(), &file, true);
    XPlatFileClose(file);
    EXPECT_EQ(contentsOf(folder / "a.dvb"), "");
}

TEST(Files, OpeningForReadingKeepsTheFileAndReadsItsBytes) {
    const TemporaryFolder folder;
    writeFile(folder / "a.dvp", std::string_view("\0\xFF\n\r", 4));
    XPlatFile file = nullptr;
    XPlatFileOpen("a.dvp", folder.directory().c_str(), &file, false);
    ASSERT_NE(file, nullptr);
    std::array<char, 4> bytes{};
    XPlatFileRead(file, bytes.data(), 4);
    XPlatFileClose(file);
    EXPECT_EQ(std::string_view(bytes.data(), 4), std::string_view("\0\xFF\n\r", 4));
    EXPECT_EQ(contentsOf(folder / "a.dvp").size(), 4U);
}

TEST(Files, OpeningAMissingFileForReadingGivesNullAndCreatesNothing) {
    const TemporaryFolder folder;
    XPlatFile file = stdin;
    EXPECT_EQ(XPlatFileOpen("no.dvp", folder.directory().c_str(), &file, false), nullptr);
    EXPECT_EQ(file, nullptr);
    EXPECT_FALSE(exists(folder / "no.dvp"));
}

TEST(Files, AReadOnlyFileDoesNotOpenForReading) {
    const TemporaryFolder folder;
    writeFile(folder / "a.dvp", "x");
    permissions(folder / "a.dvp", std::filesystem::perms(0444));
    const int code = inChild([&] {
        becomeOrdinaryUser();
        XPlatFile file = nullptr;
        return XPlatFileOpen("a.dvp", folder.directory().c_str(), &file, false) == nullptr &&
                       file == nullptr
                   ? 0
                   : 1;
    });
    EXPECT_EQ(code, 0);
}

TEST(Files, APathOf511CharactersOpensAndOneOf512DoesNot) {
    const TemporaryFolder folder;
    std::filesystem::path deep = folder.path;
    while (deep.string().size() + 101 < 511 - 101)
        deep /= std::string(100, 'd');
    create_directories(deep);
    const std::string dir = deep.string() + '/';
    const std::string fitting(511 - dir.size(), 'n');
    XPlatFile file = nullptr;
    XPlatFileOpen(fitting.c_str(), dir.c_str(), &file, true);
    EXPECT_NE(file, nullptr);
    XPlatFileClose(file);
    XPlatFileOpen((fitting + 'n').c_str(), dir.c_str(), &file, true);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(deep), {}), 1);
}

TEST(Files, AnOpenFileIsNotInheritedByOtherPrograms) {
    const TemporaryFolder folder;
    XPlatFile file = nullptr;
    XPlatFileOpen("a", folder.directory().c_str(), &file, true);
    ASSERT_NE(file, nullptr);
    EXPECT_NE(fcntl(fileno(file), F_GETFD) & FD_CLOEXEC, 0);
    XPlatFileClose(file);
}

TEST(Files, WithoutAFileNothingIsReadOrWritten) {
    std::array<char, 65> bytes{};
    bytes.fill('b');
    const auto before = bytes;
    XPlatFileRead(nullptr, bytes.data(), 65);
    XPlatFileWrite(nullptr, bytes.data(), 65);
    XPlatFileClose(nullptr);
    EXPECT_EQ(bytes, before);
}

TEST(Files, AShortFileLeavesTheRestOfTheBuffer) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "xyz");
    XPlatFile file = nullptr;
    XPlatFileOpen("a", folder.directory().c_str(), &file, false);
    std::array<char, 6> bytes{'-', '-', '-', '-', '-', '-'};
    XPlatFileRead(file, bytes.data(), 6);
    XPlatFileClose(file);
    EXPECT_EQ(std::string_view(bytes.data(), 6), "xyz---");
}

TEST(Files, AsManyBytesAreReadAsWereAskedFor) {
    const TemporaryFolder folder;
    writeFile(folder / "a", "vwxyz");
    XPlatFile file = nullptr;
    XPlatFileOpen("a", folder.directory().c_str(), &file, false);
    std::array<char, 4> bytes{'-', '-', '-', '-'};
    XPlatFileRead(file, bytes.data(), 1);
    EXPECT_EQ(std::string_view(bytes.data(), 4), "v---");
    XPlatFileRead(file, bytes.data(), 2);
    EXPECT_EQ(std::string_view(bytes.data(), 4), "wx--");
    XPlatFileClose(file);
}

TEST(Files, ASingleByteIsWritten) {
    const TemporaryFolder folder;
    XPlatFile file = nullptr;
    XPlatFileOpen("a", folder.directory().c_str(), &file, true);
    XPlatFileWrite(file, "x", 1);
    XPlatFileClose(file);
    EXPECT_EQ(contentsOf(folder / "a"), "x");
}

TEST(Files, ANegativeLengthTransfersNothing) {
    const TemporaryFolder folder;
    XPlatFile file = nullptr;
    XPlatFileOpen("a", folder.directory().c_str(), &file, true);
    char byte = 'b';
    XPlatFileWrite(file, &byte, -1);
    XPlatFileClose(file);
    EXPECT_EQ(contentsOf(folder / "a"), "");
}

struct Split {
    std::string name = "name as it was";
    std::string dir = "dir as it was";

    explicit Split(const char* path) {
        name.resize(300);
        dir.resize(300);
        XPlatGetFileNameAndDir(path, name.data(), dir.data());
        name.resize(std::strlen(name.data()));
        dir.resize(std::strlen(dir.data()));
    }
};

TEST(Paths, AreSplitAfterTheLastSlash) {
    const Split split("/Users/a/x.dvp");
    EXPECT_EQ(split.name, "x.dvp");
    EXPECT_EQ(split.dir, "/Users/a/");
}

TEST(Paths, InTheRootHaveTheRootAsFolder) {
    const Split split("/x");
    EXPECT_EQ(split.name, "x");
    EXPECT_EQ(split.dir, "/");
}

TEST(Paths, ThatEndInASlashHaveAnEmptyName) {
    const Split split("/a/b/");
    EXPECT_EQ(split.name, "");
    EXPECT_EQ(split.dir, "/a/b/");
}

TEST(Paths, WithoutASlashLeaveBothBuffers) {
    const Split split("x.dvp");
    EXPECT_EQ(split.name, "name as it was");
    EXPECT_EQ(split.dir, "dir as it was");
}

TEST(Paths, NeedNoMoreRoomThanTheirPartsHave) {
    std::string name = "name as it was";
    std::string dir = "dir as it was";
    // What stands behind the path goes nowhere either.
    XPlatGetFileNameAndDir("/a/x\0behind", name.data(), dir.data());
    EXPECT_EQ(name, std::string("x\0me as it was", 14));
    EXPECT_EQ(dir, std::string("/a/\0as it was", 13));
}

TEST(PrefValues, AlwaysReadAsTheDefault) {
    setPrefValue("volume", 0.2F);
    EXPECT_EQ(getPrefValue("volume", 0.7F), 0.7F);
}

} // namespace
} // namespace mirelon::test

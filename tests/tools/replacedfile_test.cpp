#include "tools/replacedfile.h"

#include "tests/support/childprocess.h"
#include "tests/support/temporaryfolder.h"
#include "tools/commanderror.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace mirelon::tools {
namespace {

using test::contentsOf;
using test::TemporaryFolder;
using test::writeFile;

std::ptrdiff_t filesIn(const TemporaryFolder& folder) {
    return std::distance(std::filesystem::directory_iterator(folder.path), {});
}

mode_t permissionsOf(const std::filesystem::path& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

TEST(ReplacedFile, AppearsWhenItIsComplete) {
    const TemporaryFolder folder;
    writeFile(folder / "a.wav", "old");
    ReplacedFile file(folder / "a.wav");
    file.write("new content", 11);
    EXPECT_EQ(contentsOf(folder / "a.wav"), "old");
    file.commit();
    EXPECT_EQ(contentsOf(folder / "a.wav"), "new content");
    EXPECT_EQ(filesIn(folder), 1);
}

TEST(ReplacedFile, LeavesNothingWhenItIsNotCompleted) {
    const TemporaryFolder folder;
    writeFile(folder / "a.wav", "old");
    {
        ReplacedFile file(folder / "a.wav");
        file.write("half", 4);
    }
    EXPECT_EQ(contentsOf(folder / "a.wav"), "old");
    EXPECT_EQ(filesIn(folder), 1);
}

TEST(ReplacedFile, KeepsTheExtensionOnTheWay) {
    const TemporaryFolder folder;
    const ReplacedFile file(folder / "a.flac");
    EXPECT_EQ(file.temporary().extension(), ".flac");
    EXPECT_EQ(file.temporary().parent_path(), folder.path);
}

TEST(ReplacedFile, HasThePermissionsOfTheOldOneOrOfAnyNewOne) {
    const TemporaryFolder folder;
    writeFile(folder / "old", "");
    chmod((folder / "old").c_str(), 0640);
    ReplacedFile old(folder / "old");
    old.commit();
    EXPECT_EQ(permissionsOf(folder / "old"), 0640U);

    writeFile(folder / "ordinary", "");
    ReplacedFile fresh(folder / "fresh");
    fresh.commit();
    EXPECT_EQ(permissionsOf(folder / "fresh"), permissionsOf(folder / "ordinary"));
}

TEST(ReplacedFile, FollowsALinkAndLeavesItInPlace) {
    const TemporaryFolder folder;
    writeFile(folder / "real", "old");
    std::filesystem::create_symlink("real", folder / "link");
    ReplacedFile file(folder / "link");
    file.write("new", 3);
    file.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(contentsOf(folder / "real"), "new");
}

TEST(ReplacedFile, RefusesFoldersDevicesAndWhatHasNoFolder) {
    const TemporaryFolder folder;
    EXPECT_THROW(ReplacedFile(folder.path), CommandError);
    EXPECT_THROW(ReplacedFile("/dev/null"), CommandError);
    EXPECT_THROW(ReplacedFile(folder / "missing" / "a.wav"), CommandError);
}

TEST(ReplacedFile, IsRemovedWhenASignalEndsTheProgram) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TemporaryFolder folder;
        writeFile(folder / "a.wav", "old");
        const int status = test::inChild([&] {
            std::signal(signal, SIG_DFL); // the tests may run under nohup
            const ReplacedFile file(folder / "a.wav");
            raise(signal);
            return 0;
        });
        EXPECT_EQ(status, -signal);
        EXPECT_EQ(contentsOf(folder / "a.wav"), "old");
        EXPECT_EQ(filesIn(folder), 1);
    }
}

TEST(ReplacedFile, ASignalThatWasIgnoredStaysIgnored) {
    const TemporaryFolder folder;
    const int status = test::inChild([&] {
        std::signal(SIGHUP, SIG_IGN);
        ReplacedFile file(folder / "a.wav");
        raise(SIGHUP);
        file.commit();
        return 7;
    });
    EXPECT_EQ(status, 7);
    EXPECT_TRUE(std::filesystem::exists(folder / "a.wav"));
}

} // namespace
} // namespace mirelon::tools

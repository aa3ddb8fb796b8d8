#include "platform/folderlock.h"

#include "tests/support/shellcommand.h"
#include "tests/support/temporaryfolder.h"

#include <chrono>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;

// It would hold the lock for as long as it runs.
TEST(FolderLock, IsNotInheritedByAProgramThatIsStartedMeanwhile) {
    const TemporaryFolder folder;
    const FolderLock lock(folder.path.string(), FolderLock::Kind::exclusive, 0ms);
    ASSERT_TRUE(lock.held());
    const std::string list = "ls -l /proc/$$/fd";
    EXPECT_NE(runShell(list).output.find("/dev/null"), std::string::npos);
    EXPECT_EQ(runShell(list).output.find(folder.path.string()), std::string::npos);
}

TEST(FolderLock, IsSharedByReadersAndByNobodyElse) {
    const TemporaryFolder folder;
    const std::string name = folder.path.string();
    {
        const FolderLock first(name, FolderLock::Kind::shared, 0ms);
        const FolderLock second(name, FolderLock::Kind::shared, 0ms);
        EXPECT_TRUE(first.held());
        EXPECT_TRUE(second.held());
        EXPECT_TRUE(FolderLock(name, FolderLock::Kind::exclusive, 0ms).refused());
    }
    const FolderLock alone(name, FolderLock::Kind::exclusive, 0ms);
    EXPECT_TRUE(alone.held());
    EXPECT_TRUE(FolderLock(name, FolderLock::Kind::shared, 0ms).refused());
    EXPECT_TRUE(FolderLock(name, FolderLock::Kind::exclusive, 0ms).refused());
}

} // namespace
} // namespace mirelon::test

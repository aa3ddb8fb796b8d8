// What a check is at, told across the end of its process.
#include "validator/activity.h"

#include "hosting/childprocess.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <sys/mman.h>

namespace {

bool noMemory = false;

} // namespace

extern "C" {
void* __real_mmap(void*, std::size_t, int, int, int, off_t);
void* __wrap_mmap(void* wanted, std::size_t size, int access, int kind, int file, off_t from) {
    return noMemory ? MAP_FAILED : __real_mmap(wanted, size, access, kind, file, from);
}
}

namespace mirelon::validator {
namespace {

TEST(Activity, IsTheLastThatWasSaid) {
    doing("loading it");
    doing("setting parameter ", 3, " to ", 0.1F);
    EXPECT_EQ(activity(), "setting parameter 3 to 0.100000001");
    setActivity({});
    EXPECT_EQ(activity(), "");
}

TEST(Activity, IsCutWhereItIsTooLong) {
    setUnusual(true);
    doing(std::string(1000, 'x'));
    EXPECT_EQ(activity(), std::string(250, 'x'));
    EXPECT_TRUE(isUnusual()) << "is kept beside it";
    setUnusual(false);
    EXPECT_FALSE(isUnusual());
}

TEST(Activity, OutlivesItsProcess) {
    const test::TemporaryFolder folder;
    hosting::ChildProcess child([&] {
        keepActivityIn(folder / "activity");
        doing("given a state of ", 17, " bytes");
        setUnusual(true);
        return raise(SIGKILL);
    });
    EXPECT_EQ(child.wait(), -SIGKILL);
    EXPECT_EQ(activityIn(folder / "activity"), "given a state of 17 bytes");
    EXPECT_TRUE(isUnusualIn(folder / "activity"));
    EXPECT_EQ(activityIn(folder / "none"), "");
    EXPECT_FALSE(isUnusualIn(folder / "none"));
}

TEST(Activity, IsKeptInItsProcessAloneWhereTheFileCannotBeMapped) {
    const test::TemporaryFolder folder;
    hosting::ChildProcess child([&] {
        noMemory = true;
        keepActivityIn(folder / "activity");
        doing("loading it");
        return activity() == "loading it" ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(activityIn(folder / "activity"), "");
}

} // namespace
} // namespace mirelon::validator

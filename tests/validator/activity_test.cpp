// What a check is at, told across the end of its process.
#include "validator/activity.h"

#include "hosting/childprocess.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <csignal>

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

} // namespace
} // namespace mirelon::validator

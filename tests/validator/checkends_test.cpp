// What is left of a validator that is ended while it checks: nothing.
#include "hosting/childprocess.h"
#include "tests/support/processes.h"
#include "tests/support/temporaryfolder.h"
#include "tests/validator/checkrun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace mirelon::test::checks;
using mirelon::test::isRunning;

// A run that hangs in its first check, and what is left when it is ended.
class CheckThatEnds : public testing::TestWithParam<int> {};

TEST_P(CheckThatEnds, TakesItsChildrenAndItsFolderAlong) {
    const mirelon::test::TemporaryFolder temporary;
    const auto inside = [&] {
        return std::distance(std::filesystem::directory_iterator(temporary.path), {});
    };
    std::vector<std::string> environment = mirelon::hosting::ownEnvironment();
    environment.push_back("TMPDIR=" + temporary.path.string());
    environment.emplace_back("MIRELON_DEFECT=resume-hangs");
    environment.push_back("MIRELON_TEST_PID_FILE=" + std::string(temporary / "pid"));
    mirelon::hosting::ChildProcess check(
        {host, {host, "check", "--only", "audio-silence", MIRELON_TEST_EFFECT}, environment});
    const auto until = [](auto holds) {
        for (int i = 0; i < 3000 && !holds(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return holds();
    };
    pid_t child = 0;
    pid_t grandchild = 0;
    ASSERT_TRUE(until([&] {
        std::ifstream(temporary / "pid") >> child >> grandchild;
        return grandchild > 0;
    }));
    check.kill(GetParam());
    EXPECT_EQ(check.wait(), -GetParam());
    EXPECT_TRUE(until([&] { return !isRunning(child); })) << "the child still runs";
    EXPECT_TRUE(until([&] { return !isRunning(grandchild); })) << "the child's own still runs";
    EXPECT_TRUE(until([&] { return inside() == 1; })) << "the scratch folder is still there";
}

INSTANTIATE_TEST_SUITE_P(By, CheckThatEnds, testing::Values(SIGINT, SIGTERM, SIGKILL));

} // namespace

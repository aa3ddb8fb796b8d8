#include "hosting/childprocess.h"

#include "hosting/pipe.h"
#include "tests/support/processes.h"

#include <csignal>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace mirelon::hosting {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

ProgramStart shell(const std::string& command) {
    return {.program = "/bin/sh", .arguments = {"sh", "-c", command}};
}

TEST(ChildProcess, EndsWithTheProgramsExitCode) {
    EXPECT_EQ(ChildProcess(shell("exit 7")).wait(), 7);
}

TEST(ChildProcess, EndsWithTheResultOfItsWork) {
    EXPECT_EQ(ChildProcess([] { return 5; }).wait(), 5);
}

TEST(ChildProcess, ThatASignalEndsTellsWhich) {
    ChildProcess process(shell("sleep 60"));
    process.kill(SIGTERM);
    EXPECT_EQ(process.wait(), -SIGTERM);
    EXPECT_EQ(process.wait(), -SIGTERM);
}

TEST(ChildProcess, ThatCannotBeStartedHasEndedWith127) {
    ChildProcess process({.program = "/nowhere/program", .arguments = {"program"}});
    EXPECT_FALSE(process.isRunning());
    EXPECT_EQ(process.wait(), 127);
}

TEST(ChildProcess, HasTheEnvironmentThatItIsGivenAndNothingElse) {
    Pipe output;
    ProgramStart start = shell("env");
    start.environment = {"MIRELON_TEST=1 2"};
    start.output = output.writer();
    ChildProcess process(start);
    output.closeWriter();
    std::string text;
    ASSERT_TRUE(output.readUntil(Clock::now() + 30s, text));
    EXPECT_NE(text.find("MIRELON_TEST=1 2\n"), std::string::npos);
    EXPECT_EQ(text.find("HOME="), std::string::npos);
}

TEST(ChildProcess, KeepsOnlyTheDescriptorThatItIsGiven) {
    const Pipe other;
    Pipe kept;
    ProgramStart start = shell("echo lost >&" + std::to_string(other.writer()) + "; echo found >&" +
                               std::to_string(kept.writer()));
    start.kept = kept.writer();
    ChildProcess process(start);
    kept.closeWriter();
    std::string text;
    ASSERT_TRUE(kept.readUntil(Clock::now() + 30s, text));
    EXPECT_EQ(text, "found\n");
}

TEST(ChildProcess, OutlastsALimitThatIsTooShort) {
    ChildProcess process(shell("sleep 60"));
    EXPECT_FALSE(process.waitFor(20ms));
    EXPECT_TRUE(process.isRunning());
}

TEST(ChildProcess, TakesWhatItHasStartedItselfWithIt) {
    Pipe output;
    ProgramStart start = shell("sleep 60 & sleep 60");
    start.output = output.writer();
    {
        ChildProcess process(start);
        output.closeWriter();
        std::string text;
        EXPECT_FALSE(output.readUntil(Clock::now() + 50ms, text));
    }
    std::string text;
    EXPECT_TRUE(output.readUntil(Clock::now() + 30s, text)) << "something still writes";
}

TEST(ChildProcess, IsKilledThoughItHasLeftItsProcessGroup) {
    ChildProcess process(shell(test::leaveOwnGroup));
    const auto end = Clock::now() + 30s;
    while (test::leadsAGroup(process.id()) && process.isRunning() && Clock::now() < end)
        std::this_thread::sleep_for(1ms);
    ASSERT_FALSE(test::leadsAGroup(process.id()));
    process.killGroup();
    ASSERT_TRUE(process.waitFor(30s));
    EXPECT_EQ(process.wait(), -SIGKILL);
}

TEST(ChildProcess, TellsTheMostMemoryThatItHad) {
    ChildProcess process([] {
        const std::string much(32U << 20U, 'x');
        return much.back() == 'x' ? 0 : 1;
    });
    EXPECT_EQ(process.wait(), 0);
    EXPECT_GT(process.peakMemory(), 32 << 10);
}

} // namespace
} // namespace mirelon::hosting

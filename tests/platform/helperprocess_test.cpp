#include "platform/helperprocess.h"

#include "hosting/pipe.h"
#include "tests/support/processes.h"
#include "tests/support/pumping.h"
#include "tests/support/systemcalls.h"
#include "tests/support/temporaryfolder.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace mirelon::test {
namespace {

using namespace std::chrono_literals;
using Output = std::optional<std::string>;

class Helper : public testing::Test {
  protected:
    void start(const std::string& program, const std::vector<std::string>& arguments) {
        process = HelperProcess::start(program, arguments, [this](Output output) {
            ++ends;
            ended = std::move(output);
        });
    }
    void startShell(const std::string& script) { start("/bin/sh", {"-c", script}); }
    // Starts it and waits for its end.
    Output run(const std::string& program, const std::vector<std::string>& arguments) {
        start(program, arguments);
        EXPECT_TRUE(pumpUntil([&] { return ends > 0; }));
        return ended;
    }
    Output shell(const std::string& script) { return run("/bin/sh", {"-c", script}); }
    // The number that a script has written to a file.
    std::optional<pid_t> processIn(const char* file) const { return numberIn(folder / file); }
    // Starts a shell that does what `script` says, writes its number to "leader" and
    // leaves its process group.
    void startOneThatLeavesItsGroup(const std::string& script) {
        startShell(script + "echo $$ > '" + (folder / "leader").string() + "'; " + leaveOwnGroup);
        ASSERT_TRUE(pumpUntil([&] {
            const auto leader = processIn("leader");
            return leader && !leadsAGroup(*leader);
        }));
    }
    // Starts a shell that writes its number to "leader" and stays when it is told to end.
    void startOneThatWillNotEnd() {
        startShell("trap '' TERM; echo $$ > '" + (folder / "leader").string() +
                   "'; while :; do sleep 0.1; done");
        ASSERT_TRUE(pumpUntil([&] { return processIn("leader").has_value(); }));
    }
    bool pumpUntilGone(pid_t gone) const {
        return pumpUntil([&] { return !processExists(gone); });
    }

    const RunLoop::User user;
    const TemporaryFolder folder;
    std::unique_ptr<HelperProcess> process;
    int ends = 0;
    Output ended;
};

TEST_F(Helper, AnswersWhatItPrinted) {
    EXPECT_EQ(shell("echo one; echo two"), "one\ntwo\n");
}

TEST_F(Helper, GetsItsArgumentsUntouched) {
    const std::vector<std::string> arguments{"-c", "printf '%s|' \"$@\"", "sh", "a b", "$HOME", "'",
                                             ""};
    EXPECT_EQ(run("/bin/sh", arguments), "a b|$HOME|'||");
}

TEST_F(Helper, ThatFailsAnswersNothing) {
    EXPECT_EQ(shell("echo /some/path; exit 1"), std::nullopt);
}

TEST_F(Helper, ThatIsKilledAnswersNothing) {
    EXPECT_EQ(shell("echo /some/path; kill -9 $$"), std::nullopt);
}

TEST_F(Helper, ThatDoesNotExistDoesNotStart) {
    start("/nonexistent/program", {});
    EXPECT_EQ(process, nullptr);
    RunLoop::instance().pump();
    EXPECT_EQ(ends, 0);
}

TEST_F(Helper, DoesNotSeeTheHostsLinkerVariables) {
    setenv("LD_LIBRARY_PATH", "/nowhere", 1);
    setenv("LD_PRELOAD", "", 1);
    setenv("MIRELON_TEST_VARIABLE", "kept", 1);
    const auto output = shell("env");
    unsetenv("LD_LIBRARY_PATH");
    unsetenv("LD_PRELOAD");
    ASSERT_TRUE(output);
    EXPECT_EQ(output->find("LD_LIBRARY_PATH"), std::string::npos);
    EXPECT_EQ(output->find("LD_PRELOAD"), std::string::npos);
    EXPECT_NE(output->find("MIRELON_TEST_VARIABLE=kept"), std::string::npos);
}

TEST_F(Helper, DoesNotInheritTheHostsOpenFiles) {
    const int leaked = open("/dev/null", O_RDONLY); // NOLINT: inheritable on purpose
    ASSERT_GE(leaked, 3);
    const auto output = shell("test -e /proc/self/fd/" + std::to_string(leaked) +
                              " && echo inherited || echo closed");
    close(leaked);
    EXPECT_EQ(output, "closed\n");
}

// The programs here are no shells, which put some of this right themselves.
TEST_F(Helper, StartsWithSignalsUnblocked) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto output = run("/bin/grep", {"SigBlk", "/proc/self/status"});
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(output, "SigBlk:\t0000000000000000\n");
}

TEST_F(Helper, IgnoresNoSignalThatTheHostIgnores) {
    constexpr std::array signals{SIGINT, SIGHUP, SIGQUIT, SIGTERM, SIGPIPE, SIGCHLD, SIGALRM};
    std::array<void (*)(int), signals.size()> before{};
    for (std::size_t i = 0; i < signals.size(); ++i)
        before[i] = std::signal(signals[i], SIG_IGN);
    const auto output = run("/bin/grep", {"SigIgn", "/proc/self/status"});
    for (std::size_t i = 0; i < signals.size(); ++i)
        std::signal(signals[i], before[i]);
    ASSERT_TRUE(output);
    const auto ignored = std::stoull(output->substr(output->find('\t') + 1), nullptr, 16);
    for (const int signal : signals)
        EXPECT_EQ(ignored >> static_cast<unsigned>(signal - 1) & 1U, 0U) << signal;
}

TEST_F(Helper, ReadsNothingOfTheHostsInput) {
    const hosting::Pipe input;
    const int before = dup(STDIN_FILENO);
    dup2(input.reader(), STDIN_FILENO);
    const auto output = run("/bin/readlink", {"/proc/self/fd/0"});
    dup2(before, STDIN_FILENO);
    close(before);
    EXPECT_EQ(output, "/dev/null\n");
}

TEST_F(Helper, AnswersThoughASignalInterruptsTheLastReading) {
    startShell("echo /a/path");
    siginfo_t end{};
    ASSERT_EQ(waitid(P_ALL, 0, &end, WEXITED | WNOWAIT), 0);
    SystemCalls calls;
    calls.failNext(SystemCall::read, EINTR);
    EXPECT_TRUE(pumpUntil([&] { return ends > 0; }));
    EXPECT_EQ(ended, "/a/path\n");
}

TEST_F(Helper, AnswersInAHostThatIgnoresItsChildren) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const auto output = shell("echo /a/path");
    std::signal(SIGCHLD, before);
    EXPECT_EQ(output, "/a/path\n");
}

// The number may be another's by then, of its process group too.
TEST_F(Helper, ThatTheHostHasCollectedIsNotToldToEnd) {
    startShell("sleep 1000 & echo $! > '" + (folder / "left").string() + "'; echo $$ > '" +
               (folder / "leader").string() + "'");
    while (!processIn("leader"))
        std::this_thread::sleep_for(1ms);
    ASSERT_EQ(waitpid(*processIn("leader"), nullptr, 0), *processIn("leader"));
    const pid_t left = *processIn("left");
    kill(left, SIGSTOP);
    while (hasPending(left, SIGSTOP))
        std::this_thread::sleep_for(1ms);
    // What comes now waits for it.
    process.reset();
    EXPECT_FALSE(hasPending(left, SIGTERM));
    kill(left, SIGKILL);
}

TEST_F(Helper, LeadsAProcessGroupOfItsOwn) {
    EXPECT_EQ(shell("read number name state parent group rest < /proc/self/stat; "
                    "test $number -eq $$ -a $group -eq $$ && echo leads"),
              "leads\n");
}

TEST_F(Helper, IsStartedWithoutBeingWaitedFor) {
    startShell("sleep 1000");
    for (int i = 0; i < 50; ++i)
        RunLoop::instance().pump();
    EXPECT_EQ(ends, 0);
}

TEST_F(Helper, AnswersThoughWhatItLeavesBehindKeepsItsOutputOpen) {
    EXPECT_EQ(shell("sleep 1000 & echo $! > '" + (folder / "left").string() + "'; echo /a/path"),
              "/a/path\n");
    EXPECT_EQ(ends, 1);
    const auto left = processIn("left");
    ASSERT_TRUE(left);
    EXPECT_TRUE(processExists(*left)) << "what a program leaves behind is its own business";
    kill(*left, SIGKILL);
}

TEST_F(Helper, ThatClosesItsOutputAnswersWhenItEnds) {
    EXPECT_EQ(shell("echo /a/path; exec >&-; sleep 0.2; exit 0"), "/a/path\n");
}

TEST_F(Helper, AnswersAllOfAnOutputThatComesInParts) {
    EXPECT_EQ(shell("printf /a; sleep 0.1; printf /b; sleep 0.1; echo /c"), "/a/b/c\n");
}

TEST_F(Helper, ThatIsNotWantedAnyMoreEndsWithAllItHasStarted) {
    startShell("sleep 1000 & echo $! > '" + (folder / "child").string() + "'; echo $$ > '" +
               (folder / "leader").string() + "'; wait");
    ASSERT_TRUE(pumpUntil([&] { return processIn("child") && processIn("leader"); }));
    process.reset();
    EXPECT_TRUE(pumpUntilGone(*processIn("child")));
    EXPECT_TRUE(pumpUntilGone(*processIn("leader"))) << "it has not been collected";
    EXPECT_EQ(ends, 0);
}

TEST_F(Helper, ThatWillNotEndWhenToldIsKilled) {
    ASSERT_NO_FATAL_FAILURE(startOneThatWillNotEnd());
    const auto begin = std::chrono::steady_clock::now();
    process.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 250ms) << "it has been waited for";
    EXPECT_TRUE(pumpUntilGone(*processIn("leader")));
}

TEST_F(Helper, IsWaitedForWithoutTheProcessor) {
    ASSERT_NO_FATAL_FAILURE(startOneThatWillNotEnd());
    const pid_t leader = *processIn("leader");
    const std::clock_t before = std::clock();
    process.reset();
    while (processExists(leader))
        std::this_thread::sleep_for(10ms);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 5) << "of half a second";
}

TEST_F(Helper, ThatHasLeftItsProcessGroupEndsAllTheSame) {
    startOneThatLeavesItsGroup("");
    process.reset();
    EXPECT_TRUE(pumpUntilGone(*processIn("leader")));
}

TEST_F(Helper, ThatHasLeftItsProcessGroupIsKilledIfItWillNotEnd) {
    startOneThatLeavesItsGroup("trap '' TERM; ");
    process.reset();
    EXPECT_TRUE(pumpUntilGone(*processIn("leader")));
}

TEST_F(Helper, EndsTogetherWithTheProcessGroupThatItHasLeft) {
    startOneThatLeavesItsGroup("sleep 60 & echo $! > '" + (folder / "child").string() + "'; ");
    process.reset();
    EXPECT_TRUE(pumpUntilGone(*processIn("child")));
    EXPECT_TRUE(pumpUntilGone(*processIn("leader")));
}

TEST_F(Helper, IsNotAnsweredForOnceItIsNotWantedAnyMore) {
    startShell("echo /a/path");
    siginfo_t end{}; // it has ended, and nobody has looked yet
    ASSERT_EQ(waitid(P_ALL, 0, &end, WEXITED | WNOWAIT), 0);
    process.reset();
    for (int i = 0; i < 50; ++i)
        RunLoop::instance().pump();
    EXPECT_EQ(ends, 0);
}

TEST_F(Helper, MayBeDestroyedByItsAnswer) {
    process = HelperProcess::start("/bin/sh", std::vector<std::string>{"-c", "echo x"},
                                   [this](const Output&) {
                                       process.reset();
                                       ++ends;
                                   });
    EXPECT_TRUE(pumpUntil([&] { return ends == 1; }));
}

TEST_F(Helper, LeavesNoFileOpen) {
    const std::ptrdiff_t before = openFiles();
    EXPECT_EQ(shell("echo x"), "x\n");
    startShell("sleep 1000");
    process.reset();
    EXPECT_EQ(openFiles(), before);
}

TEST_F(Helper, ThatPrintsWithoutEndIsEnded) {
    startShell("echo $$ > '" + (folder / "leader").string() +
               "'; trap '' PIPE; while :; do echo /aaaaaaaaaaaaaaaaaaaaaaaaaa; done 2> /dev/null");
    EXPECT_TRUE(pumpUntil([&] { return ends > 0; }));
    EXPECT_EQ(ended, std::nullopt);
    ASSERT_TRUE(processIn("leader"));
    EXPECT_TRUE(pumpUntilGone(*processIn("leader")));
}

TEST_F(Helper, ThatPrintsAMebibyteAnswersNothing) {
    EXPECT_EQ(shell("head -c 1048576 /dev/zero | tr '\\0' a"), std::nullopt);
}

} // namespace
} // namespace mirelon::test

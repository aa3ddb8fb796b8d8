#include "platform/helperprocess.h"

#include "tests/support/temporaryfolder.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <vector>

namespace mirelon::test {
namespace {

std::optional<std::string> shell(const std::string& script) {
    return runHelper("/bin/sh", std::vector<std::string>{"-c", script});
}

TEST(Helper, AnswersWhatItPrinted) {
    EXPECT_EQ(shell("echo one; echo two"), "one\ntwo\n");
}

TEST(Helper, GetsItsArgumentsUntouched) {
    const std::vector<std::string> arguments{"-c", "printf '%s|' \"$@\"", "sh", "a b", "$HOME", "'",
                                             ""};
    EXPECT_EQ(runHelper("/bin/sh", arguments), "a b|$HOME|'||");
}

TEST(Helper, ThatFailsAnswersNothing) {
    EXPECT_EQ(shell("echo /some/path; exit 1"), std::nullopt);
}

TEST(Helper, ThatIsKilledAnswersNothing) {
    EXPECT_EQ(shell("echo /some/path; kill -9 $$"), std::nullopt);
}

TEST(Helper, ThatDoesNotExistAnswersNothing) {
    EXPECT_EQ(runHelper("/nonexistent/program", {}), std::nullopt);
}

TEST(Helper, ThatPrintsWithoutEndIsCutOff) {
    EXPECT_EQ(
        shell("while :; do echo /aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa || exit; done"),
        std::nullopt);
}

TEST(Helper, DoesNotSeeTheHostsLinkerVariables) {
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

TEST(Helper, DoesNotInheritTheHostsOpenFiles) {
    const int leaked = open("/dev/null", O_RDONLY); // NOLINT: inheritable on purpose
    ASSERT_GE(leaked, 3);
    const auto output = shell("test -e /proc/self/fd/" + std::to_string(leaked) +
                              " && echo inherited || echo closed");
    close(leaked);
    EXPECT_EQ(output, "closed\n");
}

TEST(Helper, StartsWithSignalsUnblocked) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto output = shell("grep SigBlk /proc/self/status");
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(output, "SigBlk:\t0000000000000000\n");
}

TEST(Helper, AnswersInAHostThatIgnoresItsChildren) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const auto output = shell("echo /a/path");
    std::signal(SIGCHLD, before);
    EXPECT_EQ(output, "/a/path\n");
}

} // namespace
} // namespace mirelon::test

// What the system can do to a file that takes another's place.
#include "tests/support/systemcalls.h"
#include "tests/support/temporaryfolder.h"
#include "tools/commanderror.h"
#include "tools/replacedfile.h"

#include <cerrno>
#include <gmock/gmock.h>

namespace mirelon::tools {
namespace {

using test::contentsOf;
using test::SystemCall;
using test::SystemCalls;
using test::TemporaryFolder;
using test::writeFile;
using testing::ElementsAre;

class ReplacedFileFaults : public testing::Test {
  protected:
    ReplacedFileFaults() { writeFile(target, "old"); }
    void replace() const {
        ReplacedFile file(target);
        file.write("new content", 11);
        file.commit();
    }
    void expectTheOldFileAlone() const {
        EXPECT_EQ(contentsOf(target), "old");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    }

    const TemporaryFolder folder;
    const std::filesystem::path target = folder / "a.wav";
    SystemCalls calls;
};

TEST_F(ReplacedFileFaults, WhatIsTakenInPartsArrivesWhole) {
    calls.writeAtMost(3);
    replace();
    EXPECT_EQ(contentsOf(target), "new content");
}

TEST_F(ReplacedFileFaults, AnInterruptedWriteIsMadeAgain) {
    calls.failNext(SystemCall::write, EINTR);
    replace();
    EXPECT_EQ(contentsOf(target), "new content");
}

TEST_F(ReplacedFileFaults, TheContentIsOnTheDiskBeforeItTakesTheOldOnesPlace) {
    replace();
    EXPECT_THAT(calls.made(),
                ElementsAre(SystemCall::write, SystemCall::fsync, SystemCall::rename));
}

TEST_F(ReplacedFileFaults, EveryFailureLeavesTheOldFileAlone) {
    for (const SystemCall call : {SystemCall::write, SystemCall::fsync, SystemCall::rename}) {
        calls.failNext(call, EIO);
        EXPECT_THROW(replace(), CommandError);
        expectTheOldFileAlone();
    }
}

} // namespace
} // namespace mirelon::tools

#include "presetsystem/message.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

TEST(Messages, NameTheFileThatIsSaved) {
    EXPECT_EQ(savedMessage("mine.dvp", 0).text, "saved as mine.dvp");
    EXPECT_FALSE(savedMessage("mine.dvp", 0).failed);
}

TEST(Messages, SayWhyAFileCannotBeWritten) {
    for (const int error : {ENOSPC, EDQUOT, EFBIG})
        EXPECT_EQ(savedMessage("mine.dvp", error).text, "could not be written: no space");
    EXPECT_EQ(savedMessage("mine.dvp", EROFS).text, "could not be written: no permission");
    EXPECT_FALSE(savedMessage("mine.dvp", EIO).text.empty());
    EXPECT_TRUE(savedMessage("mine.dvp", EIO).failed);
}

TEST(Messages, SayWhatBecameOfALoad) {
    EXPECT_EQ(loadedMessage("bank", "a.dvb", 0, ImageVerdict::accepted).text, "loaded a.dvb");
    EXPECT_FALSE(loadedMessage("bank", "a.dvb", 0, ImageVerdict::accepted).failed);
    for (const ImageVerdict verdict : {ImageVerdict::notOurs, ImageVerdict::wrongType}) {
        EXPECT_EQ(loadedMessage("bank", "a.dvb", 0, verdict).text, "not a bank: a.dvb");
        EXPECT_TRUE(loadedMessage("bank", "a.dvb", 0, verdict).failed);
    }
    EXPECT_TRUE(loadedMessage("bank", "a.dvb", 0, ImageVerdict::outOfRange).failed);
    EXPECT_EQ(loadedMessage("preset", "a.dvp", EACCES, ImageVerdict::notOurs).text,
              "could not be read: no permission");
}

TEST(Messages, ShowANameThatIsNoText) {
    EXPECT_EQ(savedMessage("\xFF.dvp", 0).text, "saved as \xEF\xBF\xBD.dvp");
}

TEST(Messages, SayWhatBecameOfWhatIsKept) {
    EXPECT_EQ(storedMessage("A", true).text, "stored as A");
    EXPECT_TRUE(storedMessage("A", false).failed);
    EXPECT_EQ(forgottenMessage("default bank", true).text, "default bank forgotten");
    EXPECT_TRUE(forgottenMessage("default bank", false).failed);
    EXPECT_EQ(recalledMessage("B", ImageVerdict::accepted).text, "recalled B");
    EXPECT_EQ(recalledMessage("B", ImageVerdict::notOurs).text, "nothing is stored as B");
}

} // namespace
} // namespace mirelon::test

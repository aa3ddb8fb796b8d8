// mirelon-host chunk: states in files.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"

#include <gmock/gmock.h>

namespace mirelon::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class Chunk : public testing::Test {
  protected:
    ProgramResult chunk(const std::string& action, const std::string& file,
                        std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"chunk", action, folder / file});
        return runMirelon(options);
    }

    TemporaryFolder folder;
};

TEST_F(Chunk, IsSavedByteForByteAndLoadedAgain) {
    const ProgramResult saved = chunk("save", "a", {"--preset", "5", "--set", "gain=-6dB"});
    EXPECT_EQ(saved.status, 0) << saved.errors;
    EXPECT_THAT(saved.output, HasSubstr("692 bytes"));
    const std::string bytes = contentsOf(folder / "a");
    ASSERT_EQ(bytes.size(), 692U);
    EXPECT_EQ(bytes.substr(4, 4), "nLrM");
    EXPECT_EQ(bytes[12], 5);

    const ProgramResult loaded = chunk("load", "a");
    EXPECT_EQ(loaded.status, 0) << loaded.errors;
    EXPECT_THAT(loaded.output, HasSubstr("taken, program \"side bal left\""));
    EXPECT_THAT(loaded.output, HasSubstr("gain -6.00 dB"));
    EXPECT_THAT(loaded.output, HasSubstr("stability 25L"));
}

TEST_F(Chunk, IsShownAsABank) {
    ASSERT_EQ(chunk("save", "a", {"--preset", "3"}).status, 0);
    const ProgramResult shown = chunk("show", "a");
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.output, HasSubstr("a bank of 11 presets, current 3"));
    EXPECT_THAT(shown.output, HasSubstr("centerPos"));
    EXPECT_THAT(shown.output, ContainsRegex(">  3  balanse to the left +0.5 +0.5 +0.7 +0.5"));
    EXPECT_THAT(shown.output, ContainsRegex("  10  swapped +0.5 "));
}

TEST_F(Chunk, OfAnUnknownFormIsShownAsBytes) {
    writeFile(folder / "a", "something else");
    const ProgramResult shown = chunk("show", "a");
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.output, HasSubstr("14 bytes, of a form only the plug-in knows"));
}

TEST_F(Chunk, ThatThePluginDoesNotTakeIsRefused) {
    writeFile(folder / "a", "something else");
    const ProgramResult loaded = chunk("load", "a");
    EXPECT_EQ(loaded.status, 2);
    EXPECT_EQ(loaded.output, "");
    EXPECT_THAT(loaded.errors, HasSubstr("the plug-in does not take it as its state"));
}

TEST_F(Chunk, FilesThatCannotBeUsedAreRefused) {
    EXPECT_EQ(chunk("load", "missing").status, 2);
    EXPECT_EQ(chunk("show", "missing").status, 2);
    EXPECT_EQ(chunk("save", "missing/a").status, 2);
    EXPECT_THAT(chunk("save", "a", {"--preset", "nope"}).errors, HasSubstr("unknown preset"));
    EXPECT_FALSE(exists(folder / "a"));
    EXPECT_EQ(runHost({"chunk"}).status, 2);
    EXPECT_EQ(runHost({"chunk", "save"}).status, 2);
    EXPECT_THAT(runHost({"chunk", "save", folder / "a", "--plugin", testPlugin("gain")}).errors,
                HasSubstr("keeps no state chunk"));
}

} // namespace
} // namespace mirelon::test

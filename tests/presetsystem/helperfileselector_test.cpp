#include "presetsystem/helperfileselector.h"

#include "tests/support/processes.h"
#include "tests/support/pumping.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace mirelon::test {
namespace {

using VSTGUI::CFileExtension;
using VSTGUI::CNewFileSelector;
using Style = VSTGUI::PlatformFileSelectorStyle;

using Paths = std::vector<std::string>;

class FileSelector : public testing::Test {
  protected:
    // A program that notes its arguments, one a line, then does `script`.
    HelperProgram program(HelperDialect dialect, std::string_view script) const {
        const auto file = folder / (dialect == HelperDialect::zenity ? "zenity" : "kdialog");
        writeFile(file, "#!/bin/sh\nfor a in \"$@\"; do echo \"$a\"; done > " +
                            (folder / "arguments").string() + '\n' + std::string(script) + '\n');
        permissions(file, std::filesystem::perms(0755));
        return {file.string(), dialect};
    }
    // As the editor asks.
    static VSTGUI::SharedPointer<CNewFileSelector>
    selector(Style style, std::vector<HelperProgram> programs, std::uint32_t parent = 0) {
        auto result = VSTGUI::owned(new CNewFileSelector(
            std::make_shared<HelperFileSelector>(style, parent, std::move(programs)), nullptr));
        const CFileExtension type("Dravik Preset", "dvp");
        result->setTitle("A title");
        result->setInitialDirectory("/some/folder/");
        if (style == Style::SelectSaveFile) {
            result->setDefaultSaveName("my name.dvp");
            result->setDefaultExtension(type);
        } else {
            result->addFileExtension(type);
        }
        return result;
    }
    std::string arguments() const { return contentsOf(folder / "arguments"); }

    // Whether the dialog could be shown.
    bool show(CNewFileSelector& dialog) {
        return dialog.run([this](CNewFileSelector* asked) {
            Paths paths;
            for (std::uint32_t i = 0; i < asked->getNumSelectedFiles(); ++i)
                paths.emplace_back(asked->getSelectedFile(i));
            answers.push_back(std::move(paths));
        });
    }
    // What the user has chosen in it.
    Paths chosenIn(CNewFileSelector& dialog) {
        EXPECT_TRUE(show(dialog));
        EXPECT_TRUE(pumpUntil([&] { return !answers.empty(); }));
        return answers.empty() ? Paths{"no answer"} : answers.back();
    }
    // As the answer of a program to open a file with.
    Paths chosenBy(std::string_view script) {
        return chosenIn(*selector(Style::SelectFile, {program(HelperDialect::zenity, script)}));
    }

    const RunLoop::User user;
    const TemporaryFolder folder;
    std::vector<Paths> answers; // one for each call
};

TEST_F(FileSelector, AsksZenityToOpen) {
    EXPECT_EQ(chosenBy("echo '/a/b c.dvp'"), Paths{"/a/b c.dvp"});
    EXPECT_EQ(arguments(), "--file-selection\n--title=A title\n--filename=/some/folder/\n"
                           "--file-filter=Dravik Preset | *.dvp\n--file-filter=All files | *\n");
}

TEST_F(FileSelector, AsksZenityToSave) {
    EXPECT_EQ(chosenIn(*selector(Style::SelectSaveFile,
                                 {program(HelperDialect::zenity, "echo /a/b.dvp")})),
              Paths{"/a/b.dvp"});
    EXPECT_EQ(arguments(), "--file-selection\n--title=A title\n--save\n--confirm-overwrite\n"
                           "--filename=/some/folder/my name.dvp\n"
                           "--file-filter=Dravik Preset | *.dvp\n");
}

TEST_F(FileSelector, AsksKdialogToOpen) {
    EXPECT_EQ(
        chosenIn(*selector(Style::SelectFile, {program(HelperDialect::kdialog, "echo /a/b.dvp")})),
        Paths{"/a/b.dvp"});
    EXPECT_EQ(arguments(), "--title\nA title\n--getopenfilename\n/some/folder/\n"
                           "Dravik Preset (*.dvp);;All files (*)\n");
}

TEST_F(FileSelector, AsksKdialogToSave) {
    EXPECT_EQ(chosenIn(*selector(Style::SelectSaveFile,
                                 {program(HelperDialect::kdialog, "echo /a/b.dvp")})),
              Paths{"/a/b.dvp"});
    EXPECT_EQ(arguments(), "--title\nA title\n--getsavefilename\n/some/folder/my name.dvp\n"
                           "Dravik Preset (*.dvp)\n");
}

TEST_F(FileSelector, AsksEitherProgramForAnyOfSeveralTypes) {
    for (const HelperDialect dialect : {HelperDialect::zenity, HelperDialect::kdialog}) {
        const auto dialog = selector(Style::SelectFile, {program(dialect, "")});
        dialog->addFileExtension(CFileExtension("Dravik Bank", "dvb"));
        answers.clear();
        chosenIn(*dialog);
        EXPECT_TRUE(arguments().ends_with(
            dialect == HelperDialect::zenity
                ? "\n--file-filter=Dravik Preset | *.dvp\n--file-filter=Dravik Bank | *.dvb\n"
                  "--file-filter=All files | *\n"
                : "\nDravik Preset (*.dvp);;Dravik Bank (*.dvb);;All files (*)\n"))
            << arguments();
    }
}

TEST_F(FileSelector, TiesEitherDialogToItsWindow) {
    chosenIn(*selector(Style::SelectFile, {program(HelperDialect::zenity, "")}, 0x1400007));
    EXPECT_NE(arguments().find("\n--attach=20971527\n"), std::string::npos);
    answers.clear();
    chosenIn(*selector(Style::SelectFile, {program(HelperDialect::kdialog, "")}, 0x1400007));
    EXPECT_NE(arguments().find("\n--attach\n20971527\n"), std::string::npos);
}

TEST_F(FileSelector, AsksTheFirstProgramThatIsThere) {
    EXPECT_EQ(chosenIn(*selector(Style::SelectFile,
                                 {{(folder / "not there").string(), HelperDialect::kdialog},
                                  program(HelperDialect::zenity, "echo /from/zenity"),
                                  program(HelperDialect::kdialog, "echo /from/kdialog")})),
              Paths{"/from/zenity"});
}

TEST_F(FileSelector, WithoutAProgramChoosesNothingAtOnce) {
    const auto dialog =
        selector(Style::SelectFile, {{(folder / "not there").string(), HelperDialect::kdialog}});
    EXPECT_FALSE(show(*dialog));
    EXPECT_EQ(answers, std::vector<Paths>{{}});
}

TEST_F(FileSelector, WhoseProgramCannotBeStartedChoosesNothingAtOnce) {
    writeFile(folder / "broken", "#!/no/such/interpreter\n");
    permissions(folder / "broken", std::filesystem::perms(0755));
    const auto dialog =
        selector(Style::SelectFile, {{(folder / "broken").string(), HelperDialect::zenity}});
    EXPECT_FALSE(show(*dialog));
    EXPECT_EQ(answers, std::vector<Paths>{{}});
}

TEST_F(FileSelector, ThatIsDismissedChoosesNothing) {
    EXPECT_EQ(chosenBy("echo /a; exit 1"), Paths{});
}

TEST_F(FileSelector, ThatCrashesChoosesNothing) {
    EXPECT_EQ(chosenBy("echo /a; kill -SEGV $$"), Paths{});
}

TEST_F(FileSelector, ThatSaysNothingChoosesNothing) {
    EXPECT_EQ(chosenBy("exit 0"), Paths{});
}

TEST_F(FileSelector, ThatIsCancelledIsAnsweredOnceAndItsProgramEnded) {
    const auto dialog =
        selector(Style::SelectFile,
                 {program(HelperDialect::zenity, "echo $$ > '" + (folder / "number").string() +
                                                     "'; sleep 1000; echo /a")});
    EXPECT_TRUE(show(*dialog));
    ASSERT_TRUE(pumpUntil([&] { return numberIn(folder / "number").has_value(); }));
    EXPECT_TRUE(answers.empty());
    dialog->cancel();
    dialog->cancel();
    EXPECT_TRUE(pumpUntil([&] { return !processExists(*numberIn(folder / "number")); }));
    EXPECT_EQ(answers, std::vector<Paths>{{}});
}

TEST_F(FileSelector, ThatSaysSomethingElseFirstChoosesNothing) {
    EXPECT_EQ(chosenBy("echo warning: x; echo /a/b.dvp"), Paths{});
    answers.clear();
    EXPECT_EQ(chosenBy("echo a/b.dvp"), Paths{});
    answers.clear();
    EXPECT_EQ(chosenBy("echo; echo /a/b.dvp"), Paths{});
}

TEST_F(FileSelector, ThatWritesAZeroByteChoosesNothing) {
    EXPECT_EQ(chosenBy("printf '/a/b\\0.dvp'"), Paths{});
}

TEST_F(FileSelector, TakesANameWithLineEndsWhole) {
    EXPECT_EQ(chosenBy("printf '/a.dvp\\nb.dvp\\n'"), Paths{"/a.dvp\nb.dvp"});
    answers.clear();
    EXPECT_EQ(chosenBy("printf '/a\\n/b\\n\\n'"), Paths{"/a\n/b\n"});
    answers.clear();
    EXPECT_EQ(chosenBy("printf '/a\\nb'"), Paths{"/a\nb"});
}

TEST_F(FileSelector, KeepsNamesThatAreNotUtf8) {
    EXPECT_EQ(chosenBy("printf '/a/\\351.dvp\\n'"), Paths{"/a/\xE9.dvp"});
}

} // namespace
} // namespace mirelon::test

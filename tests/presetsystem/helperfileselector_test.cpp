#include "presetsystem/helperfileselector.h"

#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using VSTGUI::CFileExtension;
using VSTGUI::CNewFileSelector;
using Style = VSTGUI::PlatformFileSelectorStyle;

class FileDialog : public testing::Test {
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
    static VSTGUI::SharedPointer<CNewFileSelector> selector(Style style,
                                                            std::vector<HelperProgram> programs) {
        auto result = VSTGUI::owned(new CNewFileSelector(
            std::make_shared<HelperFileSelector>(style, std::move(programs)), nullptr));
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

    const TemporaryFolder folder;
};

TEST_F(FileDialog, AsksZenityToOpen) {
    const auto dialog =
        selector(Style::SelectFile, {program(HelperDialect::zenity, "echo '/a/b c.dvp'")});
    EXPECT_TRUE(dialog->runModal());
    ASSERT_EQ(dialog->getNumSelectedFiles(), 1U);
    EXPECT_STREQ(dialog->getSelectedFile(0), "/a/b c.dvp");
    EXPECT_EQ(arguments(), "--file-selection\n--title=A title\n--filename=/some/folder/\n"
                           "--file-filter=Dravik Preset | *.dvp\n--file-filter=All files | *\n");
}

TEST_F(FileDialog, AsksZenityToSave) {
    const auto dialog =
        selector(Style::SelectSaveFile, {program(HelperDialect::zenity, "echo /a/b.dvp")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_EQ(arguments(), "--file-selection\n--title=A title\n--save\n--confirm-overwrite\n"
                           "--filename=/some/folder/my name.dvp\n"
                           "--file-filter=Dravik Preset | *.dvp\n--file-filter=All files | *\n");
}

TEST_F(FileDialog, AsksKdialogToOpen) {
    const auto dialog =
        selector(Style::SelectFile, {program(HelperDialect::kdialog, "echo /a/b.dvp")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_EQ(dialog->getNumSelectedFiles(), 1U);
    EXPECT_EQ(arguments(), "--title\nA title\n--getopenfilename\n/some/folder/\n"
                           "Dravik Preset (*.dvp);;All files (*)\n");
}

TEST_F(FileDialog, AsksKdialogToSave) {
    const auto dialog =
        selector(Style::SelectSaveFile, {program(HelperDialect::kdialog, "echo /a/b.dvp")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_EQ(arguments(), "--title\nA title\n--getsavefilename\n/some/folder/my name.dvp\n"
                           "Dravik Preset (*.dvp);;All files (*)\n");
}

TEST_F(FileDialog, AsksTheFirstProgramThatIsThere) {
    const auto dialog =
        selector(Style::SelectFile, {{(folder / "not there").string(), HelperDialect::kdialog},
                                     program(HelperDialect::zenity, "echo /from/zenity"),
                                     program(HelperDialect::kdialog, "echo /from/kdialog")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_STREQ(dialog->getSelectedFile(0), "/from/zenity");
}

TEST_F(FileDialog, WithoutAProgramChoosesNothing) {
    const auto dialog =
        selector(Style::SelectFile, {{(folder / "not there").string(), HelperDialect::kdialog}});
    EXPECT_FALSE(dialog->runModal());
    EXPECT_EQ(dialog->getNumSelectedFiles(), 0U);
}

TEST_F(FileDialog, ThatIsDismissedChoosesNothing) {
    const auto dialog =
        selector(Style::SelectFile, {program(HelperDialect::zenity, "echo /a; exit 1")});
    EXPECT_FALSE(dialog->runModal());
    EXPECT_EQ(dialog->getNumSelectedFiles(), 0U);
}

TEST_F(FileDialog, ThatSaysNothingChoosesNothing) {
    const auto dialog = selector(Style::SelectFile, {program(HelperDialect::zenity, "exit 0")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_EQ(dialog->getNumSelectedFiles(), 0U);
}

TEST_F(FileDialog, IgnoresWhatIsNoPath) {
    const auto dialog = selector(
        Style::SelectFile, {program(HelperDialect::zenity, "echo warning: x; echo /a/b.dvp")});
    EXPECT_TRUE(dialog->runModal());
    ASSERT_EQ(dialog->getNumSelectedFiles(), 1U);
    EXPECT_STREQ(dialog->getSelectedFile(0), "/a/b.dvp");
}

TEST_F(FileDialog, TellsSeveralFilesApart) {
    const auto dialog =
        selector(Style::SelectFile, {program(HelperDialect::zenity, "echo /a; echo /b")});
    EXPECT_TRUE(dialog->runModal());
    EXPECT_EQ(dialog->getNumSelectedFiles(), 2U);
}

TEST_F(FileDialog, KeepsNamesThatAreNotUtf8) {
    const auto dialog =
        selector(Style::SelectFile, {program(HelperDialect::zenity, "printf '/a/\\351.dvp\\n'")});
    EXPECT_TRUE(dialog->runModal());
    ASSERT_EQ(dialog->getNumSelectedFiles(), 1U);
    EXPECT_STREQ(dialog->getSelectedFile(0), "/a/\xE9.dvp");
}

} // namespace
} // namespace mirelon::test

// What the user is asked for a file's name, and what becomes of the answer.
#include "tests/presetsystem/presetfilestest.h"
#include "tests/support/childprocess.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace mirelon::test {
namespace {

using namespace std::string_literals;
using FileQuestions = PresetFilesTest;

TEST_F(FileQuestions, TheQuestionNamesWhatIsAsked) {
    editor().setDir("/a/folder/");
    std::ranges::copy("my.dvp"s, editor().lastFiles.currentPresetName.begin());
    std::ranges::copy("my.dvb"s, editor().lastFiles.currentBankName.begin());
    editor().savePreset();
    editor().saveBank();
    editor().loadPreset(false);
    editor().loadBank(false);
    editor().loadBank(true);
    ASSERT_EQ(editor().user->questions.size(), 5U);
    const std::vector<FileQuestion>& asked = editor().user->questions;
    EXPECT_EQ(asked[0].title, "Save preset");
    EXPECT_EQ(asked[0].name, "my.dvp");
    EXPECT_STREQ(asked[0].type.description, "Dravik Preset");
    EXPECT_STREQ(asked[0].type.extension, "dvp");
    EXPECT_TRUE(asked[0].save);
    EXPECT_EQ(asked[1].title, "Save bank");
    EXPECT_EQ(asked[1].name, "my.dvb");
    EXPECT_STREQ(asked[1].type.description, "Dravik Bank");
    EXPECT_STREQ(asked[1].type.extension, "dvb");
    EXPECT_EQ(asked[2].title, "Load preset");
    EXPECT_FALSE(asked[2].save);
    EXPECT_EQ(asked[3].title, "Load bank");
    EXPECT_EQ(asked[4].title, "Load bank (endian-reversed)");
    for (const FileQuestion& question : asked)
        EXPECT_EQ(question.directory, "/a/folder/");
}

TEST_F(FileQuestions, AnAnswerBecomesTheLastFolderAndName) {
    answer(folder / "new.dvp");
    editor().savePreset();
    EXPECT_EQ(editor().lastFiles.currentDir.data(), folder.directory());
    EXPECT_STREQ(editor().lastFiles.currentPresetName.data(), "new.dvp");
    EXPECT_STREQ(editor().lastFiles.currentBankName.data(), "");
}

TEST_F(FileQuestions, ADismissedDialogKeepsFolderAndNameAndTouchesNothing) {
    editor().setDir("/a/folder/");
    const std::string before = effect().bytes();
    editor().loadPreset(false);
    editor().loadBank(false);
    editor().savePreset();
    editor().saveBank();
    EXPECT_STREQ(editor().lastFiles.currentDir.data(), "/a/folder/");
    EXPECT_EQ(effect().bytes(), before);
    EXPECT_TRUE(effect().sets.empty());
}

TEST_F(FileQuestions, WithoutAFrameNothingIsAsked) {
    editor().dropFrame();
    editor().loadPreset(false);
    editor().loadBank(false);
    editor().savePreset();
    editor().saveBank();
    EXPECT_TRUE(editor().user->questions.empty());
    EXPECT_TRUE(effect().sets.empty());
}

TEST_F(FileQuestions, WithoutADialogNothingIsAskedAndTheUserToldWhy) {
    editor().user->available = false;
    editor().loadPreset(false);
    editor().saveBank();
    EXPECT_TRUE(editor().user->questions.empty());
    EXPECT_EQ(editor().told, std::vector(2, noDialogMessage().text));
}

TEST_F(FileQuestions, AMissingExtensionIsAppended) {
    answer(folder / "name");
    editor().savePreset();
    answer(folder / "name.with.dots");
    editor().saveBank();
    EXPECT_EQ(contentsOf(folder / "name.dvp").size(), 65U);
    EXPECT_EQ(contentsOf(folder / "name.with.dots.dvb").size(), 665U);
    EXPECT_STREQ(editor().lastFiles.currentPresetName.data(), "name.dvp");
}

TEST_F(FileQuestions, AnExtensionInCapitalsIsOne) {
    answer(folder / "NAME.DVP");
    editor().savePreset();
    EXPECT_EQ(contentsOf(folder / "NAME.DVP").size(), 65U);
}

TEST_F(FileQuestions, AFileThatOnlyTheAppendedExtensionNamesIsReplacedOnlyWhenAskedAgain) {
    writeFile(folder / "name.dvp", "precious");
    answer(folder / "name");
    editor().savePreset();
    EXPECT_EQ(contentsOf(folder / "name.dvp"), "precious");
    ASSERT_EQ(editor().user->questions.size(), 2U);
    EXPECT_EQ(editor().user->questions[1].directory, folder.directory());
    EXPECT_EQ(editor().user->questions[1].name, "name.dvp");

    answer(folder / "name");
    answer(folder / "name.dvp");
    editor().savePreset();
    EXPECT_EQ(contentsOf(folder / "name.dvp").size(), 65U);
}

TEST_F(FileQuestions, ANameThatDoesNotFitIsRefusedBeforeAnythingIsWritten) {
    // 252 and ".dvp" fit into 256; one more does not.
    const std::string fitting(251, 'n');
    editor().setDir("/a/folder/");
    answer("/somewhere/" + std::string(253, 'n') + ".dvp");
    editor().savePreset();
    answer(folder / (std::string(300, 'n') + ".dvp"));
    editor().loadPreset(false);
    EXPECT_STREQ(editor().lastFiles.currentDir.data(), "/a/folder/");
    EXPECT_STREQ(editor().lastFiles.currentPresetName.data(), "");
    answer(folder / (fitting + ".dvp"));
    editor().savePreset();
    EXPECT_EQ(contentsOf(folder / (fitting + ".dvp")).size(), 65U);
}

TEST_F(FileQuestions, AFolderThatDoesNotFitIsRefusedBeforeAnythingIsWritten) {
    std::filesystem::path deep = folder.path;
    while (deep.string().size() < 256)
        deep /= std::string(60, 'd');
    create_directories(deep);
    ASSERT_GT(deep.string().size() + 1, 256U);
    answer(deep / "a.dvp");
    editor().savePreset();
    EXPECT_TRUE(is_empty(deep));
    EXPECT_STREQ(editor().lastFiles.currentDir.data(), "");
}

TEST_F(FileQuestions, APathOf512CharactersIsRefusedThoughItsPartsFit) {
    // A folder of 256 characters and a name of 255 make 511; 256 is one more.
    std::filesystem::path deep = folder.path;
    while (deep.string().size() < 150)
        deep /= std::string(50, 'd');
    deep /= std::string(255 - deep.string().size() - 1, 'd');
    ASSERT_EQ(deep.string().size() + 1, 256U);
    create_directories(deep);
    answer(deep / (std::string(251, 'n') + ".dvp"));
    editor().savePreset();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(deep), {}), 1);
    const std::string kept = editor().lastFiles.currentPresetName.data();
    answer(deep / (std::string(252, 'm') + ".dvp"));
    editor().loadPreset(false);
    EXPECT_EQ(editor().lastFiles.currentPresetName.data(), kept);
}

TEST_F(FileQuestions, AnAnswerThatIsNoFileIsRefused) {
    answer(folder.directory());
    editor().loadBank(false);
    answer("relative.dvb");
    editor().loadBank(false);
    answer("");
    editor().loadBank(false);
    EXPECT_STREQ(editor().lastFiles.currentDir.data(), "");
    EXPECT_TRUE(effect().sets.empty());
}

TEST_F(FileQuestions, ReadingNeedsTheRightToWrite) {
    writeFile(folder / "a.dvp", presetFileOf(effect(), 8));
    permissions(folder / "a.dvp", std::filesystem::perms(0444));
    EXPECT_EQ(inChild([&] {
                  becomeOrdinaryUser();
                  answer(folder / "a.dvp");
                  editor().loadPreset(false);
                  return effect().name(0) == "preset 0" ? 0 : 1;
              }),
              0);
}

TEST_F(FileQuestions, AnInstanceThatEndsWhileTheUserThinksIsNotTouched) {
    writeFile(folder / "a.dvp", presetFileOf(effect(), 8));
    for (const bool save : {false, true}) {
        instance.emplace(folder / "config");
        editor().makeFrame();
        answer(save ? folder / "b.dvp" : folder / "a.dvp");
        editor().user->meanwhile = [this] { instance.reset(); };
        ScriptedEditor& asking = editor();
        if (save)
            asking.savePreset();
        else
            asking.loadPreset(false);
        EXPECT_FALSE(exists(folder / "b.dvp"));
    }
}

TEST_F(FileQuestions, AWindowThatClosesWhileTheUserThinksTakesItsQuestionBack) {
    writeFile(folder / "a.dvp", presetFileOf(effect(), 8));
    const std::string before = effect().bytes();
    for (const bool save : {false, true}) {
        if (save)
            editor().makeFrame();
        answer(save ? folder / "b.dvp" : folder / "a.dvp");
        editor().user->meanwhile = [this] { editor().dropFrame(); };
        if (save)
            editor().savePreset();
        else
            editor().loadPreset(false);
    }
    EXPECT_EQ(editor().user->dismissals, 2);
    EXPECT_EQ(effect().bytes(), before);
    EXPECT_FALSE(exists(folder / "b.dvp"));
    EXPECT_STREQ(editor().lastFiles.currentDir.data(), "");
}

} // namespace
} // namespace mirelon::test

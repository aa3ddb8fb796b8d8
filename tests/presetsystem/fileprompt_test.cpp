#include "presetsystem/fileprompt.h"

#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace mirelon::test {
namespace {

// Dialogs that stay open until the test answers them.
struct OpenDialogs {
    std::vector<FileQuestion> questions;
    std::vector<FileDialog::Answer> answers;
    int dismissals = 0;

    void answer(std::optional<std::string> path) {
        ASSERT_FALSE(answers.empty());
        const FileDialog::Answer answered = std::move(answers.back());
        answers.pop_back();
        answered(std::move(path));
    }
};

class HeldDialog final : public FileDialog {
  public:
    explicit HeldDialog(OpenDialogs& dialogs)
        : dialogs(dialogs) {}
    void ask(const FileQuestion& question, Answer answered) override {
        dialogs.questions.push_back(question);
        dialogs.answers.push_back(std::move(answered));
    }
    void dismiss() override { ++dialogs.dismissals; }

  private:
    OpenDialogs& dialogs;
};

class FilePrompts : public testing::Test {
  protected:
    void save() { ask(true); }
    void load() { ask(false); }
    void ask(bool save) {
        prompt->ask({presetFileType, save, "A title", "/start/", "name.dvp"},
                    [this](const ChosenFile& file) {
                        chosen.push_back(std::string(file.directory.data()) + "|" +
                                         file.name.data());
                    });
    }

    // Whether a file in `directory` is taken when its name is this long.
    bool isTaken(const std::string& directory, std::size_t nameLength) {
        chosen.clear();
        load();
        dialogs.answer(std::string(directory).append(nameLength, 'n'));
        return !chosen.empty();
    }

    const std::string longestDirectory = std::string("/").append(254, 'd').append(1, '/');
    const TemporaryFolder folder;
    OpenDialogs dialogs;
    std::unique_ptr<FilePrompt> prompt =
        std::make_unique<FilePrompt>(std::make_unique<HeldDialog>(dialogs));
    std::vector<std::string> chosen; // directory|name
};
using Chosen = std::vector<std::string>;

TEST_F(FilePrompts, GoOnWithTheAnswerWhenItComes) {
    load();
    ASSERT_EQ(dialogs.questions.size(), 1U);
    EXPECT_EQ(dialogs.questions[0].directory, "/start/");
    EXPECT_EQ(dialogs.questions[0].name, "name.dvp");
    EXPECT_TRUE(prompt->isAsking());
    EXPECT_EQ(chosen, Chosen{});
    dialogs.answer("/a/folder/b.dvp");
    EXPECT_EQ(chosen, Chosen{"/a/folder/|b.dvp"});
    EXPECT_FALSE(prompt->isAsking());
}

TEST_F(FilePrompts, GoNoFurtherWhenDismissed) {
    load();
    dialogs.answer(std::nullopt);
    EXPECT_EQ(chosen, Chosen{});
    EXPECT_FALSE(prompt->isAsking());
}

TEST_F(FilePrompts, RefuseWhatNamesNoFile) {
    for (const char* path : {"", "relative.dvp", "/a/folder/"}) {
        load();
        dialogs.answer(path);
        EXPECT_FALSE(prompt->isAsking()) << path;
    }
    EXPECT_EQ(chosen, Chosen{});
}

TEST_F(FilePrompts, TakePartsOf256CharactersAndNoMore) {
    EXPECT_TRUE(isTaken("/", 256));
    EXPECT_FALSE(isTaken("/", 257));
    EXPECT_TRUE(isTaken(longestDirectory, 1));
    EXPECT_FALSE(isTaken("/d" + longestDirectory, 1));
}

TEST_F(FilePrompts, TakePathsOf511CharactersAndNoMore) {
    EXPECT_TRUE(isTaken(longestDirectory, 255));
    EXPECT_FALSE(isTaken(longestDirectory, 256));
    EXPECT_FALSE(isTaken("/", 2000));
}

TEST_F(FilePrompts, AppendTheExtensionToANameToSaveUnderButToNoOther) {
    save();
    dialogs.answer("/a/b");
    save();
    dialogs.answer("/a/b.DVP");
    load();
    dialogs.answer("/a/b");
    EXPECT_EQ(chosen, (Chosen{"/a/|b.dvp", "/a/|b.DVP", "/a/|b"}));
}

TEST_F(FilePrompts, AppendTheExtensionBehindAnyOtherEnding) {
    for (const char* other : {"/a/b.txt", "/a/b.dv", "/a/b.dvp1", "/a/b.dvp."}) {
        save();
        dialogs.answer(other);
    }
    EXPECT_EQ(chosen,
              (Chosen{"/a/|b.txt.dvp", "/a/|b.dv.dvp", "/a/|b.dvp1.dvp", "/a/|b.dvp..dvp"}));
}

TEST_F(FilePrompts, AskOnceMoreBeforeTheAppendedExtensionNamesAnExistingFile) {
    writeFile(folder / "b.dvp", "precious");
    save();
    dialogs.answer((folder / "b").string());
    EXPECT_EQ(chosen, Chosen{});
    EXPECT_TRUE(prompt->isAsking());
    ASSERT_EQ(dialogs.questions.size(), 2U);
    EXPECT_EQ(dialogs.questions[1].title, "A title");
    EXPECT_EQ(dialogs.questions[1].directory, folder.directory());
    EXPECT_EQ(dialogs.questions[1].name, "b.dvp");
    dialogs.answer((folder / "b.dvp").string());
    EXPECT_EQ(chosen, Chosen{folder.directory() + "|b.dvp"});
}

TEST_F(FilePrompts, AskNoThirdTime) {
    writeFile(folder / "b.dvp", "precious");
    save();
    dialogs.answer((folder / "b").string());
    dialogs.answer((folder / "c").string());
    EXPECT_EQ(dialogs.questions.size(), 2U);
    EXPECT_EQ(chosen, Chosen{});
    EXPECT_FALSE(prompt->isAsking());
}

TEST_F(FilePrompts, DropAQuestionWhileAnotherIsOpen) {
    load();
    save();
    EXPECT_EQ(dialogs.questions.size(), 1U);
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{"/a/|b.dvp"});
}

TEST_F(FilePrompts, MayAskAgainFromWhatFollowsAnAnswer) {
    prompt->ask({presetFileType, false, "", "", ""}, [this](const ChosenFile&) { load(); });
    dialogs.answer("/a/b.dvp");
    dialogs.answer("/a/c.dvp");
    EXPECT_EQ(chosen, Chosen{"/a/|c.dvp"});
}

TEST_F(FilePrompts, LeaveAnAnswerAloneThatComesAfterTheirEnd) {
    load();
    prompt.reset();
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{});
}

TEST_F(FilePrompts, LeaveASecondAnswerAloneThatComesAfterTheirEnd) {
    writeFile(folder / "b.dvp", "precious");
    save();
    dialogs.answer((folder / "b").string());
    prompt.reset();
    dialogs.answer((folder / "b.dvp").string());
    EXPECT_EQ(chosen, Chosen{});
}

TEST_F(FilePrompts, DismissTheDialogOfAQuestionThatIsTakenBack) {
    load();
    prompt->cancel();
    EXPECT_EQ(dialogs.dismissals, 1);
    EXPECT_FALSE(prompt->isAsking());
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{});
}

TEST_F(FilePrompts, DismissNothingWhenNothingIsAsked) {
    prompt->cancel();
    load();
    dialogs.answer("/a/b.dvp");
    prompt->cancel();
    EXPECT_EQ(dialogs.dismissals, 0);
}

TEST_F(FilePrompts, AskAgainAfterAQuestionWasTakenBack) {
    load();
    prompt->cancel();
    save();
    ASSERT_EQ(dialogs.questions.size(), 2U);
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{"/a/|b.dvp"});
}

TEST_F(FilePrompts, MayBeCancelledInWhatFollowsAnAnswer) {
    prompt->ask({presetFileType, false, "", "", ""}, [this](const ChosenFile& file) {
        prompt->cancel();
        chosen.emplace_back(file.name.data());
    });
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{"b.dvp"});
    EXPECT_EQ(dialogs.dismissals, 0);
}

TEST_F(FilePrompts, MayEndInWhatFollowsAnAnswer) {
    prompt->ask({presetFileType, false, "", "", ""}, [this](const ChosenFile& file) {
        prompt.reset();
        chosen.emplace_back(file.name.data());
    });
    dialogs.answer("/a/b.dvp");
    EXPECT_EQ(chosen, Chosen{"b.dvp"});
}

} // namespace
} // namespace mirelon::test

// What the window's top line says of what the pointer rests on, and of what has
// happened.
#include "tests/editor/editorhost.h"
#include "tests/editor/positions.h"
#include "tests/editor/standindialog.h"
#include "tests/support/windowdamage.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t success = 0x6FDCE6;
constexpr std::uint32_t failure = 0xFFB878;

class TitleLine : public testing::Test {
  protected:
    // Large letters have pixels of their colour alone.
    TitleLine() {
        VirtualDisplay::start();
        setenv("MIRELON_SCALE", "3", 1);
        editor = std::make_unique<EditorHost>();
        editor->open();
        editor->moveTo(nowhere.x, nowhere.y);
        atRest = words();
    }
    ~TitleLine() override { unsetenv("MIRELON_SCALE"); }

    Pixels words() {
        const auto at = [&](int length) { return static_cast<int>(length * editor->scale); };
        return editor->pixels().part(at(titleTextLeft), 0, at(titleTextRight), at(titleHeight));
    }
    bool comesToSay(const Pixels& wanted) {
        return editor->runUntil([&] { return words() == wanted; });
    }
    bool comesToSaySomething() {
        return editor->runUntil([&] { return words() != atRest; });
    }
    // Whether there is a letter in this colour.
    bool isWritten(std::uint32_t colour) {
        const Pixels shown = words();
        for (const std::uint32_t pixel : shown.rgb)
            if (distance(pixel, colour) < 12)
                return true;
        return false;
    }
    static int distance(std::uint32_t a, std::uint32_t b) {
        int sum = 0;
        for (const unsigned shift : {0U, 8U, 16U})
            sum += std::abs(static_cast<int>(a >> shift & 0xFFU) -
                            static_cast<int>(b >> shift & 0xFFU));
        return sum;
    }

    std::unique_ptr<EditorHost> editor;
    Pixels atRest;
};

TEST_F(TitleLine, ExplainsWhatThePointerRestsOnUntilItLeaves) {
    for (const Position at : {Position{150, 62}, Position{270, 62}, Position{93, 257}, aboutStrip,
                              nameField, menuButton, rockerLeft, loadPreset, defaultBank, storeA,
                              recallB, letterA, title, Position{150, 30}}) {
        editor->moveTo(at.x, at.y);
        EXPECT_TRUE(comesToSaySomething()) << at.x << ", " << at.y;
        editor->moveTo(nowhere.x, nowhere.y);
        EXPECT_TRUE(comesToSay(atRest)) << at.x << ", " << at.y;
    }
}

TEST_F(TitleLine, WaitsBeforeItExplains) {
    const auto begin = std::chrono::steady_clock::now();
    editor->window->moveTo(150 * editor->scale, 62 * editor->scale);
    ASSERT_TRUE(comesToSaySomething());
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 500ms);
}

TEST_F(TitleLine, SaysTheValueOfTheMoment) {
    editor->moveTo(150, 62);
    ASSERT_TRUE(comesToSaySomething());
    const Pixels before = words();
    editor->effect->setParameter(0, 0.9F);
    EXPECT_TRUE(editor->runUntil([&] { return words() != before; }));
}

TEST_F(TitleLine, IsAllThatIsDrawnAnewForItsWords) {
    editor->moveTo(nowhere.x, nowhere.y);
    editor->moveTo(150, 30); // a meter has no frame of its own
    WindowDamage drawn(*editor->window);
    ASSERT_TRUE(comesToSaySomething());
    ASSERT_TRUE(editor->runUntilStill(drawn));
    EXPECT_LE(drawn.bottom(), titleHeight * editor->scale);
}

TEST_F(TitleLine, SaysThatAPresetIsStored) {
    editor->click(storeA.x, storeA.y);
    ASSERT_TRUE(comesToSaySomething());
    EXPECT_TRUE(isWritten(success));
    // Over with the time, though the pointer is still there.
    EXPECT_TRUE(comesToSay(atRest));
}

TEST_F(TitleLine, GivesAMessageUpForTheNextExplanation) {
    editor->click(storeA.x, storeA.y);
    ASSERT_TRUE(editor->runUntil([&] { return isWritten(success); }));
    const auto begin = std::chrono::steady_clock::now();
    editor->moveTo(150, 62);
    EXPECT_TRUE(editor->runUntil([&] { return words() != atRest && !isWritten(success); }));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
}

TEST_F(TitleLine, SaysThatNothingIsStoredToRecall) {
    editor->click(recallB.x, recallB.y);
    EXPECT_TRUE(editor->runUntil([&] { return isWritten(failure); }));
}

TEST_F(TitleLine, SaysThatThereIsNoProgramToAskForFiles) {
    editor->click(loadPreset.x, loadPreset.y);
    EXPECT_TRUE(editor->runUntil([&] { return isWritten(failure); }));
}

TEST_F(TitleLine, SaysThatAPresetIsSavedAndLoaded) {
    const TemporaryFolder folder;
    {
        const StandInDialog dialog(folder / "mine.dvp");
        editor->click(savePreset.x, savePreset.y);
        EXPECT_TRUE(editor->runUntil([&] { return isWritten(success); }));
    }
    EXPECT_TRUE(comesToSay(atRest));
    const StandInDialog dialog(folder / "mine.dvp");
    editor->click(loadPreset.x, loadPreset.y);
    EXPECT_TRUE(editor->runUntil([&] { return isWritten(success); }));
}

TEST_F(TitleLine, SaysThatAFileIsNoBank) {
    const TemporaryFolder folder;
    writeFile(folder / "letter.dvb", "Dear reader");
    const StandInDialog dialog(folder / "letter.dvb");
    editor->click(loadBank.x, loadBank.y);
    EXPECT_TRUE(editor->runUntil([&] { return isWritten(failure); }));
}

TEST_F(TitleLine, SaysThatAFileCannotBeWritten) {
    const StandInDialog dialog(std::string("/proc/mine.dvp"));
    editor->click(savePreset.x, savePreset.y);
    EXPECT_TRUE(editor->runUntil([&] { return isWritten(failure); }));
}

class TitleLineAtEveryScale : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Steps, TitleLineAtEveryScale,
                         testing::Values("1", "1.25", "1.5", "1.75", "2", "2.5", "3"),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

// A file's name may be longer than the line.
TEST_P(TitleLineAtEveryScale, EndsATextThatIsTooLongInItsPlace) {
    setenv("MIRELON_SCALE", GetParam(), 1);
    EditorHost editor;
    editor.open();
    editor.moveTo(nowhere.x, nowhere.y);
    const Pixels before = editor.pixels();
    const TemporaryFolder folder;
    const StandInDialog dialog(folder / (std::string(120, 'w') + ".dvp"));
    editor.click(savePreset.x, savePreset.y);
    editor.moveTo(nowhere.x, nowhere.y);
    EXPECT_TRUE(editor.runUntil([&] { return editor.pixels() != before; }));
    const Pixels after = editor.pixels();
    const auto [top, bottom] = changedRows(before, after);
    EXPECT_GE(top, 0);
    EXPECT_LE(bottom, static_cast<int>(titleHeight * editor.scale));
    const int left = static_cast<int>(titleTextLeft * editor.scale);
    const int right = static_cast<int>(titleTextRight * editor.scale);
    const std::uint32_t ground = after.at(left - 2, top);
    for (int y = top; y < bottom; ++y) {
        for (const int x : {left, left + 1, right - 1, right})
            EXPECT_EQ(after.at(x, y), ground) << x << ", " << y;
    }
    unsetenv("MIRELON_SCALE");
}

} // namespace

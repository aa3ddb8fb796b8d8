// The preset panel under a real pointer and keyboard.
#include "tests/editor/presetmenu.h"
#include "tests/editor/standindialog.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

namespace hosting = mirelon::hosting;
using namespace mirelon::test;
using namespace std::chrono_literals;

namespace {

class PresetPanel : public testing::TestWithParam<Drive> {
  protected:
    PresetPanel()
        : editor(GetParam()) {
        editor.open();
        editor.host.forgetCalls();
    }
    void click(Position at, unsigned button = 1) { editor.click(at.x, at.y, button); }
    void doubleClick(Position at) { editor.doubleClick(at.x, at.y); }
    // Clicks at what asks for a file, until that has been answered for the `times`-th
    // time.
    void ask(const StandInDialog& dialog, Position at, std::size_t times = 1, unsigned button = 1) {
        click(at, button);
        EXPECT_TRUE(editor.runUntil([&] { return dialog.isOver(times); }));
    }
    void rename(std::string_view name) {
        click(nameField);
        editor.type(name);
        editor.key(XK_Return);
    }
    std::string nameAt(int preset) { return editor.effect->programNameAt(preset).value_or("?"); }

    EditorHost editor;
};
INSTANTIATE_TEST_SUITE_P(BothDrives, PresetPanel, testing::Values(Drive::hostIdle, Drive::glib),
                         [](const testing::TestParamInfo<Drive>& info) {
                             return testing::PrintToString(info.param);
                         });

TEST_P(PresetPanel, TheRockerStepsThroughThePresetsAndStopsAtTheEnds) {
    click(rockerRight);
    EXPECT_EQ(editor.effect->programName(), "extended width");
    EXPECT_EQ(editor.parameter(0), 0.625F);
    click(rockerRight);
    EXPECT_EQ(editor.effect->programName(), "reduced width");
    for (int i = 0; i < 10; ++i)
        click(rockerRight);
    EXPECT_EQ(editor.effect->programName(), "swapped");
    click(rockerLeft);
    EXPECT_EQ(editor.effect->programName(), "out of phase");
    for (int i = 0; i < 12; ++i)
        click(rockerLeft);
    EXPECT_EQ(editor.effect->programName(), "init");
}

TEST_P(PresetPanel, TheRockersMiddleLineBelongsToItsRightHalf) {
    editor.click(235, 326);
    EXPECT_EQ(editor.effect->programName(), "extended width");
    editor.click(234, 326);
    EXPECT_EQ(editor.effect->programName(), "init");
}

TEST_P(PresetPanel, APressOnTheRockerAtTheLastPresetAppliesItAgain) {
    for (int i = 0; i < 10; ++i)
        click(rockerRight);
    editor.host.forgetCalls();
    click(rockerRight);
    EXPECT_EQ(editor.touches(0), "be");
    EXPECT_EQ(editor.host.count(audioMasterUpdateDisplay), 2U);
}

TEST_P(PresetPanel, TheMenuAppliesTheChosenPreset) {
    ASSERT_TRUE(chooseFromMenu(editor, 4));
    EXPECT_EQ(editor.effect->programName(), "balanse to the right");
    EXPECT_EQ(editor.parameter(2), 0.3F);
}

TEST_P(PresetPanel, AClickBesideTheMenuChoosesNothing) {
    const Pixels closed = editor.pixels();
    click(menuButton);
    ASSERT_TRUE(editor.runUntilStill(closed));
    const Pixels open = editor.window->pixels();
    editor.click(20, 280);
    ASSERT_TRUE(editor.runUntilStill(open));
    EXPECT_EQ(editor.effect->programName(), "init");
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_P(PresetPanel, ATypedNameRenamesThePreset) {
    rename("my preset 1");
    EXPECT_EQ(nameAt(0), "my preset 1");
    EXPECT_EQ(editor.host.count(audioMasterUpdateDisplay), 1U);
    EXPECT_EQ(editor.host.count(audioMasterBeginEdit), 0U);
}

TEST_P(PresetPanel, EscapeKeepsTheName) {
    click(nameField);
    editor.type("abc");
    editor.key(XK_Escape);
    EXPECT_EQ(nameAt(0), "init");
}

TEST_P(PresetPanel, OfALongNameTwentyFourBytesStay) {
    rename("abcdefghijklmnopqrstuvwxyz1234");
    EXPECT_EQ(nameAt(0), "abcdefghijklmnopqrstuvwx");
    const Pixels cut = editor.pixels();
    click(rockerRight);
    click(rockerLeft);
    editor.moveTo(150, 305);
    EXPECT_EQ(editor.pixels().part(91, 320, 201, 334), cut.part(91, 320, 201, 334));
}

TEST_P(PresetPanel, OfALongNameTheBeginningIsShown) {
    const auto shown = [&](const char* name) {
        editor.effect->setProgramName(name);
        editor.moveTo(150, 305);
        return editor.pixels().part(91, 320, 201, 334);
    };
    // Two letters of one width, so that nothing else differs.
    EXPECT_NE(shown("nwwwwwwwwwwwwwwwwwwwwwww"), shown("uwwwwwwwwwwwwwwwwwwwwwww"));
}

TEST_P(PresetPanel, MemoriesKeepThePresetAndGiveItBack) {
    for (const auto& [store, recall] : {std::pair{storeA, recallA}, {storeB, recallB}}) {
        editor.effect->setParameter(0, 0.125F);
        rename("kept");
        click(store);
        editor.effect->setParameter(0, 0.75F);
        rename("changed");
        click(recall);
        EXPECT_EQ(editor.parameter(0), 0.125F);
        EXPECT_EQ(nameAt(0), "kept");
    }
}

TEST_P(PresetPanel, TheTwoMemoriesAreApart) {
    editor.effect->setParameter(0, 0.25F);
    click(storeA);
    editor.effect->setParameter(0, 0.75F);
    click(storeB);
    click(recallA);
    EXPECT_EQ(editor.parameter(0), 0.25F);
    click(recallB);
    EXPECT_EQ(editor.parameter(0), 0.75F);
}

TEST_P(PresetPanel, AnEmptyMemoryChangesNothing) {
    editor.effect->setParameter(0, 0.75F);
    click(recallA);
    EXPECT_EQ(editor.parameter(0), 0.75F);
}

// What a new instance starts with, given the same preferences.
struct Fresh {
    explicit Fresh(const EditorHost& other) {
        setenv("XDG_CONFIG_HOME", other.preferences.path.c_str(), 1);
        effect = std::make_unique<hosting::Effect>(other.module(), host);
    }
    hosting::RecordingHost host;
    std::unique_ptr<hosting::Effect> effect;
};

TEST_P(PresetPanel, ADoubleClickStoresTheDefaultPresetAndWithControlClearsIt) {
    editor.effect->setParameter(0, 0.25F);
    click(defaultPreset);
    EXPECT_EQ(Fresh(editor).effect->parameter(0), 0.5F);
    doubleClick(defaultPreset);
    EXPECT_EQ(Fresh(editor).effect->parameter(0), 0.25F);
    editor.hold(XK_Control_L);
    doubleClick(defaultPreset);
    editor.letGo(XK_Control_L);
    EXPECT_EQ(Fresh(editor).effect->parameter(0), 0.5F);
}

TEST_P(PresetPanel, ADoubleClickStoresTheDefaultBankAndWithControlClearsIt) {
    click(rockerRight);
    rename("mine");
    click(defaultBank);
    EXPECT_EQ(Fresh(editor).effect->programNameAt(1), "extended width");
    doubleClick(defaultBank);
    EXPECT_EQ(Fresh(editor).effect->programNameAt(1), "mine");
    editor.hold(XK_Control_L);
    doubleClick(defaultBank);
    editor.letGo(XK_Control_L);
    EXPECT_EQ(Fresh(editor).effect->programNameAt(1), "extended width");
}

TEST_P(PresetPanel, AHostsRenamingShowsInTheNameField) {
    const Pixels before = editor.pixels();
    editor.effect->setProgramName("renamed");
    const Pixels after = editor.pixels();
    EXPECT_NE(after.part(91, 320, 201, 334), before.part(91, 320, 201, 334));
    click(rockerRight);
    click(rockerLeft);
    editor.moveTo(150, 305);
    EXPECT_EQ(editor.pixels().part(91, 320, 201, 334), after.part(91, 320, 201, 334));
}

TEST_P(PresetPanel, ANewBankFromTheHostShowsInTheNameField) {
    click(rockerRight);
    editor.moveTo(150, 305);
    const auto chunk = editor.effect->chunk();
    const Pixels second = editor.pixels();
    click(rockerRight);
    editor.moveTo(150, 305);
    ASSERT_NE(editor.pixels(), second);
    EXPECT_EQ(editor.effect->setChunk(chunk), 0);
    EXPECT_EQ(editor.pixels(), second);
}

TEST_P(PresetPanel, PresetsAndBanksAreSavedWhereTheUserSays) {
    TemporaryFolder folder;
    {
        const StandInDialog dialog(folder / "one.dvp");
        ask(dialog, savePreset);
        EXPECT_EQ(dialog.starts(), 1U);
        EXPECT_TRUE(dialog.argumentsContain("--title=Save preset"));
        EXPECT_TRUE(dialog.argumentsContain("--save"));
    }
    EXPECT_EQ(contentsOf(folder / "one.dvp").size(), 65U);
    {
        const StandInDialog dialog(folder / "all.dvb");
        ask(dialog, saveBank);
        EXPECT_TRUE(dialog.argumentsContain("--title=Save bank"));
    }
    EXPECT_EQ(contentsOf(folder / "all.dvb").size(), 665U);
}

TEST_P(PresetPanel, LeftClicksLoadAndRightClicksLoadTheOtherByteOrder) {
    TemporaryFolder folder;
    editor.effect->setParameter(0, 0.25F);
    {
        const StandInDialog dialog(folder / "one.dvp");
        ask(dialog, savePreset);
    }
    editor.effect->setParameter(0, 0.75F);
    {
        const StandInDialog dialog(folder / "one.dvp");
        ask(dialog, loadPreset);
        EXPECT_TRUE(dialog.argumentsContain("--title=Load preset"));
        EXPECT_EQ(editor.parameter(0), 0.25F);
        // A second click at the same place would be a double click.
        ask(dialog, loadBank, 2);
        EXPECT_TRUE(dialog.argumentsContain("--title=Load bank"));
        ask(dialog, loadPreset, 3, 3);
        EXPECT_TRUE(dialog.argumentsContain("--title=Load preset (endian-reversed)"));
        ask(dialog, loadBank, 4, 3);
        EXPECT_TRUE(dialog.argumentsContain("--title=Load bank (endian-reversed)"));
        // Only the right button alone asks for the other order.
        editor.hold(XK_Shift_L);
        ask(dialog, loadPreset, 5, 3);
        editor.letGo(XK_Shift_L);
        EXPECT_TRUE(dialog.argumentsContain("--title=Load preset"));
        EXPECT_EQ(dialog.starts(), 5U);
    }
}

TEST_P(PresetPanel, TheOtherButtonsAreNotMovedByTheRightButton) {
    const Position places[] = {rockerLeft, rockerRight, storeA,      storeB,
                               recallA,    recallB,     defaultBank, defaultPreset};
    for (const Position place : places)
        click(place, 3);
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_P(PresetPanel, WithoutADialogProgramNothingHappens) {
    const auto before = editor.effect->chunk();
    for (const Position place : {savePreset, loadPreset, saveBank, loadBank})
        click(place);
    EXPECT_EQ(editor.effect->chunk(), before);
    EXPECT_TRUE(editor.host.calls().empty());
}

TEST_P(PresetPanel, ADismissedDialogChangesNothing) {
    const StandInDialog dialog("");
    const auto before = editor.effect->chunk();
    std::size_t times = 0;
    for (const Position place : {savePreset, loadPreset, saveBank, loadBank})
        ask(dialog, place, ++times);
    EXPECT_EQ(dialog.starts(), 4U);
    EXPECT_EQ(editor.effect->chunk(), before);
}

TEST_P(PresetPanel, TheDialogProgramRunsWithoutTheHostsLibraries) {
    setenv("LD_LIBRARY_PATH", "/a/hosts/libraries", 1);
    const StandInDialog dialog("");
    ask(dialog, savePreset);
    unsetenv("LD_LIBRARY_PATH");
    EXPECT_EQ(dialog.linkerVariables(), "\n");
}

} // namespace

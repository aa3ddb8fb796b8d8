// What preset and bank files hold, and what loading them does.
#include "tests/presetsystem/presetfilestest.h"

#include <gtest/gtest.h>

#include <string_view>

namespace mirelon::test {
namespace {

using namespace std::string_literals;
using Call = HostCallLog::Call;
using PresetFiles = PresetFilesTest;

TEST_F(PresetFiles, ASavedPresetIsOwnerTypeAndRecord) {
    effect().setPresetNo(3);
    answer(folder / "a.dvp");
    editor().savePreset();
    EXPECT_EQ(contentsOf(folder / "a.dvp"), presetFileOf(effect(), 3));
}

TEST_F(PresetFiles, ASavedBankIsOwnerTypeAndRecords) {
    answer(folder / "a.dvb");
    editor().saveBank();
    EXPECT_EQ(contentsOf(folder / "a.dvb"), bankFileOf(effect()));
}

TEST_F(PresetFiles, ASavedPresetLoadsBackToTheSameBytes) {
    effect().setParameter(3, 0.123F);
    const std::string saved = effect().bytes();
    answer(folder / "a.dvp");
    editor().savePreset();
    effect().setParameter(3, 0.9F);
    effect().setPresetName("changed");
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().bytes(), saved);
}

TEST_F(PresetFiles, APresetLoadsIntoTheCurrentPresetAndIsApplied) {
    writeFile(folder / "a.dvp", presetFileOf(effect(), 8));
    effect().setPresetNo(2);
    effect().sets.clear();
    HostCallLog::calls.clear();
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().name(2), "preset 8");
    EXPECT_EQ(effect().getParameter(5), RecordingEffect::startValue(8, 5));
    EXPECT_EQ(effect().getPresetNo(), 2);
    ASSERT_EQ(effect().sets.size(), 9U);
    EXPECT_EQ(effect().sets[5].second, RecordingEffect::startValue(8, 5));
    // The renaming tells the host, then the applying.
    EXPECT_EQ(HostCallLog::calls, (std::vector<Call>{{audioMasterUpdateDisplay, 0},
                                                     {audioMasterUpdateDisplay, 0},
                                                     {audioMasterBeginEdit, 0},
                                                     {audioMasterEndEdit, 0}}));
}

TEST_F(PresetFiles, ALoadedNameEndsAtItsTerminator) {
    std::string file = presetFileOf(effect(), 1);
    file.replace(5, 24, "ab\0behind\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s);
    writeFile(folder / "a.dvp", file);
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().bytes().substr(0, 24), "ab"s + std::string(22, '\0'));
}

TEST_F(PresetFiles, APresetWithAValueOutOfRangeLeavesThePresetAsItWas) {
    std::string file = presetFileOf(effect(), 8);
    file.replace(29 + 8, 4, "\x3F\xC0\x00\x00"s); // 1.5
    writeFile(folder / "a.dvp", file);
    const std::string before = effect().bytes();
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().bytes(), before);
    EXPECT_TRUE(effect().sets.empty());
    EXPECT_TRUE(HostCallLog::calls.empty());
}

TEST_F(PresetFiles, AShortPresetLoadsZerosForWhatIsMissing) {
    writeFile(folder / "a.dvp", presetFileOf(effect(), 8).substr(0, 37));
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().name(0), "preset 8");
    EXPECT_EQ(effect().getParameter(1), RecordingEffect::startValue(8, 1));
    for (int j = 2; j < kNumPresetParams; ++j)
        EXPECT_EQ(effect().getParameter(j), 0.0F);
}

TEST_F(PresetFiles, AMissingPresetFileChangesNothing) {
    const std::string before = effect().bytes();
    answer(folder / "none.dvp");
    editor().loadPreset(false);
    EXPECT_EQ(effect().bytes(), before);
    EXPECT_TRUE(effect().sets.empty());
    EXPECT_FALSE(exists(folder / "none.dvp"));
}

TEST_F(PresetFiles, AReversedPresetNeedsTheReversedLoad) {
    std::string file = presetFileOf(effect(), 8);
    for (std::size_t at = 29; at < 65; at += 4)
        std::reverse(&file[at], &file[at] + 4);
    writeFile(folder / "a.dvp", file);
    answer(folder / "a.dvp");
    editor().loadPreset(true);
    EXPECT_EQ(effect().bytes().substr(0, 60), presetFileOf(effect(), 8).substr(5));
    EXPECT_EQ(editor().user->questions.back().title, "Load preset (endian-reversed)");
}

TEST_F(PresetFiles, ABankLoadsWholeAndPresetZeroIsApplied) {
    RecordingEffect other;
    other.record(0).setName("first");
    other.record(10).setName("last");
    other.record(0).setValue(0, 0.75F);
    writeFile(folder / "a.dvb", bankFileOf(other));
    effect().setPresetNo(6);
    effect().sets.clear();
    answer(folder / "a.dvb");
    editor().loadBank(false);
    EXPECT_EQ(effect().bytes(), other.bytes());
    EXPECT_EQ(effect().getPresetNo(), 0);
    // Preset 0 is applied before the image is looked at, and again after.
    ASSERT_EQ(effect().sets.size(), 18U);
    EXPECT_EQ(effect().sets[0].second, RecordingEffect::startValue(0, 0));
    EXPECT_EQ(effect().sets[9].second, 0.75F);
}

// A bank file with a fault of this kind.
std::string refused(std::string file, std::string_view kind) {
    if (kind == "owner")
        file[0] = 'x';
    else if (kind == "type")
        file[4] = '\x21';
    else if (kind == "value")
        file.replace(661, 4, "\xBF\x80\x00\x00"s); // the very last value: -1
    else if (kind == "empty")
        file.clear();
    return file;
}

class RefusedBank : public PresetFiles, public testing::WithParamInterface<const char*> {};

TEST_P(RefusedBank, IsIgnoredButPresetZeroIsSelectedAndApplied) {
    const std::string kind = GetParam();
    RecordingEffect other;
    other.record(0).setName("theirs");
    const std::string file = refused(bankFileOf(other), kind);
    if (kind != "missing")
        writeFile(folder / "a.dvb", file);
    effect().setPresetNo(6);
    effect().sets.clear();
    const std::string before = effect().bytes();
    answer(folder / "a.dvb");
    editor().loadBank(false);
    EXPECT_EQ(effect().bytes(), before);
    EXPECT_EQ(effect().getPresetNo(), 0);
    ASSERT_EQ(effect().sets.size(), 9U);
    EXPECT_EQ(effect().sets[3].second, RecordingEffect::startValue(0, 3));
}

INSTANTIATE_TEST_SUITE_P(For, RefusedBank,
                         testing::Values("owner", "type", "value", "empty", "missing"),
                         [](const auto& info) { return std::string(info.param); });

// What the panel's menu shows as the names of the presets.
std::vector<std::string> menuOf(const ScriptedEditor& editor) {
    std::vector<std::string> titles;
    for (int i = 0; i < kNumPresets; ++i)
        titles.push_back(editor.presetMenu().getEntry(i)->getTitle().getString());
    return titles;
}

class PresetFilesWithPanel : public PresetFiles {
  protected:
    void SetUp() override {
        editor().makePanel();
        for (int i = 0; i < kNumPresets; ++i)
            before.push_back("preset " + std::to_string(i));
        ASSERT_EQ(menuOf(editor()), before);
    }
    void giveBank(const std::string& file) {
        writeFile(folder / "a.dvb", file);
        answer(folder / "a.dvb");
        editor().loadBank(false);
    }
    std::string shownName() { return editor().nameField().getText().getString(); }

    RecordingEffect other;
    std::vector<std::string> before;
};

TEST_F(PresetFilesWithPanel, ALoadedBanksNamesShowAndEntryZeroIsCurrent) {
    other.record(0).setName("first");
    other.record(10).setName("last");
    giveBank(bankFileOf(other));
    before.front() = "first";
    before.back() = "last";
    EXPECT_EQ(menuOf(editor()), before);
    EXPECT_EQ(editor().presetMenu().getCurrentIndex(), 0);
    EXPECT_EQ(shownName(), "first");
}

TEST_F(PresetFilesWithPanel, ABankRefusedAtAValueLeavesTheNamesReadUntilThen) {
    for (int i = 0; i < kNumPresets; ++i)
        other.record(i).setName("other " + std::to_string(i));
    other.record(4).setValue(8, 1.5F);
    giveBank(bankFileOf(other));
    for (int i = 0; i <= 4; ++i)
        before[static_cast<std::size_t>(i)] = "other " + std::to_string(i);
    EXPECT_EQ(menuOf(editor()), before);
    EXPECT_EQ(editor().presetMenu().getCurrentIndex(), 0);
    EXPECT_EQ(shownName(), "preset 0");
    EXPECT_EQ(effect().name(4), "preset 4");
}

class RefusedBankWithPanel : public PresetFilesWithPanel,
                             public testing::WithParamInterface<const char*> {
  protected:
    // While preset 6 is shown.
    void giveRefusedBank() {
        effect().setPresetNo(6);
        editor().bankReplaced();
        ASSERT_EQ(shownName(), "preset 6");
        giveBank(refused(bankFileOf(other), GetParam()));
    }
};
INSTANTIATE_TEST_SUITE_P(For, RefusedBankWithPanel,
                         testing::Values("owner", "type", "value", "empty"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(RefusedBankWithPanel, ShowsThatPresetZeroIsCurrent) {
    giveRefusedBank();
    EXPECT_EQ(effect().getPresetNo(), 0);
    EXPECT_EQ(editor().presetMenu().getCurrentIndex(), 0);
    EXPECT_EQ(shownName(), "preset 0");
    EXPECT_EQ(menuOf(editor()), before);
}

TEST_P(RefusedBankWithPanel, LeavesATypedNameToPresetZero) {
    giveRefusedBank();
    editor().nameField().setText("typed");
    editor().valueChanged(&editor().nameField());
    before[0] = "typed";
    EXPECT_EQ(menuOf(editor()), before);
    EXPECT_EQ(effect().name(0), "typed");
}

TEST_F(PresetFilesWithPanel, ABankOfAnotherEffectShowsNoName) {
    giveBank("else\x37" + other.bytes());
    EXPECT_EQ(menuOf(editor()), before);
}

TEST_F(PresetFilesWithPanel, ALoadedPresetsNameShowsInFieldAndMenu) {
    effect().setPresetNo(0);
    writeFile(folder / "a.dvp", presetFileOf(other, 8));
    answer(folder / "a.dvp");
    editor().loadPreset(false);
    before[0] = "preset 8";
    EXPECT_EQ(menuOf(editor()), before);
    EXPECT_EQ(shownName(), "preset 8");
}

TEST_F(PresetFiles, TheControllerMapHasNoFiles) {
    editor().loadMidi(false);
    editor().loadMidi(true);
    editor().saveMidi();
    editor().saveDefaultMidi();
    editor().loadDefaultMidi();
    EXPECT_TRUE(editor().user->questions.empty());
    EXPECT_TRUE(effect().sets.empty());
}

TEST_F(PresetFiles, TheControllerMapHoldsTheParametersBehindThePresets) {
    midifilestruct image;
    editor().MidiToBuffer(&image);
    const std::string bytes(reinterpret_cast<const char*>(image.bytes.data()), 41);
    std::string expected = "tSeT\x0B";
    for (int j = 0; j < 9; ++j)
        expected += "\xBF\x80\x00\x00"s; // -1: there are none
    EXPECT_EQ(bytes, expected);
}

TEST_F(PresetFiles, AControllerMapSetsTheParametersBehindThePresets) {
    midifilestruct image;
    writeMidiImage(image, testId, {0.25F, 0.5F, 2.0F, 0.75F});
    editor().BufferToMidi(&image, false);
    EXPECT_EQ(effect().sets, (std::vector<std::pair<VstInt32, float>>{{9, 0.25F}, {10, 0.5F}}));
}

} // namespace
} // namespace mirelon::test

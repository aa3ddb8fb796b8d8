// The preset system's editor as a whole: what is shown at once and what waits.
#include "platform/runloop.h"
#include "tests/presetsystem/scriptededitor.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace mirelon::test {
namespace {

class WatchingEditor : public ScriptedEditor, private WindowUpdates::ParameterDisplay {
  public:
    explicit WatchingEditor(AudioEffect* effect)
        : ScriptedEditor(effect) {
        updates.showParametersIn(this);
    }

    using ScriptedEditor::updates;

    std::vector<long> shown;
    int comparisons = 0; // whose outcome was shown

  protected:
    void showMemories(MemoryComparison::Equal /*equal*/) override { ++comparisons; }

  private:
    void show(long index) override { shown.push_back(index); }
};

class PresetEditor : public testing::Test {
  protected:
    PresetEditor() { setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1); }
    ~PresetEditor() override { editor.dropFrame(); }

    template <typename Work>
    static void elsewhere(Work work) {
        std::thread(work).join();
    }
    std::string title(int preset) const {
        return editor.presetMenu().getEntry(preset)->getTitle().getString();
    }

    std::string mine = "mine";
    const TemporaryFolder folder;
    RecordingEffect effect;
    WatchingEditor& editor = *new WatchingEditor(&effect); // the effect's
};

TEST_F(PresetEditor, ShowsEachPendingParameterOnceAtTheNextIdle) {
    editor.makePanel();
    elsewhere([&] {
        editor.updates.parameterChanged(7);
        editor.updates.parameterChanged(2);
        editor.updates.parameterChanged(7);
    });
    EXPECT_TRUE(editor.shown.empty());
    editor.idle();
    EXPECT_EQ(editor.shown, (std::vector<long>{2, 7}));
    editor.idle();
    EXPECT_EQ(editor.shown.size(), 2U);
}

TEST_F(PresetEditor, ShowsAParameterAtOnceOnTheWindowsThread) {
    editor.makePanel();
    editor.updates.parameterChanged(3);
    EXPECT_EQ(editor.shown, std::vector<long>{3});
    editor.idle();
    EXPECT_EQ(editor.shown.size(), 1U);
}

TEST_F(PresetEditor, WithoutADisplayNoParameterIsShown) {
    editor.makePanel();
    editor.updates.showParametersIn(nullptr);
    editor.updates.parameterChanged(3);
    elsewhere([&] { editor.updates.parameterChanged(4); });
    editor.idle();
    EXPECT_TRUE(editor.shown.empty());
}

TEST_F(PresetEditor, KeepsPendingUpdatesWhileItIsClosed) {
    editor.updates.parameterChanged(2);
    editor.makeFrame();
    editor.idle();
    EXPECT_TRUE(editor.shown.empty());
    EXPECT_TRUE(editor.open(nullptr));
    editor.idle();
    EXPECT_EQ(editor.shown, std::vector<long>{2});
}

// While another window of the same thread is still open.
TEST_F(PresetEditor, KeepsPendingUpdatesOnceItHasClosed) {
    const RunLoop::User other;
    editor.makePanel();
    editor.dropFrame();
    editor.updates.parameterChanged(2);
    EXPECT_TRUE(editor.shown.empty());
    editor.makePanel();
    editor.idle();
    EXPECT_EQ(editor.shown, std::vector<long>{2});
}

TEST_F(PresetEditor, ComparesTheMemoriesOnlyAfterAChange) {
    editor.makePanel();
    editor.idle();
    editor.idle();
    EXPECT_EQ(editor.comparisons, 1);
    effect.setProgramName(mine.data());
    editor.idle();
    editor.idle();
    EXPECT_EQ(editor.comparisons, 2);
}

TEST_F(PresetEditor, IsDrawnAnewAsAWholeOnceAFileHasBeenRead) {
    editor.makePanel();
    const int before = editor.redraws();
    editor.user->answers.emplace_back("/no/such/preset.dvp");
    editor.loadPreset(false);
    EXPECT_EQ(editor.redraws(), before + 1);
}

TEST_F(PresetEditor, ShowsAHostsNameAtOnceOnItsOwnThread) {
    editor.makePanel();
    effect.setProgramName(mine.data());
    EXPECT_EQ(title(0), "mine");
}

TEST_F(PresetEditor, ShowsAHostsNameFromElsewhereAtTheNextIdle) {
    editor.makePanel();
    elsewhere([&] { effect.setProgramName(mine.data()); });
    EXPECT_EQ(title(0), "preset 0");
    editor.idle();
    EXPECT_EQ(title(0), "mine");
}

TEST_F(PresetEditor, ShowsTheStoreAsItIsByThenWhenABankLoadsElsewhere) {
    editor.makePanel();
    RecordingEffect other;
    other.record(4).setName("other");
    bankfilestruct image;
    writeBankImage(image, testId, other.bank());
    elsewhere([&] { editor.BufferToBank(&image, false); });
    EXPECT_EQ(title(4), "preset 4");
    editor.idle();
    EXPECT_EQ(title(4), "other");
    EXPECT_EQ(editor.presetMenu().getCurrentIndex(), 0);
}

TEST_F(PresetEditor, RenamesThePresetOnlyWhenToldFromInside) {
    editor.makePanel();
    std::string name = "shown";
    editor.nameChangedExternal(name.data());
    EXPECT_EQ(title(0), "shown");
    EXPECT_EQ(effect.name(0), "preset 0");
    editor.nameChangedInternal(name.data());
    EXPECT_EQ(effect.name(0), "shown");
    editor.nameChangedExternal(nullptr);
    EXPECT_EQ(title(0), "shown");
}

// An effect without a preset system.
struct PlainEffect : AudioEffectX {
    PlainEffect()
        : AudioEffectX(nullptr, 1, 1) {}
    void processReplacing(float** /*inputs*/, float** /*outputs*/,
                          VstInt32 /*sampleFrames*/) override {}
};

TEST(PresetEditorAlone, OfAnEffectWithoutPresetsDoesNothing) {
    PlainEffect effect;
    auto& editor = *new ScriptedEditor(&effect); // the effect's
    editor.makeFrame();
    EXPECT_FALSE(editor.open(nullptr));
    const auto control = VSTGUI::makeOwned<VSTGUI::CTextLabel>(VSTGUI::CRect(0, 0, 1, 1));
    for (const int tag : {1000, 1001, 1002, 1012, 1013, 1015, 1018}) {
        control->setTag(tag);
        editor.valueChanged(control);
    }
    std::string name = "mine";
    editor.nameChangedInternal(name.data());
    editor.loadDefaultBank();
    editor.loadDefaultPreset();
    bankfilestruct bank;
    presetfilestruct preset;
    midifilestruct map;
    editor.BankToBuffer(&bank);
    editor.PresetToBuffer(&preset);
    editor.MidiToBuffer(&map);
    editor.BufferToMidi(&map, false);
    EXPECT_EQ(bank.bytes, bankfilestruct{}.bytes);
    EXPECT_EQ(preset.bytes, presetfilestruct{}.bytes);
    EXPECT_EQ(map.bytes, midifilestruct{}.bytes);
    EXPECT_TRUE(editor.user->questions.empty());
}

TEST(PresetEditorAlone, TagsWithoutAnActionDoNothing) {
    RecordingEffect effect;
    auto& editor = *new ScriptedEditor(&effect); // the effect's
    editor.makePanel();
    const std::string before = effect.bytes();
    const auto control = VSTGUI::makeOwned<VSTGUI::CTextLabel>(VSTGUI::CRect(0, 0, 1, 1));
    for (const int tag : {-1, 0, 8, 999, 1006, 1011, 1019}) {
        control->setTag(tag);
        control->setValue(1.0F);
        editor.valueChanged(control);
    }
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_TRUE(effect.sets.empty());
    EXPECT_TRUE(editor.user->questions.empty());
    editor.dropFrame();
}

} // namespace
} // namespace mirelon::test

#include "presetsystem/cpresetsystemeffect.h"

#include "tests/presetsystem/recordingeffect.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace mirelon::test {
namespace {

using namespace std::string_literals;
using Call = HostCallLog::Call;

class StoreTest : public testing::Test {
  protected:
    // A host's buffer: what lies behind 25 bytes must stay.
    struct NameBuffer {
        std::array<char, 30> bytes;
        NameBuffer() { bytes.fill('#'); }
        char* data() { return bytes.data(); }
        std::string text() const { return bytes.data(); }
    };

    RecordingEffect effect;
};

TEST_F(StoreTest, ParametersAreThoseOfTheCurrentPreset) {
    effect.setPresetNo(3);
    for (int j = 0; j < kNumPresetParams; ++j)
        EXPECT_EQ(effect.getParameter(j), RecordingEffect::startValue(3, j));
}

TEST_F(StoreTest, ReadingAParameterOutsideTheTableGivesMinusOne) {
    for (const VstInt32 index :
         {9, -1, std::numeric_limits<VstInt32>::max(), std::numeric_limits<VstInt32>::min()})
        EXPECT_EQ(effect.getParameter(index), -1.0F) << index;
}

TEST_F(StoreTest, WritingAParameterOutsideTheTableChangesNothing) {
    const std::string before = effect.bytes();
    for (const VstInt32 index :
         {9, -1, std::numeric_limits<VstInt32>::max(), std::numeric_limits<VstInt32>::min()})
        effect.setParameter(index, 0.125F);
    EXPECT_EQ(effect.bytes(), before);
}

TEST_F(StoreTest, AParameterIsStoredBigEndianInTheCurrentPresetOnly) {
    effect.setPresetNo(2);
    std::string expected = effect.bytes();
    effect.setParameter(4, 0.1F); // 3D CC CC CD
    expected.replace(2 * 60 + 24 + 4 * 4, 4, "\x3D\xCC\xCC\xCD");
    EXPECT_EQ(effect.bytes(), expected);
}

TEST_F(StoreTest, ApplyingAPresetPushesItsValuesInOrderThenTellsTheHost) {
    effect.setPresetNo(3);
    ASSERT_EQ(effect.sets.size(), 9U);
    for (int j = 0; j < kNumPresetParams; ++j)
        EXPECT_EQ(effect.sets[static_cast<std::size_t>(j)],
                  std::pair(j, RecordingEffect::startValue(3, j)));
    EXPECT_EQ(HostCallLog::calls, (std::vector<Call>{{audioMasterUpdateDisplay, 0},
                                                     {audioMasterBeginEdit, 0},
                                                     {audioMasterEndEdit, 0}}));
}

TEST_F(StoreTest, ApplyingAPresetDoesNotWriteIntoIt) {
    const std::string before = effect.bytes();
    effect.setPresetNo(7);
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_EQ(effect.getPresetNo(), 7);
}

TEST_F(StoreTest, AParameterChangeWhileAPresetIsAppliedIsNotStored) {
    // A host that automates when it is told to refresh its display.
    class Meddling : public RecordingEffect {
      public:
        void setParameter(VstInt32 index, float value) override {
            RecordingEffect::setParameter(index, value);
            if (index == 8 && !meddled) {
                meddled = true;
                setParameter(0, 0.999F);
            }
        }
        bool meddled = false;
    };
    Meddling meddling;
    const std::string before = meddling.bytes();
    meddling.setPresetNo(1);
    EXPECT_TRUE(meddling.meddled);
    EXPECT_EQ(meddling.bytes(), before);
    meddling.setParameter(0, 0.5F);
    EXPECT_EQ(meddling.getParameter(0), 0.5F);
}

TEST_F(StoreTest, TheFirstAndTheLastPresetAreSelectedLikeAnyOther) {
    for (const int preset : {10, 0}) {
        effect.setPresetNo(preset);
        EXPECT_EQ(effect.getPresetNo(), preset);
        EXPECT_EQ(effect.getParameter(8), RecordingEffect::startValue(preset, 8));
    }
}

TEST_F(StoreTest, APresetOutsideTheBankIsRefused) {
    effect.setPresetNo(5);
    effect.sets.clear();
    HostCallLog::calls.clear();
    for (const long n : {-1L, 11L, 1L << 32, std::numeric_limits<long>::min()})
        effect.setPresetNo(n);
    EXPECT_EQ(effect.getPresetNo(), 5);
    EXPECT_TRUE(effect.sets.empty());
    EXPECT_TRUE(HostCallLog::calls.empty());
}

TEST_F(StoreTest, TheHostSeesOneProgramAndCannotChangeIt) {
    EXPECT_EQ(effect.getAeffect()->numPrograms, 1);
    effect.setPresetNo(4);
    effect.sets.clear();
    effect.setProgram(2);
    EXPECT_EQ(effect.getProgram(), 0);
    EXPECT_EQ(effect.getPresetNo(), 4);
    EXPECT_TRUE(effect.sets.empty());
}

TEST_F(StoreTest, AHostsNameIsCutAt24AndKeptWithoutTerminator) {
    std::string name = "abcdefghijklmnopqrstuvwxyz1234";
    effect.setProgramName(name.data());
    EXPECT_EQ(effect.bytes().substr(0, 24), "abcdefghijklmnopqrstuvwx");
    NameBuffer buffer;
    effect.getProgramName(buffer.data());
    EXPECT_EQ(std::string(buffer.data(), 30), "abcdefghijklmnopqrstuvwx\0#####"s);
}

TEST_F(StoreTest, ANameOf23IsPaddedWithOneZero) {
    std::string longer = "abcdefghijklmnopqrstuvwx";
    effect.setProgramName(longer.data());
    std::string name = "ABCDEFGHIJKLMNOPQRSTUVW";
    effect.setProgramName(name.data());
    EXPECT_EQ(effect.bytes().substr(0, 24), "ABCDEFGHIJKLMNOPQRSTUVW\0"s);
}

TEST_F(StoreTest, AShortNameLeavesNothingOfALongerOne) {
    std::string name = "x";
    effect.setProgramName(name.data());
    EXPECT_EQ(effect.bytes().substr(0, 24), "x"s + std::string(23, '\0'));
}

TEST_F(StoreTest, RenamingLeavesTheValues) {
    const std::string before = effect.bytes();
    std::string name = "abcdefghijklmnopqrstuvwxyz";
    effect.setProgramName(name.data());
    EXPECT_EQ(effect.bytes().substr(24), before.substr(24));
}

TEST_F(StoreTest, ThePanelsRenamingRefreshesTheHostsDisplay) {
    effect.setPresetNo(1);
    HostCallLog::calls.clear();
    effect.setPresetName("new name");
    EXPECT_EQ(effect.name(1), "new name");
    EXPECT_EQ(HostCallLog::calls, (std::vector<Call>{{audioMasterUpdateDisplay, 0}}));
}

TEST_F(StoreTest, ThePanelsRenamingToNothingOnlyRefreshes) {
    effect.setPresetName(nullptr);
    EXPECT_EQ(effect.name(0), "preset 0");
    EXPECT_EQ(HostCallLog::calls, (std::vector<Call>{{audioMasterUpdateDisplay, 0}}));
}

TEST_F(StoreTest, ThePanelsRenamingIsCutAt24) {
    effect.setPresetName("abcdefghijklmnopqrstuvwxyz1234");
    EXPECT_EQ(effect.bytes().substr(0, 24), "abcdefghijklmnopqrstuvwx");
}

TEST_F(StoreTest, NamesByIndexEndWithTheLastPreset) {
    NameBuffer buffer;
    EXPECT_TRUE(effect.getProgramNameIndexed(-1, 10, buffer.data()));
    EXPECT_EQ(buffer.text(), "preset 10");
    EXPECT_EQ(std::string(&buffer.bytes[25], 5), "#####");
    for (const VstInt32 index : {11, -1, std::numeric_limits<VstInt32>::max()}) {
        NameBuffer untouched;
        EXPECT_FALSE(effect.getProgramNameIndexed(0, index, untouched.data())) << index;
        EXPECT_EQ(untouched.bytes[0], '#') << index;
    }
}

TEST_F(StoreTest, TheCategoryOfANameByIndexDoesNotMatter) {
    for (const VstInt32 category : {-1, 0, 7}) {
        NameBuffer buffer;
        EXPECT_TRUE(effect.getProgramNameIndexed(category, 4, buffer.data()));
        EXPECT_EQ(buffer.text(), "preset 4");
    }
}

TEST_F(StoreTest, ControllerAssignmentIsInert) {
    effect.attachMidi(1, 2);
    effect.setLearnParam(3);
    effect.beginLearn();
    effect.endLearn();
    effect.beginCancel();
    effect.endCancel();
    EXPECT_EQ(effect.getMidiCC(1), 0);
    EXPECT_EQ(effect.getMidiParam(2), 0);
    EXPECT_EQ(effect.getMidiActivity(), 0);
    effect.detachMidiParam(1);
    effect.detachMidiCC(2);
    effect.initMidi();
    EXPECT_EQ(effect.processEvents(nullptr), 0);
    EXPECT_TRUE(HostCallLog::calls.empty());
}

TEST_F(StoreTest, EveryCapabilityIsUnknown) {
    for (std::string text : {"receiveVstMidiEvent", "plugAsChannelInsert", "bypass", ""})
        EXPECT_EQ(effect.canDo(text.data()), 0) << text;
}

TEST_F(StoreTest, LoadingDefaultsWithoutAnEditorDoesNothing) {
    const std::string before = effect.bytes();
    effect.loadDefaults();
    EXPECT_EQ(effect.bytes(), before);
    EXPECT_TRUE(HostCallLog::calls.empty());
}

} // namespace
} // namespace mirelon::test

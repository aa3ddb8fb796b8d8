// Every command of a host reaches its operation, with its arguments, and
// brings back that operation's answer.
#include "tests/shell/loggingeffect.h"
#include "tests/shell/plaineffect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Pointer arguments that no operation follows: the command's own, and the one that
// some commands have in their value.
std::array<char, 64> target{};
std::array<char, 64> otherTarget{};
const std::string targetText = LoggingEffect::noted(target.data());
const std::string otherTargetText = LoggingEffect::noted(otherTarget.data());

struct Command {
    VstInt32 opcode;
    VstInt32 index;
    VstIntPtr value;
    float opt;
    std::string operation;
    VstIntPtr answer;
};

void PrintTo(const Command& command, std::ostream* out) {
    *out << "opcode " << command.opcode << ", index " << command.index;
}

class DispatcherCommand : public testing::TestWithParam<Command> {};

std::vector<Command> commands() {
    const std::string p = targetText;
    const std::string inValue = otherTargetText;
    const auto address = reinterpret_cast<VstIntPtr>(otherTarget.data());
    return {
        {effOpen, 0, 0, 0, "open", 0},
        {effClose, 0, 0, 0, "close", 0},
        {effSetProgram, 0, 2, 0, "setProgram 2", 0},
        {effSetProgram, 0, -5, 0, "setProgram -5", 0},
        {effGetProgram, 0, 0, 0, "getProgram", 2},
        {effSetProgramName, 0, 0, 0, "setProgramName " + p, 0},
        {effGetProgramName, 0, 0, 0, "getProgramName " + p, 0},
        {effGetParamLabel, 3, 0, 0, "getParameterLabel 3 " + p, 0},
        {effGetParamDisplay, 4, 0, 0, "getParameterDisplay 4 " + p, 0},
        {effGetParamName, 5, 0, 0, "getParameterName 5 " + p, 0},
        {effGetVu, 0, 0, 0, "getVu", 16383},
        {effSetSampleRate, 0, 0, 96000.0F, "setSampleRate 96000", 0},
        {effSetBlockSize, 0, 777, 0, "setBlockSize 777", 0},
        {effMainsChanged, 0, 0, 0, "suspend", 0},
        {effMainsChanged, 0, 1, 0, "resume", 0},
        {effMainsChanged, 0, -1, 0, "resume", 0},
        {effGetChunk, 0, 0, 0, "getChunk " + p + " 0", 321},
        {effGetChunk, 2, 0, 0, "getChunk " + p + " 1", 321},
        {effSetChunk, 0, 692, 0, "setChunk " + p + " 692 0", 7},
        {effSetChunk, -1, 10, 0, "setChunk " + p + " 10 1", 7},
        {effProcessEvents, 0, 0, 0, "processEvents " + p, 5},
        {effCanBeAutomated, 6, 0, 0, "canParameterBeAutomated 6", 0},
        {effString2Parameter, 6, 0, 0, "string2parameter 6 " + p, 1},
        {effGetNumProgramCategories, 0, 0, 0, "getNumCategories", 4},
        {effGetProgramNameIndexed, 3, -1, 0, "getProgramNameIndexed -1 3 " + p, 1},
        {effCopyProgram, 2, 0, 0, "copyProgram 2", 1},
        {effConnectInput, 1, 5, 0, "inputConnected 1 1", 1},
        {effConnectInput, 1, 0, 0, "inputConnected 1 0", 1},
        {effConnectOutput, 0, 1, 0, "outputConnected 0 1", 1},
        {effGetInputProperties, 1, 0, 0, "getInputProperties 1 " + p, 1},
        {effGetOutputProperties, 0, 0, 0, "getOutputProperties 0 " + p, 1},
        {effGetPlugCategory, 0, 0, 0, "getPlugCategory", 6},
        {effGetCurrentPosition, 0, 0, 0, "reportCurrentPosition", 8},
        {effOfflineNotify, 1, 2, 0, "offlineNotify " + p + " 2 1", 1},
        {effOfflinePrepare, 0, 3, 0, "offlinePrepare " + p + " 3", 1},
        {effOfflineRun, 0, 4, 0, "offlineRun " + p + " 4", 1},
        {effProcessVarIo, 0, 0, 0, "processVariableIo " + p, 1},
        {effSetSpeakerArrangement, 0, address, 0, "setSpeakerArrangement " + inValue + " " + p, 1},
        {effSetBlockSizeAndSampleRate, 0, 256, 48000.0F, "setBlockSizeAndSampleRate 256 48000", 1},
        {effSetBypass, 0, 1, 0, "setBypass 1", 1},
        {effGetEffectName, 0, 0, 0, "getEffectName " + p, 1},
        {effGetErrorText, 0, 0, 0, "getErrorText " + p, 1},
        {effGetVendorString, 0, 0, 0, "getVendorString " + p, 1},
        {effGetProductString, 0, 0, 0, "getProductString " + p, 1},
        {effGetVendorVersion, 0, 0, 0, "getVendorVersion", 1234},
        {effVendorSpecific, 11, 12, 0.5F, "vendorSpecific 11 12 " + p + " 0.5", 99},
        {effCanDo, 0, 0, 0, "canDo " + p, -1},
        {effGetTailSize, 0, 0, 0, "getGetTailSize", 44},
        {effIdle, 0, 0, 0, "fxIdle", 45},
        {effSetViewPosition, 10, 20, 0, "setViewPosition 10 20", 1},
        {effGetParameterProperties, 8, 0, 0, "getParameterProperties 8 " + p, 1},
        {effKeysRequired, 0, 0, 0, "keysRequired", 0},
        {effGetVstVersion, 0, 0, 0, "getVstVersion", 2399},
        {effGetMidiProgramName, 1, 0, 0, "getMidiProgramName 1 " + p, 62},
        {effGetCurrentMidiProgram, 2, 0, 0, "getCurrentMidiProgram 2 " + p, 63},
        {effGetMidiProgramCategory, 3, 0, 0, "getMidiProgramCategory 3 " + p, 64},
        {effHasMidiProgramsChanged, 4, 0, 0, "hasMidiProgramsChanged 4", 1},
        {effGetMidiKeyName, 5, 0, 0, "getMidiKeyName 5 " + p, 1},
        {effBeginSetProgram, 0, 0, 0, "beginSetProgram", 1},
        {effEndSetProgram, 0, 0, 0, "endSetProgram", 1},
        {effGetSpeakerArrangement, 0, address, 0, "getSpeakerArrangement " + inValue + " " + p, 1},
        {effShellGetNextPlugin, 0, 0, 0, "getNextShellPlugin " + p, 70},
        {effStartProcess, 0, 0, 0, "startProcess", 71},
        {effStopProcess, 0, 0, 0, "stopProcess", 72},
        {effSetTotalSampleToProcess, 0, 500, 0, "setTotalSampleToProcess 500", 501},
        {effSetPanLaw, 0, 1, 0.5F, "setPanLaw 1 0.5", 1},
        {effBeginLoadBank, 0, 0, 0, "beginLoadBank " + p, 75},
        {effBeginLoadProgram, 0, 0, 0, "beginLoadProgram " + p, 76},
        {effSetProcessPrecision, 0, 1, 0, "setProcessPrecision 1", 1},
        {effGetNumMidiInputChannels, 0, 0, 0, "getNumMidiInputChannels", 78},
        {effGetNumMidiOutputChannels, 0, 0, 0, "getNumMidiOutputChannels", 79},
    };
}

// Commands that fill or read what `ptr` points to.
constexpr std::array textAndRecordCommands{effSetProgramName,
                                           effGetProgramName,
                                           effGetParamLabel,
                                           effGetParamDisplay,
                                           effGetParamName,
                                           effEditGetRect,
                                           effGetChunk,
                                           effProcessEvents,
                                           effString2Parameter,
                                           effGetProgramNameIndexed,
                                           effGetInputProperties,
                                           effGetOutputProperties,
                                           effGetEffectName,
                                           effGetErrorText,
                                           effGetVendorString,
                                           effGetProductString,
                                           effCanDo,
                                           effGetParameterProperties,
                                           effShellGetNextPlugin};

} // namespace

TEST_P(DispatcherCommand, ReachesItsOperationAndBringsBackItsAnswer) {
    const Command& command = GetParam();
    LoggingEffect effect(nullptr);
    const VstIntPtr answer =
        effect.dispatcher(command.opcode, command.index, command.value, target.data(), command.opt);
    EXPECT_THAT(effect.heard, ElementsAre(command.operation));
    EXPECT_EQ(answer, command.answer);
}

INSTANTIATE_TEST_SUITE_P(All, DispatcherCommand, testing::ValuesIn(commands()),
                         [](const testing::TestParamInfo<Command>& info) {
                             return "Opcode" + std::to_string(info.param.opcode) + "No" +
                                    std::to_string(info.index);
                         });

TEST(Dispatcher, AnswersPointersWhole) {
    LoggingEffect effect(nullptr);
    const auto address = reinterpret_cast<VstIntPtr>(&effect.destination);
    EXPECT_EQ(ask(effect, effGetDestinationBuffer), address);
    EXPECT_EQ(ask(effect, effGetIcon), address);
}

TEST(Dispatcher, IdentifiesItself) {
    PlainEffect effect;
    EXPECT_EQ(ask(effect, effIdentify), 0x4E764566);
}

TEST(Dispatcher, AnswersNothingToUnknownOpcodes) {
    LoggingEffect effect(nullptr);
    for (const VstInt32 opcode : {-1, 80, 81, 1000, INT32_MAX, INT32_MIN})
        EXPECT_EQ(effect.dispatcher(opcode, 1, 1, target.data(), 1.0F), 0) << opcode;
    EXPECT_THAT(effect.heard, IsEmpty());
}

TEST(Dispatcher, IgnoresAProgramAtOrAboveTheCount) {
    LoggingEffect effect(nullptr, 1);
    effect.dispatcher(effSetProgram, 0, 1, nullptr, 0.0F);
    effect.dispatcher(effSetProgram, 0, VstIntPtr{1} << 32, nullptr, 0.0F);
    EXPECT_THAT(effect.heard, IsEmpty());
}

TEST(Dispatcher, NeverWrapsA64BitValueIntoRange) {
    LoggingEffect effect(nullptr);
    effect.dispatcher(effSetChunk, 0, (VstIntPtr{1} << 32) + 692, target.data(), 0.0F);
    effect.dispatcher(effSetBlockSize, 0, (VstIntPtr{1} << 32) + 64, nullptr, 0.0F);
    effect.dispatcher(effSetProgram, 0, -(VstIntPtr{1} << 32), nullptr, 0.0F);
    EXPECT_THAT(effect.heard, ElementsAre("setChunk " + targetText + " 2147483647 0",
                                          "setBlockSize 2147483647", "setProgram -2147483648"));
}

TEST(Dispatcher, DoesNothingWithMissingTextsAndRecords) {
    LoggingEffect effect(nullptr);
    for (const VstInt32 opcode : textAndRecordCommands)
        EXPECT_EQ(ask(effect, opcode), 0) << opcode;
    EXPECT_THAT(effect.heard, IsEmpty());
}

TEST(Dispatcher, AnswersNothingToEditorCommandsWithoutAnEditor) {
    PlainEffect effect;
    for (const VstInt32 opcode :
         {effEditGetRect, effEditOpen, effEditClose, effEditDraw, effEditMouse, effEditKey,
          effEditIdle, effEditTop, effEditSleep, effEditKeyDown, effEditKeyUp, effSetEditKnobMode})
        EXPECT_EQ(ask(effect, opcode, target.data()), 0) << opcode;
}

namespace {

// An editor that notes what it is asked for.
class LoggingEditor : public AEffEditor {
  public:
    LoggingEditor(AudioEffect* owner, std::vector<std::string>& heard, bool& alive)
        : AEffEditor(owner)
        , heard(heard)
        , alive(alive) {
        alive = true;
        owner->setEditor(this);
    }
    ~LoggingEditor() override { alive = false; }

    bool getRect(ERect** rect) override {
        *rect = &size;
        return true;
    }
    bool open(void* parent) override {
        heard.push_back("open " + LoggingEffect::noted(parent));
        return AEffEditor::open(parent);
    }
    void close() override {
        heard.emplace_back("close");
        AEffEditor::close();
    }
    void idle() override { heard.emplace_back("idle"); }
    bool onKeyDown(VstKeyCode& key) override { return hearKey("down", key); }
    bool onKeyUp(VstKeyCode& key) override { return hearKey("up", key); }
    bool setKnobMode(VstInt32 mode) override {
        heard.push_back("knob " + std::to_string(mode));
        return true;
    }
    void draw(ERect* rect) override { heard.push_back("draw " + LoggingEffect::noted(rect)); }
    VstInt32 mouse(VstInt32 x, VstInt32 y) override {
        heard.push_back("mouse " + std::to_string(x) + " " + std::to_string(y));
        return 17;
    }
    VstInt32 key(VstInt32 code) override {
        heard.push_back("key " + std::to_string(code));
        return 18;
    }
    void top() override { heard.emplace_back("top"); }
    void sleep() override { heard.emplace_back("sleep"); }

    ERect size{0, 0, 10, 20};

  private:
    bool hearKey(const std::string& way, const VstKeyCode& key) {
        heard.push_back(way + " " + std::to_string(key.character) + " " + std::to_string(key.virt) +
                        " " + std::to_string(key.modifier));
        return true;
    }

    std::vector<std::string>& heard;
    bool& alive;
};

class EditorCommands : public testing::Test {
  protected:
    std::vector<std::string> heard;
    bool alive = false;
    std::unique_ptr<PlainEffect> effect = std::make_unique<PlainEffect>();
    LoggingEditor* editor = new LoggingEditor(effect.get(), heard, alive); // owned by effect
};

} // namespace

TEST_F(EditorCommands, ReachTheEditorWithTheirArguments) {
    EXPECT_EQ(effect->dispatcher(effEditOpen, 0, 0, target.data(), 0.0F), 1);
    effect->dispatcher(effEditIdle, 0, 0, nullptr, 0.0F);
    effect->dispatcher(effEditDraw, 0, 0, target.data(), 0.0F);
    EXPECT_EQ(effect->dispatcher(effEditMouse, 3, 4, nullptr, 0.0F), 17);
    EXPECT_EQ(effect->dispatcher(effEditKey, 0, 65, nullptr, 0.0F), 18);
    effect->dispatcher(effEditTop, 0, 0, nullptr, 0.0F);
    effect->dispatcher(effEditSleep, 0, 0, nullptr, 0.0F);
    EXPECT_EQ(effect->dispatcher(effSetEditKnobMode, 0, 2, nullptr, 0.0F), 1);
    effect->dispatcher(effEditClose, 0, 0, nullptr, 0.0F);
    EXPECT_THAT(heard, ElementsAre("open " + targetText, "idle", "draw " + targetText, "mouse 3 4",
                                   "key 65", "top", "sleep", "knob 2", "close"));
}

TEST_F(EditorCommands, HandOverTheRectangle) {
    ERect* rect = nullptr;
    EXPECT_EQ(effect->dispatcher(effEditGetRect, 0, 0, &rect, 0.0F), 1);
    EXPECT_EQ(rect, &editor->size);
}

TEST_F(EditorCommands, BuildKeysFromTheLowBytes) {
    EXPECT_EQ(effect->dispatcher(effEditKeyDown, 'a', 0x105, nullptr, 8.0F), 1);
    EXPECT_EQ(effect->dispatcher(effEditKeyUp, 0, 0xFF, nullptr, 258.9F), 1);
    EXPECT_THAT(heard, ElementsAre("down 97 5 8", "up 0 255 2"));
}

TEST_F(EditorCommands, TakeModifiersWithoutANumberAsNone) {
    for (const float opt : {std::numeric_limits<float>::quiet_NaN(), INFINITY, -INFINITY, 1e20F})
        effect->dispatcher(effEditKeyDown, 1, 2, nullptr, opt);
    EXPECT_THAT(heard, testing::Each("down 1 2 0"));
}

TEST_F(EditorCommands, StandBehindTheEditorFlag) {
    EXPECT_NE(effect->getAeffect()->flags & effFlagsHasEditor, 0);
    delete editor;
    EXPECT_EQ(effect->getEditor(), nullptr);
    EXPECT_EQ(effect->getAeffect()->flags & effFlagsHasEditor, 0);
}

TEST_F(EditorCommands, AreOverWhenTheEffectGoesWhichClosesAnOpenEditorFirst) {
    effect->dispatcher(effEditOpen, 0, 0, target.data(), 0.0F);
    effect.reset();
    EXPECT_FALSE(alive);
    EXPECT_EQ(heard.back(), "close");
}

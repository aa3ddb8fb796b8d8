// The effect record and the plain functions behind it.
#include "hosting/recordinghost.h"
#include "tests/shell/loggingeffect.h"
#include "tests/support/childprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

AEffect* recordOf(AudioEffect& effect) {
    return effect.getAeffect();
}

} // namespace

TEST(EffectRecord, IsFilledByTheBaseClass) {
    LoggingEffect effect(nullptr, 3);
    const AEffect& record = *recordOf(effect);
    EXPECT_EQ(record.magic, 0x56737450);
    EXPECT_EQ(record.numPrograms, 3);
    EXPECT_EQ(record.numParams, 9);
    EXPECT_EQ(record.numInputs, 1);
    EXPECT_EQ(record.numOutputs, 2);
    EXPECT_EQ(record.flags, 16);
    EXPECT_EQ(record.ioRatio, 1.0F);
    EXPECT_EQ(record.object, static_cast<AudioEffect*>(&effect));
    EXPECT_EQ(record.uniqueID, 0x4E6F4566);
    EXPECT_EQ(record.version, 1);
    EXPECT_NE(record.dispatcher, nullptr);
    EXPECT_NE(record.process, nullptr);
    EXPECT_NE(record.processReplacing, nullptr);
    EXPECT_NE(record.processDoubleReplacing, nullptr);
    EXPECT_NE(record.setParameter, nullptr);
    EXPECT_NE(record.getParameter, nullptr);
}

TEST(EffectRecord, IsZeroEverywhereElse) {
    LoggingEffect effect(nullptr);
    const AEffect& record = *recordOf(effect);
    EXPECT_EQ(record.resvd1, 0);
    EXPECT_EQ(record.resvd2, 0);
    EXPECT_EQ(record.initialDelay, 0);
    EXPECT_EQ(record.realQualities, 0);
    EXPECT_EQ(record.offQualities, 0);
    EXPECT_EQ(record.user, nullptr);
    EXPECT_TRUE(std::ranges::all_of(record.future, [](char byte) { return byte == 0; }));
}

TEST(EffectRecord, FlagSettersSetAndClearTheirBit) {
    LoggingEffect effect(nullptr);
    const auto flagAfter = [&effect](auto setter, bool state) {
        (effect.*setter)(state);
        return recordOf(effect)->flags & ~16;
    };
    const auto check = [&](auto setter, int bit) {
        EXPECT_EQ(flagAfter(setter, true), bit);
        EXPECT_EQ(flagAfter(setter, false), 0);
    };
    check(&AudioEffectX::canDoubleReplacing, 4096);
    check(&AudioEffectX::programsAreChunks, 32);
    check(&AudioEffectX::hasVu, 4);
    check(&AudioEffectX::hasClip, 2);
    check(&AudioEffectX::canMono, 8);
    check(&AudioEffectX::isSynth, 256);
    check(&AudioEffectX::noTail, 512);
    check(&AudioEffectX::wantAsyncOperation, 1024);
    check(&AudioEffectX::hasExternalBuffer, 2048);
    effect.canProcessReplacing(false);
    EXPECT_EQ(recordOf(effect)->flags, 0);
}

TEST(EffectRecord, FieldSettersWriteTheirField) {
    LoggingEffect effect(nullptr);
    effect.setUniqueID(5);
    effect.setNumInputs(6);
    effect.setNumOutputs(7);
    effect.setInitialDelay(8);
    effect.setRealtimeQualities(9);
    effect.setOfflineQualities(10);
    const AEffect& record = *recordOf(effect);
    EXPECT_EQ(record.uniqueID, 5);
    EXPECT_EQ(record.numInputs, 6);
    EXPECT_EQ(record.numOutputs, 7);
    EXPECT_EQ(record.initialDelay, 8);
    EXPECT_EQ(record.realQualities, 9);
    EXPECT_EQ(record.offQualities, 10);
}

TEST(RecordFunctions, ReachTheMostDerivedOperations) {
    LoggingEffect effect(nullptr);
    AEffect* record = recordOf(effect);
    EXPECT_EQ(record->getParameter(record, 4), 0.25F);
    record->setParameter(record, 3, 0.5F);
    record->process(record, nullptr, nullptr, 1);
    record->processReplacing(record, nullptr, nullptr, 2);
    record->processDoubleReplacing(record, nullptr, nullptr, 3);
    EXPECT_EQ(record->dispatcher(record, effGetVendorVersion, 0, 0, nullptr, 0.0F), 1234);
    EXPECT_THAT(effect.heard,
                ElementsAre("getParameter 4", "setParameter 3 0.5", "process 1",
                            "processReplacing 2", "processDoubleReplacing 3", "getVendorVersion"));
}

TEST(RecordFunctions, AreHarmlessWithoutAnEffect) {
    LoggingEffect effect(nullptr);
    const AEffect functions = *recordOf(effect);
    AEffect orphan = functions;
    orphan.object = nullptr;
    for (AEffect* record : {static_cast<AEffect*>(nullptr), &orphan}) {
        EXPECT_EQ(functions.dispatcher(record, effGetVstVersion, 0, 0, nullptr, 0.0F), 0);
        EXPECT_EQ(functions.dispatcher(record, effClose, 0, 0, nullptr, 0.0F), 0);
        EXPECT_EQ(functions.getParameter(record, 0), 0.0F);
        functions.setParameter(record, 0, 1.0F);
        functions.process(record, nullptr, nullptr, 1);
        functions.processReplacing(record, nullptr, nullptr, 1);
        functions.processDoubleReplacing(record, nullptr, nullptr, 1);
    }
    EXPECT_THAT(effect.heard, IsEmpty());
}

namespace {

// Throws from everything that a host can reach.
class ThrowingEffect : public AudioEffectX {
  public:
    explicit ThrowingEffect(bool& alive)
        : AudioEffectX(nullptr, 1, 1)
        , alive(alive) {
        alive = true;
    }
    ~ThrowingEffect() override { alive = false; }
    void close() override { fail(); }
    VstInt32 getVendorVersion() override { return fail(); }
    float getParameter(VstInt32) override { return static_cast<float>(fail()); }
    void setParameter(VstInt32, float) override { fail(); }
    void process(float**, float**, VstInt32) override { fail(); }
    void processReplacing(float**, float**, VstInt32) override { fail(); }
    void processDoubleReplacing(double**, double**, VstInt32) override { fail(); }

  private:
    static int fail() { throw std::runtime_error("inside the effect"); }
    bool& alive;
};

} // namespace

TEST(RecordFunctions, LetNoExceptionReachTheHost) {
    bool alive = false;
    ThrowingEffect effect(alive);
    AEffect* record = recordOf(effect);
    EXPECT_EQ(record->dispatcher(record, effGetVendorVersion, 0, 0, nullptr, 0.0F), 0);
    EXPECT_EQ(record->getParameter(record, 0), 0.0F);
    EXPECT_NO_THROW(record->setParameter(record, 0, 0.0F));
    EXPECT_NO_THROW(record->process(record, nullptr, nullptr, 1));
    EXPECT_NO_THROW(record->processReplacing(record, nullptr, nullptr, 1));
    EXPECT_NO_THROW(record->processDoubleReplacing(record, nullptr, nullptr, 1));
}

TEST(Closing, DeletesTheEffectAndAnswersOneEvenIfClosingFails) {
    bool alive = false;
    auto* effect = new ThrowingEffect(alive); // closing deletes it
    AEffect* record = recordOf(*effect);
    ASSERT_TRUE(alive);
    EXPECT_EQ(record->dispatcher(record, effClose, 0, 0, nullptr, 0.0F), 1);
    EXPECT_FALSE(alive);
}

namespace {

// An editor whose closing fails.
class ThrowingEditor : public AEffEditor {
  public:
    ThrowingEditor(AudioEffect* owner, bool& alive)
        : AEffEditor(owner)
        , alive(alive) {
        alive = true;
        owner->setEditor(this);
    }
    ~ThrowingEditor() override { alive = false; }
    void close() override { throw std::runtime_error("inside the editor"); }

  private:
    bool& alive;
};

} // namespace

// An exception that leaves a destructor ends the process, so the effect is
// closed in one of its own.
TEST(Closing, DeletesAnOpenEditorEvenIfItsClosingFails) {
    const auto closeEffectWithEditor = [] {
        bool effectAlive = false;
        bool editorAlive = false;
        auto* effect = new ThrowingEffect(effectAlive); // closing deletes it
        new ThrowingEditor(effect, editorAlive);        // and this with it
        AEffect* record = recordOf(*effect);
        std::array<char, 1> window{};
        record->dispatcher(record, effEditOpen, 0, 0, window.data(), 0.0F);
        const bool closed = record->dispatcher(record, effClose, 0, 0, nullptr, 0.0F) == 1;
        return closed && !effectAlive && !editorAlive ? 0 : 1;
    };
    EXPECT_EQ(mirelon::test::inChild(closeEffectWithEditor), 0);
}

// The state formed and applied on one thread while another does the same.
#include "tests/presetsystem/recordingeffect.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace mirelon::test {
namespace {

constexpr int turns = 2000;

// Writes nothing down, unlike the recording effect: its values are what counts.
class PlainPresetEffect : public CPresetSystemEffect {
  public:
    PlainPresetEffect()
        : CPresetSystemEffect(nullptr) {
        setUniqueID(testId);
    }
    void processReplacing(float** /*inputs*/, float** /*outputs*/,
                          VstInt32 /*sampleFrames*/) override {}

    // What only a processor has.
    float getParameterValue(VstInt32 /*index*/) const override { return 0.0F; }
    float getWidthMeter() const override { return 0.0F; }
    float getBalanceMeter() const override { return 0.0F; }
    void setEditorOpen(bool /*open*/) override {}
    bool isEditorOpen() const override { return false; }

    void fill(float value) {
        for (PresetRecord& record : bank())
            for (int i = 0; i < kNumPresetParams; ++i)
                record.setValue(i, value);
    }
};

ChunkImage chunkFilledWith(float value) {
    PlainPresetEffect effect;
    effect.fill(value);
    ChunkImage image;
    effect.writeChunk(image);
    return image;
}

TEST(ChunkThreads, OneFormsTheStateWhileAnotherAppliesOne) {
    PlainPresetEffect effect;
    effect.fill(0.25F);
    const std::array<ChunkImage, 2> states{chunkFilledWith(0.25F), chunkFilledWith(0.75F)};
    std::thread audio([&] {
        for (int i = 0; i < turns; ++i) {
            ChunkImage image = states[static_cast<std::size_t>(i) % 2];
            EXPECT_EQ(effect.applyChunk(image), ChunkVerdict::accepted);
        }
    });
    for (int i = 0; i < turns; ++i) {
        ChunkImage image;
        effect.writeChunk(image);
        PresetBank bank;
        copyChunkBank(image, bank);
        for (const PresetRecord& record : bank)
            for (int j = 0; j < kNumPresetParams; ++j) {
                const float value = record.value(j);
                ASSERT_TRUE(value == 0.25F || value == 0.75F) << value;
            }
    }
    audio.join();
}

TEST(ChunkThreads, TwoFormTheStateEachInItsOwnMemory) {
    PlainPresetEffect effect;
    effect.fill(0.5F);
    const ChunkImage expected = chunkFilledWith(0.5F);
    const auto form = [&] {
        for (int i = 0; i < turns; ++i) {
            ChunkImage image;
            effect.writeChunk(image);
            ASSERT_EQ(image, expected);
        }
    };
    std::thread other(form);
    form();
    other.join();
}

} // namespace
} // namespace mirelon::test

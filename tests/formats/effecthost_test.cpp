#include "formats/effecthost.h"

#include "tests/support/temporaryfolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <string>
#include <thread>

namespace mirelon::test {
namespace {

// Writes down what it hears.
class RecordingEffectHost : public EffectHost {
  public:
    using EffectHost::EffectHost;
    std::string heard;
    bool resizes = true;

  protected:
    void parameterAutomated(VstInt32 index, float /*value*/) override { note('a', index); }
    void gestureBegun(VstInt32 index) override { note('b', index); }
    void gestureEnded(VstInt32 index) override { note('e', index); }
    void displayChanged() override { heard += 'd'; }
    bool canResizeWindow() const override { return resizes; }
    bool resizeWindow(int width, int height) override {
        heard += 'r' + std::to_string(width) + 'x' + std::to_string(height);
        return true;
    }

  private:
    void note(char what, VstInt32 index) {
        heard += what;
        heard += std::to_string(index);
    }
};

class HostedEffect : public testing::Test {
  protected:
    HostedEffect() { setenv("XDG_CONFIG_HOME", preferences.path.c_str(), 1); }

    TemporaryFolder preferences;
};

TEST_F(HostedEffect, KnowsItsHostsVersionRateAndBlockSize) {
    RecordingEffectHost host(96000.0F, 256);
    EXPECT_EQ(host.effect().getMasterVersion(), 2400);
    EXPECT_EQ(host.effect().updateSampleRate(), 96000.0F);
    EXPECT_EQ(host.effect().updateBlockSize(), 256);
}

TEST_F(HostedEffect, AsksItsHostForARateThatItHasLost) {
    RecordingEffectHost host(96000.0F, 256);
    host.effect().setSampleRate(8000.0F);
    EXPECT_EQ(host.effect().updateSampleRate(), 96000.0F);
}

TEST_F(HostedEffect, AsksItsHostForABlockSizeThatItHasLost) {
    RecordingEffectHost host(96000.0F, 256);
    host.effect().setBlockSize(8);
    EXPECT_EQ(host.effect().updateBlockSize(), 256);
}

TEST_F(HostedEffect, IsToldAnotherRateAndBlockSize) {
    RecordingEffectHost host(44100.0F, 64);
    host.setFormat(96000.0F, 256);
    EXPECT_EQ(host.effect().getSampleRate(), 96000.0F);
    EXPECT_EQ(host.effect().getBlockSize(), 256);
    EXPECT_EQ(host.effect().updateSampleRate(), 96000.0F);
    EXPECT_EQ(host.effect().updateBlockSize(), 256);
}

TEST_F(HostedEffect, HasNoAnswerToAnyOtherQuestion) {
    RecordingEffectHost host(44100.0F, 64);
    EXPECT_EQ(host.effect().getInputLatency(), 0);
    EXPECT_EQ(host.effect().getOutputLatency(), 0);
}

TEST_F(HostedEffect, AsksForItsBlockSizeWhileItIsBuilt) {
    const RecordingEffectHost host(44100.0F, 64);
    EXPECT_EQ(host.effect().getBlockSize(), 64);
}

TEST_F(HostedEffect, HasARateThatIsNoWholeNumber) {
    const RecordingEffectHost host(44100.5F, 64);
    EXPECT_EQ(host.effect().getSampleRate(), 44100.5F);
}

TEST_F(HostedEffect, AsksForAnotherSizeOfItsWindowWhereThatCanBeHad) {
    RecordingEffectHost host(44100.0F, 64);
    EXPECT_TRUE(host.effect().resizeWindow(486, 522));
    EXPECT_EQ(host.heard, "r486x522");
    host.resizes = false;
    EXPECT_FALSE(host.effect().resizeWindow(648, 696));
    EXPECT_EQ(host.heard, "r486x522");
}

TEST_F(HostedEffect, HasAHostThatCanDoNothingButResizeAWindow) {
    RecordingEffectHost host(44100.0F, 64);
    char resizing[] = "sizeWindow";
    char other[] = "openFileSelector";
    EXPECT_TRUE(host.effect().canHostDo(resizing));
    EXPECT_FALSE(host.effect().canHostDo(other));
    EXPECT_FALSE(host.effect().canHostDo(nullptr));
    host.resizes = false;
    EXPECT_FALSE(host.effect().canHostDo(resizing));
}

TEST_F(HostedEffect, IsNotHeardWhileItIsBuilt) {
    const RecordingEffectHost host(44100.0F, 1024);
    EXPECT_EQ(host.heard, "");
}

TEST_F(HostedEffect, EndsWithItsHost) {
    constexpr std::size_t mostLeft = 200'000; // less than three effects take
    { const RecordingEffectHost first(44100.0F, 1024); }
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 10; ++i)
        const RecordingEffectHost host(44100.0F, 1024);
    EXPECT_LT(mallinfo2().uordblks, before + mostLeft);
}

TEST_F(HostedEffect, IsAnsweredByNoHostOnceItsOwnHasLetItGo) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().getAeffect()->user = nullptr;
    EXPECT_EQ(host.effect().getMasterVersion(), 1); // an unknown one
    EXPECT_FALSE(host.effect().updateDisplay());
    host.effect().setPresetNo(4);
    EXPECT_EQ(host.heard, "");
}

TEST_F(HostedEffect, TellsTheValuesOfAGestureBetweenItsEnds) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().beginEdit(3);
    host.effect().setParameterAutomated(3, 0.25F);
    host.effect().setParameterAutomated(3, 0.5F);
    host.effect().endEdit(3);
    EXPECT_EQ(host.heard, "b3a3a3e3");
    EXPECT_EQ(host.effect().getParameter(3), 0.5F);
}

TEST_F(HostedEffect, LearnsThatItsGesturesAndItsDisplayAreHeard) {
    RecordingEffectHost host(44100.0F, 1024);
    EXPECT_TRUE(host.effect().beginEdit(3));
    EXPECT_TRUE(host.effect().endEdit(3));
    EXPECT_TRUE(host.effect().updateDisplay());
}

TEST_F(HostedEffect, TellsAValueWithoutAGesture) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().setParameterAutomated(5, 0.0F);
    EXPECT_EQ(host.heard, "a5");
}

TEST_F(HostedEffect, DoesNotTellAGestureWithoutAValue) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().beginEdit(2);
    host.effect().endEdit(2);
    host.effect().setParameterAutomated(2, 0.25F);
    EXPECT_EQ(host.heard, "a2");
}

TEST_F(HostedEffect, TellsAPresetChangeAsAnotherDisplayOnly) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().setPresetNo(4);
    EXPECT_EQ(host.heard, "d");
}

TEST_F(HostedEffect, KeepsAGestureThroughAPresetChange) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().beginEdit(0);
    host.effect().setParameterAutomated(0, 0.25F);
    host.effect().setPresetNo(4);
    EXPECT_TRUE(host.isHeld(0));
    host.effect().endEdit(0);
    EXPECT_EQ(host.heard, "b0a0de0");
}

TEST_F(HostedEffect, IsHeldBetweenTheEndsOfAGestureWhateverItTells) {
    RecordingEffectHost host(44100.0F, 1024);
    EXPECT_FALSE(host.isHeld(1));
    host.effect().beginEdit(1);
    EXPECT_TRUE(host.isHeld(1));
    EXPECT_FALSE(host.isHeld(2));
    host.effect().endEdit(1);
    EXPECT_FALSE(host.isHeld(1));
}

TEST_F(HostedEffect, IsNotConfusedByAnEndWithoutABeginning) {
    RecordingEffectHost host(44100.0F, 1024);
    host.effect().endEdit(1);
    host.effect().beginEdit(1);
    EXPECT_TRUE(host.isHeld(1));
}

TEST_F(HostedEffect, IsNotHeardOfUnknownParameters) {
    RecordingEffectHost host(44100.0F, 1024);
    for (const VstInt32 index : {-1, int{kNumParams}}) {
        host.effect().beginEdit(index);
        host.effect().setParameterAutomated(index, 0.5F);
        host.effect().endEdit(index);
        EXPECT_FALSE(host.isHeld(index));
    }
    EXPECT_EQ(host.heard, "");
}

TEST_F(HostedEffect, TellsItsOwnHostOfSeveral) {
    RecordingEffectHost first(44100.0F, 1024);
    RecordingEffectHost second(48000.0F, 512);
    second.effect().setParameterAutomated(1, 0.25F);
    EXPECT_EQ(first.heard, "");
    EXPECT_EQ(second.heard, "a1");
    EXPECT_EQ(first.effect().updateBlockSize(), 1024);
    EXPECT_EQ(second.effect().updateBlockSize(), 512);
}

TEST_F(HostedEffect, IsBuiltOnManyThreadsAtATime) {
    std::vector<std::thread> threads;
    std::array<VstInt32, 4> sizes{};
    for (std::size_t i = 0; i < sizes.size(); ++i)
        threads.emplace_back([&sizes, i] {
            const RecordingEffectHost host(44100.0F, static_cast<VstInt32>(64 << i));
            sizes[i] = host.effect().getBlockSize();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(sizes, (std::array<VstInt32, 4>{64, 128, 256, 512}));
}

TEST_F(HostedEffect, OfAHostThatThrowsGoesOn) {
    class Throwing : public EffectHost {
      public:
        using EffectHost::EffectHost;

      protected:
        void displayChanged() override { throw std::bad_alloc(); }
    };
    Throwing host(44100.0F, 1024);
    EXPECT_NO_THROW(host.effect().setPresetNo(3));
    EXPECT_FALSE(host.effect().updateDisplay());
    EXPECT_EQ(host.effect().getPresetNo(), 3);
}

} // namespace
} // namespace mirelon::test

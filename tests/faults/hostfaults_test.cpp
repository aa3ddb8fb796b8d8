// Hosts that do what no host should, and the plug-in in the middle of it.
#include "hosting/residentmemory.h"
#include "hosting/sanitized.h"
#include "tests/support/childprocess.h"
#include "tests/support/plugin.h"
#include "tests/support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <thread>

using namespace mirelon;
using namespace mirelon::test;
using hosting::Effect;
using hosting::RecordingHost;

namespace {

// A host whose every answer is this number, but for its version.
VstIntPtr everyAnswer = 0;
VstIntPtr nonsenseHost(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/,
                       VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/) {
    return opcode == audioMasterVersion ? kVstVersion : everyAnswer;
}

class NonsenseAnswers : public ::testing::TestWithParam<VstIntPtr> {};

TEST_P(NonsenseAnswers, LeaveTheAudioAsItIs) {
    everyAnswer = GetParam();
    Effect effect(pluginModule(), nonsenseHost);
    effect.setSampleRate(48000.0F);
    effect.setBlockSize(64);
    effect.resume();
    effect.setChunk(effect.chunk());
    const StereoBuffer<float> in(std::vector<float>(64, 0.25F), std::vector<float>(64, -0.5F));
    const auto out = processed(effect, in);
    EXPECT_EQ(out.left, in.left);
    EXPECT_EQ(out.right, in.right);
    EXPECT_EQ(effect.programName(), "init");
    effect.suspend();
    effect.resume();
    EXPECT_EQ(processed(effect, in).left, in.left);
}

INSTANTIATE_TEST_SUITE_P(Of, NonsenseAnswers,
                         ::testing::Values(VstIntPtr{-1}, VstIntPtr{1}, INTPTR_MAX, INTPTR_MIN,
                                           VstIntPtr{INT32_MIN}, VstIntPtr{1} << 32));

TEST(ThreadsOfAHost, EachMayOpenUseAndCloseItsOwnInstances) {
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 25; ++i) {
                PluginInstance instance;
                instance.effect.resume();
                const StereoBuffer<float> in(std::vector<float>(32, 0.5F),
                                             std::vector<float>(32, 0.25F));
                if (processed(instance.effect, in).left != in.left ||
                    instance.effect.chunk().size() != 692)
                    ++wrong;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(ThreadsOfAHost, AnInstanceMayBeUsedAndClosedElsewhereThanItWasOpened) {
    auto instance = std::make_unique<PluginInstance>();
    std::thread([&] {
        instance->effect.resume();
        instance->effect.setParameter(0, 0.75F);
    }).join();
    EXPECT_EQ(instance->effect.parameter(0), 0.75F);
    std::thread([&] { instance.reset(); }).join();
    EXPECT_EQ(instance, nullptr);
}

long residentKilobytes() {
    return static_cast<long>(hosting::residentMemory() / 1024);
}

TEST(ThousandInstances, LiveTogetherAndEachIsItsOwn) {
    constexpr std::size_t count = 1000;
    RecordingHost host(hosting::Recording::off);
    std::vector<std::unique_ptr<Effect>> effects;
    for (std::size_t i = 0; i < count; ++i) {
        effects.push_back(std::make_unique<Effect>(pluginModule(), host));
        effects.back()->setParameter(2, static_cast<float>(i) / count);
        effects.back()->resume();
    }
    const StereoBuffer<float> in(std::vector<float>(16, 1.0F), std::vector<float>(16, 1.0F));
    for (std::size_t i = 0; i < count; ++i) {
        const float balance = static_cast<float>(i) / count;
        ASSERT_EQ(effects[i]->parameter(2), balance);
        ASSERT_FLOAT_EQ(processed(*effects[i], in).left[15], 2.0F * balance) << i;
    }
}

// Hours of audio, one by default; a long run sets MIRELON_AUDIO_HOURS.
double hoursWanted() {
    const char* const text = std::getenv("MIRELON_AUDIO_HOURS");
    return text != nullptr ? std::atof(text) : 1.0;
}

TEST(HoursOfAudio, LeaveMemoryAndSoundWhereTheyWere) {
    constexpr int rate = 48000;
    constexpr int frames = 1024;
    PluginInstance instance;
    instance.host.answer(audioMasterGetBlockSize, frames);
    Effect& effect = instance.effect;
    effect.setSampleRate(rate);
    effect.setBlockSize(frames);
    effect.resume();
    StereoBuffer<float> in(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        in.left[i] = std::sin(static_cast<float>(i) * 0.05F);
        in.right[i] = std::cos(static_cast<float>(i) * 0.031F);
    }
    StereoBuffer<float> out(frames);
    const auto first = processed(effect, in);
    const auto blocks = static_cast<long>(hoursWanted() * 3600.0 * rate / frames);
    long memoryAtStart = 0;
    for (long block = 0; block < blocks; ++block) {
        if (block == blocks / 20) // everything that grows at first has grown
            memoryAtStart = residentKilobytes();
        if (block % 1000 == 0) {
            effect.setParameter(0, static_cast<float>(block % 7000) / 7000.0F);
            effect.setChunk(effect.chunk());
            instance.host.forgetCalls();
        }
        effect.process(in.pointers(), out.pointers(), frames);
    }
    const long growth = residentKilobytes() - memoryAtStart;
    RecordProperty("blocks", std::to_string(blocks));
    RecordProperty("growth_kilobytes", std::to_string(growth));
    std::printf("%ld blocks, memory grew by %ld KiB\n", blocks, growth);
    if (!hosting::sanitized) { // which keeps freed memory for a while
        EXPECT_LE(growth, 256);
    }
    effect.setParameter(0, 0.5F);
    EXPECT_EQ(processed(effect, in).left, first.left);
}

// The preferences' faults as a host meets them: in a process that loads the
// plug-in while its store is damaged, in the way or not to be had.
int factoryStateIn(const std::string& configFolder) {
    return mirelon::test::inChild([&] {
        setenv("XDG_CONFIG_HOME", configFolder.c_str(), 1);
        setenv("HOME", "/nonexistent", 1);
        try {
            PluginInstance instance;
            instance.effect.resume();
            const StereoBuffer<float> in(std::vector<float>(8, 0.5F), std::vector<float>(8, 0.5F));
            const bool right = instance.effect.programName() == "init" &&
                               processed(instance.effect, in).left == in.left &&
                               instance.effect.programNameAt(10) == "swapped";
            return right ? 0 : 1;
        } catch (...) {
            return 2;
        }
    });
}

class DamagedPreferences : public ::testing::TestWithParam<std::string> {};

TEST_P(DamagedPreferences, LeaveTheFactoryState) {
    const mirelon::test::TemporaryFolder config;
    const auto store = config.path / "example.dravik.mirelon" / "preferences.sqlite3";
    std::filesystem::create_directory(store.parent_path());
    mirelon::test::writeFile(store, GetParam());
    EXPECT_EQ(factoryStateIn(config.path.string()), 0);
    EXPECT_EQ(mirelon::test::contentsOf(store), GetParam()) << "loading has written to it";
}

INSTANTIATE_TEST_SUITE_P(Being, DamagedPreferences,
                         ::testing::Values("", "x", std::string(5000, '\x7f'),
                                           std::string("SQLite format 3\0", 16),
                                           std::string("SQLite format 3\0", 16) +
                                               std::string(8192, '\x01')));

TEST(MissingPreferences, WhereTheirFolderIsAFileLeaveTheFactoryState) {
    const mirelon::test::TemporaryFolder folder;
    mirelon::test::writeFile(folder / "config", "a file");
    EXPECT_EQ(factoryStateIn((folder / "config").string()), 0);
    EXPECT_EQ(factoryStateIn("/proc/nowhere"), 0);
    EXPECT_EQ(factoryStateIn(""), 0);
}

} // namespace

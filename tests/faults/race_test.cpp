// The effect's classes from all of a host's threads at once: for the race
// checker, which sees nothing of what is not linked in.
#include "shell/audioeffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace {

VstIntPtr host(AEffect* /*effect*/, VstInt32 opcode, VstInt32 /*index*/, VstIntPtr /*value*/,
               void* /*ptr*/, float /*opt*/) {
    return opcode == audioMasterVersion ? kVstVersion : 0;
}

TEST(Races, AudioAutomationStateAndQuestionsRunSideBySide) {
    AEffect* const effect = createEffectInstance(host)->getAeffect();
    std::atomic<bool> stop{false};
    std::atomic<long> blocks{0};
    std::atomic<long> states{0};
    const auto dispatch = [effect](VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                                   void* ptr = nullptr) {
        return effect->dispatcher(effect, opcode, index, value, ptr, 0.0F);
    };
    dispatch(effMainsChanged, 0, 1);
    std::vector<std::thread> threads;
    threads.emplace_back([&] { // audio
        std::vector<float> left(64, 0.5F);
        std::vector<float> right(64, 0.25F);
        std::array<float*, 2> channels{left.data(), right.data()};
        while (!stop) {
            effect->processReplacing(effect, channels.data(), channels.data(), 64);
            effect->setParameter(effect, 3, 0.5F);
            ++blocks;
        }
    });
    threads.emplace_back([&] { // automation
        for (VstInt32 i = 0; !stop; ++i)
            effect->setParameter(effect, i % 9, static_cast<float>(i % 100) * 0.01F);
    });
    threads.emplace_back([&] { // state
        while (!stop) {
            void* chunk = nullptr;
            const VstIntPtr size = dispatch(effGetChunk, 0, 0, &chunk);
            std::vector<char> copy(static_cast<char*>(chunk), static_cast<char*>(chunk) + size);
            dispatch(effSetChunk, 0, size, copy.data());
            std::string name = "a name";
            dispatch(effSetProgramName, 0, 0, name.data());
            ++states;
        }
    });
    threads.emplace_back([&] { // a host's parameter list
        std::array<char, 256> text{};
        for (VstInt32 i = 0; !stop; ++i) {
            dispatch(effGetParamDisplay, i % 9, 0, text.data());
            dispatch(effGetProgramName, 0, 0, text.data());
            dispatch(effGetProgramNameIndexed, i % 11, 0, text.data());
            effect->getParameter(effect, i % 9);
            dispatch(effGetVu);
        }
    });
    std::this_thread::sleep_for(std::chrono::seconds(1));
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GT(blocks, 0);
    EXPECT_GT(states, 0);
    EXPECT_EQ(dispatch(effClose), 1);
}

TEST(Races, RateAndBlockSizeChangeWhileAudioRuns) {
    AudioEffect* const instance = createEffectInstance(host);
    AEffect* const effect = instance->getAeffect();
    effect->dispatcher(effect, effMainsChanged, 0, 1, nullptr, 0.0F);
    std::atomic<bool> stop{false};
    std::atomic<long> blocks{0}; // relaxed, so that it orders nothing else
    std::thread audio([&] {
        std::vector<float> left(64, 0.5F);
        std::vector<float> right(64, 0.25F);
        std::array<float*, 2> channels{left.data(), right.data()};
        for (; !stop; blocks.fetch_add(1, std::memory_order_relaxed))
            effect->processReplacing(effect, channels.data(), channels.data(),
                                     std::min(64, instance->getBlockSize()));
    });
    for (VstInt32 i = 0; blocks.load(std::memory_order_relaxed) < 10000; ++i) {
        const float rate = i % 2 == 0 ? 48000.0F : 96000.0F;
        effect->dispatcher(effect, effSetSampleRate, 0, 0, nullptr, rate);
        effect->dispatcher(effect, effSetBlockSize, 0, 32 + i % 2, nullptr, 0.0F);
        effect->dispatcher(effect, effSetBlockSizeAndSampleRate, 0, 64 + i % 2, nullptr, rate);
    }
    stop = true;
    audio.join();
    EXPECT_EQ(effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F), 1);
}

TEST(Races, InstancesAreBuiltAndClosedSideBySide) {
    std::vector<std::thread> threads;
    std::atomic<int> closed{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 10; ++i) {
                AEffect* const effect = createEffectInstance(host)->getAeffect();
                effect->setParameter(effect, 0, 0.25F);
                closed += static_cast<int>(effect->dispatcher(effect, effClose, 0, 0, nullptr, 0));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(closed, 40);
}

} // namespace

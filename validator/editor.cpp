// The editor: opened again and again, beside audio, and before a host has said
// anything about rate and block size.
#include "validator/audioblock.h"
#include "validator/checkededitor.h"
#include "validator/instance.h"

#include <array>
#include <atomic>
#include <exception>
#include <thread>

namespace mirelon::validator {

namespace {

using namespace std::chrono_literals;

std::string openedTwice(const Subject& subject) {
    Instance instance(subject);
    CheckedEditor editor(instance.effect);
    for (int i = 0; i < 2; ++i) {
        editor.open();
        editor.idle(200ms);
        editor.close();
    }
    return {};
}

std::string inTwoInstances(const Subject& subject) {
    Instance first(subject);
    Instance second(subject);
    CheckedEditor one(first.effect);
    CheckedEditor other(second.effect);
    one.open();
    other.open();
    one.idle(100ms);
    one.close();
    other.idle(100ms);
    other.close();
    return {};
}

// A user's day: what is left behind by each opening shows at the end. In every
// third round the other instance's window is open as well.
std::string sixtyTimes(const Subject& subject) {
    Instance first(subject);
    Instance second(subject);
    CheckedEditor one(first.effect);
    CheckedEditor other(second.effect);
    for (int i = 0; i < 60; ++i) {
        const bool both = i % 3 == 2;
        one.open();
        if (both)
            other.open();
        one.idle(10ms);
        one.close();
        if (both)
            other.close();
    }
    return {};
}

std::string whileProcessing(const Subject& subject) {
    Instance instance(subject);
    CheckedEditor editor(instance.effect);
    start(instance.effect, 48000, 256);
    std::atomic<bool> stop{false};
    std::exception_ptr failure;
    std::thread audio([&] {
        try {
            Buffers<float> buffers(instance.effect, 256);
            Noise noise(subject.seed);
            while (!stop.load()) {
                buffers.in.fill(noise);
                buffers.process(instance.effect, "while the editor was in use");
                std::this_thread::sleep_for(1ms);
            }
        } catch (...) {
            failure = std::current_exception();
        }
    });
    try {
        for (int i = 0; i < 3; ++i) {
            editor.open();
            editor.idle(200ms);
            editor.close();
        }
    } catch (...) {
        stop = true;
        audio.join();
        throw;
    }
    stop = true;
    audio.join();
    if (failure)
        std::rethrow_exception(failure);
    return {};
}

// A host may show the editor before it has a sound system.
std::string beforeAudio(const Subject& subject) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    CheckedEditor editor(effect);
    editor.open();
    editor.idle(100ms);
    for (VstInt32 i = 0; i < visitedParameters(effect); ++i) {
        doing("setting parameter ", i, " to 0.75 with the editor open and no audio yet");
        effect.setParameter(i, 0.75F);
    }
    editor.idle(100ms);
    editor.close();
    return {};
}

constexpr std::array editorTable{
    Check{"editor-opened-twice", 6, Formats::all, openedTwice, 60},
    Check{"editor-in-two-instances", 6, Formats::all, inTwoInstances, 60},
    Check{"editor-sixty-openings", 10, Formats::all, sixtyTimes, 120},
    Check{"editor-while-processing", 6, Formats::all, whileProcessing, 60},
    Check{"editor-before-audio", 6, Formats::vst2, beforeAudio, 60},
};

} // namespace

std::span<const Check> editorChecks() {
    return editorTable;
}

} // namespace mirelon::validator

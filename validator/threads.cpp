// Everything at once, each on the thread that a host does it on.
#include "validator/audioblock.h"
#include "validator/checkededitor.h"
#include "validator/instance.h"

#include <array>
#include <atomic>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace mirelon::validator {

namespace {

using namespace std::chrono_literals;

// Runs functions over and over, each on a thread of its own, until stopped.
class Crew {
  public:
    ~Crew() { stop(); }
    void repeat(std::function<void()> turn) {
        threads.emplace_back([this, turn = std::move(turn)] {
            try {
                while (!stopped.load())
                    turn();
            } catch (...) {
                const std::lock_guard lock(access);
                failure = std::current_exception();
            }
        });
    }
    // Rethrows what a thread has thrown.
    void finish() {
        stop();
        if (failure)
            std::rethrow_exception(failure);
    }

  private:
    void stop() {
        stopped = true;
        for (std::thread& thread : threads)
            thread.join();
        threads.clear();
    }

    std::atomic<bool> stopped{false};
    std::vector<std::thread> threads;
    std::mutex access;
    std::exception_ptr failure;
};

std::string everythingAtOnce(const Subject& subject, bool withEditor) {
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    std::optional<CheckedEditor> editor;
    if (withEditor)
        editor.emplace(effect);
    start(effect, 48000, 256);
    std::atomic<long> blocks{0};
    {
        Crew crew;
        Buffers<float> buffers(effect, 256);
        Noise audioNoise(subject.seed);
        crew.repeat([&] {
            buffers.in.fill(audioNoise);
            effect.process(buffers.in.data(), buffers.out.data(), 256);
            require(buffers.in.guardsIntact() && buffers.out.guardsIntact(),
                    "wrote outside its buffers while several threads were in it");
            ++blocks;
        });
        const VstInt32 parameters = visitedParameters(effect);
        Noise automationNoise(subject.seed + 1);
        crew.repeat([&] {
            if (parameters > 0)
                effect.setParameter(static_cast<VstInt32>(automationNoise.below(
                                        static_cast<std::uint32_t>(parameters))),
                                    automationNoise.fraction());
            std::this_thread::sleep_for(100us);
        });
        // State and window are the main thread's in every host.
        const auto state = [&effect] {
            doing("saving and restoring the state while audio and automation run");
            if (effect.hasFlag(effFlagsProgramChunks))
                effect.setChunk(effect.chunk());
            effect.programName();
        };
        if (editor) {
            for (int i = 0; i < 4; ++i) {
                editor->open();
                for (int j = 0; j < 15; ++j) {
                    editor->idle(20ms);
                    state();
                }
                editor->close();
            }
        } else {
            for (const auto end = std::chrono::steady_clock::now() + 1s;
                 std::chrono::steady_clock::now() < end; std::this_thread::sleep_for(1ms))
                state();
        }
        crew.finish();
    }
    start(effect, 48000, 256);
    require(blocks.load() > 0, "processes nothing while several threads are in it");
    return std::to_string(blocks.load()) + " blocks";
}

std::string windowless(const Subject& subject) {
    return everythingAtOnce(subject, false);
}

std::string threadsWithEditor(const Subject& subject) {
    return everythingAtOnce(subject, true);
}

constexpr std::array threadsTable{
    Check{"threads-audio-automation-state", 10, Formats::all, windowless, 60},
    Check{"threads-with-editor", 10, Formats::all, threadsWithEditor, 60},
};

} // namespace

std::span<const Check> threadChecks() {
    return threadsTable;
}

} // namespace mirelon::validator

// An LV2 instance at work: what audio thread and other threads share of it.
#pragma once

#include "hosting/lv2instance.h"
#include "hosting/turn.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace mirelon::hosting {

// The ports' numbers may be read and set on any thread; `process` is the audio
// thread's, between `resume` and `suspend`; the rest is the main thread's.
class Lv2Player {
  public:
    // Throws PluginError as Lv2Instance does.
    Lv2Player(const Lv2Bundle& bundle, double rate);

    const Lv2Instance& ports() const noexcept { return *instance; }
    float number(std::uint32_t port) const noexcept;
    // Counts from the next cycle on.
    void setNumber(std::uint32_t port, float number) noexcept;

    // Neither waits nor allocates: silent in the cycle in which the instance is
    // being exchanged or restored.
    void process(float* const* inputs, float* const* outputs, std::uint32_t frames) noexcept;

    void resume();
    void suspend();
    // While suspended: a cycle of no frames, in which the plug-in takes over
    // what its ports and messages say, and answers.
    void settle();

    // LV2 fixes both for an instance's life: another one takes its place, with
    // its state. Rates of 0 and less change nothing.
    void setRate(double rate);
    void setLargestBlock(std::int32_t frames);

    void send(std::uint32_t port, std::span<const std::byte> atom) { instance->send(port, atom); }
    std::optional<MessageQueue::Message> takeNotification() { return instance->takeNotification(); }
    Lv2State save() { return instance->save(); }
    // Beside `process` where the plug-in allows that, otherwise in its place.
    LV2_State_Status restore(const Lv2State& state);

  private:
    void exchangeInstance();
    void runCycle(float* const* inputs, float* const* outputs, std::uint32_t frames) noexcept;

    const Lv2Bundle& bundle;
    double rate;
    std::int32_t largestBlock = Lv2Instance::usualLargestBlock;
    bool restoresBesideRun;
    std::unique_ptr<Lv2Instance> instance;
    const std::size_t outputCount;           // of audio
    std::vector<std::atomic<float>> numbers; // of control ports, by port
    std::atomic_flag busy{};                 // whose turn it is with the instance
    std::atomic<bool> resumed{false};
    std::vector<float> nowhere; // buffers for cycles of no frames
    std::vector<float*> nothing;
};

} // namespace mirelon::hosting

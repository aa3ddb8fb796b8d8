// A CLAP instance at work: what audio thread and other threads share of it.
#pragma once

#include "hosting/clapevents.h"
#include "hosting/claphost.h"
#include "hosting/clapinstance.h"
#include "hosting/messagequeue.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mirelon::hosting {

// Parameters go by their place in the plug-in's list. Their values may be read and
// set on any thread; `process` is the audio thread's, between `resume` and
// `suspend`; the rest is the main thread's.
class ClapPlayer {
  public:
    // Throws PluginError as ClapInstance does.
    ClapPlayer(const ClapLibrary& library, const std::string& id, double rate);

    ClapInstance& plugIn() noexcept { return instance; }
    const std::vector<clap_param_info>& parameters() const noexcept { return infos; }
    std::optional<std::size_t> indexOf(clap_id parameter) const noexcept;
    double value(std::size_t index) const noexcept;
    // Counts from the next cycle on, or from the next settling.
    void setValue(std::size_t index, double value) noexcept;

    // Does not allocate, and waits for no longer than a settling takes. Silent while
    // not resumed. Sample is float or double.
    template <typename Sample>
    void process(Sample* const* inputs, Sample* const* outputs, std::uint32_t frames) noexcept;

    void resume();
    void suspend();
    // Count at once: processing is interrupted for that. What is no number above 0
    // changes nothing.
    void setRate(double rate);
    void setLargestBlock(std::uint32_t frames);

    // A cycle without audio, in which the plug-in takes over the values that have
    // been set and tells its own; left out when a cycle with audio is doing that.
    void settle() noexcept;
    // What a host's main loop does for it. Answers whether the plug-in has asked its
    // host to look at values or state again.
    bool serve();
    // The oldest thing that it has told of its parameters.
    std::optional<ClapTold> takeTold() noexcept;

    std::optional<std::vector<std::byte>> save();
    bool load(std::span<const std::byte> state);

  private:
    struct Value {
        std::atomic<double> number{0.0};
        std::atomic<bool> isNew{false};
    };

    void readValues();
    void collectChanges() noexcept;
    void noteTold() noexcept;
    void activate(double newRate, std::uint32_t newLargestBlock);

    ClapHost host;
    ClapInstance instance;
    std::vector<clap_param_info> infos;
    std::vector<Value> values;
    double rate;
    std::uint32_t largestBlock = 1024;
    bool resumed = false;

    std::atomic_flag busy{}; // whose turn it is with what follows
    bool active = false;
    ClapInputEvents in;
    ClapOutputEvents out;
    std::vector<void*> parts; // channels from a later frame on

    MessageQueue told;
    int asked = 0; // rescans and marks that have been seen
};

} // namespace mirelon::hosting

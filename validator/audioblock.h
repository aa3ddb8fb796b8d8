// Buffers for a process call, with guard zones around every channel.
#pragma once

#include "hosting/effect.h"
#include "hosting/guardedbuffer.h"
#include "validator/check.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace mirelon::validator {

// Uniform white noise between -1 and 1, the same for the same seed everywhere.
class Noise {
  public:
    explicit Noise(std::uint64_t seed)
        : state(seed * 2 + 1) {}

    std::uint32_t bits() {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state >> 32U);
    }
    float sample() { return static_cast<float>(bits()) * 0x1p-31F - 1.0F; }
    float fraction() { return static_cast<float>(bits() >> 8U) * 0x1p-24F; } // 0 to 1, without 1
    std::uint32_t below(std::uint32_t limit) { return bits() % limit; }

  private:
    std::uint64_t state;
};

template <typename Sample>
class AudioBlock {
  public:
    AudioBlock(int channels, int frames)
        : length(frames) {
        // Aligned as memory from malloc is, and no further.
        constexpr std::size_t shift = 16 / sizeof(Sample);
        for (int c = 0; c < channels; ++c)
            storage.emplace_back(static_cast<std::size_t>(frames), shift);
        fill(Sample(0));
    }

    // An array even for no channels.
    Sample** data() {
        pointers.clear();
        for (auto& channel : storage)
            pointers.push_back(channel.data());
        pointers.push_back(nullptr);
        return pointers.data();
    }
    int frames() const { return length; }
    int channels() const { return static_cast<int>(storage.size()); }

    void fill(Noise& noise, Sample level = Sample(0.5)) {
        each([&](Sample& s) { s = static_cast<Sample>(noise.sample()) * level; });
    }
    void fill(Sample value) {
        each([&](Sample& s) { s = value; });
    }

    bool guardsIntact() const {
        return std::ranges::all_of(storage, &hosting::GuardedBuffer<Sample>::guardsIntact);
    }
    bool allFinite() const {
        return every([](Sample s) { return std::isfinite(s); });
    }
    bool allBelow(Sample limit) const {
        return every([limit](Sample s) { return std::fabs(s) <= limit; });
    }
    bool sameBits(const AudioBlock& other) const {
        for (std::size_t c = 0; c < std::min(storage.size(), other.storage.size()); ++c) {
            const auto own = storage[c].samples();
            if (std::memcmp(own.data(), other.storage[c].samples().data(), own.size_bytes()) != 0)
                return false;
        }
        return true;
    }

  private:
    template <typename Visit>
    void each(Visit visit) {
        for (auto& channel : storage)
            std::ranges::for_each(channel.samples(), visit);
    }
    template <typename Holds>
    bool every(Holds holds) const {
        return std::ranges::all_of(storage, [&](const auto& channel) {
            return std::ranges::all_of(channel.samples(), holds);
        });
    }

    int length;
    std::vector<hosting::GuardedBuffer<Sample>> storage;
    std::vector<Sample*> pointers;
};

// Input and output of one plug-in, out of place.
template <typename Sample>
struct Buffers {
    Buffers(int inputs, int outputs, int frames)
        : in(inputs, frames)
        , out(outputs, frames) {}
    Buffers(const hosting::Effect& effect, int frames)
        : Buffers(effect.record().numInputs, effect.record().numOutputs, frames) {}

    // One block; fails where a guard zone was written to, an input was changed
    // or an output is not finite. `when` ends the message.
    template <typename... When>
    void process(hosting::Effect& effect, const When&... when) {
        processBy([&](Sample** from, Sample** to) { effect.process(from, to, in.frames()); },
                  when...);
    }
    // The same with what does the processing given.
    template <typename Call, typename... When>
    void processBy(Call call, const When&... when) {
        const AudioBlock<Sample> before = in;
        call(in.data(), out.data());
        require(in.guardsIntact() && out.guardsIntact(), "wrote outside the buffers it was given, ",
                when...);
        require(in.sameBits(before), "changed its input buffers, ", when...);
        require(out.allFinite(), "put out something that is not a number, ", when...);
    }

    AudioBlock<Sample> in;
    AudioBlock<Sample> out;
};

} // namespace mirelon::validator

// Inside of the stereo core: its kernels, one file each, and which
// of them this machine runs. For the core, its tests and its benchmarks.
#pragma once

#include "processor/core/stereocore.h"

#include <span>

namespace mirelon::kernels {

// One block of audio, as handed to processBlock: never empty, and any output
// range is either one of the input ranges or apart from both. The outputs may
// be one and the same buffer.
template <typename Sample>
struct Block {
    const Coefficients& coefficients;
    double envelopeCoefficient;
    Envelopes& envelopes;
    StereoInput<Sample> in;
    StereoOutput<Sample> out;
    int frames;
};

// The offset that is added to a follower and taken off again: what lies far
// below it becomes zero, so that a sinking follower never gets denormal.
template <typename Sample>
inline constexpr double flushOffset = 1e-16;
template <>
inline constexpr double flushOffset<double> = 1e-21;

// A way to compute a block. All give the same bits.
struct Kernel {
    const char* name;
    bool (*runsHere)() noexcept; // whether this processor has the instructions
    void (*processFloat)(const Block<float>& block) noexcept;
    void (*processDouble)(const Block<double>& block) noexcept;
};

// Plain C++ and std::fma: what the others are held to. Runs everywhere.
extern const Kernel portable;
#if defined(__x86_64__)
extern const Kernel avx512; // 256-bit registers, AVX-512's masks and logic
extern const Kernel avx2;   // AVX2 and FMA
extern const Kernel sse2;   // any x86-64, fused steps without fused instructions
#endif

// Every kernel built for this architecture, the most demanding first.
std::span<const Kernel* const> builtKernels() noexcept;

// The kernel that processBlock runs: the first of those that run here. Chosen
// once, when the plug-in is loaded.
const Kernel& chosen() noexcept;

// processBlock with a kernel of the caller's choice.
template <typename Sample>
void processWith(const Kernel& kernel, const Block<Sample>& block) noexcept;

} // namespace mirelon::kernels

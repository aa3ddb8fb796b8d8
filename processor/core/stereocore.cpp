// The front of the stereo core: which kernel runs, and under which
// conditions.
#include "processor/core/defaultarithmetic.h"
#include "processor/core/stereokernels.h"

#include <cmath>
#include <cstdint>

namespace mirelon::kernels {
namespace {

#if defined(__x86_64__)
constexpr const Kernel* all[] = {&avx512, &avx2, &sse2, &portable};
#else
constexpr const Kernel* all[] = {&portable};
#endif

const Kernel& firstThatRuns() noexcept {
    for (const Kernel* kernel : all)
        if (kernel->runsHere())
            return *kernel;
    return portable;
}

// Chosen while the plug-in is being loaded, before any of it can be called.
const Kernel& theChosen = firstThatRuns();

template <typename Sample>
bool sameOrApart(const Sample* a, const Sample* b, std::uintptr_t bytes) noexcept {
    const auto distance = reinterpret_cast<std::uintptr_t>(a) - reinterpret_cast<std::uintptr_t>(b);
    // -bytes < distance < bytes, in one comparison that wraps around.
    const bool overlap = distance + (bytes - 1) < 2 * bytes - 1;
    return !overlap || distance == 0;
}

// Whether many frames may be read before the first of them is written.
template <typename Sample>
bool mayBeGrouped(const Block<Sample>& block) noexcept {
    const auto bytes = static_cast<std::uintptr_t>(block.frames) * sizeof(Sample);
    return sameOrApart<Sample>(block.out.left, block.in.left, bytes) &&
           sameOrApart<Sample>(block.out.left, block.in.right, bytes) &&
           sameOrApart<Sample>(block.out.right, block.in.left, bytes) &&
           sameOrApart<Sample>(block.out.right, block.in.right, bytes) &&
           sameOrApart<Sample>(block.out.left, block.out.right, bytes);
}

void run(const Kernel& kernel, const Block<float>& block) noexcept {
    kernel.processFloat(block);
}
void run(const Kernel& kernel, const Block<double>& block) noexcept {
    kernel.processDouble(block);
}

} // namespace

std::span<const Kernel* const> builtKernels() noexcept {
    return all;
}

const Kernel& chosen() noexcept {
    return theChosen;
}

template <typename Sample>
void processWith(const Kernel& kernel, const Block<Sample>& block) noexcept {
    if (block.frames <= 0)
        return;
    const DefaultArithmetic arithmetic;
    if (mayBeGrouped(block)) {
        run(kernel, block);
        return;
    }
    // Buffers that overlap with a shift: one frame at a time, so that each sees
    // what the one before it has written.
    for (int i = 0; i < block.frames; ++i)
        run(kernel, {block.coefficients,
                     block.envelopeCoefficient,
                     block.envelopes,
                     {block.in.left + i, block.in.right + i},
                     {block.out.left + i, block.out.right + i},
                     1});
}

template void processWith(const Kernel&, const Block<float>&) noexcept;
template void processWith(const Kernel&, const Block<double>&) noexcept;

} // namespace mirelon::kernels

namespace mirelon {

double envelopeCoefficient(float sampleRate) noexcept {
    return 1.0 - std::pow(0.0625, 1.0 / (static_cast<double>(sampleRate) * 600.0 * 0.001));
}

void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<float> in, StereoOutput<float> out,
                  int frames) noexcept {
    kernels::processWith<float>(kernels::chosen(),
                                {coefficients, envelopeCoefficient, envelopes, in, out, frames});
}

void processBlock(const Coefficients& coefficients, double envelopeCoefficient,
                  Envelopes& envelopes, StereoInput<double> in, StereoOutput<double> out,
                  int frames) noexcept {
    kernels::processWith<double>(kernels::chosen(),
                                 {coefficients, envelopeCoefficient, envelopes, in, out, frames});
}

} // namespace mirelon

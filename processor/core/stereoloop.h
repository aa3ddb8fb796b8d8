// The grouped loop: matrix or pass-through for a group of frames while the
// followers are still busy with the group before it. Written once for all
// instruction sets; local to the file that includes it, after the registers. Long
// for a header: one loop, which the compiler has to see as a whole.
#pragma once

#include "processor/core/stereodenormals.h"

namespace mirelon::kernels {
namespace {

template <typename Sample>
void storeLevels(Levels<Sample>& levels, int frame, typename Lanes<Sample>::Vector left,
                 typename Lanes<Sample>::Vector right) {
    using L = Lanes<Sample>;
    L::storeFrames(levels.rows, frame, L::magnitude(left + right), L::magnitude(left - right),
                   L::magnitude(left), L::magnitude(right));
}

// Whether a sample of the group is below the limit, but not zero.
template <typename Sample>
bool anyBelow(StereoInput<Sample> in, typename Lanes<Sample>::Vector limit) {
    using L = Lanes<Sample>;
    auto any = L::ifBelow(L::magnitude(L::load(in.left)), limit);
    any = L::either(any, L::ifBelow(L::magnitude(L::load(in.right)), limit));
    for (int i = L::count; i < group; i += L::count) {
        any = L::either(any, L::ifBelow(L::magnitude(L::load(in.left + i)), limit));
        any = L::either(any, L::ifBelow(L::magnitude(L::load(in.right + i)), limit));
    }
    return !L::isZero(any);
}

// Tiny levels make denormal steps. To a coefficient that is a fraction such a level
// is as good as zero: beside any larger follower it is lost in level - follower,
// and of a follower as tiny the flush leaves nothing, whatever the level.
template <typename Sample>
bool tinyLevelsCount(const Block<Sample>& block) {
    return !(block.envelopeCoefficient >= 0.0 && block.envelopeCoefficient <= 1.0);
}

template <typename Sample>
__attribute__((cold, noinline)) void dropTinyLevels(Levels<Sample>& levels) {
    for (auto& row : levels.rows)
        for (Sample& level : row)
            if (level < static_cast<Sample>(0x1p-200))
                level = 0;
}
template <>
void dropTinyLevels(Levels<float>&) {} // no float is tiny in double

template <typename Sample>
class PassThrough {
    using L = Lanes<Sample>;

  public:
    explicit PassThrough(const Block<Sample>& block)
        : keepTiny(tinyLevelsCount(block))
        , limit(L::all(static_cast<Sample>(0x1p-900))) {}

    static StereoInput<Sample> ordered(StereoInput<Sample> in) { return in; }

    void operator()(StereoInput<Sample> in, StereoOutput<Sample> out,
                    Levels<Sample>& levels) const {
        // No float is that small.
        const bool tiny = sizeof(Sample) == sizeof(double) && anyBelow<Sample>(in, limit);
        for (int i = 0; i < group; i += L::count) {
            const auto left = L::load(in.left + i);
            const auto right = L::load(in.right + i);
            L::store(out.left + i, left);
            L::store(out.right + i, right);
            storeLevels<Sample>(levels, i, left, right);
        }
        if (tiny && !keepTiny) [[unlikely]]
            dropTinyLevels(levels);
    }

  private:
    bool keepTiny;
    typename L::Vector limit;
};

template <typename Sample>
class Processing {
    using L = Lanes<Sample>;
    using Vector = typename L::Vector;

  public:
    explicit Processing(const Block<Sample>& block)
        : matrix(block.coefficients)
        , coefficients(block.coefficients)
        , keepTiny(tinyLevelsCount(block)) {
        Sample smallest;
        denormalLimit(block.coefficients, smallest);
        limit = L::all(smallest);
    }

    StereoInput<Sample> ordered(StereoInput<Sample> in) const {
        return coefficients.phaseOn > 0.5F ? StereoInput<Sample>{in.right, in.left} : in;
    }

    void operator()(StereoInput<Sample> in, StereoOutput<Sample> out,
                    Levels<Sample>& levels) const {
        if (anyBelow<Sample>(in, limit)) [[unlikely]] {
            computeTiny(coefficients, keepTiny, in, out, levels);
            return;
        }
        for (int i = 0; i < group; i += L::count) {
            Vector left = L::load(in.left + i);
            Vector right = L::load(in.right + i);
            matrix(left, right);
            L::store(out.left + i, left);
            L::store(out.right + i, right);
            storeLevels<Sample>(levels, i, left, right);
        }
    }

  private:
    __attribute__((cold, noinline)) static void computeTiny(const Coefficients& coefficients,
                                                            bool keepTiny, StereoInput<Sample> in,
                                                            StereoOutput<Sample> out,
                                                            Levels<Sample>& levels) {
        using Undenormal = UndenormalMatrix<Sample>;
        const Undenormal undenormal(coefficients);
        const Matrix<Sample> native(coefficients);
        for (int i = 0; i < group; i += L::count) {
            Vector left = L::load(in.left + i);
            Vector right = L::load(in.right + i);
            alignas(32) Sample l[L::count];
            alignas(32) Sample r[L::count];
            L::store(l, left);
            L::store(r, right);
            if (undenormal.fits(l, r)) {
                for (int j = 0; j < L::count; j += Undenormal::count)
                    undenormal(l + j, r + j);
                left = L::load(l);
                right = L::load(r);
            } else {
                native(left, right);
            }
            L::store(out.left + i, left);
            L::store(out.right + i, right);
            storeLevels<Sample>(levels, i, left, right);
        }
        if (!keepTiny)
            dropTinyLevels(levels);
    }

    Matrix<Sample> matrix;
    const Coefficients& coefficients;
    bool keepTiny;
    Vector limit;
};

template <typename Sample>
void copy(const Sample* from, Sample* to, int count) {
    for (int i = 0; i < count; ++i)
        to[i] = from[i];
}

// A group that the block has only a part of.
template <typename Sample, typename Compute>
void computePart(const Compute& compute, StereoInput<Sample> in, StereoOutput<Sample> out,
                 int frames, Levels<Sample>& levels) {
    Sample left[group] = {};
    Sample right[group] = {};
    copy(in.left, left, frames);
    copy(in.right, right, frames);
    compute({left, right}, {left, right}, levels);
    copy(left, out.left, frames);
    copy(right, out.right, frames);
}

template <typename Sample, typename Compute>
void run(const Block<Sample>& block) {
    const Compute compute(block);
    Followers<Sample> followers(block.envelopes, block.envelopeCoefficient);
    Levels<Sample> levels[2];
    const StereoInput<Sample> ordered = compute.ordered(block.in);
    const auto computeGroup = [&](int g, int frames) {
        const int at = g * group;
        const StereoInput<Sample> in{ordered.left + at, ordered.right + at};
        const StereoOutput<Sample> out{block.out.left + at, block.out.right + at};
        if (frames == group)
            compute(in, out, levels[g % 2]);
        else if (frames > 0)
            computePart(compute, in, out, frames, levels[g % 2]);
    };
    const int groups = block.frames / group;
    const int rest = block.frames % group;
    for (int g = 0; g <= groups; ++g) {
        computeGroup(g, g < groups ? group : rest);
        if (g > 0)
            followers.follow(levels[(g - 1) % 2], group);
    }
    if (rest > 0)
        followers.follow(levels[groups % 2], rest);
    followers.store(block.envelopes);
}

template <typename Sample>
void process(const Block<Sample>& block) noexcept {
    if (block.coefficients.processOn >= 0.5F)
        run<Sample, Processing<Sample>>(block);
    else
        run<Sample, PassThrough<Sample>>(block);
}

} // namespace
} // namespace mirelon::kernels

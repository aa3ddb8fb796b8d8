// The four followers of the grouped loop, one in each lane of a `Four`, which
// the including file defines for its instruction set. Local to that file.
//
// They are the bottleneck, a chain of dependent operations from frame to frame:
// x - e, fused multiply-add, + offset, - offset. Adding and taking off the offset
// changes only values near zero or just below a power of two, so a group of
// frames is followed without these two steps, and beside the chain it is checked
// whether they would have changed any value. If so, the group is followed again
// with them.
#pragma once

#include "processor/core/stereokernels.h"

namespace mirelon::kernels {
namespace {

constexpr int group = 8; // frames

// What a group of frames moves the followers towards: |sum|, |difference|,
// |left|, |right| side by side. Frames lie in the order in which they are
// cheapest to transpose.
template <typename Sample>
struct Levels {
    alignas(32) Sample rows[group][4];
};

template <typename Sample>
class Followers {
    using Vector = Four::Vector;
    using Mask = Four::Mask;

  public:
    // All four are moved at once: were they written one by one and read together
    // by the next block, that would have to wait until the writes have left the
    // processor.
    Followers(const Envelopes& e, double coefficient)
        : followers(Four::loadUnaligned(&e.sum))
        , k(Four::all(coefficient)) {
        static_assert(sizeof(Envelopes) == 4 * sizeof(double));
    }

    void store(Envelopes& e) const { Four::storeUnaligned(&e.sum, followers); }

    // Follows the first `frames` frames of a group; what lies behind them is
    // zero. Inlined, so that the number is a constant for all groups but the last.
    __attribute__((always_inline)) void follow(const Levels<Sample>& levels, int frames) {
        // In silence the followers come to rest: nothing to do until it ends.
        if (isSilent(levels) && Four::isZero(Four::andNot(everyLane(), resting(followers, k))))
            return;
        if (!flushing) {
            Vector e = followers;
            Mask wrong = Four::none();
            for (int i = 0; i < frames; ++i) {
                e = Four::step(e, row(levels, i), k, wrong);
                wrong = wrong | (Four::bits(flushed(e)) ^ Four::bits(e));
            }
            if (Four::isZero(wrong)) {
                followers = e;
                return;
            }
            // A follower of a silent channel, at rest where the flush keeps it,
            // must not hold up the others: mono material has one.
            const Mask held = resting(followers, k) & silentLanes(levels);
            if (Four::isZero(Four::andNot(wrong, held))) {
                followers = Four::select(held, followers, e);
                return;
            }
        }
        const Flushed result = followFlushing(followers, k, levels, frames);
        followers = result.followers;
        flushing = result.changed;
    }

  private:
    static Vector row(const Levels<Sample>& levels, int frame) {
        return Four::load(levels.rows[Lanes<Sample>::place(frame)]);
    }

    static Vector flushed(Vector e) {
        const Vector offset = Four::all(flushOffset<Sample>);
        return (e + offset) - offset;
    }

    static Mask everyLane() { return Four::equal(Four::none(), Four::none()); }

    // The lanes whose follower is known to stay as it is in silence.
    static Mask resting(Vector e, Vector k) {
        Mask doubt = Four::none();
        const Vector next = flushed(Four::step(e, Four::all(0.0), k, doubt));
        return Four::andNot(Four::equal(Four::bits(next), Four::bits(e)), doubt);
    }

    static bool isSilent(const Levels<Sample>& levels) {
        using L = Lanes<Sample>;
        constexpr int vectors = group * 4 / L::count;
        auto any = L::load(levels.rows[0]);
        for (int i = 1; i < vectors; ++i) {
            const int first = i * L::count; // of this vector, which may span two rows
            any = L::either(any, L::load(&levels.rows[first / 4][first % 4]));
        }
        return L::isZero(any);
    }

    static Mask silentLanes(const Levels<Sample>& levels) {
        Mask any = Four::none();
        for (int i = 0; i < group; ++i)
            any = any | Four::bits(Four::load(levels.rows[i]));
        return Four::equal(any, Four::none());
    }

    struct Flushed {
        Vector followers;
        bool changed;
    };

    // The chain as it is defined. Stays in force until the flush has changed
    // nothing for a whole group. A function by itself that does not know the
    // object: the followers must stay in a register, or each group of the other
    // chain would wait for a store and a load.
    __attribute__((cold, noinline)) static Flushed
    followFlushing(Vector start, Vector k, const Levels<Sample>& levels, int frames) {
        const Mask held = resting(start, k) & silentLanes(levels);
        Vector e = start;
        Mask changed = Four::none();
        Mask doubt = Four::none();
        for (int i = 0; i < frames; ++i) {
            const Vector stepped = Four::step(e, row(levels, i), k, doubt);
            e = flushed(stepped);
            changed = changed | (Four::bits(stepped) ^ Four::bits(e));
        }
        if (!Four::isZero(doubt)) {
            e = start;
            for (int i = 0; i < frames; ++i)
                e = flushed(Four::exactStep(e, row(levels, i), k));
        }
        return {e, !Four::isZero(Four::andNot(changed, held))};
    }

    Vector followers;
    Vector k;
    bool flushing = false;
};

} // namespace
} // namespace mirelon::kernels

// 128-bit registers as every x86-64 processor has them, as the grouped loop uses
// them. There is no fused multiply-add: it is put together from operations whose
// rounding errors are computed as well, which is what makes this header long.
#pragma once

#include "processor/core/exactfma.h"

#include <emmintrin.h>

namespace mirelon::kernels {
namespace {

bool isZeroBits(__m128i v) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())) == 0xFFFF;
}

template <typename Sample>
struct Lanes;

// Two doubles.
template <>
struct Lanes<double> {
    using Vector = __m128d;
    static constexpr int count = 2;
    static Vector all(double v) { return _mm_set1_pd(v); }
    static Vector load(const double* p) { return _mm_loadu_pd(p); }
    static void store(double* p, Vector v) { _mm_storeu_pd(p, v); }
    static Vector magnitude(Vector v) { return _mm_andnot_pd(all(-0.0), v); }
    static Vector below(Vector a, Vector b) { return _mm_cmplt_pd(a, b); }
    static Vector equal(Vector a, Vector b) { return _mm_cmpeq_pd(a, b); }
    static Vector both(Vector a, Vector b) { return _mm_and_pd(a, b); }
    static Vector either(Vector a, Vector b) { return _mm_or_pd(a, b); }
    static bool isZero(Vector v) { return isZeroBits(bits(v)); }
    static Vector ifBelow(Vector v, Vector limit) { return both(below(v, limit), v); }
    static Vector select(Vector mask, Vector yes, Vector no) {
        return either(both(mask, yes), _mm_andnot_pd(mask, no));
    }
    static Vector flippedBy(Vector v, Vector sign) { return _mm_xor_pd(v, both(sign, all(-0.0))); }
    static Vector withSignOf(Vector v, Vector sign) { return flippedBy(magnitude(v), sign); }
    static Vector highHalf(Vector v) {
        return both(v, _mm_castsi128_pd(_mm_set1_epi64x(-0x8000000)));
    }
    static Vector bitsLess(Vector a, Vector b) {
        return _mm_castsi128_pd(_mm_sub_epi64(bits(a), bits(b)));
    }
    static __m128i bits(Vector v) { return _mm_castpd_si128(v); }

    // What was rounded away in sum = a + b.
    static Vector lost(Vector sum, Vector a, Vector b) {
        const Vector part = sum - a;
        return (a - (sum - part)) + (b - part);
    }

    // `sum` as it would be with its last bit set when `lost` was rounded away.
    static Vector toOdd(Vector sum, Vector lost) {
        const __m128i one = _mm_set1_epi64x(1);
        const __m128i inexact =
            bits(_mm_and_pd(_mm_cmpneq_pd(lost, all(0.0)), _mm_cmpord_pd(lost, lost)));
        const __m128i even = _mm_andnot_si128(bits(sum), one);
        const __m128i away = _mm_srli_epi64(bits(lost) ^ bits(sum), 63);
        // even * (1 - 2 * away): up, or down when what was lost points to zero.
        const __m128i down = _mm_sub_epi64(_mm_setzero_si128(), away);
        const __m128i nudge = _mm_sub_epi64(even ^ down, down);
        const __m128i isEven = _mm_sub_epi64(_mm_setzero_si128(), even);
        return _mm_castsi128_pd(_mm_add_epi64(bits(sum), nudge & isEven & inexact));
    }

    // b has the precision of a float, so that both halves of a times b are exact.
    // The sum of three is rounded once: its small part is rounded to odd first.
    static Vector fused(Vector a, Vector b, Vector c) {
        const Vector ordinary = both(both(isOrdinary(a), isOrdinary(b)), isOrdinary(c));
        if (_mm_movemask_pd(ordinary) != 3) [[unlikely]]
            return fusedInIntegers(a, b, c);
        const Vector high = highHalf(a);
        const Vector p = high * b;
        const Vector q = (a - high) * b;
        const Vector product = p + q;
        const Vector productLost = q - (product - p);
        const Vector small = c + productLost;
        const Vector smallLost = lost(small, c, productLost);
        const Vector large = product + small;
        const Vector largeLost = lost(large, product, small);
        const Vector rest = smallLost + largeLost;
        const Vector result = large + toOdd(rest, lost(rest, smallLost, largeLost));
        // A zero's sign is that of the plain sum, which is exact then.
        return select(equal(result, all(0.0)), a * b + c, result);
    }

    static constexpr int place(int frame) { return frame; }
    static void storeFrames(double (*rows)[4], int first, Vector a, Vector b, Vector c, Vector d) {
        _mm_store_pd(rows[first], _mm_unpacklo_pd(a, b));
        _mm_store_pd(rows[first] + 2, _mm_unpacklo_pd(c, d));
        _mm_store_pd(rows[first + 1], _mm_unpackhi_pd(a, b));
        _mm_store_pd(rows[first + 1] + 2, _mm_unpackhi_pd(c, d));
    }

  private:
    // Neither product nor any error can overflow or get denormal.
    static Vector isOrdinary(Vector v) {
        const Vector m = magnitude(v);
        return both(below(m, all(0x1p700)), either(below(all(0x1p-700), m), equal(m, all(0.0))));
    }

    __attribute__((cold, noinline)) static Vector fusedInIntegers(Vector a, Vector b, Vector c) {
        alignas(16) double x[2];
        alignas(16) double y[2];
        alignas(16) double z[2];
        _mm_store_pd(x, a);
        _mm_store_pd(y, b);
        _mm_store_pd(z, c);
        return _mm_setr_pd(exactFma(x[0], y[0], z[0]), exactFma(x[1], y[1], z[1]));
    }
};

template <>
struct Lanes<float> {
    using Vector = __m128;
    static constexpr int count = 4;
    static Vector all(float v) { return _mm_set1_ps(v); }
    static Vector load(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, Vector v) { _mm_storeu_ps(p, v); }
    static Vector magnitude(Vector v) { return _mm_andnot_ps(all(-0.0F), v); }
    static Vector either(Vector a, Vector b) { return _mm_or_ps(a, b); }
    static bool isZero(Vector v) { return isZeroBits(_mm_castps_si128(v)); }
    static Vector ifBelow(Vector v, Vector limit) { return _mm_and_ps(_mm_cmplt_ps(v, limit), v); }

    static Vector fused(Vector a, Vector b, Vector c) {
        const Vector low = fusedLow(a, b, c);
        const Vector high = fusedLow(_mm_movehl_ps(a, a), _mm_movehl_ps(b, b), _mm_movehl_ps(c, c));
        return _mm_movelh_ps(low, high);
    }

    static constexpr int place(int frame) { return frame; }
    static void storeFrames(float (*rows)[4], int first, Vector a, Vector b, Vector c, Vector d) {
        _MM_TRANSPOSE4_PS(a, b, c, d);
        _mm_store_ps(rows[first], a);
        _mm_store_ps(rows[first + 1], b);
        _mm_store_ps(rows[first + 2], c);
        _mm_store_ps(rows[first + 3], d);
    }

  private:
    // The product is exact in double; the sum is rounded to odd before it is
    // rounded to float.
    static Vector fusedLow(Vector a, Vector b, Vector c) {
        using D = Lanes<double>;
        const __m128d product = _mm_cvtps_pd(a) * _mm_cvtps_pd(b);
        const __m128d addend = _mm_cvtps_pd(c);
        const __m128d sum = product + addend;
        return _mm_cvtpd_ps(D::toOdd(sum, D::lost(sum, product, addend)));
    }
};

struct Pair {
    __m128d low;
    __m128d high;
    friend Pair operator+(Pair a, Pair b) { return {a.low + b.low, a.high + b.high}; }
    friend Pair operator-(Pair a, Pair b) { return {a.low - b.low, a.high - b.high}; }
    friend Pair operator*(Pair a, Pair b) { return {a.low * b.low, a.high * b.high}; }
};

struct PairMask {
    __m128i low;
    __m128i high;
    friend PairMask operator|(PairMask a, PairMask b) { return {a.low | b.low, a.high | b.high}; }
    friend PairMask operator&(PairMask a, PairMask b) { return {a.low & b.low, a.high & b.high}; }
    friend PairMask operator^(PairMask a, PairMask b) { return {a.low ^ b.low, a.high ^ b.high}; }
};

// Four doubles.
struct Four {
    using Vector = Pair;
    using Mask = PairMask;
    using D = Lanes<double>;

    static Vector all(double v) { return {D::all(v), D::all(v)}; }
    static Vector load(const double* p) { return {_mm_load_pd(p), _mm_load_pd(p + 2)}; }
    static Vector load(const float* p) {
        const __m128 v = _mm_load_ps(p);
        return {_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))};
    }
    static void store(double* p, Vector v) {
        _mm_store_pd(p, v.low);
        _mm_store_pd(p + 2, v.high);
    }
    static Vector loadUnaligned(const double* p) { return {_mm_loadu_pd(p), _mm_loadu_pd(p + 2)}; }
    static void storeUnaligned(double* p, Vector v) {
        _mm_storeu_pd(p, v.low);
        _mm_storeu_pd(p + 2, v.high);
    }
    static void store(float* p, Vector v) {
        _mm_store_ps(p, _mm_movelh_ps(_mm_cvtpd_ps(v.low), _mm_cvtpd_ps(v.high)));
    }
    static Vector toFloatAndBack(Vector v) {
        return {_mm_cvtps_pd(_mm_cvtpd_ps(v.low)), _mm_cvtps_pd(_mm_cvtpd_ps(v.high))};
    }

    static Mask none() { return {_mm_setzero_si128(), _mm_setzero_si128()}; }
    static Mask bits(Vector v) { return {D::bits(v.low), D::bits(v.high)}; }
    static bool isZero(Mask m) { return isZeroBits(m.low | m.high); }
    static Mask andNot(Mask m, Mask but) {
        return {_mm_andnot_si128(but.low, m.low), _mm_andnot_si128(but.high, m.high)};
    }
    static Mask equal(Mask a, Mask b) { return {equal(a.low, b.low), equal(a.high, b.high)}; }
    static Vector select(Mask m, Vector yes, Vector no) {
        return {D::select(_mm_castsi128_pd(m.low), yes.low, no.low),
                D::select(_mm_castsi128_pd(m.high), yes.high, no.high)};
    }
    static Vector toOdd(Vector sum, Vector lost) {
        return {D::toOdd(sum.low, lost.low), D::toOdd(sum.high, lost.high)};
    }

    // One step of a follower with a product that is rounded; `doubt` gets bits
    // where the fused step might have given something else.
    static Vector step(Vector e, Vector level, Vector k, Mask& doubt) {
        const Vector distance = level - e;
        const Vector product = distance * k;
        const Vector next = e + product;
        doubt = doubt | Mask{doubtful(next.low, e.low, product.low, distance.low, k.low),
                             doubtful(next.high, e.high, product.high, distance.high, k.high)};
        return next;
    }

    static Vector exactStep(Vector e, Vector level, Vector k) {
        alignas(16) double values[4];
        alignas(16) double distances[4];
        alignas(16) double factors[4];
        store(values, e);
        store(distances, level - e);
        store(factors, k);
        for (int i = 0; i < 4; ++i)
            values[i] = exactFma(distances[i], factors[i], values[i]);
        return load(values);
    }

  private:
    static __m128i equal(__m128i a, __m128i b) {
        const __m128i halves = _mm_cmpeq_epi32(a, b);
        return halves & _mm_shuffle_epi32(halves, _MM_SHUFFLE(2, 3, 0, 1));
    }

    // The exact sum is next + lost, give or take the product's own rounding error
    // of 2^-53 at most. It rounds to `next` if both ends of that range do.
    // Nothing is known of products that may have been denormal.
    static __m128i doubtful(__m128d next, __m128d e, __m128d product, __m128d distance, __m128d k) {
        const __m128d lost = D::lost(next, e, product);
        const __m128d error = D::magnitude(product) * D::all(0x1.01p-52);
        const __m128d moved = D::either(_mm_cmpneq_pd(next + (lost + error), next),
                                        _mm_cmpneq_pd(next + (lost - error), next));
        const __m128d tiny = D::both(D::below(D::magnitude(distance), D::all(0x1p-700)),
                                     _mm_cmpneq_pd(distance, D::all(0.0)));
        const __m128d unusual = _mm_cmpnlt_pd(D::all(0x1p-100), k);
        return D::bits(D::either(D::either(moved, tiny), unusual));
    }
};

} // namespace
} // namespace mirelon::kernels

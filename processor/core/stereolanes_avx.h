// 256-bit registers with fused multiply-add, as the grouped loop uses them.
// Compiled for AVX: everything here is local to the file that includes it, so
// that the linker never merges such code into what runs everywhere.
#pragma once

#include <immintrin.h>

namespace mirelon::kernels {
namespace {

// Four doubles.
struct Four {
    using Vector = __m256d;
    using Mask = __m256i;

    static Vector all(double v) { return _mm256_set1_pd(v); }
    static Vector load(const double* p) { return _mm256_load_pd(p); }
    static Vector load(const float* p) { return _mm256_cvtps_pd(_mm_load_ps(p)); }
    static Vector loadUnaligned(const double* p) { return _mm256_loadu_pd(p); }
    static void storeUnaligned(double* p, Vector v) { _mm256_storeu_pd(p, v); }
    static void store(float* p, Vector v) { _mm_store_ps(p, _mm256_cvtpd_ps(v)); }
    static Vector toFloatAndBack(Vector v) { return _mm256_cvtps_pd(_mm256_cvtpd_ps(v)); }

    static Mask none() { return _mm256_setzero_si256(); }
    static Mask bits(Vector v) { return _mm256_castpd_si256(v); }
    static bool isZero(Mask m) { return _mm256_testz_si256(m, m) != 0; }
    static Mask andNot(Mask m, Mask but) { return _mm256_andnot_si256(but, m); }
    static Mask equal(Mask a, Mask b) { return _mm256_cmpeq_epi64(a, b); }
    static Vector select(Mask m, Vector yes, Vector no) {
        return _mm256_blendv_pd(no, yes, _mm256_castsi256_pd(m));
    }

    // One step of a follower. Fused instructions leave nothing in doubt.
    static Vector step(Vector e, Vector level, Vector k, Mask&) { return exactStep(e, level, k); }
    static Vector exactStep(Vector e, Vector level, Vector k) {
        return _mm256_fmadd_pd(level - e, k, e);
    }

    // `sum` as it would be with its last bit set when `lost` was rounded away.
    static Vector toOdd(Vector sum, Vector lost) {
        const Mask inexact = bits(_mm256_cmp_pd(lost, _mm256_setzero_pd(), _CMP_NEQ_OQ));
        const Mask one = _mm256_set1_epi64x(1);
        const Mask even = equal(bits(sum) & one, none());
        const Mask away = _mm256_srli_epi64(bits(lost) ^ bits(sum), 63);
        const Mask nudge = one - (away + away);
        return _mm256_castsi256_pd(bits(sum) + (nudge & inexact & even));
    }
};

// One register of samples.
template <typename Sample>
struct Lanes;

template <>
struct Lanes<float> {
    using Vector = __m256;
    static constexpr int count = 8;
    static Vector all(float v) { return _mm256_set1_ps(v); }
    static Vector load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, Vector v) { _mm256_storeu_ps(p, v); }
    static Vector fused(Vector a, Vector b, Vector c) { return _mm256_fmadd_ps(a, b, c); }
    static Vector magnitude(Vector v) { return _mm256_andnot_ps(all(-0.0F), v); }

    static Vector ifBelow(Vector v, Vector limit) {
        return _mm256_and_ps(_mm256_cmp_ps(v, limit, _CMP_LT_OQ), v);
    }
    static Vector either(Vector a, Vector b) { return _mm256_or_ps(a, b); }
    static bool isZero(Vector v) { return Four::isZero(_mm256_castps_si256(v)); }

    // Frame i goes to row (i % 4) * 2 + i / 4.
    static constexpr int place(int frame) { return (frame % 4) * 2 + frame / 4; }
    static void storeFrames(float (*rows)[4], int, Vector a, Vector b, Vector c, Vector d) {
        const __m256d ab0 = _mm256_castps_pd(_mm256_unpacklo_ps(a, b));
        const __m256d ab1 = _mm256_castps_pd(_mm256_unpackhi_ps(a, b));
        const __m256d cd0 = _mm256_castps_pd(_mm256_unpacklo_ps(c, d));
        const __m256d cd1 = _mm256_castps_pd(_mm256_unpackhi_ps(c, d));
        _mm256_store_ps(rows[0], _mm256_castpd_ps(_mm256_unpacklo_pd(ab0, cd0)));
        _mm256_store_ps(rows[2], _mm256_castpd_ps(_mm256_unpackhi_pd(ab0, cd0)));
        _mm256_store_ps(rows[4], _mm256_castpd_ps(_mm256_unpacklo_pd(ab1, cd1)));
        _mm256_store_ps(rows[6], _mm256_castpd_ps(_mm256_unpackhi_pd(ab1, cd1)));
    }
};

template <>
struct Lanes<double> {
    using Vector = __m256d;
    static constexpr int count = 4;
    static Vector all(double v) { return _mm256_set1_pd(v); }
    static Vector load(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, Vector v) { _mm256_storeu_pd(p, v); }
    static Vector fused(Vector a, Vector b, Vector c) { return _mm256_fmadd_pd(a, b, c); }
    static Vector magnitude(Vector v) { return _mm256_andnot_pd(all(-0.0), v); }

    static Vector ifBelow(Vector v, Vector limit) {
        return _mm256_and_pd(_mm256_cmp_pd(v, limit, _CMP_LT_OQ), v);
    }
    static Vector below(Vector a, Vector b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
    static Vector equal(Vector a, Vector b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
    static Vector both(Vector a, Vector b) { return _mm256_and_pd(a, b); }
    static Vector select(Vector mask, Vector yes, Vector no) {
        return _mm256_blendv_pd(no, yes, mask);
    }
    static Vector flippedBy(Vector v, Vector sign) {
        return _mm256_xor_pd(v, _mm256_and_pd(sign, all(-0.0)));
    }
    static Vector withSignOf(Vector v, Vector sign) { return flippedBy(magnitude(v), sign); }
    static Vector highHalf(Vector v) {
        return _mm256_and_pd(v, _mm256_castsi256_pd(_mm256_set1_epi64x(-0x8000000)));
    }
    static Vector bitsLess(Vector a, Vector b) {
        return _mm256_castsi256_pd(_mm256_sub_epi64(Four::bits(a), Four::bits(b)));
    }
    static Vector toOdd(Vector sum, Vector lost) { return Four::toOdd(sum, lost); }
    static Vector either(Vector a, Vector b) { return _mm256_or_pd(a, b); }
    static bool isZero(Vector v) { return Four::isZero(Four::bits(v)); }

    static constexpr int place(int frame) { return frame; }
    static void storeFrames(double (*rows)[4], int first, Vector a, Vector b, Vector c, Vector d) {
        const Vector ab0 = _mm256_unpacklo_pd(a, b);
        const Vector ab1 = _mm256_unpackhi_pd(a, b);
        const Vector cd0 = _mm256_unpacklo_pd(c, d);
        const Vector cd1 = _mm256_unpackhi_pd(c, d);
        _mm256_store_pd(rows[first], _mm256_permute2f128_pd(ab0, cd0, 0x20));
        _mm256_store_pd(rows[first + 1], _mm256_permute2f128_pd(ab1, cd1, 0x20));
        _mm256_store_pd(rows[first + 2], _mm256_permute2f128_pd(ab0, cd0, 0x31));
        _mm256_store_pd(rows[first + 3], _mm256_permute2f128_pd(ab1, cd1, 0x31));
    }
};

} // namespace
} // namespace mirelon::kernels

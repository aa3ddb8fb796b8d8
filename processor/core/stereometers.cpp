// The two meter readings.
#include "processor/core/stereocore.h"

#include <cmath>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace mirelon {
namespace {

// log16(numerator / denominator), held to the meters' range. Both are above the
// silence thresholds; infinity over infinity says nothing and reads 0.
float ratioReading(double numerator, double denominator) noexcept {
    constexpr double log10of4 = 0.6020599913279624;
    constexpr double oneOverLog10of16 = 0.8304820237218405;
    const double ratio = numerator / denominator;
    if (std::isnan(ratio))
        return 0.0F;
    const auto reading =
        static_cast<float>(std::fma(std::log10(ratio) + log10of4, oneOverLog10of16, -0.5));
    if (reading < -0.5F)
        return -0.5F;
    return reading > 0.5F ? 0.5F : reading;
}

// A follower that is NaN counts as silent: it is not above any threshold.
float reading(double numerator, double numeratorSilence, double denominator,
              double denominatorSilence) noexcept {
    const bool hasNumerator = numerator > numeratorSilence;
    const bool hasDenominator = denominator > denominatorSilence;
    if (hasNumerator && hasDenominator)
        return ratioReading(numerator, denominator);
    if (hasNumerator)
        return 0.5F;
    return hasDenominator ? -0.5F : 0.0F;
}

// The difference follower counts as silent a hundred times lower than the
// others: a nearly mono signal still has a width. Not an oversight.
constexpr double silence = 1e-5;
constexpr double diffSilence = 1e-7;

#if defined(__x86_64__)
// Both readings at once, by a logarithm that is good for 46 bits. Almost always
// that settles which float the full calculation rounds to; false if not, or if a
// reading is no logarithm at all. What depends on the followers has to wait for
// the end of their chain, and two calls of log10 would fill the processor's
// queues so that the next block could not start meanwhile.
bool readMetersQuickly(const Envelopes& envelopes, MeterReadings& readings) noexcept {
    const __m128d over = _mm_setr_pd(envelopes.sum, envelopes.right);
    const __m128d under = _mm_setr_pd(envelopes.diff, envelopes.left);
    const __m128d usable =
        _mm_and_pd(_mm_and_pd(_mm_cmpgt_pd(over, _mm_set1_pd(silence)),
                              _mm_cmpgt_pd(under, _mm_setr_pd(diffSilence, silence))),
                   _mm_and_pd(_mm_cmplt_pd(over, _mm_set1_pd(0x1p500)),
                              _mm_cmplt_pd(under, _mm_set1_pd(0x1p500))));
    if (_mm_movemask_pd(usable) != 3)
        return false;

    // ratio = 2^exponent * m, m from sqrt(1/2) to sqrt(2).
    const __m128i ratio = _mm_castpd_si128(over / under);
    const __m128i one = _mm_castpd_si128(_mm_set1_pd(1.0));
    const __m128i rootOfHalf = _mm_castpd_si128(_mm_set1_pd(0.7071067811865476));
    const __m128i biased = _mm_srli_epi64(_mm_add_epi64(ratio, _mm_sub_epi64(one, rootOfHalf)), 52);
    const __m128d m =
        _mm_castsi128_pd(_mm_add_epi64(_mm_sub_epi64(ratio, _mm_slli_epi64(biased, 52)), one));
    const __m128d two52 = _mm_set1_pd(0x1p52);
    const __m128d exponent =
        _mm_castsi128_pd(_mm_or_si128(biased, _mm_castpd_si128(two52))) - (two52 + 1023.0);

    // log16(m) = 1 / (2 ln 2) * atanh(t), by its series up to t^15.
    const __m128d t = (m - 1.0) / (m + 1.0);
    const __m128d u = t * t;
    const __m128d u2 = u * u;
    constexpr double scale = 0.72134752044448170368;
    const auto term = [](double divisor) { return _mm_set1_pd(scale / divisor); };
    const __m128d low = (term(1) + u * term(3)) + u2 * (term(5) + u * term(7));
    const __m128d high = (term(9) + u * term(11)) + u2 * (term(13) + u * term(15));
    const __m128d log16 = exponent * 0.25 + t * (low + (u2 * u2) * high);

    const __m128d error = _mm_set1_pd(0x1p-46);
    const __m128 least = _mm_cvtpd_ps(log16 - error);
    const __m128 most = _mm_cvtpd_ps(log16 + error);
    if ((_mm_movemask_ps(_mm_cmpeq_ps(least, most)) & 3) != 3)
        return false;
    const __m128 held = _mm_min_ps(_mm_max_ps(least, _mm_set1_ps(-0.5F)), _mm_set1_ps(0.5F));
    readings.width = _mm_cvtss_f32(held);
    readings.balance = _mm_cvtss_f32(_mm_shuffle_ps(held, held, 1));
    return true;
}
#endif

} // namespace

MeterReadings readMeters(const Envelopes& envelopes) noexcept {
#if defined(__x86_64__)
    MeterReadings readings;
    if (readMetersQuickly(envelopes, readings))
        return readings;
#endif
    return {reading(envelopes.sum, silence, envelopes.diff, diffSilence),
            reading(envelopes.right, silence, envelopes.left, silence)};
}

} // namespace mirelon

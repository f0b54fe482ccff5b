// gcd/word_steps.cpp -- steps of Euclid's algorithm on word arrays.
//
// Sums of products are reduced as Montgomery has it: the factors of a pass are held times 2^32, and then one
// multiple of p clears the low half of the sum, whose high half is the result to within p. Processors with
// eight or sixteen lanes do so many words at once; the plain loop gives the same words.
#include "gcd/word_steps.h"
#include "numbers/word_mod.h"
#include "poly/div_words.h"
#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace kelmar {

using word = std::int32_t;
using u32 = std::uint32_t;
using u64 = std::uint64_t;

// Rings --------------------------------------------------------------------------------------------------

void set_word_ring(word_ring *ring)
{
    const u32 p = static_cast<u32>(modulus);
    u32 inverse = p;
    for (int k = 0; k < 4; ++k) inverse *= 2 - p * inverse;  // correct bits: 3, 6, 12, 24, 48
    const u64 half = (u64{1} << 32) % p;
    *ring = {p, p % 2 ? inverse : 0, static_cast<u32>(half * half % p)};
}

// Return t / 2^32 in the ring, t < p 2^32.
static inline u32 reduced(u64 t, u32 p, u32 low_inverse)
{
    const u32 m = static_cast<u32>(t) * low_inverse;
    const u32 high = static_cast<u32>(t >> 32), back = static_cast<u32>(static_cast<u64>(m) * p >> 32);
    return high >= back ? high - back : high - back + p;
}

// Return v 2^32 in the ring.
static u32 factor_form(const word_ring *ring, word v)
{
    return reduced(static_cast<u64>(v) * ring->square, ring->p, ring->low_inverse);
}

word ring_product(const word_ring *ring, word a, word b)
{
    return static_cast<word>(static_cast<u64>(a) * static_cast<u64>(b) % ring->p);
}

// Passes -------------------------------------------------------------------------------------------------

// The factors of x[i], y[i], y[i-1].
struct pass_factors {
    u32 p, low_inverse;
    u32 fx, f0, f1;
};

// x[i] = fx x[i] + f0 y[i] + f1 y[i-1] for from <= i < to; unscaled: with x[i] as it is.
template <bool Scaled>
static void plain_pass(const pass_factors *f, word *x, const word *y, word from, word to)
{
    const u32 p = f->p;
    for (word i = from; i < to; ++i) {
        u64 t = static_cast<u64>(f->f0) * static_cast<u32>(y[i]) +
                static_cast<u64>(f->f1) * static_cast<u32>(y[i - 1]);
        if (Scaled) {
            t += static_cast<u64>(f->fx) *
                 static_cast<u32>(x[i]);  // three products may reach p 2^32, not twice
            if (t >> 32 >= p) t -= static_cast<u64>(p) << 32;
        }
        u32 v = reduced(t, p, f->low_inverse);
        if (!Scaled) {
            v += static_cast<u32>(x[i]);
            if (v >= p) v -= p;
        }
        x[i] = static_cast<word>(v);
    }
}

#ifdef __x86_64__
static constexpr word widest_from = 64;  // words; the rest of a pass is done one by one

// t / 2^32 of the even lanes, in the high halves.
[[gnu::target("avx2")]] static inline __m256i lanes_reduced(__m256i t, __m256i p, __m256i low_inverse)
{
    const __m256i m = _mm256_mul_epu32(t, low_inverse);
    return _mm256_mul_epu32(m, p);  // its low half is that of t
}

template <bool Scaled>
[[gnu::target("avx2")]] static void wide_pass(const pass_factors *f, word *x, const word *y, word from,
                                              word to)
{
    const __m256i p = _mm256_set1_epi32(static_cast<word>(f->p));
    const __m256i low_inverse = _mm256_set1_epi32(static_cast<word>(f->low_inverse));
    const __m256i fx = _mm256_set1_epi32(static_cast<word>(f->fx));
    const __m256i f0 = _mm256_set1_epi32(static_cast<word>(f->f0));
    const __m256i f1 = _mm256_set1_epi32(static_cast<word>(f->f1));
    word i = from;
    for (; i + 8 <= to; i += 8) {
        const __m256i x_even = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(x + i));
        const __m256i y_even = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(y + i));
        const __m256i z_even = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(y + i - 1));
        // Odd words of y stand one further in the array shifted by one.
        const __m256i y_odd = _mm256_srli_epi64(y_even, 32), z_odd = _mm256_srli_epi64(z_even, 32);
        __m256i even = _mm256_add_epi64(_mm256_mul_epu32(y_even, f0), _mm256_mul_epu32(z_even, f1));
        __m256i odd = _mm256_add_epi64(_mm256_mul_epu32(y_odd, f0), _mm256_mul_epu32(z_odd, f1));
        if (Scaled) {
            even = _mm256_add_epi64(even, _mm256_mul_epu32(x_even, fx));
            odd = _mm256_add_epi64(odd, _mm256_mul_epu32(_mm256_srli_epi64(x_even, 32), fx));
        }
        const __m256i back_even = lanes_reduced(even, p, low_inverse);
        const __m256i back_odd = lanes_reduced(odd, p, low_inverse);
        __m256i high = _mm256_blend_epi32(_mm256_srli_epi64(even, 32), odd, 0xaa);
        if (Scaled) high = _mm256_min_epu32(high, _mm256_sub_epi32(high, p));
        const __m256i back = _mm256_blend_epi32(_mm256_srli_epi64(back_even, 32), back_odd, 0xaa);
        const __m256i less = _mm256_sub_epi32(high, back);
        __m256i v = _mm256_min_epu32(less, _mm256_add_epi32(less, p));
        if (!Scaled) {
            v = _mm256_add_epi32(v, x_even);
            v = _mm256_min_epu32(v, _mm256_sub_epi32(v, p));
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(x + i), v);
    }
    plain_pass<Scaled>(f, x, y, i, to);
}

// The same instructions as without `maskz`, whose unused operand some compilers take for an uninitialised
// one.
[[gnu::target("avx512f")]] static inline __m512i lanes_product(__m512i a, __m512i b)
{
    return _mm512_maskz_mul_epu32(0xff, a, b);
}

[[gnu::target("avx512f")]] static inline __m512i lanes_minimum(__m512i a, __m512i b)
{
    return _mm512_maskz_min_epu32(0xffff, a, b);
}

[[gnu::target("avx512f")]] static inline __m512i odd_words(__m512i a)
{
    return _mm512_maskz_srli_epi64(0xff, a, 32);
}

// wide_pass for sixteen lanes.
template <bool Scaled>
[[gnu::target("avx512f")]] static void widest_pass(const pass_factors *f, word *x, const word *y, word from,
                                                   word to)
{
    const __m512i p = _mm512_set1_epi32(static_cast<word>(f->p));
    const __m512i low_inverse = _mm512_set1_epi32(static_cast<word>(f->low_inverse));
    const __m512i fx = _mm512_set1_epi32(static_cast<word>(f->fx));
    const __m512i f0 = _mm512_set1_epi32(static_cast<word>(f->f0));
    const __m512i f1 = _mm512_set1_epi32(static_cast<word>(f->f1));
    const __mmask16 odd_lanes = 0xaaaa;
    word i = from;
    for (; i + 16 <= to; i += 16) {
        const __m512i x_even = _mm512_loadu_si512(x + i);
        const __m512i y_even = _mm512_loadu_si512(y + i), z_even = _mm512_loadu_si512(y + i - 1);
        const __m512i y_odd = odd_words(y_even), z_odd = odd_words(z_even);
        __m512i even = _mm512_add_epi64(lanes_product(y_even, f0), lanes_product(z_even, f1));
        __m512i odd = _mm512_add_epi64(lanes_product(y_odd, f0), lanes_product(z_odd, f1));
        if (Scaled) {
            even = _mm512_add_epi64(even, lanes_product(x_even, fx));
            odd = _mm512_add_epi64(odd, lanes_product(odd_words(x_even), fx));
        }
        const __m512i back_even = lanes_product(lanes_product(even, low_inverse), p);
        const __m512i back_odd = lanes_product(lanes_product(odd, low_inverse), p);
        __m512i high = _mm512_mask_blend_epi32(odd_lanes, odd_words(even), odd);
        if (Scaled) high = lanes_minimum(high, _mm512_sub_epi32(high, p));
        const __m512i back = _mm512_mask_blend_epi32(odd_lanes, odd_words(back_even), back_odd);
        const __m512i less = _mm512_sub_epi32(high, back);
        __m512i v = lanes_minimum(less, _mm512_add_epi32(less, p));
        if (!Scaled) {
            v = _mm512_add_epi32(v, x_even);
            v = lanes_minimum(v, _mm512_sub_epi32(v, p));
        }
        _mm512_storeu_si512(x + i, v);
    }
    plain_pass<Scaled>(f, x, y, i, to);
}
#endif

template <bool Scaled> static void pass(const pass_factors *f, word *x, const word *y, word from, word to)
{
#ifdef __x86_64__
    if (word_lanes >= 16 && to - from >= widest_from && __builtin_cpu_supports("avx512f")) {
        widest_pass<Scaled>(f, x, y, from, to);
        return;
    }
    if (word_lanes >= 8 && __builtin_cpu_supports("avx2")) {
        wide_pass<Scaled>(f, x, y, from, to);
        return;
    }
#endif
    plain_pass<Scaled>(f, x, y, from, to);
}

// take_step modulo 2: all factors are 0 or 1.
static void binary_step(const word_step *step, word *x, const word *y, word dy)
{
    x += step->shift;
    for (word i = 0; i <= dy + 1; ++i) {
        const word low = i <= dy ? step->q0 & y[i] : 0, high = i > 0 ? step->q1 & y[i - 1] : 0;
        if (low ^ high) x[i] ^= 1;
    }
}

// The words at the ends, where y[i] or y[i-1] is none.
static void end_words(const pass_factors *f, word *x, const word *y, word dy, bool scaled)
{
    const word low[2] = {0, y[0]}, high[2] = {y[dy], 0};
    word bottom[2] = {0, x[0]};
    if (scaled) {
        plain_pass<true>(f, bottom, low, 1, 2);
        plain_pass<true>(f, x + dy, high, 1, 2);
    } else {
        plain_pass<false>(f, bottom, low, 1, 2);
        if (f->f1) plain_pass<false>(f, x + dy, high, 1, 2);
    }
    x[0] = bottom[1];
}

void take_step(const word_ring *ring, const word_step *step, word *x, const word *y, word dy)
{
    if (!ring->low_inverse) {
        binary_step(step, x, y, dy);
        return;
    }
    const word p = static_cast<word>(ring->p);
    const pass_factors f = {ring->p, ring->low_inverse, factor_form(ring, step->scale),
                            factor_form(ring, step->q0 ? p - step->q0 : 0),
                            factor_form(ring, step->q1 ? p - step->q1 : 0)};
    const bool scaled = step->scale != 1;
    x += step->shift;
    end_words(&f, x, y, dy, scaled);
    if (scaled) {
        pass<true>(&f, x, y, 1, dy + 1);
    } else {
        pass<false>(&f, x, y, 1, dy + 1);
    }
}

// Steps --------------------------------------------------------------------------------------------------

static constexpr word scale_up_to = 400;   // degree of the divisor; above it an inverse costs less
static constexpr word short_quotient = 8;  // degrees; longer ones are found by inner products

static word minus(const word_ring *ring, word a, word b)
{
    return a < b ? a - b + static_cast<word>(ring->p) : a - b;
}

void next_step(const word_ring *ring, const word *x, word dx, const word *y, word dy, bool exact,
               word_step *step)
{
    const word lead = y[dy], below = dy > 0 ? y[dy - 1] : 0;
    if (dx == dy + 1 && !exact && dy <= scale_up_to) {
        *step = {ring_product(ring, lead, lead), ring_product(ring, x[dx], lead), 0, 0};
        step->q0 = minus(ring, ring_product(ring, x[dx - 1], lead), ring_product(ring, x[dx], below));
        return;
    }
    word inverse;
    mod_inverse(lead, &inverse);
    if (dx == dy) {
        *step = {1, 0, ring_product(ring, x[dx], inverse), 0};
        return;
    }
    const word q1 = ring_product(ring, x[dx], inverse);
    const word next = minus(ring, x[dx - 1], ring_product(ring, q1, below));
    *step = {1, q1, ring_product(ring, next, inverse), dx - dy - 1};
}

void reduce_words(const word_ring *ring, word *x, word *dx, const word *y, word dy)
{
    if (*dx - dy > short_quotient) {
        onevar_array_mod(x, y, *dx, dy, dx);
        return;
    }
    while (*dx >= dy) {
        word_step step;
        next_step(ring, x, *dx, y, dy, *dx - dy > 1, &step);
        take_step(ring, &step, x, y, dy);
        *dx = *dx > dy ? *dx - 2 : dy - 1;
        trim_degree(x, dx);
    }
}

}  // namespace kelmar

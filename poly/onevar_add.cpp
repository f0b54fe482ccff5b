// poly/onevar_add.cpp -- the union of two ranges in up to three pieces.
//
// Where the ranges meet the words are added; in front of that and behind it stands one operand alone. Where
// they do not meet there is a gap instead. Sums and differences, shifted or not, are one body; the ring is
// looked at once a piece, because up to 2^30 the sum of two residues is a signed word.
#include "poly/onevar_add.h"
#include <cstdio>
#include <cstring>
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

enum sum_sign { plus, minus };

// Below this modulus the sum of two residues is a signed word.
static constexpr std::int32_t signed_sum_limit = (1 << 30) + 1;

// A range of degrees of an operand, shifted ones; empty when hi < lo.
struct span {
    const std::int32_t *words;  // words[i - shift] belongs to degree i
    std::int32_t shift, lo, hi;
};

// Pieces --------------------------------------------------------------------------------------------------

// c = a +- b on n words.
template <sum_sign S>
static void add_words(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t n)
{
    const std::int32_t m = modulus;
    if (finf || m >= signed_sum_limit) {
        for (std::int32_t i = 0; i < n; ++i) {
            c[i] = S == minus ? mod_sub(a[i], b[i], m) : mod_add(a[i], b[i], m);
        }
        return;
    }
    for (std::int32_t i = 0; i < n; ++i) {
        const std::int32_t v = S == minus ? a[i] - b[i] : a[i] + b[i] - m;
        c[i] = v < 0 ? v + m : v;
    }
}

// c[i] = the word of `s` at degree i, times S, for lo <= i <= hi.
template <sum_sign S> static void copy_piece(const span *s, std::int32_t *c, std::int32_t lo, std::int32_t hi)
{
    if (lo > hi) return;
    const std::int32_t *from = s->words + (lo - s->shift);
    const std::int32_t n = hi - lo + 1;
    c += lo;
    if (S == plus) {
        if (from != c) std::memcpy(c, from, static_cast<std::size_t>(n) * sizeof *c);
        return;
    }
    for (std::int32_t i = 0; i < n; ++i) c[i] = mod_sub(0, from[i], modulus);
}

// The greatest degree in lo .. hi whose word is not zero, or lo - 1.
static std::int32_t trimmed(const std::int32_t *c, std::int32_t lo, std::int32_t hi)
{
    while (hi >= lo && c[hi] == 0) --hi;
    return hi;
}

static std::int32_t smaller(std::int32_t a, std::int32_t b)
{
    return a < b ? a : b;
}

static std::int32_t larger(std::int32_t a, std::int32_t b)
{
    return a > b ? a : b;
}

// c = a +- b.
template <sum_sign S> static void add_spans(const span *a, const span *b, std::int32_t *c, std::int32_t *top)
{
    const std::int32_t lo = smaller(a->lo, b->lo), hi = larger(a->hi, b->hi);
    const std::int32_t meet_lo = larger(a->lo, b->lo), meet_hi = smaller(a->hi, b->hi);
    if (a->lo < b->lo) copy_piece<plus>(a, c, a->lo, smaller(a->hi, b->lo - 1));
    if (b->lo < a->lo) copy_piece<S>(b, c, b->lo, smaller(b->hi, a->lo - 1));
    if (meet_lo <= meet_hi) {
        add_words<S>(a->words + meet_lo, b->words + (meet_lo - b->shift), c + meet_lo, meet_hi - meet_lo + 1);
    } else {
        const std::size_t gap = static_cast<std::size_t>(meet_lo - meet_hi - 1);
        std::memset(c + meet_hi + 1, 0, gap * sizeof *c);
    }
    if (a->hi > b->hi) copy_piece<plus>(a, c, larger(a->lo, b->hi + 1), a->hi);
    if (b->hi > a->hi) copy_piece<S>(b, c, larger(b->lo, a->hi + 1), b->hi);
    *top = trimmed(c, lo, hi);
}

// Ranges --------------------------------------------------------------------------------------------------

// Report ranges of which one is upside down. Return whether it is so.
static bool reversed(const char *name, std::int32_t a_lo, std::int32_t a_hi, std::int32_t b_lo,
                     std::int32_t b_hi, const char *fault)
{
    if (__builtin_expect(a_lo <= a_hi && b_lo <= b_hi, 1)) return false;
    std::printf("** %s %li, %li, %li, %li\n", name, static_cast<long>(a_lo), static_cast<long>(a_hi),
                static_cast<long>(b_lo), static_cast<long>(b_hi));
    kelmar_error(fault, 1);
    return true;
}

void onevar_add(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t *top)
{
    *top = a_lo - 1;
    if (reversed("onevar_add", a_lo, a_hi, b_lo, b_hi, " onevar_add reversed degrees. ")) return;
    const span left = {a, 0, a_lo, a_hi}, right = {b, 0, b_lo, b_hi};
    add_spans<plus>(&left, &right, c, top);
}

void onevar_sub(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t *top)
{
    *top = a_lo - 1;
    if (reversed("onevar_sub", a_lo, a_hi, b_lo, b_hi, " onevar_sub reversed degrees. ")) return;
    const span left = {a, 0, a_lo, a_hi}, right = {b, 0, b_lo, b_hi};
    add_spans<minus>(&left, &right, c, top);
}

void onevar_add_shift(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                      std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t shift,
                      std::int32_t *top)
{
    *top = a_lo - 1;
    if (reversed("onevar_add_shift", a_lo, a_hi, b_lo, b_hi, " onevar_add_shift reversed degrees.")) return;
    const span left = {a, 0, a_lo, a_hi}, right = {b, shift, b_lo + shift, b_hi + shift};
    add_spans<plus>(&left, &right, c, top);
}

void onevar_sub_shift(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                      std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t shift,
                      std::int32_t *top)
{
    *top = a_lo - 1;
    if (reversed("onevar_sub_shift", a_lo, a_hi, b_lo, b_hi, " onevar_sub_shift reversed degrees.")) return;
    const span left = {a, 0, a_lo, a_hi}, right = {b, shift, b_lo + shift, b_hi + shift};
    add_spans<minus>(&left, &right, c, top);
}

void onevar_self_add(const std::int32_t *a, std::int32_t *b, std::int32_t lo, std::int32_t hi,
                     std::int32_t half, std::int32_t *top)
{
    const std::int32_t last = lo + half - 1;                             // of the low half
    const std::int32_t both = smaller(larger(hi - half, lo - 1), last);  // to here there is a high word too
    const span low = {a, 0, lo, last};
    if (both >= lo) add_words<plus>(a + lo, a + lo + half, b + lo, both - lo + 1);
    copy_piece<plus>(&low, b, both + 1, smaller(last, hi));
    for (std::int32_t i = larger(lo, hi + 1); i <= last; ++i) b[i] = 0;
    *top = trimmed(b, lo, last);
}

}  // namespace kelmar

// numbers/convert.cpp -- views of a long integer by Horner's rule, from the head down.
//
// The residue is carried in 64 bits: below 2^31 times 2^28 and a digit of either sign fit, so one remainder a
// digit is all, whatever the size of the modulus. A walk over many numbers replaces the division: the product
// with the reciprocal of the modulus gives the quotient, or one less.
#include "numbers/convert.h"
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include "numbers/mode.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t warnings_a_statement = 20;

static std::int32_t residue_of(const numnode *head)
{
    std::int64_t r = 0;
    for (const numnode *node = head; node; node = node->next) {
        r = (r * digit_base + node->digit) % modulus;
    }
    return static_cast<std::int32_t>(r < 0 ? r + modulus : r);
}

static bool may_warn()
{
    return verbose && warn_cnt < warnings_a_statement;
}

static std::int32_t field_code_of(const number *n, int sign)
{
    const std::int32_t last = n->tail->digit;
    if (n->size > 1) {
        if (may_warn()) {
            std::printf(" *** Warning. outsized values encountered. Expect garbage.\n");
            ++warn_cnt;
        }
    } else if (last >= modulus || (last < 0 && sign)) {
        if (may_warn()) {
            std::printf("*** Warning. in going to finite field, outsized value encountered: %d\n", last);
            ++warn_cnt;
        }
    }
    return std::abs(last) % modulus;
}

void change_num(number *n, int give_up, int sign)
{
    if (n->size < 1) {
        n->word = 0;
        return;
    }
    n->word = finf ? field_code_of(n, sign) : residue_of(n->head);
    if (give_up) special_free(n);
}

// A walk over many numbers ----------------------------------------------------------------------------------

void set_residue_ring(residue_ring *to, int sign)
{
    to->m = static_cast<std::uint32_t>(modulus);
    to->reciprocal = ~std::uint64_t{0} / to->m;
    to->sign = sign;
}

// v modulo m, for v below 2^60.
static std::uint32_t remainder_by(std::uint64_t v, const residue_ring *to)
{
    const std::uint64_t quotient = static_cast<std::uint64_t>(
        (static_cast<unsigned __int128>(v) * to->reciprocal) >> 64);
    const std::uint64_t r = v - quotient * to->m;
    return static_cast<std::uint32_t>(r >= to->m ? r - to->m : r);
}

static std::uint32_t magnitude_of(std::int32_t digit)
{
    return static_cast<std::uint32_t>(digit < 0 ? -digit : digit);
}

std::int32_t fill_residue(number *n, const residue_ring *to)
{
    if (finf) return n->word = field_code_of(n, to->sign);
    std::uint32_t r = magnitude_of(n->head->digit);
    if (r >= to->m) r = remainder_by(r, to);
    for (const numnode *node = n->head->next; node; node = node->next) {
        r = remainder_by((std::uint64_t{r} << digit_bits) + magnitude_of(node->digit), to);
    }
    if (n->head->digit < 0 && r != 0) r = to->m - r;
    return n->word = static_cast<std::int32_t>(r);
}

void change_from_mod(number *n)
{
    const bool negative = alt_form_display && modulus > 0 && n->word > modulus / 2;
    special_set(negative ? n->word - modulus : n->word, n);
}

// Doubles -----------------------------------------------------------------------------------------------

void change_flote(number *n)
{
    if (n->size < 1) {
        n->real = 0;
        return;
    }
    double real = n->head->digit;
    for (const numnode *node = n->head->next; node; node = node->next) {
        real = real * static_cast<double>(digit_base) + node->digit;
    }
    n->real = real;
}

static constexpr std::int32_t leading_digits = 4;  // those behind are below the last bit of 64

// The leading 64 bits of |n|, n not 0, the first of them set; |n| = result * 2^*exponent, but for bits
// behind.
static std::uint64_t leading_bits(const number *n, std::int64_t *exponent)
{
    unsigned __int128 top = 0;
    std::int32_t taken = 0;
    for (const numnode *node = n->head; node && taken < leading_digits; node = node->next, ++taken) {
        top = (top << digit_bits) + magnitude_of(node->digit);
    }
    *exponent = std::int64_t{digit_bits} * (n->size - taken) + 64;
    for (; !(top >> 127); --*exponent) top <<= 1;
    return static_cast<std::uint64_t>(top >> 64);
}

double digit_ratio(const number *a, const number *b)
{
    static constexpr std::int64_t beyond = 4096;  // such a shift leaves the range of doubles
    if (a->head->digit == 0) return 0;
    std::int64_t shift, shift_b;
    const unsigned __int128 f = static_cast<unsigned __int128>(leading_bits(a, &shift)) << 63;
    const double q = static_cast<double>(f / leading_bits(b, &shift_b));
    shift -= shift_b + 63;
    const double v = std::ldexp(q, static_cast<int>(shift > beyond    ? beyond
                                                    : shift < -beyond ? -beyond
                                                                      : shift));
    return (a->head->digit < 0) == (b->head->digit < 0) ? v : -v;
}

}  // namespace kelmar

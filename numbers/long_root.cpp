// numbers/long_root.cpp -- Newton's iteration from the root of the leading half.
//
// The root of the leading half, with zero digits behind it, has half of the digits right, and one step
// s = (s + a / s) / 2 makes all of them right but for the last unit. So each level of the recursion divides
// once, and only the outermost compares squares. Below sqcut the start is the root of three or four leading
// digits, taken in words, and the step is repeated until it settles.
// Residues: Shanks, with the element of 2-power order kept as long as the modulus stays.
#include "numbers/long_root.h"

#include <cmath>

#include "numbers/compare.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"
#include "numbers/long_shift.h"
#include "numbers/word_mod.h"

namespace kelmar {

// Long integers ---------------------------------------------------------------------------------------------

// The integer nearest to the root of v < 2^112.
static std::uint64_t wide_root(unsigned __int128 v)
{
    unsigned __int128 s = static_cast<std::uint64_t>(std::sqrt(static_cast<long double>(v)));
    while (s > 0 && s * s - s >= v) --s;
    while (s * s + s < v) ++s;
    return static_cast<std::uint64_t>(s);
}

// s = the nearest root of at most 4 digits. s replaced.
static void root_by_words(const number *a, number *s)
{
    unsigned __int128 v = 0;
    for (const numnode *node = a->head; node; node = node->next) {
        v = v << digit_bits | static_cast<std::uint32_t>(node->digit);
    }
    std::uint64_t root = wide_root(v);
    numnode *head = nullptr, *tail = nullptr;
    std::int32_t size = 0;
    do {
        head = new_digit(static_cast<std::int32_t>(root) & digit_mask, head);
        if (!tail) tail = head;
        ++size;
        root >>= digit_bits;
    } while (root);
    take_chain(s, head, tail, size);
}

// s = (s + a / s) / 2. Return whether s and the quotient were within 1 of each other.
static bool newton_step(const number *a, number *s)
{
    number q = {}, rest = {};
    pos_divide(a, s, &q, &rest);
    meddiff(s->size, q.size, s->head, q.head, &rest);
    const bool settled = rest.size == 1 && rest.head->digit <= 1 && rest.head->digit >= -1;
    fastsum(s, &q);
    shift_right_1(s);
    special_free(&q);
    special_free(&rest);
    return settled;
}

// How many leading digits of `size` the start is taken from; what remains is even.
static std::int32_t leading_part(std::int32_t size)
{
    if (size < sqcut) return size & 1 ? 3 : 4;
    const std::int32_t half = size / 2 + 2;
    return half + ((size - half) & 1);
}

// s = the root of a > 0, a unit off at most. s replaced. a restored.
static void near_root(number *a, number *s)
{
    if (a->size <= 4) return root_by_words(a, s);

    const std::int32_t part = leading_part(a->size);
    number lead = *a;
    lead.size = part;
    numnode *last = a->head;
    for (std::int32_t i = 1; i < part; ++i) last = last->next;
    lead.tail = last;
    numnode *const rest = last->next;
    last->next = nullptr;
    near_root(&lead, s);
    last->next = rest;
    fillout(s, (a->size - part) / 2);
    const bool by_words = a->size < sqcut;
    while (!newton_step(a, s) && by_words) {}
}

// Move s, which is near the root of a, to the integer nearest to it.
static void settle_root(const number *a, number *s)
{
    number one = {}, excess = {};
    special_set(1, &one);
    for (;;) {
        fast_mult(s, s, &excess);
        fastdiff(&excess, a);
        const bool above = excess.head->digit >= 0;
        if (above ? int_abs_bigger(s, &excess, 0) : !int_abs_bigger(&excess, s, 0)) break;
        if (above) {
            fastdiff(s, &one);
        } else {
            fastsum(s, &one);
        }
    }
    special_free(&one);
    special_free(&excess);
}

void int_sqrt(number *a, number *r, int copy)
{
    number root = {};
    if (a->head->digit < 0) {
        special_set(0, &root);
    } else if (a->size <= 4) {
        root_by_words(a, &root);
    } else if (copy) {
        number own = {};
        fast_num_assign(a->head, a->size, &own);
        near_root(&own, &root);
        settle_root(&own, &root);
        special_free(&own);
    } else {
        near_root(a, &root);
        settle_root(a, &root);
    }
    if (!copy) special_free(a);
    take_chain(r, root.head, root.tail, root.size);
}

// Residues --------------------------------------------------------------------------------------------------

// x^e for e >= 0.
static std::int32_t residue_power(std::int32_t x, std::int32_t e)
{
    std::int32_t power = 1;
    for (; e > 0; e >>= 1) {
        if (e & 1) power = modmult(power, x);
        x = modmult(x, x);
    }
    return power;
}

bool its_a_square(std::int32_t x)
{
    return residue_power(x, (modulus - 1) / 2) == 1;
}

// Find sqrt_s, sqrt_m and sqrt_c for the modulus.
static void prepare_shanks()
{
    sqrt_s = 0;
    sqrt_m = modulus - 1;
    for (; sqrt_m % 2 == 0; sqrt_m /= 2) ++sqrt_s;
    std::int32_t n = 2;
    while (n < modulus - 1 && its_a_square(n)) ++n;
    sqrt_c = residue_power(n, sqrt_m);
    sqrt_mod = modulus;
}

// The root of x for modulus % 4 = 1, x a nonzero square.
static std::int32_t shanks(std::int32_t x)
{
    if (sqrt_mod != modulus) prepare_shanks();
    std::int32_t c = sqrt_c;
    std::int32_t order = sqrt_s;  // c has order 2^order
    std::int32_t root = residue_power(x, sqrt_m / 2);
    std::int32_t t = modmult(modmult(root, root), x);  // x^m; root^2 = x t is kept
    root = modmult(root, x);
    while (t != 1) {
        std::int32_t i = 0;
        for (std::int32_t u = t; u != 1 && i < order; ++i) u = modmult(u, u);
        if (i >= order) return 0;  // no prime modulus comes here
        for (std::int32_t k = order - i - 1; k > 0; --k) c = modmult(c, c);
        root = modmult(root, c);
        c = modmult(c, c);
        t = modmult(t, c);
        order = i;
    }
    return root;
}

std::int32_t modular_sqrt(std::int32_t x)
{
    if (x == 0 || modulus == 2) return x;
    if (modulus == 3) return x == 1;
    const std::int32_t q = (modulus - 1) / 2;
    if (modulus % 4 == 3) {
        const std::int32_t y = residue_power(x, (q + 1) / 2 - 1);
        const std::int32_t root = modmult(x, y);
        return modmult(root, y) == modulus - 1 ? 0 : root;
    }
    return residue_power(x, q) == modulus - 1 ? 0 : shanks(x);
}

}  // namespace kelmar

// numbers/long_root.cpp -- square roots, in words up to four digits, on limbs above.
//
// The operand is shifted up by an even count of bits until it fills an even count of limbs. The bits that its
// root has in excess then say on which side of the half the root of the operand lies.
// Residues: Shanks, with the element of 2-power order kept as long as the modulus stays.
#include "numbers/long_root.h"

#include <cmath>

#include "numbers/limb_root.h"
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
    set_small_value(limb{wide_root(v)}, 0, s);
}

// a > b, both n limbs.
static bool is_larger(const limb *a, const limb *b, std::int32_t n)
{
    while (n-- > 0) {
        if (a[n] != b[n]) return a[n] > b[n];
    }
    return false;
}

// s = the nearest root of more digits, by limbs.
static void root_by_limbs(const number *a, number *s)
{
    const std::int32_t length = limbs_of(a->size), n = (length + 1) / 2;
    limb *const x = scratch_limbs(3 * static_cast<std::int64_t>(n) + 1 + root_scratch(n));
    limb *const root = x + 2 * n, *const rest = root + n + 1;

    // x = a * 4^shift, so that one of its two top bits is set, and its root is 2^shift roots of a.
    const bool whole = length & 1;
    if (whole) x[0] = 0;
    gather_limbs(a->head, a->size, x + whole);
    const std::int32_t bits = (__builtin_clzll(x[2 * n - 1]) - (64 - limb_bits)) & ~1;
    shift_limbs_up(x, x, 2 * n, bits);
    const std::int32_t shift = (bits + (whole ? limb_bits : 0)) / 2;

    const limb left = root_limbs(root, x, n, rest);
    bool up;  // the root has a half or more behind it; a half itself has no whole square
    if (shift) {
        up = root[0] >> (shift - 1) & 1;
        shift_limbs_down(root, n, shift);
    } else {
        up = left || is_larger(x, root, n);
    }
    const limb one = up;
    root[n] = add_limbs<binary_limbs>(root, n, &one, 1);
    scatter_limbs(root, n + 1, 0, s);
}

void int_sqrt(number *a, number *r, int copy)
{
    number root = {};
    if (a->head->digit < 0) {
        special_set(0, &root);
    } else if (a->size <= 4) {
        root_by_words(a, &root);
    } else {
        root_by_limbs(a, &root);
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

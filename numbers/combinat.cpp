// numbers/combinat.cpp -- steps from the nearest entry of a table.
//
// A factorial is the nearest table entry below it times a product tree of what is left, or, where most is
// left, made of squares. Rows 3, 6, .., 150 of the binomials are stored up to their middle; the one or two
// rows above follow by C(m+1, k) = C(m, k) (m+1)/(m+1-k), where every division is exact. Modulo 2^32 the
// powers of two are counted apart and the odd parts inverted; modulo a prime the digits of n and k to
// that base are taken one by one (Lucas), so no factor is ever 0. Modulo a composite number k! is
// inverted when it can be, and else the whole number reduced.
#include "numbers/combinat.h"
#include <cmath>
#include "numbers/convert.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"
#include "numbers/primes.h"
#include "numbers/startup.h"
#include "numbers/swing.h"
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t last_finite_factorial = 170;         // as a double
static constexpr std::int32_t last_odd_word_factorial = 33;        // 34! is a multiple of 2^32
static constexpr std::int32_t least_swing = 500;                   // from here on squares are faster
static constexpr std::int32_t last_stepped_row = 152;              // two above the last row of the table
static constexpr std::int32_t longest_binom = 32767 * digit_bits;  // bits of the longest number
static constexpr double whole_limit = 9007199254740992.0;          // 2^53: doubles below it can be made whole

// Factorials ---------------------------------------------------------------------------------------------

// The index of the largest table argument not above n whose factorial has at most `digits` digits; -1 if
// none.
static std::int32_t fact_below(std::int32_t n, std::int32_t digits)
{
    for (std::int32_t i = fact_count - 1; i >= 0; --i) {
        const number *f = &facts[i];
        const bool usable = f->size > 0 && f->size <= digits && f->head->digit != 0;
        if (usable && factnum[i] <= n && (i == 0 || factnum[i] > 0)) return i;
    }
    return -1;
}

void digit_factorial(std::int32_t n, number *r)
{
    const std::int32_t i = fact_below(n, digits_limit);
    const std::int32_t lo = i < 0 ? 1 : factnum[i] + 1;
    if (n >= least_swing && n <= swing_limit && lo < n / 2 && swing_factorial(n, r)) return;
    if (lo <= n) multout(lo, n, r);
    if (i < 0) {
        if (lo > n) special_set(1, r);
    } else if (lo <= n) {
        fast_mult(r, &facts[i], r);
    } else {
        spec_num_assign(&facts[i], r);
    }
}

static double real_factorial(std::int32_t n)
{
    if (n > last_finite_factorial) return HUGE_VAL;
    const std::int32_t i = fact_below(n, digits_limit);
    double product = i < 0 ? 1.0 : facts[i].real;
    for (std::int32_t k = i < 0 ? 2 : factnum[i] + 1; k <= n; ++k) product *= k;
    return product;
}

static std::int32_t word_factorial(std::int32_t n)
{
    if (n > last_odd_word_factorial) return 0;
    const std::int32_t i = fact_below(n, 1);
    std::uint32_t product = i < 0 ? 1u : static_cast<std::uint32_t>(facts[i].word);
    for (std::int32_t k = i < 0 ? 2 : factnum[i] + 1; k <= n; ++k) product *= static_cast<std::uint32_t>(k);
    return static_cast<std::int32_t>(product);
}

// lo * .. * hi as a residue; 1 for an empty range. Between blocks of factors all there is are two words,
// so that a command level may run there.
static std::int32_t residue_product(std::int32_t lo, std::int32_t hi)
{
    static constexpr std::int64_t block = 1 << 22;  // some thirty milliseconds
    std::int32_t product = 1 % modulus;
    for (std::int64_t first = lo; first <= hi; first += block) {
        if (first > lo) poll_interrupt();
        number part;
        part.size = 0;
        multout(static_cast<std::int32_t>(first),
                static_cast<std::int32_t>(first + block - 1 < hi ? first + block - 1 : hi), &part);
        product = modmult(product, part.word);
    }
    return product;
}

void factorial(std::int32_t n, number *r)
{
    switch (live_view()) {
    case view_float: r->real = real_factorial(n); return;
    case view_field: r->word = n < 2; return;
    case view_modular: r->word = n >= modulus ? 0 : residue_product(1, n); return;
    case view_word: r->word = word_factorial(n); return;
    case view_small:
        special_set(1, r);
        if (n > 1) multout(1, n, r);
        return;
    case view_digits: digit_factorial(n, r); return;
    }
}

// Binomials by the table ---------------------------------------------------------------------------------

// The entry of row m = 3, 6, .., 150 that stands at k, 0 < k < m; null when the table is not loaded.
static const number *table_entry(std::int32_t m, std::int32_t k)
{
    const std::int32_t rows = m / 3 - 1;  // rows before this one: n / 2 entries for n = 3 .. 3 rows
    const std::int32_t before = (3 * rows * (rows + 1) / 2 - (rows + 1) / 2) / 2;
    const number *entry = &binom[before + (k <= m - k ? k : m - k) - 1];
    return entry->size > 0 && entry->head->digit != 0 ? entry : nullptr;
}

// r = r * times / by, which is whole.
static void step_digits(number *r, std::int32_t times, std::int32_t by)
{
    number word, rest;
    word.size = rest.size = 0;
    special_set(times, &word);
    fast_mult(r, &word, r);
    special_set(by, &word);
    divide(r, &word, r, &rest);
    special_free(&word);
    special_free(&rest);
}

// r = n * (n - 1) * .. * (n - k + 1) / k!.
static void quotient_of_products(std::int32_t n, std::int32_t k, number *r)
{
    number below, rest;
    below.size = rest.size = 0;
    digit_factorial(k, &below);
    multout(n - k + 1, n, r);
    divide(r, &below, r, &rest);
    special_free(&below);
    special_free(&rest);
}

// The smaller of k and n - k; -1 when the coefficient is 0.
static std::int32_t nearer_side(std::int32_t n, std::int32_t k)
{
    if (k < 0 || k > n) return -1;
    return k <= n - k ? k : n - k;
}

// The coefficient, k the nearer side, may be longer than the longest number: it is below 2^n, and below n^k.
static bool too_long(std::int32_t n, std::int32_t k)
{
    if (k < 1 || n <= longest_binom) return false;
    return std::int64_t{k} * (32 - __builtin_clz(static_cast<unsigned>(n))) > longest_binom;
}

void rat_binom(std::int32_t n, std::int32_t k, number *r)
{
    k = nearer_side(n, k);
    if (k < 1) {
        special_set(k + 1, r);
        return;
    }
    const std::int32_t m = n - n % 3;
    const number *entry = m >= 3 && n <= last_stepped_row ? table_entry(m, k) : nullptr;
    if (!entry) {
        quotient_of_products(n, k, r);
        return;
    }
    spec_num_assign(entry, r);
    for (std::int32_t j = m + 1; j <= n; ++j) step_digits(r, j, j - k);
}

// a * times / by, made whole where doubles still tell whole numbers apart.
static double step_real(double a, std::int32_t times, std::int32_t by)
{
    const double next = a * times / by;
    return next < whole_limit ? std::nearbyint(next) : next;
}

void flote_binom(std::int32_t n, std::int32_t k, number *r)
{
    k = nearer_side(n, k);
    r->real = k < 0 ? 0.0 : 1.0;
    if (k < 1) return;
    const std::int32_t m = n - n % 3;
    const number *entry = m >= 3 && n <= last_stepped_row ? table_entry(m, k) : nullptr;
    if (entry) {
        r->real = entry->real;
        for (std::int32_t j = m + 1; j <= n; ++j) r->real = step_real(r->real, j, j - k);
        return;
    }
    for (std::int32_t i = 1; i <= k && std::isfinite(r->real); ++i)
        r->real = step_real(r->real, n - k + i, i);
}

// Binomials in words -------------------------------------------------------------------------------------

// The inverse of the odd word a modulo 2^32. Source: Newton's iteration; a is right in its last three bits.
static std::uint32_t odd_inverse(std::uint32_t a)
{
    std::uint32_t x = a;
    for (int bits = 3; bits < 32; bits *= 2) x *= 2 - a * x;
    return x;
}

// The coefficient for 0 <= k, factor by factor.
static std::uint32_t short_word_binom(std::int32_t n, std::int32_t k)
{
    std::uint32_t above = 1, below = 1;
    std::int64_t twos = 0;
    for (std::int32_t i = 1; i <= k; ++i) {
        const auto a = static_cast<std::uint32_t>(n - k + i), b = static_cast<std::uint32_t>(i);
        const int a_twos = __builtin_ctz(a), b_twos = __builtin_ctz(b);
        above *= a >> a_twos;
        below *= b >> b_twos;
        twos += a_twos - b_twos;
    }
    return twos < 32 ? (above * odd_inverse(below)) << twos : 0;
}

static constexpr int block_bits = 16;  // of the numbers in a block: squares of its start vanish in a word

// The product of b + j over the odd j below 2^16 is fixed + slope * b, for the start b of any block.
struct odd_block {
    std::uint32_t fixed, slope;
};

static odd_block make_odd_block()
{
    odd_block block = {1, 0};
    for (std::uint32_t j = 1; j < 1u << block_bits; j += 2) {
        block.slope = block.slope * j + block.fixed;
        block.fixed *= j;
    }
    return block;
}

// The product of the odd numbers up to m, modulo 2^32.
static std::uint32_t odd_product(const odd_block *block, std::uint32_t m)
{
    std::uint32_t product = 1, start = 0;
    for (; m - start >= 1u << block_bits; start += 1u << block_bits) {
        product *= block->fixed + block->slope * start;
    }
    for (std::uint32_t j = start + 1; j <= m; j += 2) product *= j;
    return product;
}

// n! without its twos, modulo 2^32.
static std::uint32_t odd_factorial(const odd_block *block, std::uint32_t n)
{
    std::uint32_t product = 1;
    for (; n > 0; n /= 2) product *= odd_product(block, n);
    return product;
}

// The coefficient for 0 <= k <= n, from the factorials without their twos.
static std::uint32_t long_word_binom(std::uint32_t n, std::uint32_t k)
{
    const odd_block block = make_odd_block();
    const int twos = __builtin_popcount(k) + __builtin_popcount(n - k) - __builtin_popcount(n);
    if (twos >= 32) return 0;
    const std::uint32_t below = odd_factorial(&block, k) * odd_factorial(&block, n - k);
    return (odd_factorial(&block, n) * odd_inverse(below)) << twos;
}

void lint_binom(std::int32_t n, std::int32_t k, number *r)
{
    static constexpr std::int32_t many_factors = 100000;  // from there on blocks of factors pay
    k = nearer_side(n, k);
    r->word = 0;
    if (k < 0) return;
    const std::uint32_t word = k < many_factors ? short_word_binom(n, k)
                                                : long_word_binom(static_cast<std::uint32_t>(n),
                                                                  static_cast<std::uint32_t>(k));
    r->word = static_cast<std::int32_t>(word);
}

// The coefficient for 0 <= n, k < modulus, a prime.
static std::int32_t binom_below_prime(std::int32_t n, std::int32_t k)
{
    k = nearer_side(n, k);
    if (k < 1) return k + 1;
    std::int32_t inverse;
    mod_inverse(residue_product(1, k), &inverse);
    return modmult(residue_product(n - k + 1, n), inverse);
}

static std::int32_t binom_of_digits(std::int32_t n, std::int32_t k)
{
    std::int32_t product = 1;
    for (; k > 0 && product != 0; n /= modulus, k /= modulus) {
        product = modmult(product, binom_below_prime(n % modulus, k % modulus));
    }
    return product;
}

// The binomial itself, reduced.
static std::int32_t reduced_binom(std::int32_t n, std::int32_t k)
{
    number exact;
    exact.size = 0;
    saved_view saved;
    enter_digits(&saved);
    rat_binom(n, k, &exact);
    leave_view(&saved);
    change_num(&exact, 1, 0);
    return exact.word;
}

// *word = the coefficient for a composite modulus, 0 <= k <= n. Declines (0) where k! has no inverse and the
// coefficient itself would be longer than the longest number.
static int binom_in_ring(std::int32_t n, std::int32_t k, std::int32_t *word)
{
    k = nearer_side(n, k);
    if (k < long_is_prime(modulus)) {  // the least divisor
        *word = binom_below_prime(n, k);
        return 1;
    }
    if (too_long(n, k)) return 0;
    *word = reduced_binom(n, k);
    return 1;
}

// *word = the residue of the coefficient, modulo 2 in a table field. Declines (0) as binom_in_ring.
static int residue_binom(std::int32_t n, std::int32_t k, std::int32_t *word)
{
    *word = 0;
    if (k < 0 || k > n) return 1;
    if (finf) {
        *word = ((n - k) & k) == 0;  // no carry in n - k plus k
        return 1;
    }
    if (!mod_is_prime) return binom_in_ring(n, k, word);
    *word = binom_of_digits(n, k);
    return 1;
}

void mod_binom(std::int32_t n, std::int32_t k, number *r)
{
    if (!residue_binom(n, k, &r->word)) error(err_binomial_modulus, "Bin");
}

std::int32_t imod_binom(std::int32_t n, std::int32_t k)
{
    std::int32_t word;
    if (!residue_binom(n, k, &word)) error(err_binomial_ring, "Bin");
    return word;
}

void binomial(std::int32_t n, std::int32_t k, number *r)
{
    switch (live_view()) {
    case view_float: flote_binom(n, k, r); return;
    case view_field:
    case view_modular: mod_binom(n, k, r); return;
    case view_word: lint_binom(n, k, r); return;
    case view_small:
        lint_binom(n, k, r);
        special_set(r->word & digit_mask, r);
        return;
    case view_digits:
        if (too_long(n, nearer_side(n, k))) {
            error(err_factorial_too_big, "Bin");
            k = -1;
        }
        rat_binom(n, k, r);
        return;
    }
}

}  // namespace kelmar

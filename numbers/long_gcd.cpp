// numbers/long_gcd.cpp -- Lehmer's steps on gathered limbs.
//
// The 128 leading bits of both operands tell the next few dozen Euclidean quotients. Their product is a
// matrix of words, which is applied to all limbs in one pass, so that a pass takes about 64 bits off both
// operands. The matrix need not hold the exact quotients of the operands, only keep both non-negative: any
// matrix of determinant 1 keeps the gcd. It does so because both leading parts stay at 2^64 or above while no
// entry reaches that. Where the leading bits tell nothing, because one operand is much shorter or both nearly
// agree, a division takes over. Operands of at most 112 bits go by words.
// Source: Lehmer's gcd with double-word matrices.
#include "numbers/long_gcd.h"

#include "numbers/compare.h"
#include "numbers/limb_div.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"

namespace kelmar {

// Words -----------------------------------------------------------------------------------------------------

static int trailing_zeros(double_limb v)
{
    const std::uint64_t low = static_cast<std::uint64_t>(v);
    return low ? __builtin_ctzll(low) : 64 + __builtin_ctzll(static_cast<std::uint64_t>(v >> 64));
}

// gcd of odd words, by differences.
static std::uint64_t odd_gcd(std::uint64_t a, std::uint64_t b)
{
    while (a != b) {
        const std::uint64_t d = a - b;
        if (a < b) {
            b = 0 - d;
            b >>= __builtin_ctzll(b);
        } else {
            a = d >> __builtin_ctzll(d);
        }
    }
    return a;
}

// gcd of two words of 128 bits, either may be 0.
static double_limb wide_gcd(double_limb a, double_limb b)
{
    if (a == 0) return b;
    if (b == 0) return a;
    const int twos_a = trailing_zeros(a), twos_b = trailing_zeros(b);
    const int twos = twos_a < twos_b ? twos_a : twos_b;
    a >>= twos_a;
    b >>= twos_b;
    while ((a | b) >> 64) {
        if (a == b) return a << twos;
        if (a < b) {
            b -= a;
            b >>= trailing_zeros(b);
        } else {
            a -= b;
            a >>= trailing_zeros(a);
        }
    }
    const double_limb odd = odd_gcd(static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(b));
    return odd << twos;
}

std::int32_t smallgcd(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(wide_gcd(static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b)));
}

// The magnitude of a chain of at most 4 digits.
static double_limb wide_value(const number *n)
{
    double_limb v = 0;
    const numnode *node = n->head;
    for (std::int32_t i = 0; i < n->size; ++i, node = node->next) {
        v = v << digit_bits | static_cast<std::uint32_t>(node->digit < 0 ? -node->digit : node->digit);
    }
    return v;
}

// n = v, negated when `minus`. n replaced.
static void set_wide(double_limb v, bool minus, number *n)
{
    numnode *tail = nullptr, *head = nullptr;
    std::int32_t size = 0;
    do {
        const std::int32_t digit = static_cast<std::int32_t>(v) & digit_mask;
        head = new_digit(minus ? -digit : digit, head);
        if (!tail) tail = head;
        ++size;
        v >>= digit_bits;
    } while (v);
    take_chain(n, head, tail, size);
}

// Limb arrays -----------------------------------------------------------------------------------------------
//
// An operand in work: limbs above n, up to the room of both operands, are 0.
struct limb_number {
    limb *at;
    std::int32_t n;
};

static void strip(limb_number *x)
{
    while (x->n > 0 && x->at[x->n - 1] == 0) --x->n;
}

static bool is_below(const limb_number *a, const limb_number *b)
{
    if (a->n != b->n) return a->n < b->n;
    for (std::int32_t i = a->n; i-- > 0;) {
        if (a->at[i] != b->at[i]) return a->at[i] < b->at[i];
    }
    return false;
}

// The double word of the 128 bits that start `lead` bits below the top of limb n - 1, n > 2.
static double_limb leading_bits(const limb *x, std::int32_t n, int lead)
{
    double_limb v = static_cast<double_limb>(x[n - 1]) << (72 + lead);
    v |= static_cast<double_limb>(x[n - 2]) << (16 + lead);
    if (lead <= 40) return v | x[n - 3] >> (40 - lead);
    v |= static_cast<double_limb>(x[n - 3]) << (lead - 40);
    return n > 3 ? v | x[n - 4] >> (96 - lead) : v;
}

// x = x / 2^k for k = the number of factors 2 of x, n > 0. Return k.
static std::int64_t strip_twos(limb_number *x)
{
    std::int32_t whole = 0;
    while (x->at[whole] == 0) ++whole;
    const int bits = __builtin_ctzll(x->at[whole]);
    if (whole + bits == 0) return 0;
    const std::int32_t n = x->n;
    for (std::int32_t i = 0; i < n; ++i) {
        const limb low = i + whole < n ? x->at[i + whole] : 0;
        const limb high = i + whole + 1 < n ? x->at[i + whole + 1] : 0;
        x->at[i] = (low >> bits | high << (limb_bits - bits)) & limb_mask;
    }
    strip(x);
    return static_cast<std::int64_t>(whole) * limb_bits + bits;
}

// to[0 .. n + k / 56 + 1) = x * 2^k. Return the length.
static std::int32_t shifted_up(const limb_number *x, std::int64_t k, limb *to)
{
    const std::int32_t whole = static_cast<std::int32_t>(k / limb_bits);
    const int bits = static_cast<int>(k % limb_bits);
    for (std::int32_t i = 0; i < whole; ++i) to[i] = 0;
    limb carry = 0;
    for (std::int32_t i = 0; i < x->n; ++i) {
        const double_limb v = static_cast<double_limb>(x->at[i]) << bits | carry;
        to[whole + i] = static_cast<limb>(v) & limb_mask;
        carry = static_cast<limb>(v >> limb_bits);
    }
    to[whole + x->n] = carry;
    return whole + x->n + 1;
}

// a = a mod b, a->n >= b->n > 0; a has room for one limb more. b restored. `work` has room for the quotient
// and for the scratch of its division.
static void reduce_by(limb_number *a, limb_number *b, limb *work)
{
    const std::int32_t bits = __builtin_clzll(b->at[b->n - 1]) - (64 - limb_bits);
    shift_limbs_up(b->at, b->at, b->n, bits);
    a->at[a->n] = shift_limbs_up(a->at, a->at, a->n, bits);
    divide_limbs(work, a->at, a->n + 1, b->at, b->n, work + a->n + 1 - b->n);
    shift_limbs_down(b->at, b->n, bits);
    shift_limbs_down(a->at, b->n, bits);
    a->n = b->n;
    strip(a);
}

// Lehmer's step ---------------------------------------------------------------------------------------------

// (a, b) = M (a', b') with determinant 1, so a' = m11 a - m01 b and b' = m00 b - m10 a.
struct step_matrix {
    std::uint64_t m00, m01, m10, m11;
};

static constexpr double_limb floor_of_lead = static_cast<double_limb>(1) << 64;

// *a -= q b for the largest q that leaves *a at floor_of_lead or above, which both are. Return q. *last: the
// remainder itself would have been below.
static std::uint64_t take_quotient(double_limb *a, double_limb b, bool *last)
{
    double_limb q = 0, rest = *a;
    for (int i = 0; i < 4 && rest >= b; ++i) {
        rest -= b;
        ++q;
    }
    if (rest >= b) {
        const double_limb more = rest / b;
        rest -= more * b;
        q += more;
    }
    *last = rest < floor_of_lead;
    if (*last) {
        rest += b;
        --q;
    }
    *a = rest;
    return static_cast<std::uint64_t>(q);
}

// *m = the quotients that the leading bits a and b tell. Declines (0) when they tell none.
static int find_matrix(double_limb a, double_limb b, step_matrix *m)
{
    if (a < floor_of_lead || b < floor_of_lead) return 0;
    *m = {1, 0, 0, 1};
    bool last = false;
    while (!last) {
        std::uint64_t q = take_quotient(&a, b, &last);
        m->m01 += q * m->m00;
        m->m11 += q * m->m10;
        if (last) break;
        q = take_quotient(&b, a, &last);
        m->m00 += q * m->m01;
        m->m10 += q * m->m11;
    }
    return (m->m01 | m->m10) != 0;
}

// Apply the inverse of m to both operands, n limbs each.
static void apply_matrix(const step_matrix *m, limb *a, limb *b, std::int32_t n)
{
    __int128 carry_a = 0, carry_b = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        const __int128 x = static_cast<__int128>(a[i]), y = static_cast<__int128>(b[i]);
        carry_a += static_cast<__int128>(m->m11) * x - static_cast<__int128>(m->m01) * y;
        carry_b += static_cast<__int128>(m->m00) * y - static_cast<__int128>(m->m10) * x;
        a[i] = static_cast<limb>(carry_a) & limb_mask;
        b[i] = static_cast<limb>(carry_b) & limb_mask;
        carry_a >>= limb_bits;
        carry_b >>= limb_bits;
    }
}

static double_limb two_limbs(const limb_number *x)
{
    return static_cast<double_limb>(x->n > 1 ? x->at[1] : 0) << limb_bits | (x->n > 0 ? x->at[0] : 0);
}

// *a = gcd(a, b); *b is used up. Both have room for the longer one and one limb more; `work` as for
// reduce_by.
static void reduce_to_gcd(limb_number *a, limb_number *b, limb *work)
{
    for (;;) {
        if (is_below(a, b)) {
            const limb_number larger = *b;
            *b = *a;
            *a = larger;
        }
        if (b->n == 0) return;
        if (a->n <= 2) break;
        const int lead = __builtin_clzll(a->at[a->n - 1]) - (64 - limb_bits);
        step_matrix m;
        if (find_matrix(leading_bits(a->at, a->n, lead), leading_bits(b->at, a->n, lead), &m)) {
            apply_matrix(&m, a->at, b->at, a->n);
            b->n = a->n;
            strip(a);
            strip(b);
        } else {
            reduce_by(a, b, work);
        }
    }
    const double_limb g = wide_gcd(two_limbs(a), two_limbs(b));
    a->at[0] = static_cast<limb>(g) & limb_mask;
    a->at[1] = static_cast<limb>(g >> limb_bits);
    a->n = 2;
}

// Long integers ---------------------------------------------------------------------------------------------

static bool is_zero_chain(const number *a)
{
    return a->size == 0 || a->head->digit == 0;
}

// c = |a|. c replaced, may be a.
static void set_magnitude(const number *a, number *c)
{
    if (a->size == 0) {
        set_wide(0, false, c);
        return;
    }
    if (c != a) fast_num_assign(a->head, a->size, c);
    if (c->head->digit >= 0) return;
    for (numnode *node = c->head; node; node = node->next) node->digit = -node->digit;
}

// x = the magnitude of a at `room`, zeros above, up to n limbs.
static void gather_operand(const number *a, limb *room, std::int32_t n, limb_number *x)
{
    *x = {room, limbs_of(a->size)};
    gather_limbs(a->head, a->size, room);
    for (std::int32_t i = x->n; i < n; ++i) room[i] = 0;
}

void binary_gcd(const number *a, const number *b, number *c)
{
    if (is_zero_chain(a)) return set_magnitude(b, c);
    if (is_zero_chain(b)) return set_magnitude(a, c);
    if (a->size <= 4 && b->size <= 4) return set_wide(wide_gcd(wide_value(a), wide_value(b)), false, c);

    const std::int32_t longest = a->size > b->size ? a->size : b->size;
    const std::int32_t room = limbs_of(longest) + 3;
    limb *const space = scratch_limbs(3 * static_cast<std::int64_t>(room) + quotient_scratch(room));
    limb_number x, y;
    gather_operand(a, space, room, &x);
    gather_operand(b, space + room, room, &y);
    const std::int64_t twos_x = strip_twos(&x), twos_y = strip_twos(&y);
    limb *const result = space + 2 * room;
    reduce_to_gcd(&x, &y, result);
    const std::int32_t n = shifted_up(&x, twos_x < twos_y ? twos_x : twos_y, result);
    scatter_limbs(result, n, 0, c);
}

void gcd(const number *a, const number *b, number *c)
{
    number x = {}, y = {};
    set_magnitude(a, &x);
    set_magnitude(b, &y);
    while (y.head->digit != 0) {
        if (x.size < y.size || (x.size == y.size && x.head->digit < y.head->digit)) {
            const number larger = y;
            y = x;
            x = larger;
        } else if (x.size == y.size && x.head->digit < 2 * y.head->digit) {
            meddiff(x.size, y.size, x.head, y.head, &x);  // the quotient is 1, or 0 when the heads agree
            set_magnitude(&x, &x);
        } else {
            pos_divide_noq(x.head, y.head, y.tail, x.size, y.size, &x);
        }
        if (x.head->digit == 0) {
            const number zero = x;
            x = y;
            y = zero;
        }
    }
    special_free(&y);
    take_chain(c, x.head, x.tail, x.size);
}

// The reduced fraction --------------------------------------------------------------------------------------

// Give each term its sign: u has that of a, v that of b.
static void set_signs(const number *a, const number *b, number *u, number *v)
{
    if (a->head->digit < 0) {
        for (numnode *node = u->head; node; node = node->next) node->digit = -node->digit;
    }
    if (b->head->digit < 0) {
        for (numnode *node = v->head; node; node = node->next) node->digit = -node->digit;
    }
}

void wrapup(number **quotients, const number *a, const number *b, const number *g, number *u, number *v)
{
    if (!*quotients) {
        number rest = {};
        divide(a, g, u, &rest);
        divide(b, g, v, &rest);
        special_free(&rest);
        return;
    }
    special_set(1, u);
    special_set(0, v);
    bool b_larger = false;
    while (*quotients) {
        number *q = *quotients;
        *quotients = q->link;
        b_larger = q->word == 2;
        fast_mult(q, u, q);
        fastsum(q, v);
        const number older = *v;
        *v = *u;
        *u = *q;
        *q = older;
        special_free(q);
        free_imag(&q);
    }
    if (b_larger) {
        const number of_a = *v;
        *v = *u;
        *u = of_a;
    }
    set_signs(a, b, u, v);
}

// Quotients are kept while they have at most this many digits in all: past that the gcd by limbs and two
// divisions are faster (measured).
static constexpr std::int32_t kept_digits = 2;

// Euclid's steps on |a| and |b|, nonzero, as far as their quotients are kept. True when they ended: g = the
// gcd, *quotients the list for wrapup. False: g is not set and the list is empty.
static bool euclid_kept(const number *a, const number *b, number *g, number **quotients)
{
    number x = {}, y = {};
    set_magnitude(a, &x);
    set_magnitude(b, &y);
    std::int32_t code = 1;
    if (pos_bigger(&y, &x)) {
        const number larger = y;
        y = x;
        x = larger;
        code = 2;
    }
    std::int32_t room = kept_digits;
    while (y.head->digit != 0 && x.size - y.size < room) {
        number *q;
        newimag(&q);
        q->size = 0;
        q->word = code;
        q->link = *quotients;
        *quotients = q;
        pos_divide(&x, &y, q, &x);
        room -= q->size;
        code = 1;
        const number divisor = y;
        y = x;
        x = divisor;
    }
    const bool ended = y.head->digit == 0;
    if (ended) {
        take_chain(g, x.head, x.tail, x.size);
        special_free(&y);
        return true;
    }
    while (*quotients) {
        number *q = *quotients;
        *quotients = q->link;
        special_free(q);
        free_imag(&q);
    }
    special_free(&x);
    special_free(&y);
    return false;
}

// extgcd where both operands have at most 4 digits.
static void extgcd_by_words(const number *a, const number *b, number *g, number *u, number *v)
{
    const double_limb x = wide_value(a), y = wide_value(b), d = wide_gcd(x, y);
    set_wide(d, false, g);
    if (d <= 1) return;
    const bool narrow = (x | y) >> 64 == 0;
    const std::uint64_t e = static_cast<std::uint64_t>(d);
    set_wide(narrow ? static_cast<std::uint64_t>(x) / e : x / d, a->head->digit < 0, u);
    set_wide(narrow ? static_cast<std::uint64_t>(y) / e : y / d, b->head->digit < 0, v);
}

void extgcd(const number *a, const number *b, number *g, number *a_over_g, number *b_over_g, int *is_one)
{
    number d = {}, u = {}, v = {};
    if (a->size <= 4 && b->size <= 4) {
        extgcd_by_words(a, b, &d, &u, &v);
    } else {
        number *quotients = nullptr;
        const bool zeros = is_zero_chain(a) || is_zero_chain(b);
        if (zeros || !euclid_kept(a, b, &d, &quotients)) binary_gcd(a, b, &d);
        if (quotients || !is_longint(&d, 1)) wrapup(&quotients, a, b, &d, &u, &v);
    }
    *is_one = is_longint(&d, 1);
    if (u.size == 0) {  // g is 1, or all is 0: the reduced numbers are the operands
        fast_num_assign(a->head, a->size, &u);
        fast_num_assign(b->head, b->size, &v);
    }
    take_chain(g, d.head, d.tail, d.size);
    take_chain(a_over_g, u.head, u.tail, u.size);
    take_chain(b_over_g, v.head, v.tail, v.size);
}

// Plain numbers ---------------------------------------------------------------------------------------------

// The gcd of two words of the live view that is no digit view.
static std::int32_t word_gcd(std::int32_t a, std::int32_t b)
{
    if (modularmode) return a == 0 ? b : b == 0 ? a : 1;
    const std::uint32_t x = a < 0 ? 0u - static_cast<std::uint32_t>(a) : static_cast<std::uint32_t>(a);
    const std::uint32_t y = b < 0 ? 0u - static_cast<std::uint32_t>(b) : static_cast<std::uint32_t>(b);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(wide_gcd(x, y)));
}

void gcdnum(quolynode **a, quolynode **b)
{
    switch (live_view()) {
    case view_float: (*a)->num->real = 1.0; break;
    case view_field:
    case view_modular:
    case view_word: (*a)->num->word = word_gcd((*a)->num->word, (*b)->num->word); break;
    case view_small:
    case view_digits: binary_gcd((*a)->num, (*b)->num, (*a)->num); break;
    }
    free_plain(b);
}

}  // namespace kelmar

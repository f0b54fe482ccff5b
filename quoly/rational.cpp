// quoly/rational.cpp -- rational numbers.
//
// Two routines do all the work: one sum, and one product of two fractions in which each numerator is first
// cancelled against the other denominator. A quotient is that product with the second fraction upside down,
// a whole number is a fraction without denominator, and so no operand is ever turned over or copied. Both
// have a form in registers, for values below 2^56, where the results take at most 113 bits, and one for a
// long operand and a single digit, whose gcd takes one walk.
#include "quoly/rational.h"
#include "numbers/compare.h"
#include "numbers/fresh_number.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_gcd.h"
#include "numbers/long_mul.h"
#include "session/report.h"

namespace kelmar {

using wide = __int128;

// Results -----------------------------------------------------------------------------------------------

// Make *c a rational, with the number records that it has; *top, *den = the two records, to be filled.
static void rational_result(quolynode **c, number **top, number **den)
{
    if (!*c || !is_rational(*c)) {
        number *n = number_result(c);
        (*c)->is_num = 0;
        (*c)->top = new_constant(n);
        (*c)->den = new_constant(fresh_number());
        (*c)->is_rat = 1;
    }
    *top = (*c)->top->num;
    *den = (*c)->den->num;
}

// n = v. Nodes that n has are used again when they are as many as v needs.
static void set_wide(wide v, number *n)
{
    const bool minus = v < 0;
    unsigned __int128 rest = minus ? -static_cast<unsigned __int128>(v) : static_cast<unsigned __int128>(v);
    std::int32_t digits[5];
    std::int32_t size = 0;
    do {
        const std::int32_t digit = static_cast<std::int32_t>(rest & digit_mask);
        digits[size++] = minus ? -digit : digit;
        rest >>= digit_bits;
    } while (rest);
    if (n->size == size) {
        for (numnode *node = n->head; node; node = node->next) node->digit = digits[--size];
        return;
    }
    numnode *const tail = new_digit(digits[0], nullptr);
    numnode *head = tail;
    for (std::int32_t k = 1; k < size; ++k) head = new_digit(digits[k], head);
    take_chain(n, head, tail, size);
}

// *c = top / den, in lowest terms, den > 0.
static void put_wide(wide top, wide den, quolynode **c)
{
    if (den == 1 || top == 0) {
        set_wide(top, number_result(c));
        return;
    }
    number *t = nullptr, *d = nullptr;
    rational_result(c, &t, &d);
    set_wide(top, t);
    set_wide(den, d);
}

// *c = top / den, in lowest terms; den may be below 0. Both give their chains away.
static void put_chains(number *top, number *den, quolynode **c)
{
    if (den->head->digit < 0) {
        in_place_neg(top);
        in_place_neg(den);
    }
    if (is_longint(den, 1) || top->head->digit == 0) {
        take_chain(number_result(c), top->head, top->tail, top->size);
        special_free(den);
        return;
    }
    number *t = nullptr, *d = nullptr;
    rational_result(c, &t, &d);
    take_chain(t, top->head, top->tail, top->size);
    take_chain(d, den->head, den->tail, den->size);
}

// Words -------------------------------------------------------------------------------------------------

// *v = n, or 1 for null, where n has at most two digits. Declines (0) otherwise.
static inline int get_word(const number *n, std::int64_t *v)
{
    if (!n) {
        *v = 1;
        return 1;
    }
    if (n->size > 2) return 0;
    *v = n->head->digit;
    if (n->size == 2) *v = *v * digit_base + n->tail->digit;
    return 1;
}

static inline std::int64_t magnitude(std::int64_t v)
{
    return v < 0 ? -v : v;
}

// The gcd of a, b >= 0.
// Source: Stein's binary algorithm.
static std::int64_t word_gcd(std::int64_t x, std::int64_t y)
{
    std::uint64_t a = static_cast<std::uint64_t>(x), b = static_cast<std::uint64_t>(y);
    if (a == 0) return y;
    if (b == 0) return x;
    const int shift = __builtin_ctzll(a | b);
    a >>= __builtin_ctzll(a);
    b >>= __builtin_ctzll(b);
    while (a != b) {
        const std::uint64_t difference = a - b;
        const int zeros = __builtin_ctzll(difference);  // the same of either sign, so that it need not wait
        b = a < b ? a : b;
        a = (a < difference ? 0 - difference : difference) >> zeros;
    }
    return static_cast<std::int64_t>(a << shift);
}

// Divide both by their gcd; the gcd has the sign of neither.
static inline void cancel_words(std::int64_t *a, std::int64_t *b)
{
    if (*a == 1 || *b == 1) return;
    const std::int64_t g = word_gcd(magnitude(*a), magnitude(*b));
    if (g == 1) return;
    *a /= g;
    *b /= g;
}

// *c = a/b + c/d with sums in the type T, which holds a*d + c*b.
template <class T>
static void add_words(std::int64_t n1, std::int64_t d1, std::int64_t n2, std::int64_t d2, quolynode **c)
{
    const std::int64_t g = d1 == d2 ? d1 : word_gcd(d1, d2);
    const std::int64_t e1 = g == 1 ? d1 : d1 / g, e2 = g == 1 ? d2 : d2 / g;
    T top = static_cast<T>(n1) * e2 + static_cast<T>(n2) * e1;
    if (g == 1) {
        put_wide(top, static_cast<T>(d1) * d2, c);
        return;
    }
    const std::int64_t h = word_gcd(magnitude(static_cast<std::int64_t>(top % g)), g);
    if (h != 1) top /= h;
    put_wide(top, static_cast<T>(g / h * e1) * e2, c);
}

// *c = (a * b) / (d * e), where gcd(a, d) = gcd(b, e) = 1.
static void cross_words(std::int64_t a, std::int64_t d, std::int64_t b, std::int64_t e, quolynode **c)
{
    cancel_words(&a, &e);
    cancel_words(&b, &d);
    wide top = static_cast<wide>(a) * b, den = static_cast<wide>(d) * e;
    if (den < 0) {
        top = -top;
        den = -den;
    }
    put_wide(top, den, c);
}

// Chains ------------------------------------------------------------------------------------------------

// t = n1*e2 + n2*e1, or the difference.
static void cross_sum(const number *n1, const number *e2, const number *n2, const number *e1, int add,
                      number *t)
{
    number product;
    product.size = 0;
    fast_mult(n1, e2, t);
    fast_mult(n2, e1, &product);
    if (add) {
        fastsum(t, &product);
    } else {
        fastdiff(t, &product);
    }
    special_free(&product);
}

// A digit that is a number.
struct digit_number {
    numnode node;
    number value;
};

static const number *as_number(std::int32_t digit, digit_number *n)
{
    n->node = {digit, nullptr};
    n->value.head = n->value.tail = &n->node;
    n->value.size = 1;
    return &n->value;
}

// |n| modulo d, a digit above 0. Two digits of n are taken at a time, and the product with the reciprocal of
// d gives the quotient, or one less.
static std::int32_t digit_residue(const number *n, std::int32_t d)
{
    const std::uint64_t m = static_cast<std::uint64_t>(d), reciprocal = ~std::uint64_t{0} / m;
    const std::uint64_t two_56 = (std::uint64_t{1} << 56) % m;
    const auto part = [](const numnode *node) { return static_cast<std::uint64_t>(magnitude(node->digit)); };
    const numnode *node = n->head;
    std::uint64_t rest = 0;
    if (n->size % 2) {
        rest = part(node) % m;
        node = node->next;
    }
    for (; node; node = node->next->next) {
        const std::uint64_t v = rest * two_56 + (part(node) << digit_bits | part(node->next));
        rest = v - static_cast<std::uint64_t>(static_cast<unsigned __int128>(v) * reciprocal >> 64) * m;
        if (rest >= m) rest -= m;
    }
    return static_cast<std::int32_t>(rest);
}

// *q = n / d without rest, for a digit d above 0. q may be n.
static void divide_by_digit(const number *n, std::int32_t d, number *q)
{
    digit_number divisor;
    number rest;
    rest.size = 0;
    divide(n, as_number(d, &divisor), q, &rest);
    special_free(&rest);
}

// *c = a * sign_a + b * sign_b, both in lowest terms, where b has single digits.
static void add_short(const quolynode *a, std::int32_t sign_a, const quolynode *b, std::int32_t sign_b,
                      quolynode **c)
{
    const std::int32_t d = b->den->num->head->digit;
    const std::int32_t g = smallgcd(digit_residue(a->den->num, d), d);
    number e1, top, term, den;
    numnode *cut = nullptr;
    e1.size = top.size = term.size = den.size = 0;
    const number *cofactor = a->den->num;
    if (g != 1) {
        divide_by_digit(a->den->num, g, &e1);
        cofactor = &e1;
    }
    simp_mult(a->top->num, &top, sign_a * (d / g), &cut);
    simp_mult(cofactor, &term, sign_b * b->top->num->head->digit, &cut);
    fastsum(&top, &term);
    special_free(&term);
    const std::int32_t h = g == 1 ? 1 : smallgcd(digit_residue(&top, g), g);
    if (h != 1) divide_by_digit(&top, h, &top);
    simp_mult(cofactor, &den, g / h * (d / g), &cut);
    special_free(&e1);
    put_chains(&top, &den, c);
}

static bool has_single_digits(const quolynode *q)
{
    return q->top->num->size == 1 && q->den->num->size == 1;
}

// *c = a + b or a - b for chains of any size.
static void add_chains(const quolynode *a, const quolynode *b, quolynode **c, int add)
{
    number g, e1, e2, top, den;
    g.size = e1.size = e2.size = top.size = den.size = 0;
    int coprime = 0;
    extgcd(a->den->num, b->den->num, &g, &e1, &e2, &coprime);
    cross_sum(a->top->num, &e2, b->top->num, &e1, add, &top);
    if (!coprime) {
        number h;
        h.size = 0;
        extgcd(&top, &g, &h, &top, &g, &coprime);
        special_free(&h);
    }
    fast_mult(&g, &e1, &den);
    fast_mult(&den, &e2, &den);
    special_free(&g);
    special_free(&e1);
    special_free(&e2);
    put_chains(&top, &den, c);
}

// x1, y1 = x, y without their gcd, for a y of one digit, not 0.
static void cancel_by_digit(const number *x, const number *y, number *x1, number *y1)
{
    const std::int32_t d = y->head->digit, m = d < 0 ? -d : d;
    const std::int32_t g = smallgcd(digit_residue(x, m), m);
    if (g == 1) {
        spec_num_assign(x, x1);
    } else {
        divide_by_digit(x, g, x1);
    }
    special_set(d / g, y1);
}

// x1, y1 = x, y without their gcd, for x, y that may be null for 1.
static void cancel_chains(const number *x, const number *y, number *x1, number *y1)
{
    x1->size = y1->size = 0;
    if (x && y && y->size == 1) return cancel_by_digit(x, y, x1, y1);
    if (x && y && x->size == 1) return cancel_by_digit(y, x, y1, x1);
    if (x && y) {
        number g;
        int coprime;
        g.size = 0;
        extgcd(x, y, &g, x1, y1, &coprime);
        special_free(&g);
        return;
    }
    if (x) {
        spec_num_assign(x, x1);
    } else {
        special_set(1, x1);
    }
    if (y) {
        spec_num_assign(y, y1);
    } else {
        special_set(1, y1);
    }
}

static void cross_chains(const number *a, const number *d, const number *b, const number *e, quolynode **c)
{
    number top1, top2, den1, den2;
    cancel_chains(a, e, &top1, &den2);
    cancel_chains(b, d, &top2, &den1);
    fast_mult(&top1, &top2, &top1);
    fast_mult(&den1, &den2, &den1);
    special_free(&top2);
    special_free(&den2);
    put_chains(&top1, &den1, c);
}

// *c = (a / d) * (b / e), where each of the two is in lowest terms; null for 1. None is 0; signs anywhere.
static void cross_product(const number *a, const number *d, const number *b, const number *e, quolynode **c)
{
    std::int64_t wa, wd, wb, we;
    if (get_word(a, &wa) && get_word(d, &wd) && get_word(b, &wb) && get_word(e, &we)) {
        cross_words(wa, wd, wb, we, c);
    } else {
        cross_chains(a, d, b, e, c);
    }
}

// Operations --------------------------------------------------------------------------------------------

void add_rats(const quolynode *a, const quolynode *b, quolynode **c, int add)
{
    std::int64_t n1, d1, n2, d2;
    if (!get_word(a->top->num, &n1) || !get_word(a->den->num, &d1) || !get_word(b->top->num, &n2) ||
        !get_word(b->den->num, &d2)) {
        if (has_single_digits(b)) {
            add_short(a, 1, b, add ? 1 : -1, c);
        } else if (has_single_digits(a)) {
            add_short(b, add ? 1 : -1, a, 1, c);
        } else {
            add_chains(a, b, c, add);
        }
        return;
    }
    if (!add) n2 = -n2;
    constexpr std::int64_t half = std::int64_t{1} << 31;
    if (magnitude(n1) < half && d1 < half && magnitude(n2) < half && d2 < half) {
        add_words<std::int64_t>(n1, d1, n2, d2, c);
    } else {
        add_words<wide>(n1, d1, n2, d2, c);
    }
}

void mult_rats(const quolynode *a, const quolynode *b, quolynode **c)
{
    cross_product(a->top->num, a->den->num, b->top->num, b->den->num, c);
}

void quot_rats(const quolynode *a, const quolynode *b, quolynode **c)
{
    if (a->top == b->top) {
        quoly_set(1, c);
        return;
    }
    cross_product(a->top->num, a->den->num, b->den->num, b->top->num, c);
}

void add_numb_rat(number *n, const quolynode *q, quolynode **c, number_sum which)
{
    number top;
    top.size = 0;
    fast_mult(n, q->den->num, &top);
    if (which == n_minus_q) {
        fastdiff(&top, q->top->num);
    } else if (which == n_plus_q) {
        fastsum(&top, q->top->num);
    } else {
        in_place_neg(&top);
        fastsum(&top, q->top->num);
    }
    number *t = nullptr, *d = nullptr;
    rational_result(c, &t, &d);
    take_chain(t, top.head, top.tail, top.size);
    if (d != q->den->num) spec_num_assign(q->den->num, d);
}

void mult_numb_rat(const number *n, const quolynode *q, quolynode **c)
{
    if (iszero(n)) {
        quoly_set(0, c);
    } else {
        cross_product(n, nullptr, q->top->num, q->den->num, c);
    }
}

void quot_numb_rat(const number *n, const quolynode *q, quolynode **c)
{
    if (iszero(n)) {
        quoly_set(0, c);
    } else {
        cross_product(n, nullptr, q->den->num, q->top->num, c);
    }
}

// *c = 1 after the report.
static void divided_by_zero(quolynode **c)
{
    error(err_zero_divisor, "/");
    quoly_set(1, c);
}

void quot_rat_numb(const quolynode *q, const number *n, quolynode **c)
{
    if (iszero(n)) {
        divided_by_zero(c);
    } else {
        cross_product(q->top->num, q->den->num, nullptr, n, c);
    }
}

void quot_numbs(const number *a, const number *b, quolynode **c)
{
    if (iszero(b)) {
        divided_by_zero(c);
    } else if (iszero(a)) {
        quoly_set(0, c);
    } else {
        cross_product(a, nullptr, nullptr, b, c);
    }
}

void recip_numb(const number *n, quolynode **c)
{
    cross_product(nullptr, nullptr, nullptr, n, c);
}

// Order -------------------------------------------------------------------------------------------------

static const number *numerator(const quolynode *q)
{
    return q->is_num ? q->num : q->top->num;
}

// *product = the numerator of a times the denominator of b.
static void cross_multiply(const quolynode *a, const quolynode *b, number *product)
{
    if (b->is_num) {
        spec_num_assign(numerator(a), product);
    } else {
        fast_mult(numerator(a), b->den->num, product);
    }
}

static int sign_of(const number *n)
{
    return n->head->digit > 0 ? 1 : n->head->digit < 0 ? -1 : 0;
}

int compare_rats(const quolynode *a, const quolynode *b)
{
    const int sign_a = sign_of(numerator(a)), sign_b = sign_of(numerator(b));
    if (sign_a != sign_b) return sign_a < sign_b ? -1 : 1;
    number left, right;
    left.size = right.size = 0;
    cross_multiply(a, b, &left);
    cross_multiply(b, a, &right);
    const int order = bigger(&left, &right) ? 1 : equal(&left, &right) ? 0 : -1;
    special_free(&left);
    special_free(&right);
    return order;
}

void rat_floor(quolynode **q)
{
    number quotient, rest;
    quotient.size = rest.size = 0;
    divide((*q)->top->num, (*q)->den->num, &quotient, &rest);
    if (rest.head->digit < 0) {
        number one;
        one.size = 0;
        special_set(1, &one);
        fastdiff(&quotient, &one);
        special_free(&one);
    }
    special_free(&rest);
    take_chain(number_result(q), quotient.head, quotient.tail, quotient.size);
}

}  // namespace kelmar

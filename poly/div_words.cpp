// poly/div_words.cpp -- division in word arrays.
//
// Every coefficient of quotient and remainder is one inner product: what stands in the dividend at degree k,
// less the sum of q[i] y[k - i] over the quotient found so far. Sums run in 64 bits and are reduced once at
// the end: a small modulus leaves room for all products that fit an array, and a large one asks for one
// conditional subtraction a product. In a table field sums are exclusive ors.
#include "poly/div_words.h"
#include "numbers/word_mod.h"
#include "poly/div_karat.h"
#include "poly/measure.h"
#include "poly/mul.h"

namespace kelmar {

// default; words of the dividend, the divisor and the quotient of one division; the routines below; reset:
// never
static std::int32_t top_words[word_division_limit + 1];
static std::int32_t divisor_words[word_division_limit + 1];
static std::int32_t quotient_words[word_division_limit + 1];

// Inner products ------------------------------------------------------------------------------------------

enum word_ring { small_ring, large_ring, table_field };

static word_ring present_ring()
{
    if (finf) return table_field;
    return modulus < 65536 ? small_ring : large_ring;  // products below 2^32: 2^32 of them fit
}

// v - the sum of a[i] * b[-i], 0 <= i < n, a residue.
template <word_ring R>
static std::int32_t less_product(std::int32_t v, const std::int32_t *a, const std::int32_t *b, std::int32_t n)
{
    if (R == table_field) {
        for (std::int32_t i = 0; i < n; ++i) v ^= field_mult(a[i], b[-i]);
        return v;
    }
    const std::uint64_t m = static_cast<std::uint32_t>(modulus), most = 2 * m * m;
    std::uint64_t sum = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        sum += static_cast<std::uint64_t>(static_cast<std::uint32_t>(a[i])) *
               static_cast<std::uint32_t>(b[-i]);
        if (R == large_ring && sum >= most) sum -= most;
    }
    return mod_sub(v, static_cast<std::int32_t>(sum % m), modulus);
}

// x[k] less what the quotient q[lo ..] found so far and y take from it.
template <word_ring R>
static std::int32_t reduced_word(const std::int32_t *x, const std::int32_t *y, const std::int32_t *q,
                                 std::int32_t k, std::int32_t lo, std::int32_t dq)
{
    const std::int32_t hi = k < dq ? k : dq;
    return hi < lo ? x[k] : less_product<R>(x[k], q + lo, y + (k - lo), hi - lo + 1);
}

template <word_ring R>
static void fill_quotient(const std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dx,
                          std::int32_t dy)
{
    std::int32_t inverse;
    mod_inverse(y[dy], &inverse);
    for (std::int32_t i = dx - dy; i >= 0; --i) {
        q[i] = modmult(inverse, reduced_word<R>(x, y, q, i + dy, i + 1, dx - dy));
    }
}

template <word_ring R>
static void divide_array(std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dx,
                         std::int32_t dy, std::int32_t *dr)
{
    const std::int32_t dq = dx - dy;
    fill_quotient<R>(x, y, q, dx, dy);
    for (std::int32_t k = dy; k <= dx; ++k) x[k] = 0;
    *dr = -1;
    for (std::int32_t k = dy - 1; k >= 0; --k) {
        x[k] = reduced_word<R>(x, y, q, k, 0, dq);
        if (*dr < 0 && x[k]) *dr = k;
    }
}

// Fill q, and return whether the remainder is zero, which the first word that is not zero decides.
template <word_ring R>
static bool divides_array(const std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dx,
                          std::int32_t dy)
{
    const std::int32_t dq = dx - dy;
    fill_quotient<R>(x, y, q, dx, dy);
    for (std::int32_t k = 0; k < dy; ++k) {
        if (reduced_word<R>(x, y, q, k, 0, dq) != 0) return false;
    }
    return true;
}

// Arrays --------------------------------------------------------------------------------------------------

void onevar_array_div_mod(std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dx,
                          std::int32_t dy, std::int32_t *dr)
{
    switch (present_ring()) {
    case small_ring: divide_array<small_ring>(x, y, q, dx, dy, dr); return;
    case large_ring: divide_array<large_ring>(x, y, q, dx, dy, dr); return;
    case table_field: divide_array<table_field>(x, y, q, dx, dy, dr); return;
    }
}

void onevar_array_mod(std::int32_t *x, const std::int32_t *y, std::int32_t dx, std::int32_t dy,
                      std::int32_t *dr)
{
    onevar_array_div_mod(x, y, quotient_words, dx, dy, dr);
}

void onevar_one_div(std::int32_t *x, const std::int32_t *y, std::int32_t *q, std::int32_t dy,
                    std::int32_t *dr)
{
    onevar_array_div_mod(x, y, q, dy + 1, dy, dr);
}

void onevar_one(std::int32_t *x, const std::int32_t *y, std::int32_t dy, std::int32_t *dr)
{
    std::int32_t q[2];
    onevar_array_div_mod(x, y, q, dy + 1, dy, dr);
}

// Lists -----------------------------------------------------------------------------------------------------

// p is one level without negative exponents, no number, and dense.
static bool list_suits(const polynode *p)
{
    if (p->isnum || p->exp > word_division_limit) return false;
    std::int32_t count = 0;
    const std::int32_t degree = p->exp;
    for (; p; p = p->next) {
        if (p->exp < 0 || !(p->isnum || is_constant(p->coef))) return false;
        ++count;
    }
    return count > fast_mult_cut && count > degree / 2;
}

bool words_suit(const polynode *n, const polynode *m)
{
    return list_suits(n) && list_suits(m);
}

// a[0 .. degree] = p, zeros in the gaps.
static void fill_words(const polynode *p, std::int32_t *a)
{
    const std::int32_t mask = code_mask();
    std::int32_t i = p->exp;
    for (; p; p = p->next) {
        while (i > p->exp) a[i--] = 0;
        a[i--] = (p->isnum ? p->num->word : p->coef->num->word) & mask;
    }
    while (i >= 0) a[i--] = 0;
}

static polynode *word_constant(std::int32_t v)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    n->word = v;
    return new_constant(n);
}

// Return a[0 .. degree] as a list; zero for degree -1.
static polynode *list_of_words(const std::int32_t *a, std::int32_t degree)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (std::int32_t i = degree; i >= 0; --i) {
        if (a[i] == 0) continue;
        make_monomial(end, i, word_constant(a[i]));
        end = &(*end)->next;
    }
    return first ? first : word_constant(0);
}

void simplest_div_mod(const polynode *n, const polynode *m, polynode **q, polynode **r)
{
    std::int32_t dr;
    fill_words(n, top_words);
    fill_words(m, divisor_words);
    onevar_array_div_mod(top_words, divisor_words, quotient_words, n->exp, m->exp, &dr);
    if (q) *q = list_of_words(quotient_words, n->exp - m->exp);
    *r = list_of_words(top_words, dr);
}

void simplest_div_no_q(const polynode *n, const polynode *m, polynode **r)
{
    simplest_div_mod(n, m, nullptr, r);
}

// *q = n / m through the arrays.
static int divide_in_arrays(const polynode *n, const polynode *m, polynode **q)
{
    fill_words(n, top_words);
    fill_words(m, divisor_words);
    bool exact = false;
    switch (present_ring()) {
    case small_ring:
        exact = divides_array<small_ring>(top_words, divisor_words, quotient_words, n->exp, m->exp);
        break;
    case large_ring:
        exact = divides_array<large_ring>(top_words, divisor_words, quotient_words, n->exp, m->exp);
        break;
    case table_field:
        exact = divides_array<table_field>(top_words, divisor_words, quotient_words, n->exp, m->exp);
        break;
    }
    if (exact) *q = list_of_words(quotient_words, n->exp - m->exp);
    return exact;
}

int fastest_poly_div(polynode *n, polynode *m, polynode **q)
{
    if (n->exp <= array_division_limit) return divide_in_arrays(n, m, q);
    polynode *quotient = nullptr, *rest = nullptr;
    fast_monic_division(n, m, &quotient, &rest);
    const int exact = poly_iszero(rest);
    free_poly(&rest);
    if (exact) {
        *q = quotient;
    } else {
        free_poly(&quotient);
    }
    return exact;
}

word_quotient divide_words_exactly(polynode *n, polynode *m, polynode **q)
{
    if (flotemode || !modularmode || !mod_is_prime || laurent) return words_not_suited;
    if (n->exp < m->exp || !words_suit(n, m)) return words_not_suited;
    return fastest_poly_div(n, m, q) ? words_exact : words_not_exact;
}

}  // namespace kelmar

// numbers/long_extgcd.cpp -- the gcd with the reduced fraction.
//
// In rational arithmetic one operand often divides the other, or nearly so: then a few Euclidean quotients
// say all, and running them back gives both reduced operands without a division. So the first steps keep
// their quotients, as long as these are short. Past that the gcd is found on limbs, and two divisions follow.
#include "numbers/long_gcd.h"

#include "numbers/compare.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"
#include "numbers/wide.h"

namespace kelmar {

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
    set_small_value(d, 0, g);
    if (d <= 1) return;
    const bool narrow = (x | y) >> 64 == 0;
    const std::uint64_t e = static_cast<std::uint64_t>(d);
    set_small_value(narrow ? static_cast<std::uint64_t>(x) / e : x / d, sign_of(a), u);
    set_small_value(narrow ? static_cast<std::uint64_t>(y) / e : y / d, sign_of(b), v);
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

}  // namespace kelmar

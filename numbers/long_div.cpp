// numbers/long_div.cpp -- quotients and remainders of long integers.
//
// One routine divides the magnitudes of two bare chains; the named forms differ in what they ask of it. A
// chain has its head first, which is the order that division by one digit wants, so that needs no scratch.
// Longer operands are gathered, shifted until the divisor fills its top limb, divided, and the remainder is
// shifted back. Operands are read to the end before a result is handed over, so results may replace them.
#include "numbers/long_div.h"
#include "numbers/compare.h"
#include "numbers/limb_div.h"

namespace kelmar {

// Two magnitudes as bare chains, and the sign, 0 or -1, that quotient and remainder get.
struct division {
    const numnode *head_a, *head_b;
    std::int32_t size_a, size_b;
    std::int32_t sign;
};

static inline std::int32_t chain_sign(const numnode *head)
{
    return head->digit < 0 ? -1 : 0;
}

// The magnitude of a chain of one or two digits.
static inline limb small_magnitude(const numnode *head, std::int32_t size)
{
    const std::int32_t sign = chain_sign(head);
    const limb v = static_cast<limb>(turned(head->digit, sign));
    return size == 1 ? v : v << digit_bits | static_cast<limb>(turned(head->next->digit, sign));
}

// Methods -------------------------------------------------------------------------------------------------
// All take q = null for "no quotient".

// a has fewer digits than b, or as many and a smaller head.
static inline bool is_shorter(const division *d)
{
    if (d->size_a != d->size_b) return d->size_a < d->size_b;
    return small_magnitude(d->head_a, 1) < small_magnitude(d->head_b, 1);
}

// r = a, q = 0.
static void divide_shorter(const division *d, number *q, number *r)
{
    const bool in_place = r->size == d->size_a && r->head == d->head_a && chain_sign(r->head) == d->sign;
    if (!in_place) {
        const std::int32_t turn = chain_sign(d->head_a) ^ d->sign;
        numnode *head = nullptr, *tail = nullptr;
        numnode **end = &head;
        const numnode *from = d->head_a;
        for (std::int32_t i = 0; i < d->size_a; ++i, from = from->next) {
            tail = new_digit(turned(from->digit, turn), nullptr);
            *end = tail;
            end = &tail->next;
        }
        take_chain(r, head, tail, d->size_a);
    }
    if (q) set_small_value(limb{0}, 0, q);
}

// Both have at most two digits.
static inline void divide_small(const division *d, number *q, number *r)
{
    const limb a = small_magnitude(d->head_a, d->size_a), b = small_magnitude(d->head_b, d->size_b);
    const limb quotient = a / b;
    if (q) set_small_value(quotient, d->sign, q);
    set_small_value(a - quotient * b, d->sign, r);
}

// b has one digit: down the chain of a, which has more. The product with the reciprocal of b gives the
// quotient of two digits, or one less, sooner than a division.
static void divide_by_digit(const division *d, number *q, number *r)
{
    const std::int32_t sign_a = chain_sign(d->head_a);
    const limb b = small_magnitude(d->head_b, 1), reciprocal = ~limb{0} / b;
    numnode *head = nullptr, *tail = nullptr;
    numnode **end = &head;
    std::int32_t size = 0;
    limb rest = 0;
    const numnode *from = d->head_a;
    for (std::int32_t i = 0; i < d->size_a; ++i, from = from->next) {
        const limb two = rest << digit_bits | static_cast<limb>(turned(from->digit, sign_a));
        limb quotient = static_cast<limb>(static_cast<double_limb>(two) * reciprocal >> 64);
        rest = two - quotient * b;
        if (rest >= b) {
            rest -= b;
            ++quotient;
        }
        if (!q || (quotient == 0 && !head)) continue;
        tail = new_digit(turned(static_cast<std::int32_t>(quotient), d->sign), nullptr);
        *end = tail;
        end = &tail->next;
        ++size;
    }
    if (q) take_chain(q, head, tail, size);
    set_small_value(rest, d->sign, r);
}

// The general case, in arrays: the dividend and a limb for its shift, the divisor, the quotient, and what the
// division takes.
static void divide_in(limb *room, const division *d, number *q, number *r)
{
    const std::int32_t na = limbs_of(d->size_a), nb = limbs_of(d->size_b);
    const std::int32_t nq = na + 1 - nb;
    limb *const a = room, *const b = a + na + 1, *const quotient = b + nb, *const rest = quotient + nq;
    gather_limbs(d->head_a, d->size_a, a);
    gather_limbs(d->head_b, d->size_b, b);
    const std::int32_t bits = __builtin_clzll(b[nb - 1]) - (64 - limb_bits);
    shift_limbs_up(b, b, nb, bits);
    a[na] = shift_limbs_up(a, a, na, bits);
    divide_limbs(quotient, a, na + 1, b, nb, rest);
    shift_limbs_down(a, nb, bits);
    if (q) scatter_limbs(quotient, nq, d->sign, q);
    scatter_limbs(a, nb, d->sign, r);
}

static void divide_long(const division *d, number *q, number *r)
{
    const std::int32_t na = limbs_of(d->size_a), nb = limbs_of(d->size_b);
    if (na < stack_limbs && na + 1 - nb < halving_cut) {
        limb room[2 * stack_limbs];  // rows take no scratch
        return divide_in(room, d, q, r);
    }
    divide_in(scratch_limbs(2 * static_cast<std::int64_t>(na) + 2 + nb + quotient_scratch(nb)), d, q, r);
}

// q, r = the quotient and remainder of d, by the method that its sizes ask for.
static void divide_chains(division *d, number *q, number *r)
{
    while (d->size_a > 1 && d->head_a->digit == 0) {  // a span out of the middle of a chain
        d->head_a = d->head_a->next;
        --d->size_a;
    }
    if (is_shorter(d)) return divide_shorter(d, q, r);
    if (d->size_a <= 2) return divide_small(d, q, r);
    if (d->size_b == 1) return divide_by_digit(d, q, r);
    divide_long(d, q, r);
}

// The named forms -----------------------------------------------------------------------------------------

void divide(const number *a, const number *b, number *q, number *r)
{
    if (b->head->digit == 0) return;
    division d = {a->head, b->head, a->size, b->size, sign_of(a) ^ sign_of(b)};
    divide_chains(&d, q, r);
}

void pos_divide(const number *a, const number *b, number *q, number *r)
{
    division d = {a->head, b->head, a->size, b->size, 0};
    divide_chains(&d, q, r);
}

void simp_divide(const numnode *head, std::int32_t len, const number *b, number *q, number *r)
{
    division d = {head, b->head, len, b->size, 0};
    divide_chains(&d, q, r);
}

void pos_divide_noq(const numnode *head_a, const numnode *head_b, const numnode *, std::int32_t size_a,
                    std::int32_t size_b, number *r)
{
    division d = {head_a, head_b, size_a, size_b, 0};
    divide_chains(&d, nullptr, r);
}

void simp_divide_noq(const numnode *head_a, const numnode *head_b, const numnode *tail_b, std::int32_t len,
                     std::int32_t size_b, number *r)
{
    pos_divide_noq(head_a, head_b, tail_b, len, size_b, r);
}

// Reductions ----------------------------------------------------------------------------------------------

std::int32_t modout(const number *n)
{
    const std::int32_t sign = sign_of(n);
    const std::uint64_t m = static_cast<std::uint64_t>(modulus);
    std::uint64_t rest = 0;
    for (const numnode *node = n->head; node; node = node->next) {
        rest = (rest << digit_bits | static_cast<std::uint64_t>(turned(node->digit, sign))) % m;
    }
    if (rest >= static_cast<std::uint64_t>(digit_base)) rest >>= digit_bits;  // on purpose: the head digit
    return turned(static_cast<std::int32_t>(rest), sign);
}

void fast_modout(number *a, const number *b)
{
    if (b->size > a->size) return;
    std::int32_t drop = a->size - b->size + 1;
    for (; a->size > 1 && (drop > 0 || a->head->digit == 0); --drop) {
        numnode *old = a->head;
        a->head = old->next;
        --a->size;
        give_digit(old);
    }
    if (drop > 0) a->head->digit = 0;  // modulo 1
}

// Array sizes ---------------------------------------------------------------------------------------------

std::int32_t quotient_of(const number *a, std::int32_t d)
{
    number divisor, quotient, rest;
    divisor.size = quotient.size = rest.size = 0;
    special_set(d, &divisor);
    divide(a, &divisor, &quotient, &rest);
    const std::int32_t digit = quotient.head->digit;
    special_free(&divisor);
    special_free(&quotient);
    special_free(&rest);
    return digit;
}

bool is_product_of(const number *a, std::int32_t x, std::int32_t y)
{
    number product;
    product.size = 0;
    special_set_2(x, y, &product);
    const bool same = spec_equal(a, &product);
    special_free(&product);
    return same;
}

}  // namespace kelmar

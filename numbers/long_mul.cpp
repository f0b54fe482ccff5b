// numbers/long_mul.cpp -- products of long integers.
//
// simp_mult splits each digit's product in a high and a low part; the high part is added to the last digit
// written, which hands at most 1 to the one before. As in addition, a node that has reached the base is
// remembered and mended by a backward pass. multiply adds such products up, the multiplier's digits taken
// from the head: all but the last digit of a product goes to the accumulator, the last becomes its new tail.
//
// fast_mult works on values in registers up to two digits, on arrays of the stack up to stack_limbs, and
// above that on the kept scratch buffer.
#include "numbers/long_mul.h"
#include "numbers/limb_mul.h"
#include "numbers/long_add.h"
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

// Chains --------------------------------------------------------------------------------------------------

static void set_zero(number *n)
{
    numnode *node = new_digit(0, nullptr);
    take_chain(n, node, node, 1);
}

void simp_mult(const number *a, number *out, std::int32_t d, numnode **cut)
{
    *cut = nullptr;
    if (d == 0 || a->head->digit == 0) return set_zero(out);

    const std::int32_t sign = sign_of(a) ^ (d < 0 ? -1 : 0);
    const std::int64_t factor = turned(d, sign);  // times a digit of a it is a magnitude
    std::int64_t product = factor * a->head->digit;
    numnode *head = new_digit(static_cast<std::int32_t>(product >> digit_bits), nullptr);
    numnode *last = new_digit(static_cast<std::int32_t>(product & digit_mask), nullptr);
    head->next = last;
    numnode *before = head;
    numnode *damaged = nullptr;
    for (const numnode *from = a->head; (from = from->next) != nullptr;) {
        product = factor * from->digit;
        std::int32_t sum = last->digit + static_cast<std::int32_t>(product >> digit_bits);
        if (sum >= digit_base) {
            sum -= digit_base;
            if (++before->digit == digit_base) damaged = before;
        }
        last->digit = sum;
        before->digit = turned(before->digit, sign);  // final, but for a repair
        before = last;
        last = new_digit(static_cast<std::int32_t>(product & digit_mask), nullptr);
        before->next = last;
    }
    before->digit = turned(before->digit, sign);
    last->digit = turned(last->digit, sign);
    std::int32_t size = a->size + 1;
    if (head->digit == 0) {
        if (head == before) before = nullptr;
        numnode *old = head;
        head = old->next;
        give_digit(old);
        --size;
    }
    take_chain(out, head, last, size);
    if (damaged) mend_carries(out, damaged, sign, digit_base);
    *cut = before;
}

void multiply(const number *a, const number *b, number *c)
{
    const number *multiplier = a->size <= b->size ? a : b;
    const number *other = multiplier == a ? b : a;
    number sum, term;
    sum.size = term.size = 0;
    numnode *cut;
    simp_mult(other, &sum, multiplier->head->digit, &cut);
    // A multiplier of several digits is not 0, and then neither is the other, so that sum never is.
    for (const numnode *digit = multiplier->head; (digit = digit->next) != nullptr;) {
        simp_mult(other, &term, digit->digit, &cut);
        numnode *low = term.tail;
        if (cut) {
            cut->next = nullptr;
            term.tail = cut;
            --term.size;
            fastsum(&sum, &term);
            give_chain(term.head, term.tail);
        }
        term.size = 0;
        low->next = nullptr;
        sum.tail->next = low;
        sum.tail = low;
        ++sum.size;
    }
    take_chain(c, sum.head, sum.tail, sum.size);
}

void fillout(number *n, std::int32_t k)
{
    n->tail->next = nullptr;
    if (k < 1 || n->head->digit == 0) return;
    n->size += k;
    while (k-- > 0) {
        n->tail->next = new_digit(0, nullptr);
        n->tail = n->tail->next;
    }
}

// Scratch -------------------------------------------------------------------------------------------------

static inline limb value_of(const number *a, std::int32_t sign)
{
    limb v = static_cast<limb>(turned(a->head->digit, sign));
    if (a->size == 2) v = v << digit_bits | static_cast<limb>(turned(a->tail->digit, sign));
    return v;
}

// c = a * b in arrays: a, then b unless it is a, then the product, then what the product takes.
static void multiply_in(limb *room, const number *a, const number *b, number *c)
{
    if (a->size < b->size) {
        const number *shorter = a;
        a = b;
        b = shorter;
    }
    const std::int32_t na = limbs_of(a->size), nb = limbs_of(b->size);
    const std::int32_t sign = sign_of(a) ^ sign_of(b);
    limb *const la = room, *const lb = a->head == b->head ? la : la + na, *const product = la + na + nb;
    gather_limbs(a->head, a->size, la);
    if (lb != la) gather_limbs(b->head, b->size, lb);
    multiply_limbs(product, la, na, lb, nb, product + na + nb);
    scatter_limbs(product, na + nb, sign, c);
}

void fast_mult(const number *a, const number *b, number *c)
{
    if (a->size <= 2 && b->size <= 2) {
        const std::int32_t sign_a = sign_of(a), sign_b = sign_of(b);
        const double_limb v = static_cast<double_limb>(value_of(a, sign_a)) * value_of(b, sign_b);
        return set_small_value(v, sign_a ^ sign_b, c);
    }
    numnode *cut;
    if (b->size == 1) return simp_mult(a, c, b->head->digit, &cut);
    if (a->size == 1) return simp_mult(b, c, a->head->digit, &cut);

    const std::int32_t na = limbs_of(a->size), nb = limbs_of(b->size);
    if (na + nb <= stack_limbs) {
        limb room[2 * stack_limbs];  // products this short take no scratch of their own
        return multiply_in(room, a, b, c);
    }
    const std::int64_t all = static_cast<std::int64_t>(na) + nb;
    multiply_in(scratch_limbs(2 * all + product_scratch(na < nb ? na : nb)), a, b, c);
}

// Product trees -------------------------------------------------------------------------------------------

static void multout_digits(std::int32_t lo, std::int32_t hi, number *n)
{
    check_stack();
    number part;
    part.size = 0;
    if (static_cast<std::int64_t>(hi) - lo < 5) {
        special_set(lo, n);
        while (lo < hi) {
            special_set(++lo, &part);
            fast_mult(n, &part, n);
        }
    } else {
        const std::int32_t middle = static_cast<std::int32_t>((static_cast<std::int64_t>(lo) + hi) >> 1);
        multout_digits(lo, middle, n);
        multout_digits(middle + 1, hi, &part);
        fast_mult(n, &part, n);
    }
    special_free(&part);
}

static std::int32_t multout_residues(std::int64_t lo, std::int64_t hi)
{
    std::int32_t product = 1;
    for (; lo <= hi && product != 0; ++lo) {
        const std::int64_t factor = lo % modulus;
        product = modmult(product, static_cast<std::int32_t>(factor < 0 ? factor + modulus : factor));
    }
    return product;
}

static std::int32_t multout_words(std::int64_t lo, std::int64_t hi)
{
    std::uint32_t product = 1;
    for (; lo <= hi && product != 0; ++lo) product *= static_cast<std::uint32_t>(lo);
    return static_cast<std::int32_t>(product);
}

static double multout_reals(std::int64_t lo, std::int64_t hi)
{
    if (hi - lo < 5) {
        double product = static_cast<double>(lo);
        while (lo < hi) product *= static_cast<double>(++lo);
        return product;
    }
    const std::int64_t middle = (lo + hi) >> 1;
    return multout_reals(lo, middle) * multout_reals(middle + 1, hi);
}

void multout(std::int32_t lo, std::int32_t hi, number *n)
{
    switch (live_view()) {
    case view_float: n->real = multout_reals(lo, hi); return;
    case view_field:
    case view_modular: n->word = multout_residues(lo, hi); return;
    case view_word: n->word = multout_words(lo, hi); return;
    case view_small: {
        numnode *node = new_digit(multout_words(lo, hi), nullptr);
        take_chain(n, node, node, 1);
        return;
    }
    case view_digits: multout_digits(lo, hi, n); return;
    }
}

// Limits of arrays ----------------------------------------------------------------------------------------

bool oversize(std::int32_t x, std::int32_t y)
{
    const std::int64_t product = static_cast<std::int64_t>(x) * y;
    return product > 1000000 || product <= -digit_base;
}

bool sparse_oversize(std::int32_t x, std::int32_t y)
{
    return oversize(x, y);
}

}  // namespace kelmar

// numbers/number.cpp -- setting, copying and negating numbers.
//
// Every routine that makes a chain builds it apart and gives it to the result in the last step, so that the
// result may be the operand. Chains are built from the head by a pointer to the place of the next node.
#include "numbers/number.h"
#include "numbers/word_mod.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

void give_chain_slow(numnode *head, numnode *tail)
{
#ifdef KELMAR_MALLOC_RECORDS
    while (head != tail) {
        numnode *next = head->next;
        free_record(numstash, head);
        head = next;
    }
    free_record(numstash, tail);
#else
    give_chain(head, tail);
#endif
}

void free_imag_slow(number *n)
{
#ifdef KELMAR_MALLOC_RECORDS
    free_record(imagstash, n);
#else
    n->link = imhead;
    imhead = n;
#endif
}

std::int64_t live_numnodes()
{
    std::int64_t live = numstash ? numstash->slugs_used : 0;
    for (const numnode *node = numhead; node; node = node->next) --live;
    return live;
}

std::int64_t live_numbers()
{
    std::int64_t live = imagstash ? imagstash->slugs_used : 0;
    for (const number *n = imhead; n; n = n->link) --live;
    return live;
}

// Chains ------------------------------------------------------------------------------------------------

// b = the chain of `size` > 0 digits from `head`, each times `sign`. b replaced, may own the chain.
static void copy_chain(const numnode *head, std::int32_t size, std::int32_t sign, number *b)
{
    numnode *first = nullptr;
    numnode **end = &first;
    numnode *last = nullptr;
    for (std::int32_t k = 0; k < size; ++k, head = head->next) {
        last = new_digit(sign * head->digit, nullptr);
        *end = last;
        end = &last->next;
    }
    take_chain(b, first, last, size);
}

// n = v as digits. n replaced.
static void set_digits(std::int64_t v, number *n)
{
    numnode *tail = new_digit(static_cast<std::int32_t>(v % digit_base), nullptr);
    numnode *head = tail;
    std::int32_t size = 1;
    for (v /= digit_base; v != 0; v /= digit_base, ++size) {
        head = new_digit(static_cast<std::int32_t>(v % digit_base), head);
    }
    take_chain(n, head, tail, size);
}

bool chain_is_normal(const number *n, std::int32_t base)
{
    if (n->size < 1) return false;
    if (n->head->digit == 0 && n->size != 1) return false;
    const bool negative = n->head->digit < 0;
    const numnode *node = n->head;
    for (std::int32_t k = 1;; ++k, node = node->next) {
        const std::int32_t d = node->digit;
        if (d <= -base || d >= base || (negative ? d > 0 : d < 0)) return false;
        if (!node->next) return k == n->size && node == n->tail;
        if (k == n->size) return false;
    }
}

// Setting -----------------------------------------------------------------------------------------------

void setvalue(std::int32_t v, number *n)
{
    switch (live_view()) {
    case view_float: n->real = v; return;
    case view_field:
    case view_modular:
    case view_word: n->word = v; return;
    case view_small:
    case view_digits: set_digits(v, n); return;
    }
}

void special_set(std::int32_t v, number *n)
{
    set_digits(v, n);
}

void special_set_2(std::int32_t hi, std::int32_t lo, number *n)
{
    set_digits(static_cast<std::int64_t>(hi) * lo, n);
}

// Copying -----------------------------------------------------------------------------------------------

void num_assign(const number *a, number *b)
{
    switch (live_view()) {
    case view_float: b->real = a->real; return;
    case view_field:
    case view_modular:
    case view_word: b->word = a->word; return;
    case view_small:
    case view_digits: copy_chain(a->head, a->size, 1, b); return;
    }
}

void spec_num_assign(const number *a, number *b)
{
    copy_chain(a->head, a->size, 1, b);
}

void fast_num_assign(const numnode *head, std::int32_t size, number *b)
{
    copy_chain(head, size, 1, b);
}

void fast_assign(const numnode *head, std::int32_t size, number *b)
{
    copy_chain(head, size, 1, b);
}

void faster_num_assign(const numnode *head, std::int32_t size, number **n)
{
    *n = nullptr;
    if (!head) return;
    newimag(n);
    (*n)->size = 0;
    copy_chain(head, size, 1, *n);
}

// Negation ----------------------------------------------------------------------------------------------

// -v modulo the global modulus; 0 stays 0.
static std::int32_t negated_residue(std::int32_t v)
{
    const std::int32_t residue = to_residue(v);
    return residue == 0 ? 0 : modulus - residue;
}

// -v, wrapping.
static std::int32_t negated_word(std::int32_t v)
{
    return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(v));
}

void makeneg(const number *a, number *b)
{
    switch (live_view()) {
    case view_float: b->real = 0.0 - a->real; return;  // not -x: that would make -0.0
    case view_field: b->word = to_residue(a->word); return;
    case view_modular: b->word = negated_residue(a->word); return;
    case view_word: b->word = negated_word(a->word); return;
    case view_small:
    case view_digits: copy_chain(a->head, a->size, -1, b); return;
    }
}

void in_place_neg(number *a)
{
    switch (live_view()) {
    case view_float: a->real = 0.0 - a->real; return;
    case view_field: a->word = to_residue(a->word); return;
    case view_modular: a->word = negated_residue(a->word); return;
    case view_word: a->word = negated_word(a->word); return;
    case view_small:
    case view_digits:
        for (numnode *node = a->head; node; node = node->next) node->digit = negated_word(node->digit);
        return;
    }
}

void abs_val_num(const number *a, number *b)
{
    if (a->head->digit < 0) {
        makeneg(a, b);
    } else {
        num_assign(a, b);
    }
}

}  // namespace kelmar

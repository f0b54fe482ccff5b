// numbers/long_shift.cpp -- shifts of long integers by bits.
//
// Whole digits are nodes at the tail, dropped or appended in one pass. The bits that are left move in a
// forward pass: to the right each digit takes the low bits of the digit before it, to the left the high bits
// of the digit behind it.
#include "numbers/long_shift.h"
#include "numbers/long_mul.h"

namespace kelmar {

// Shift all digits by k, 0 < k < 28; inlined for the fixed k of the named forms.
static inline void shift_digits_right(number *n, std::int32_t k)
{
    const std::uint32_t mask = (std::uint32_t{1} << k) - 1;
    std::uint32_t before = 0;
    for (numnode *node = n->head; node; node = node->next) {
        const std::uint32_t digit = static_cast<std::uint32_t>(node->digit);
        node->digit = static_cast<std::int32_t>((before & mask) << (digit_bits - k) | digit >> k);
        before = digit;
    }
    if (n->head->digit == 0 && n->size > 1) {
        numnode *old = n->head;
        n->head = old->next;
        --n->size;
        give_digit(old);
    }
}

void gen_shift_right(number *n, std::int32_t k)
{
    shift_digits_right(n, k);
}

void shift_right_1(number *n)
{
    shift_digits_right(n, 1);
}

void shift_right_2(number *n)
{
    shift_digits_right(n, 2);
}

// Drop the last `count` digits; when none is left, n = 0.
static void drop_digits(number *n, std::int32_t count)
{
    numnode *last = n->head;
    if (count >= n->size) {
        last->digit = 0;
        count = n->size - 1;
    }
    if (count == 0) return;
    n->size -= count;
    for (std::int32_t i = 1; i < n->size; ++i) last = last->next;
    give_chain(last->next, n->tail);
    last->next = nullptr;
    n->tail = last;
}

void shift_right(number *n, std::int32_t k)
{
    drop_digits(n, k / digit_bits);
    k %= digit_bits;
    if (k == 1) {
        shift_right_1(n);
    } else if (k == 2) {
        shift_right_2(n);
    } else if (k > 0) {
        gen_shift_right(n, k);
    }
}

void shift_left(number *n, std::int32_t k)
{
    fillout(n, k / digit_bits);
    k %= digit_bits;
    if (k == 0) return;
    const std::uint32_t top = static_cast<std::uint32_t>(n->head->digit) >> (digit_bits - k);
    for (numnode *node = n->head; node; node = node->next) {
        const std::uint32_t behind = node->next ? static_cast<std::uint32_t>(node->next->digit) : 0;
        const std::uint32_t digit = static_cast<std::uint32_t>(node->digit) << k | behind >> (digit_bits - k);
        node->digit = static_cast<std::int32_t>(digit & digit_mask);
    }
    if (top == 0) return;
    n->head = new_digit(static_cast<std::int32_t>(top), n->head);
    ++n->size;
}

}  // namespace kelmar

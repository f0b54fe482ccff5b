// numbers/compare.cpp -- order and equality of numbers.
//
// Two chains of equal size differ in order at the first digit that differs. Sizes decide before that, and the
// sign of the head digit turns the answer over. A number has one chain, so equality is equality of chains.
#include "numbers/compare.h"

namespace kelmar {

// Chains ------------------------------------------------------------------------------------------------

// The sign of a - b at the first digit that differs; 0 when the chains agree. Equal sizes.
static int compare_digits(const numnode *a, const numnode *b)
{
    for (; a && b; a = a->next, b = b->next) {
        if (a->digit != b->digit) return a->digit > b->digit ? 1 : -1;
    }
    return 0;
}

// The same for the magnitudes.
static int compare_magnitudes(const numnode *a, const numnode *b)
{
    for (; a && b; a = a->next, b = b->next) {
        const std::int32_t da = a->digit < 0 ? -a->digit : a->digit;
        const std::int32_t db = b->digit < 0 ? -b->digit : b->digit;
        if (da != db) return da > db ? 1 : -1;
    }
    return 0;
}

static bool digits_bigger(const number *a, const number *b)
{
    const std::int32_t da = a->head->digit;
    const std::int32_t db = b->head->digit;
    if (a->size == 1 && b->size == 1) return da > db;
    if ((da < 0) != (db < 0)) return db < 0;
    if (a->size != b->size) return (a->size > b->size) == (da >= 0);
    return compare_digits(a->head, b->head) > 0;
}

// a = -b on the digits.
static bool digits_opposite(const number *a, const number *b)
{
    if (a->size != b->size) return false;
    const numnode *nb = b->head;
    for (const numnode *na = a->head; na; na = na->next, nb = nb->next) {
        if (na->digit != -nb->digit) return false;
    }
    return true;
}

bool pos_bigger(const number *a, const number *b)
{
    if (a->size != b->size) return a->size > b->size;
    return compare_digits(a->head, b->head) > 0;
}

bool fast_bigger(const numnode *head_a, const numnode *head_b, std::int32_t size_a, std::int32_t size_b)
{
    if (size_a > size_b) return true;
    for (std::int32_t k = 0; k < size_a; ++k, head_a = head_a->next, head_b = head_b->next) {
        if (head_a->digit != head_b->digit) return head_a->digit > head_b->digit;
    }
    return false;
}

int int_abs_bigger(const number *a, const number *b, int tie)
{
    if (a->size != b->size) return a->size > b->size;
    const int order = compare_magnitudes(a->head, b->head);
    return order == 0 ? tie : order > 0;
}

bool spec_equal(const number *a, const number *b)
{
    return a->size == b->size && compare_digits(a->head, b->head) == 0;
}

int equal_which(const number *a, const number *b, int *which)
{
    if (a->size != b->size) {
        *which = a->size > b->size;
        return 0;
    }
    const int order = compare_digits(a->head, b->head);
    if (order == 0) return 1;
    *which = order > 0;
    return 0;
}

// The live view -----------------------------------------------------------------------------------------

static std::uint32_t magnitude(std::int32_t v)
{
    return v < 0 ? 0u - static_cast<std::uint32_t>(v) : static_cast<std::uint32_t>(v);
}

// a + b is 0 where the words wrap at `wrap`; 0 stands for 2^32.
static bool words_cancel(std::int32_t a, std::int32_t b, std::uint32_t wrap)
{
    return static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b) == wrap || (a == 0 && b == 0);
}

bool bigger(const number *a, const number *b)
{
    switch (live_view()) {
    case view_float: return a->real > b->real;
    case view_field:
    case view_modular:
    case view_word: return a->word > b->word;
    case view_small:
    case view_digits: return digits_bigger(a, b);
    }
    __builtin_unreachable();
}

bool abs_larger(const number *a, const number *b)
{
    switch (live_view()) {
    case view_float: return __builtin_fabs(a->real) > __builtin_fabs(b->real);
    case view_field:
    case view_modular:
    case view_word: return magnitude(a->word) > magnitude(b->word);
    case view_small:
    case view_digits: return int_abs_bigger(a, b, 0) != 0;
    }
    __builtin_unreachable();
}

bool equal(const number *a, const number *b)
{
    switch (live_view()) {
    case view_float: return a->real == b->real;
    case view_field:
    case view_modular:
    case view_word: return a->word == b->word;
    case view_small:
    case view_digits: return spec_equal(a, b);
    }
    __builtin_unreachable();
}

bool negtive(const number *a, const number *b)
{
    switch (live_view()) {
    case view_float: return a->real == -b->real;
    case view_field: return a->word == b->word;
    case view_modular: return words_cancel(a->word, b->word, static_cast<std::uint32_t>(modulus));
    case view_word: return words_cancel(a->word, b->word, 0);
    case view_small:
    case view_digits: return digits_opposite(a, b);
    }
    __builtin_unreachable();
}

bool iszero(const number *a)
{
    switch (live_view()) {
    case view_float: return a->real == 0.0;
    case view_field:
    case view_modular:
    case view_word: return a->word == 0;
    case view_small:
    case view_digits: return a->head->digit == 0;
    }
    __builtin_unreachable();
}

// The word a is 1 or `minus_one`.
static bool word_is_pm1(std::int32_t word, std::int32_t minus_one, int *is_minus)
{
    *is_minus = word != 1;
    return word == 1 || word == minus_one;
}

bool equal_to_pm1(const number *a, int *is_minus)
{
    switch (live_view()) {
    case view_float: *is_minus = a->real < 0; return __builtin_fabs(a->real) == 1.0;
    case view_field: return word_is_pm1(a->word, 1, is_minus);
    case view_modular: return word_is_pm1(a->word, modulus - 1, is_minus);
    case view_word: return word_is_pm1(a->word, -1, is_minus);
    case view_small:
    case view_digits: return word_is_pm1(a->head->digit, -1, is_minus) && a->size == 1;
    }
    __builtin_unreachable();
}

}  // namespace kelmar

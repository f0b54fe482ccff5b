#pragma once
// numbers/compare.h -- order and equality of numbers.
//
// The plain names compare in the live view. Names that begin with spec_, int_, pos_ or fast_, and those whose
// comment says "on the digits", read the digit chains whatever the mode. Nothing here allocates.

#include "numbers/number.h"

namespace kelmar {

bool bigger(const number *a, const number *b);      // a > b
bool abs_larger(const number *a, const number *b);  // |a| > |b|
bool equal(const number *a, const number *b);       // a = b
bool negtive(const number *a, const number *b);     // a = -b; in a table field a = b
bool iszero(const number *a);                       // a = 0

// on purpose: the mathematics headers have a template iszero, which would take a pointer that is not const
// where both names are visible, and compare the pointer.
inline bool iszero(number *a)
{
    return iszero(static_cast<const number *>(a));
}

// a = 1 or a = -1 in the live view; *is_minus tells which.
bool equal_to_pm1(const number *a, int *is_minus);

// a > b for non-negative long integers: sizes first.
bool pos_bigger(const number *a, const number *b);

// True when size_a > size_b; otherwise digits are compared from the head. size_a < size_b is not looked at:
// the caller gives equal sizes, or the larger first.
bool fast_bigger(const numnode *head_a, const numnode *head_b, std::int32_t size_a, std::int32_t size_b);

// |a| > |b| for long integers; `tie` when they are equal.
int int_abs_bigger(const number *a, const number *b, int tie);

// a = b on the digits.
bool spec_equal(const number *a, const number *b);

// 1 if a = b on the digits; else 0 and *which = (a > b), sizes first. For non-negative numbers.
int equal_which(const number *a, const number *b, int *which);

// The long integer a is the one digit v.
inline bool is_longint(const number *a, std::int32_t v)
{
    return a->size == 1 && a->head->digit == v;
}

}  // namespace kelmar

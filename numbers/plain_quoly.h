#pragma once
// numbers/plain_quoly.h -- the scalar value of the language, and arithmetic on those that are plain numbers.
//
// A value is handled through a handle, the address of a pointer to a quolynode. A result handle's old value
// is freed, and its record is used again when it holds a plain number: a running sum allocates nothing.
// Null handles of results are allowed: *c may be null. Zero is always the plain number 0.
//
//               plain     better_   best_     fast_
//   a           spared    consumed  consumed  consumed: fast_ works in place on *a
//   b           spared    spared    consumed  spared

#include "numbers/number.h"

namespace kelmar {

struct polynode;

struct quolynode {
    quolynode *next;      // free list, or hash chain of a gcd stash entry
    std::int32_t is_num;  // 1: a plain number in `num`; den and is_rat are not looked at
    union {
        number *num;
        polynode *top;  // the numerator
    };
    polynode *den;        // the denominator; null means 1
    std::int32_t is_rat;  // 1: top and den are constants, in integer mode only
};
static_assert(std::is_trivial_v<quolynode>);

// default null; free records; newquoly, free_quoly; reset: never
inline quolynode *quolygarb = nullptr;

void newquoly(quolynode **q);    // *q filled: a fresh record, fields not cleared
void free_quoly(quolynode **q);  // release what *q holds, and the record; *q becomes null; null is allowed

// The number record of *c, to be filled with a result: the one that *c holds when that is a plain number, its
// chain included, else a fresh one in a fresh *c, the old value being released.
number *plain_result(quolynode **c);

// *q = the plain number v in the live view; digits for |v| >= 2^28 are two. *q replaced.
void quoly_set(std::int32_t v, quolynode **q);

// *q = the plain number whose record is a copy of *n, field by field: the chain passes over. *q replaced.
void scalar_to_quoly(number *n, quolynode **q);

// *b = a private copy of a. *b replaced.
void quoly_assign(const quolynode *a, quolynode **b);

bool quoly_iszero(const quolynode *q);

// *b = -a. *b replaced, may be a. A float zero stays 0, never -0.
void quoly_makeneg(const quolynode *a, quolynode **b);

// *a = -*a in place.
void quoly_inplace(quolynode **a);

// *c = a + b, a - b. *c replaced, may be an operand.
void quoly_add(const quolynode *a, const quolynode *b, quolynode **c);
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **c);

// *a = *a + b, *a - b, in place.
void better_quoly_add(quolynode **a, const quolynode *b);
void better_quoly_sub(quolynode **a, const quolynode *b);

// *a = *a + *b, *a - *b; *b consumed, becomes null.
void best_quoly_add(quolynode **a, quolynode **b);
void best_quoly_sub(quolynode **a, quolynode **b);

// *c = a * b. *c replaced, may be an operand. fast_: *a = *a * b in place.
void quoly_mult(const quolynode *a, const quolynode *b, quolynode **c);
void fast_quoly_mult(quolynode **a, const quolynode *b);

// *c = a / b. *c replaced, may be an operand. fast_: *a = *a / b in place. `no_reduce` is the // form; it
// says nothing to plain numbers. Errors: 22 at quotsign for b = 0; if error comes back the result is 1.
void quoly_quot(const quolynode *a, const quolynode *b, std::int32_t no_reduce, quolynode **c);
void fast_quoly_quot(quolynode **a, const quolynode *b, std::int32_t no_reduce);

// *c = quotient (op '\\') or remainder (op '|') of whole division. *c replaced, may be an operand. Doubles:
// fmod; with pos_mod a remainder below 0 gets |b| added. Errors: 22 for b = 0.
void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **c, char op);

// *q = the greatest integer not above q. Errors: 62 in the word modes.
void quoly_great_int(quolynode **q);

// *q = |q| in the live view.
void quoly_abs(quolynode **q);

// Records that are out and not on the free list.
std::int64_t live_quolys();

}  // namespace kelmar

#pragma once
// numbers/plain_quoly.h -- the record of a scalar value, and values that are plain numbers.
//
// A value is handled through a handle, the address of a pointer to a quolynode. A result handle that holds a
// plain number lends its number record to the result: a running sum allocates nothing. The operations on
// values of every kind are in quoly/; those here ask that every value, the old one of a result included, is a
// plain number, or that the handle is null.

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

// default null; free records; newquoly, give_quoly; reset: never
inline quolynode *quolygarb = nullptr;

// *q filled: a fresh record, fields not cleared.
inline void newquoly(quolynode **q)
{
    quolynode *fresh = quolygarb;
    if (__builtin_expect(fresh != nullptr, 1)) {
        quolygarb = fresh->next;
    } else {
        fresh = static_cast<quolynode *>(get_slug(quolystash));
    }
    *q = fresh;
}

// Release the record alone; *q becomes null.
void give_quoly_slow(quolynode *old);
inline void give_quoly(quolynode **q)
{
    quolynode *old = *q;
    *q = nullptr;
#ifdef KELMAR_MALLOC_RECORDS
    give_quoly_slow(old);
#else
    old->next = quolygarb;
    quolygarb = old;
#endif
}

// Release a plain number and its record; *q becomes null.
inline void free_plain(quolynode **q)
{
    free_imag(&(*q)->num);
    give_quoly(q);
}

// Return the number record of *c, to be filled with a result: the one that *c holds, its chain included, else
// a fresh one in a fresh *c.
void fresh_plain(quolynode **c);
inline number *plain_result(quolynode **c)
{
    if (!*c) fresh_plain(c);
    return (*c)->num;
}

// *q = the plain number v in the live view; digits for |v| >= 2^28 are two. *q replaced.
void plain_set(std::int32_t v, quolynode **q);

// Records that are out and not on the free list.
std::int64_t live_quolys();

}  // namespace kelmar

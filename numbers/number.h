#pragma once
// numbers/number.h -- the records that hold a number, and how they are taken and released.
//
// A number holds a value in one of three views, of which the mode flags make one live (numbers/mode.h):
//   real          float mode
//   word          the word modes: a residue, an element code, or a signed word
//   head .. tail  the long integer: digits of base 2^28, most significant first
// Rules of the long integer: all digits have one sign; every magnitude is below 2^28; the head is nonzero,
// but zero is one node holding 0; tail is the last node and its next is null. size counts the nodes; size 0
// means that there is no chain, and head and tail are then meaningless. A record from newimag has an
// undefined size: its creator writes size = 0 at once.
//
// The same records hold base 10^8 chains while a number is read or written. Such a chain never reaches
// arithmetic.

#include <cstdint>
#include <type_traits>
#include "numbers/mode.h"
#include "numbers/stash.h"

namespace kelmar {

inline constexpr std::int32_t digit_bits = 28;
inline constexpr std::int32_t digit_base = 1 << digit_bits;
inline constexpr std::int32_t digit_mask = digit_base - 1;
inline constexpr std::int32_t decimal_base = 100000000;  // eight decimal digits a node

struct numnode {
    std::int32_t digit;
    numnode *next;  // less significant
};
static_assert(std::is_trivial_v<numnode>);

struct number {
    numnode *head;  // most significant digit
    numnode *tail;  // least significant digit
    std::int32_t word;
    double real;
    number *link;       // next on imhead, or on a short-lived list of numbers
    std::int32_t size;  // digits in the chain; 32 bits, so that every legal decimal form fits
};
static_assert(std::is_trivial_v<number>);

// default null; free records; new*, free_*; reset: never
inline numnode *numhead = nullptr;
inline number *imhead = nullptr;

// Records -----------------------------------------------------------------------------------------------

// Return a fresh digit node, both fields set.
inline numnode *new_digit(std::int32_t digit, numnode *next)
{
    numnode *node = numhead;
    if (__builtin_expect(node != nullptr, 1)) {
        numhead = node->next;
    } else {
        node = static_cast<numnode *>(get_slug(numstash));
    }
    node->digit = digit;
    node->next = next;
    return node;
}

// Give the chain head .. tail back in one step. tail->next need not be set.
void give_chain_slow(numnode *head, numnode *tail);
inline void give_chain(numnode *head, numnode *tail)
{
#ifdef KELMAR_MALLOC_RECORDS
    give_chain_slow(head, tail);
#else
    tail->next = numhead;
    numhead = head;
#endif
}

inline void give_digit(numnode *node)
{
    give_chain(node, node);
}

// *n = a fresh number record, all fields undefined.
inline void newimag(number **n)
{
    number *fresh = imhead;
    if (__builtin_expect(fresh != nullptr, 1)) {
        imhead = fresh->link;
    } else {
        fresh = static_cast<number *>(get_slug(imagstash));
    }
    *n = fresh;
}

// Release the record *n, and its chain in the long integer view; *n becomes null.
void free_imag_slow(number *n);
inline void free_imag(number **n)
{
    number *old = *n;
    if (old->size > 0 && !lintmode) give_chain(old->head, old->tail);
#ifdef KELMAR_MALLOC_RECORDS
    free_imag_slow(old);
#else
    old->link = imhead;
    imhead = old;
#endif
    *n = nullptr;
}

// Release the chain of *n in the long integer view. The record stays as it was, size included: the caller
// assigns over it.
inline void free_num(number *n)
{
    if (n->size > 0 && !lintmode) give_chain(n->head, n->tail);
}

// Release the chain of *n whatever the mode, and set its size to 0.
inline void special_free(number *n)
{
    if (n->size > 0) give_chain(n->head, n->tail);
    n->size = 0;
}

// Give *n the chain head .. tail of `size` digits, releasing its old one. The last step of every routine
// that builds its result apart, so that a result may be an operand.
inline void take_chain(number *n, numnode *head, numnode *tail, std::int32_t size)
{
    if (n->size > 0) give_chain(n->head, n->tail);
    n->head = head;
    n->tail = tail;
    n->size = size;
}

// Setting and copying -------------------------------------------------------------------------------------

// n = v in the live view; a modular caller sees to the range.
void setvalue(std::int32_t v, number *n);

// n = v as digits, whatever the mode. One digit, or two for |v| >= 2^28.
void special_set(std::int32_t v, number *n);

// n = hi * lo as digits, whatever the mode. For bookkeeping of array sizes.
void special_set_2(std::int32_t hi, std::int32_t lo, number *n);

// b = a in the live view. b replaced, may be a.
void num_assign(const number *a, number *b);

// b = a on the digits, whatever the mode. b replaced.
void spec_num_assign(const number *a, number *b);

// b = the chain of `size` digits from `head`, copied. b replaced.
void fast_num_assign(const numnode *head, std::int32_t size, number *b);
void fast_assign(const numnode *head, std::int32_t size, number *b);

// *n = a new record holding a copy of the chain; null when head is null. n filled.
void faster_num_assign(const numnode *head, std::int32_t size, number **n);

// b = -a in the live view. b replaced. A table field element is its own negative.
void makeneg(const number *a, number *b);

// a = -a in the live view, in place.
void in_place_neg(number *a);

// b = |a|, judged by the head digit in every mode: for long integers only. b replaced.
void abs_val_num(const number *a, number *b);

// Checks for tests and debug builds: the rules of the long integer form in the head comment
// hold, base `base`.
bool chain_is_normal(const number *n, std::int32_t base);

// Records of numnodes, and of numbers, that are out and not on a free list.
std::int64_t live_numnodes();
std::int64_t live_numbers();

}  // namespace kelmar

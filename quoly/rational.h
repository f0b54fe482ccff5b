#pragma once
// quoly/rational.h -- rational numbers: values whose numerator and denominator are long integers.
//
// They live in the digit views alone, in lowest terms with a denominator above 1, and marked is_rat. A gcd is
// taken of one pair of factors at a time, before they are multiplied, so that no product is larger than the
// result needs. Operands that fit two digits are worked on in registers.
//
// *c is replaced, and may be an operand; it becomes a plain number where the denominator is 1. Polls: no.
// Source: Knuth, The Art of Computer Programming 2, 4.5.1.

#include "quoly/quoly.h"

namespace kelmar {

inline bool is_rational(const quolynode *q)
{
    return !q->is_num && q->is_rat && !lintmode;
}

// *c = a + b, or a - b with add = 0.
void add_rats(const quolynode *a, const quolynode *b, quolynode **c, int add);

// *c = a * b, a / b.
void mult_rats(const quolynode *a, const quolynode *b, quolynode **c);
void quot_rats(const quolynode *a, const quolynode *b, quolynode **c);

// Which sum of a number n and a rational q.
enum number_sum { n_plus_q, n_minus_q, q_minus_n };

// *c = n + q, n - q or q - n.
void add_numb_rat(number *n, const quolynode *q, quolynode **c, number_sum which);

// *c = n * q, n / q, q / n, a / b for whole numbers. Errors: 22 for n or b = 0, then *c = 1.
void mult_numb_rat(const number *n, const quolynode *q, quolynode **c);
void quot_numb_rat(const number *n, const quolynode *q, quolynode **c);
void quot_rat_numb(const quolynode *q, const number *n, quolynode **c);
void quot_numbs(const number *a, const number *b, quolynode **c);

// *c = 1 / n for a whole number that is not 0.
void recip_numb(const number *n, quolynode **c);

// Return -1, 0, 1 as a is below, equal to, above b, plain or rational numbers in the digit view.
int compare_rats(const quolynode *a, const quolynode *b);

// *q = the greatest whole number not above the rational *q.
void rat_floor(quolynode **q);

}  // namespace kelmar

#pragma once
// poly/onevar_add.h -- sums of polynomials held in word arrays.
//
// a[i] is the coefficient of x^i, a residue or an element of a table field. Ranges of degrees are inclusive,
// lo <= hi; what lies outside its range is not read. A result fills the union of the ranges, a gap between
// them with zeros, and nothing else. *top = the greatest degree of the result whose coefficient is not zero,
// or one below its range when all are zero.
//
// c may be a: then what b does not touch is not written either. Without a shift it may be b.
//
// Faults: a range given upside down; when the report comes back *top is one below the range of a. Polls: no.

#include <cstdint>

namespace kelmar {

// c = a + b, a - b.
void onevar_add(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t *top);
void onevar_sub(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t *top);

// c = a + b x^shift, a - b x^shift. shift >= 0.
void onevar_add_shift(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                      std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t shift,
                      std::int32_t *top);
void onevar_sub_shift(const std::int32_t *a, const std::int32_t *b, std::int32_t *c, std::int32_t a_lo,
                      std::int32_t a_hi, std::int32_t b_lo, std::int32_t b_hi, std::int32_t shift,
                      std::int32_t *top);

// b[i] = a[i] + a[i + half] for lo <= i < lo + half, the two halves of a in lo .. hi: what lies above hi
// counts as zero. hi < lo + 2 half. b may be a.
void onevar_self_add(const std::int32_t *a, std::int32_t *b, std::int32_t lo, std::int32_t hi,
                     std::int32_t half, std::int32_t *top);

}  // namespace kelmar

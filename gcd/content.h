#pragma once
// gcd/content.h -- contents: gcds of the coefficients of a polynomial.
//
// A content in the outer variable is a polynomial one level down, or a number. It is a chain of gcds, and the
// first of them sets the size of all others, so the two smallest coefficients are looked for first; counters
// put a bound on all looking within one problem.
//
// names: the record of the outer variable. show: progress is written, with verbose. deep: the gcds may take
// contents in other variables. ours: 1, the operand is restored; 0, it may be emptied, and is good only for
// being freed. Results are replaced; they have a positive lead in integer mode and are monic over a field.
// Polls: in the gcds.

#include "poly/variables.h"

namespace kelmar {

// default 0; the level where the count of dual_content began; it; reset: statement. The counts themselves
// and the other two levels stand in gcd/polygcd.h.
inline std::int32_t d_cntdepth = 0;

inline constexpr std::int32_t count_limit = 200000;  // visits; above it nothing is looked for

// *result = the gcd of the coefficients of p. The content of zero is zero.
// Faults: " *** pp numb in content", " *** q numb in content", on a broken structure; then *result = 1.
void content(polynode *p, polynode **result, pt *names, std::int32_t show, std::int32_t deep,
             std::int32_t ours);

// *result = the gcd of `other`, one level below p, and the coefficients of p.
void aux_content(polynode *other, polynode *p, polynode **result, pt *names, std::int32_t show,
                 std::int32_t deep, std::int32_t other_ours, std::int32_t p_ours);

// *result = the gcd of all coefficients of a and b.
void dual_content(polynode *a, polynode *b, polynode **result, pt *names, std::int32_t show,
                  std::int32_t deep, std::int32_t a_ours, std::int32_t b_ours);

// The same for two restored operands, without progress.
void content_2(polynode *a, polynode *b, polynode **result, pt *names);

// *result = the content of p in the variable `level` lists down, 1 for p's own, as a polynomial of the level
// of p. Where that variable does not occur: with *found = 0 the number 1, and *found = 1; else a copy of p.
// big: the gcds may take contents in other variables. p restored.
// Faults: " 0 exp head node in general_content", then *result = a copy of p; "q number in general content".
void general_content(polynode *p, std::int32_t level, polynode **result, pt *names, std::int32_t *found,
                     std::int32_t big);

// Every coefficient of p, a list at `level`, is a number, or lies in the ground field.
bool all_coefs_invrtble(const polynode *p, std::int32_t level);

// Views --------------------------------------------------------------------------------------------------

// *view = p with the variable `level` lists down as the outer one, the others in their order below it. p
// spared; *view filled.
void convert_poly(const polynode *p, std::int32_t level, polynode **view);

// *p, as convert_poly makes it, in the order it had before. *p replaced.
void patch_up(polynode **p, std::int32_t level);

// p, which is free of the variable `level` lists down and has no list for it, gets a wrapper there. *p
// replaced.
void pad_at_level(polynode **p, std::int32_t level);

}  // namespace kelmar

#pragma once
// gcd/polygcd.h -- greatest common divisors of polynomials: the choice of a method.
//
// Every value that must be cancelled ends here. polygcd looks at the shape of its operands and takes the
// cheapest way that it believes in: constants and monomials, a trial whether one divides the other, the
// degree of an image modulo a prime, contents, a modular method, and at last the subresultant sequence of
// gcd/algorithm_c.h, which always answers.
//
// The result divides both operands. In the digit view it is the gcd with its number content and a positive
// leading number; over words that have inverses, and over doubles, it is monic. With doubles common factors
// are found as far as rounding lets them be seen; 1 is always a correct answer there. gcd(0, p) is p,
// normalised so, and gcd(0, 0) is 0.

#include "poly/variables.h"

namespace kelmar {

// default 25; nodes; above it trial division is worth while; nobody
inline std::int32_t trial_cutoff = 25;
// default 6; images are taken at once when the degree may fall by more; nobody
inline std::int32_t mod_method_diff = 6;
inline constexpr std::int32_t default_tripval = 20;
// default 20; nodes; above it an image modulo a prime is worth while; fast_test_2; reset: statement, unwind
inline std::int32_t tripval = default_tripval;
// default 1; the multivariate modular methods may be used; 0 forces Algorithm C; the switch &O; reset: never
inline std::int32_t chinhensel = 1;
// default 0; times that Algorithm C was given up in this problem; every entry
inline std::int32_t alg_c_count = 0;
// default 1; the level where the counters below were last cleared; every entry
inline std::int32_t original_depth = 1;

// default 0; content loops of content, aux_content, dual_content, general_content; they; reset: statement,
// unwind
inline std::int32_t c_cntcount = 0;
inline std::int32_t a_cntcount = 0;
inline std::int32_t d_cntcount = 0;
inline std::int32_t g_cntcount = 0;
// default 0; levels where the counting of c_cntcount and a_cntcount began; content, aux_content; reset:
// statement, unwind
inline std::int32_t c_cntdepth = 0;
inline std::int32_t a_cntdepth = 0;

inline constexpr std::int32_t first_g_cutoff = 10;
// default 10; how many general_content calls are allowed; polygcd; reset: statement, unwind
inline std::int32_t g_cutoff = first_g_cutoff;

// *result = gcd(a, b), polynomials whose outer list is that of the variable of names.
// exponent_only: the degree in that variable is all that is asked; the result is a power of it. test: tests
// at random points are allowed. deep: content may be looked for over several levels. a_is_ours, b_is_ours:
// 1: the operand is restored; 0: it may be emptied, and the caller frees what is left. top: counters start
// anew. *result replaced, may be null.
// Errors: 85 modulo a composite. Faults: names is null. Polls: between steps, and in long ones.
void polygcd(polynode *a, polynode *b, polynode **result, std::int32_t exponent_only, std::int32_t test,
             std::int32_t deep, pt *names, std::int32_t a_is_ours, std::int32_t b_is_ours, std::int32_t top);

// *result = gcd(*a, *b) as a new problem. With negative exponents allowed, *a is made free of them before and
// put back after, and with also_b *b too. *a, *b restored; *result replaced.
void Lpolygcd(polynode **a, polynode **b, polynode **result, std::int32_t also_b, pt *names);

// The same, but *a and *b stay free of negative exponents.
void Lpolygcd2(polynode **a, polynode **b, polynode **result, pt *names);

// *result = gcd(*a, *a): *a normalised.
void Lpolygcd3(polynode **a, polynode **result, pt *names);

// Clear the counters: before each command, and when one is given up. gcd_on_error: what any report resets.
// gcd_on_unwind: no gcd runs any more; the stash of known ones is freed.
void clear_gcd_counters();
void gcd_on_error();

// The counters of the gcd that is under way, while statements of a pushed level have theirs.
struct gcd_counters {
    std::int32_t abandoned, depth, contents[4], depths[2], cutoff;
};
void save_gcd_counters(gcd_counters *c);
void restore_gcd_counters(const gcd_counters *c);
void gcd_on_unwind();

}  // namespace kelmar

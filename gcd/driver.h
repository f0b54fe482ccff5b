#pragma once
// gcd/driver.h -- what the steps of polygcd share: the problem as it stands, and the steps themselves.
//
// A step looks at the problem, and either ends it or leaves it to the next one. What a problem holds stands
// in a record of poly/mul_work.h, so that a jump loses nothing, and operands of others are never written: a
// power or a stride is taken out of a copy of their outer list, whose coefficients stay theirs.

#include "gcd/polygcd.h"
#include "gcd/stash.h"
#include "poly/mul_work.h"

namespace kelmar {

// Where problems end -------------------------------------------------------------------------------------

enum gcd_exit {
    exit_zero,            // an operand is zero
    exit_numbers,         // both are numbers
    exit_number,          // one is
    exit_no_variable,     // there is no record of a variable
    exit_in_field,        // an operand lies in the ground field
    exit_same,            // both are one
    exit_not_finite,      // a double is no number
    exit_one_variable,    // a gcd in one variable
    exit_descent,         // neither has the outer variable
    exit_coefficients,    // one has it not
    exit_monomial,        // one is a single term
    exit_divides,         // a trial: b divides a
    exit_probe_content,   // an image has degree 0, and is no number
    exit_probe_coprime,   // an image is a number
    exit_probe_degree,    // only the degree is asked, and an image has it
    exit_tower,           // Euclid's algorithm over the tower
    exit_images_content,  // images at points have degree 0
    exit_restricted,      // variables of one operand alone had values
    exit_images_degree,   // only the degree is asked, and images have it
    exit_equal,           // equal up to a number, without their contents
    exit_spent,           // a factor taken out left nothing
    exit_late_trial,      // a later trial: b divides a
    exit_stash,           // the gcd was known
    exit_modular_method,  // images modulo primes
    exit_coprime_tests,   // images at points are coprime
    exit_multivariate,    // images at points, interpolated
    exit_more_images,     // an image at scattered points is coprime
    exit_algorithm_c,
    gcd_exit_count
};

// default 0; problems that ended there; polygcd; reset: never
inline std::int64_t gcd_exits[gcd_exit_count];

// The problem --------------------------------------------------------------------------------------------

enum gcd_part {
    part_a,  // operands of our own
    part_b,
    part_factor,  // the gcd of the contents found so far, one level down; null: 1
    part_outer,   // factors found in other variables, at the level of the operands; null: 1
    part_core,    // the gcd of what is left
    part_room,    // what a step needs for a while
    part_room_2,
    part_quotient
};

// One operand as it stands.
struct gcd_operand {
    polynode *p;          // in *part, or in *loan, or the caller's
    polynode **part;      // our own
    polynode **loan;      // an outer list of our own, coefficients of others
    std::int32_t ours;    // 1: the caller's polynomial is restored; 0: it may be emptied
    std::int32_t low;     // the power of the outer variable taken out
    std::int32_t nodes;   // as measured last
    std::int64_t weight;  // mean weight of its nodes
};

struct gcd_problem {
    product_work *work;
    gcd_operand a, b;  // deg a >= deg b from the order on
    polynode **result;
    pt *names;
    std::int32_t level;   // of names
    std::int32_t levels;  // lists from the outer one down, at most
    std::int32_t exponent_only, test, deep, top;
    std::int32_t power;       // of the outer variable in the gcd
    std::int32_t stride;      // exponents were divided by it
    std::int32_t may_probe;   // images modulo primes are allowed
    std::int32_t own_primes;  // they are those of the tower
    std::int32_t total;       // nodes of both
    std::int32_t bound;       // the degree of the gcd is thought to be at most this
    std::int32_t probed;      // an image told the bound
    std::int32_t limit;  // the degree of the gcd is at most this, by images at scattered points; 0: not asked
    std::int32_t tried;  // a trial said that b, as it stands, does not divide a
    std::int32_t removed;   // a factor of positive degree was taken out
    std::int32_t tests;     // evaluation tests to be made
    std::int32_t modular;   // the choice: images
    std::int32_t balanced;  // neither operand is 20 times the other
    std::int32_t weighed;   // nodes are those of expon_node_total
    pending_gcd pending;    // a gcd that the stash waits for
    gcd_exit end;
};

// The arguments of polygcd.
struct gcd_call {
    polynode *a, *b, **result;
    std::int32_t exponent_only, test, deep;
    pt *names;
    std::int32_t a_is_ours, b_is_ours, top;
};

inline polynode **part_of(gcd_problem *f, gcd_part k)
{
    return &f->work->parts[k];
}

// Answers before anything is held (driver_trivial.cpp) ---------------------------------------------------

// Answer the call when it is a simple one. Declines (0).
int answer_simple(const gcd_call *c, gcd_exit *end);

// Steps: each returns 1 when the problem is solved, and *result filled -----------------------------------

// driver_shape.cpp
int reset_counters(gcd_problem *f);
int take_powers_out(gcd_problem *f);
int end_small_pair(gcd_problem *f);
int take_stride_out(gcd_problem *f);
int order_operands(gcd_problem *f);
int allow_probe(gcd_problem *f);
int try_quick_division(gcd_problem *f);

// driver_probe.cpp
int revisit_deep(gcd_problem *f);
int probe_modulo_primes(gcd_problem *f);
int solve_over_tower(gcd_problem *f);
int test_images(gcd_problem *f);
int count_tests(gcd_problem *f);
int restart_bound(gcd_problem *f);
int test_coprime(gcd_problem *f);
int answer_degree(gcd_problem *f);

// driver_content.cpp
int take_operands(gcd_problem *f);
int restrict_variables(gcd_problem *f);
int take_contents_out(gcd_problem *f);
int take_general_contents_out(gcd_problem *f);

// driver_choice.cpp
int choose_method(gcd_problem *f);
int try_division(gcd_problem *f);
int try_modular_method(gcd_problem *f);
int look_up(gcd_problem *f);
int try_last_divisions(gcd_problem *f);
int try_multivariate_method(gcd_problem *f);
int ask_more_images(gcd_problem *f);
int run_algorithm_c(gcd_problem *f);

// The report of a stash that more gcds were filled into than it waited for.
inline constexpr char too_many_filled[] = "negative polygcd_stack_depth 1";

// The finish (driver_finish.cpp) -------------------------------------------------------------------------

// The problem is solved: the gcd of the operands as they stand is *core, consumed. Multiply everything back
// that was taken out, and fill *result. Return 1.
int finish(gcd_problem *f, gcd_exit end, polynode **core);

// The same for a gcd that has no core but a number of the exponent asked.
int finish_number(gcd_problem *f, gcd_exit end, std::int32_t v);

// The gcd has the degree of the bound: all that was asked. Return 1.
int finish_degree(gcd_problem *f, gcd_exit end, std::int32_t degree);

// *p with its sign, or its leading number, made right. In place.
void normalise_gcd(polynode **p);

// *result = *fresh, consumed; what *result held is released last.
void put_result(polynode **result, polynode **fresh);

// Operands -----------------------------------------------------------------------------------------------

// The operand is *fresh from now on, consumed.
void set_operand(gcd_operand *op, polynode **fresh);

// The operand is our own from now on: moved when the caller allows it, else copied.
void own_operand(gcd_operand *op);

// Factor c, one level down, consumed, belongs to the gcd.
void add_factor(gcd_problem *f, polynode **c);

// Gcd of single terms, and with single terms -------------------------------------------------------------

// *result = gcd(a, b), where one is a single term. a, b spared; *result filled.
void monomial_1(const polynode *a, const polynode *b, polynode **result);

// b = a times a number; in float mode but for noise.
bool essentially_equal(const polynode *a, const polynode *b);

// An operand reaches the ground field: its outer real variable is at or beyond field_depth.
bool reaches_field(const polynode *p, std::int32_t level);

}  // namespace kelmar

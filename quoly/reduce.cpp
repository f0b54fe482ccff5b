// quoly/reduce.cpp -- cofactors of a gcd, which prove that it is one.
//
// Each of the two divisions fails only when the gcd is wrong. Then a test that it came from is turned off, or
// luck is tried again, and so on for some rounds. The fraction left over when all of them fail is right, if
// not reduced.
#include "quoly/reduce.h"
#include <cstdio>
#include "gcd/float_quotient.h"
#include "gcd/polygcd.h"
#include "poly/div_exact.h"
#include "poly/div_fast.h"
#include "session/report.h"

namespace kelmar {

// Return p / g, or null when g does not divide.
static polynode *quotient_by(polynode *p, polynode *g)
{
    polynode *quotient = nullptr;
    if (is_constant(g)) {
        int exact = 0;
        trial_poly_quot(p, g, &quotient, &exact);
    } else {
        trial_poly_divide(p, g, &quotient, polynames, 0, 0, 0);
        if (!quotient && flotemode) quotient = float_quotient(p, g, polynames);
    }
    return quotient;
}

// Fill both quotients and return 0; or return which of the two divisions, 1 or 2, left something.
static int divide_both(polynode *a, polynode *b, polynode *g, polynode **qa, polynode **qb)
{
    *qa = quotient_by(a, g);
    if (!*qa) return 1;
    *qb = quotient_by(b, g);
    if (*qb) return 0;
    free_poly(qa);
    return 2;
}

// What is done against a wrong gcd that division `which` found out: a test is turned off, or nothing.
static void answer_wrong_gcd(int which, bool retry_only)
{
    const char *text = " *** Warning %d. A  fast probabilistic gcd algorithm is being retried.\n";
    int number = 4 + which;
    if (!retry_only && try_rat) {
        try_rat = 0;
        text = " Warning %d. A fast probabilistic test for exact poly division has been turned off (&_t).\n";
        number = which;
    } else if (!retry_only && rat_yes) {
        rat_yes = 0;
        text = " Warning %d. Another fast probabilistic test for exact poly division has been turned off.\n";
        number = 2 + which;
    }
    if (verbose) std::printf(text, number);
}

// *g = 1 and the quotients are the operands.
static void leave_unreduced(polynode *a, polynode *b, polynode **g, polynode **qa, polynode **qb)
{
    poly_set(1, g);
    *qa = copy_poly(a);
    *qb = copy_poly(b);
}

static void reduce_pair(polynode *a, polynode *b, polynode **g, polynode **qa, polynode **qb, bool retry_only)
{
    for (int round = 0; round < reduce_rounds; ++round) {
        const int failed = divide_both(a, b, *g, qa, qb);
        if (!failed) return;
        if (flotemode) break;  // rounding: no other gcd would do better
        answer_wrong_gcd(failed, retry_only);
        Lpolygcd(&a, &b, g, 1, polynames);
        alg_c_count = 0;
        original_depth = 1;
    }
    leave_unreduced(a, b, g, qa, qb);
}

void reduce(polynode **a, polynode **b, polynode **g, polynode **a_over_g, polynode **b_over_g,
            std::int32_t clear_a, std::int32_t clear_b, std::int32_t keep_a, std::int32_t keep_b)
{
    reduce_pair(*a, *b, g, a_over_g, b_over_g, clear_a || clear_b);
    if (!keep_a) free_poly(a);
    if (!keep_b) free_poly(b);
}

void field_reduce(polynode **a, polynode **b, polynode **g, polynode **a_over_g, polynode **b_over_g,
                  polynode **factor)
{
    *factor = nullptr;
    poly_set(1, factor);
    reduce_pair(*a, *b, g, a_over_g, b_over_g, false);
}

}  // namespace kelmar

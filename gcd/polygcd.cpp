// gcd/polygcd.cpp -- the driver: which method for which problem.
//
// Simple problems are answered at once. The others get a record on the frame, and pass the steps in order
// until one ends them. The last one always does.
#include "gcd/polygcd.h"
#include "gcd/content.h"
#include "gcd/driver.h"
#include "session/report.h"

namespace kelmar {

using gcd_step = int (*)(gcd_problem *);

static const gcd_step steps[] = {
    reset_counters,             // a problem of its own: counters start anew
    take_powers_out,            // powers of the outer variable
    end_small_pair,             // they left something simple
    take_stride_out,            // over words, exponents that are all multiples of some d > 1
    order_operands,             // deg a >= deg b
    allow_probe,                // exact integers: images modulo primes may be asked
    try_quick_division,         // a small b may divide a
    revisit_deep,               // contents in other variables: worth while?
    probe_modulo_primes,        // exact integers, not small: the degree of an image modulo a prime
    solve_over_tower,           // a tower, leading coefficients in the field
    test_images,                // over words: the degrees of images at random points
    take_operands,              // what may be emptied becomes our own
    restrict_variables,         // over words, variables of one operand alone: they get values
    take_contents_out,          // contents in the outer variable
    take_general_contents_out,  // deep: contents in the other variables
    choose_method,              // images or Algorithm C
    try_division,               // exact integers: b may divide a
    try_modular_method,         // exact integers, not small: images modulo many primes
    count_tests,                // tests are allowed: how many
    restart_bound,              // and what they start from
    test_coprime,               // images at fixed points
    answer_degree,              // over words, the degree is all that is asked
    look_up,                    // the stash is in use: the gcd may be known
    try_last_divisions,         // b may divide a after all; images modulo primes, again
    try_multivariate_method,    // over a prime field, several variables: images at points
    ask_more_images,            // before long work: the points asked so far may have been unlucky
    run_algorithm_c,            // the subresultant sequence
};

[[gnu::noinline]] static void solve(const gcd_call *c)
{
    gcd_problem f = {};
    f.work = open_work(__builtin_frame_address(0));
    f.a = {c->a, part_of(&f, part_a), &f.work->loans[0], c->a_is_ours, 0, 0, 0};
    f.b = {c->b, part_of(&f, part_b), &f.work->loans[1], c->b_is_ours, 0, 0, 0};
    f.result = c->result;
    f.names = c->names;
    f.level = c->names->level;
    f.exponent_only = c->exponent_only;
    f.test = c->test;
    f.deep = c->deep;
    f.top = c->top;
    f.stride = 1;
    f.bound = 1;
    for (const gcd_step step : steps) {
        poll_interrupt();
        if (step(&f)) break;
    }
    ++gcd_exits[f.end];
    close_work(f.work);
}

void polygcd(polynode *a, polynode *b, polynode **result, std::int32_t exponent_only, std::int32_t test,
             std::int32_t deep, pt *names, std::int32_t a_is_ours, std::int32_t b_is_ours, std::int32_t top)
{
    check_stack();
    gcd_call c = {a, b, result, exponent_only, test, deep, names, a_is_ours, b_is_ours, top};
    if (c_cntcount > count_limit) c.deep = 0;
    gcd_exit end;
    if (answer_simple(&c, &end)) {
        ++gcd_exits[end];
    } else {
        solve(&c);
    }
}

void clear_gcd_counters()
{
    tripval = default_tripval;
    alg_c_count = 0;
    original_depth = 1;
    c_cntcount = a_cntcount = d_cntcount = g_cntcount = 0;
    c_cntdepth = a_cntdepth = 0;
    g_cutoff = first_g_cutoff;
}

void gcd_on_error()
{
    tripval = default_tripval;
}

void save_gcd_counters(gcd_counters *c)
{
    *c = {alg_c_count,
          original_depth,
          {c_cntcount, a_cntcount, d_cntcount, g_cntcount},
          {c_cntdepth, a_cntdepth},
          g_cutoff};
}

void restore_gcd_counters(const gcd_counters *c)
{
    alg_c_count = c->abandoned;
    original_depth = c->depth;
    c_cntcount = c->contents[0];
    a_cntcount = c->contents[1];
    d_cntcount = c->contents[2];
    g_cntcount = c->contents[3];
    c_cntdepth = c->depths[0];
    a_cntdepth = c->depths[1];
    g_cutoff = c->cutoff;
}

void gcd_on_unwind()
{
    if (lookupgcd > 0) {
        init_gcd_stash();
    } else {
        forget_pending_gcds();
    }
}

}  // namespace kelmar

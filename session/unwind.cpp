// session/unwind.cpp -- the only file that jumps.
//
// Before a jump the values that the abandoned evaluators own go back to their free lists, and so does what a
// product had gathered. Operands are never altered in place, so there is nothing to repair. Nothing on the
// frames in between has a destructor.
#include "session/unwind.h"
#include "gcd/polygcd.h"
#include "matrix/pins.h"
#include "numbers/decimal.h"
#include "poly/mul_work.h"
#include "poly/ring_change.h"
#include "poly/variables.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/arr_expr.h"
#include "session/arr_system.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/files.h"
#include "session/func_records.h"
#include "session/levels.h"
#include "session/literal.h"
#include "session/load.h"
#include "session/poly_readin.h"
#include "session/progress.h"
#include "session/report.h"
#include "session/save.h"
#include "session/scanner.h"

namespace kelmar {

// What to forget: on every report, and only when the computation itself is given up.
struct forgetter {
    void (*forget)();
    int only_abandoned;  // 1: not when a new level is pushed on top of the computation
};

static void leave_temporary_ring()
{
    if (using_new_polynames) resume_old_polynames();
}

static void forget_minus_warning()
{
    minus_warning = 0;
}

static const forgetter forgetters[] = {
    {evaluator_on_error, 0}, {forget_warnings, 0}, {leave_temporary_ring, 1}, {leave_given_variables, 0},
    {progress_on_unwind, 1}, {gcd_on_error, 0},    {clear_gcd_counters, 1},   {forget_minus_warning, 1},
};

void set_abandon_point(abandon_point *here)
{
    here->owned_mark = owned_count;
    here->borrowed_mark = borrowed;
    here->round_trip_mark = round_trip;
    here->pending_mark = pending_top;
    here->calls_mark = newest_call;
    here->definitions_mark = func_def_count;
    here->ring_mark = innermost_ring;
    here->modular_mark = mod_is_changed;
    here->values_mark = newest_value;
    here->terms_mark = open_terms;
    here->wish_mark[0] = want_sparse;
    here->wish_mark[1] = wanted_rows;
    here->wish_mark[2] = wanted_cols;
    here->digits_mark = newest_digits;
    here->outer = abandon_to;
    abandon_to = here;
}

void drop_abandon_point(abandon_point *here)
{
    abandon_to = here->outer;
}

void forget_on_error(int status)
{
    for (const forgetter &row : forgetters) {
        if (status >= 0 || !row.only_abandoned) row.forget();
    }
}

void leave_abandoned_rings(bool for_good)
{
    leave_rings_to(for_good || !abandon_to ? nullptr : abandon_to->ring_mark);
    interrupts_held = 0;
}

void release_abandoned()
{
    leave_abandoned_rings(true);
    release_work();
    leave_terms(0);
    release_digits(nullptr);
    gcd_on_unwind();
    loads_on_unwind();
    saves_on_unwind();
    files_on_unwind();
    release_calls(nullptr);
    arrays_on_unwind();
    release_pending(nullptr);
    free_owned(0);
    operands_on_unwind();
    release_pinned();
    abandon_to = nullptr;
#ifdef KELMAR_STORM
    storm_on_unwind();
#endif
}

void jump_to_restart()
{
    release_abandoned();
    siglongjmp(buf9999, 1);
}

void jump_to_exit()
{
    release_abandoned();
    siglongjmp(buf98, 1);
}

// What was read where true integers stand goes on in modular mode.
static void leave_true_integers()
{
    if (mod_is_changed == abandon_to->modular_mark) return;
    mod_is_changed = abandon_to->modular_mark;
    modularmode = 1;
}

void abandon_statement()
{
    leave_abandoned_rings(false);
    leave_true_integers();
    release_calls(abandon_to->calls_mark);
    release_values(abandon_to->values_mark);
    leave_terms(abandon_to->terms_mark);
    release_digits(abandon_to->digits_mark);
    wish_for({abandon_to->wish_mark[0], abandon_to->wish_mark[1], abandon_to->wish_mark[2]});
    release_pending(abandon_to->pending_mark);
    free_owned(abandon_to->owned_mark);
    borrowed = abandon_to->borrowed_mark;
    round_trip = abandon_to->round_trip_mark;
    func_def_count = abandon_to->definitions_mark;
    siglongjmp(abandon_to->buf, 1);
}

}  // namespace kelmar

// session/unwind.cpp -- the only file that jumps.
//
// Before a jump the values that the abandoned evaluators own go back to their free lists, and so does what a
// product had gathered. Operands are never altered in place, so there is nothing to repair. Nothing on the
// frames in between has a destructor.
#include "session/unwind.h"
#include "gcd/polygcd.h"
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
#include "session/load.h"
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

static const forgetter forgetters[] = {
    {evaluator_on_error, 0}, {forget_warnings, 0}, {leave_temporary_ring, 1}, {leave_given_variables, 0},
    {progress_on_unwind, 1}, {gcd_on_error, 0},    {clear_gcd_counters, 1},
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
    here->values_mark = newest_value;
    here->terms_mark = open_terms;
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
    gcd_on_unwind();
    loads_on_unwind();
    saves_on_unwind();
    files_on_unwind();
    release_calls(nullptr);
    arrays_on_unwind();
    release_pending(nullptr);
    free_owned(0);
    operands_on_unwind();
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

void abandon_statement()
{
    leave_abandoned_rings(false);
    release_calls(abandon_to->calls_mark);
    release_values(abandon_to->values_mark);
    leave_terms(abandon_to->terms_mark);
    want_sparse = wanted_rows = wanted_cols = 0;
    release_pending(abandon_to->pending_mark);
    free_owned(abandon_to->owned_mark);
    borrowed = abandon_to->borrowed_mark;
    round_trip = abandon_to->round_trip_mark;
    func_def_count = abandon_to->definitions_mark;
    siglongjmp(abandon_to->buf, 1);
}

}  // namespace kelmar

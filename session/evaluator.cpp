// session/evaluator.cpp -- the state of a statement under evaluation.
#include "session/evaluator.h"
#include "gcd/polygcd.h"
#include "session/arr_access.h"
#include "session/levels.h"
#include "session/names.h"
#include "session/report.h"

namespace kelmar {

void reset_statement()
{
    uninit = 0;
    clear_gcd_counters();
}

void evaluator_on_error()
{
    uninit = 0;
}

void operands_on_unwind()
{
    borrowed = 0;
    bury_doomed();
}

void bury_doomed()
{
    free_doomed_vars();
}

void make_private(operand *v)
{
    if (v->n) return;
    if (v->at.array_time && v->at.moves != array_moves) refresh_entry(v);
    if (v->p && *v->p) {
        quoly_assign(*v->p, &v->n);
    } else {
        quoly_set(0, &v->n);
    }
    v->p = &v->n;
}

void forget_warnings()
{
    warn_cnt = 0;
}

void check_modular(std::int32_t *saved)
{
    *saved = modularmode;
    if (!modularmode) return;
    ++mod_is_changed;
    modularmode = 0;
}

void restore_modular(const std::int32_t *saved)
{
    if (!*saved) return;
    --mod_is_changed;
    modularmode = 1;
}

}  // namespace kelmar

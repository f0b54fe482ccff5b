// session/change_prec.cpp -- the change of the ground ring of a session.
//
// The order of steps matters. Results of statements are released while their ring is live, then the flags
// change, then stored values are converted one by one, over the new ring, each from the view that the old one
// has left. While they are, no interrupt is answered, since values of two rings stand side by side.
#include "session/change_prec.h"
#include "matrix/pins.h"
#include "numbers/convert.h"
#include "numbers/random.h"
#include "poly/div_karat.h"
#include "poly/laurent.h"
#include "poly/mul.h"
#include "quoly/charpoly_data.h"
#include "quoly/normal_form.h"
#include "quoly/ring_change.h"
#include "session/arr_system.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "session/stored_values.h"
#include "storage/low_memory.h"

namespace kelmar {

void reset_cutoffs(std::int32_t v)
{
    for (pt *r = polynames; r; r = r->next) {
        if (r->cut == poly_cutoff) r->cut = v;
    }
    poly_cutoff = v;
}

static constexpr std::int32_t changed_poly_cutoff = 40;
static constexpr std::int32_t exact_div_cutoff = 6;
static constexpr std::int32_t modular_div_cutoff = 25;

// One value ---------------------------------------------------------------------------------------------

static void to_words(quolynode **slot)
{
    quoly_change_num(slot);
    if (!*slot) quoly_set(0, slot);
}

static void from_words(quolynode **slot)
{
    quoly_change_from_mod(*slot);
}

static void to_doubles(quolynode **slot)
{
    quoly_change_to_flote(slot);
}

// Everything --------------------------------------------------------------------------------------------

// How a value, and a polynomial that belongs to a variable, goes over.
struct ring_step {
    void (*value)(quolynode **slot);
    void (*relation)(polynode **p);
};

static void relation_from_words(polynode **p)
{
    poly_change_from_mod(*p);
}

static void relation_to_doubles(polynode **p)
{
    poly_change_to_flote(*p);
}

static const ring_step into_words = {to_words, poly_change_num};
static const ring_step out_of_words = {from_words, relation_from_words};
static const ring_step into_doubles = {to_doubles, relation_to_doubles};

// The polynomials that belong to the variables.
static void change_polydata(void (*change)(polynode **))
{
    for (pt *r = polynames; r; r = r->next) {
        if (r->relation) change(&r->relation);
        if (r->fold_table) change(&r->fold_table);
    }
}

static void change_everything(const ring_step *step)
{
    ++interrupts_held;
    change_polydata(step->relation);
    for_each_stored(step->value);
    for_each_array_entry(step->value);
    --interrupts_held;
}

// The results of statements are not converted.
static void drop_results()
{
    free_quoly(&prevnum);
    free_quoly(&sysnum);
    if (lookupgcd > 0) release_gcd_stash();
}

static void set_results()
{
    quoly_set(1, &prevnum);
    num_assign(prevnum->num, &rand_denom_n);
    quoly_set(0, &prevnum);
}

static void set_cutoffs_of_ring(std::int32_t division)
{
    reset_cutoffs(changed_poly_cutoff);
    div_poly_cutoff = division;
}

// The two ways ------------------------------------------------------------------------------------------

int leave_modular(bool tells)
{
    if (tells) std::fputs(" Changing to rational arithmetic.\n", Output);
    if (changed_in_modmode) {
        error(err_ring_already_changed, token.text);
        return 0;
    }
    drop_results();
    modularmode = lintmode = 0;
    set_cutoffs_of_ring(exact_div_cutoff);
    change_everything(&out_of_words);
    finf = f256 = f2t16 = 0;
    modulus = -1;
    limit_char_arrays = denom_count - 1;
    was_in_rat = 1;
    keep_ring(&session_ring);
    set_results();
    return 1;
}

static void set_session_modulus(std::int32_t m)
{
    if (m == 256 || m == 65536) {
        set_table_field(m);
        alt_form_display = 0;
    } else {
        set_modulus(m);
    }
    if (m < limit_char_arrays) limit_char_arrays = m;
}

static void tell_modulus()
{
    const std::int32_t characteristic = finf ? 2 : modulus;
    std::fprintf(Output, " Now in modular mode. Modulus is %1d,%s", characteristic,
                 mod_is_prime ? " a prime" : " not a prime");
    if (f256) {
        std::fputs("; working over the prime field of 2^8 = 256 elements.\n", Output);
    } else if (f2t16) {
        std::fputs("; working over the prime field of 2^16 = 65536 elements.\n", Output);
    } else {
        std::fputs(".\n", Output);
    }
}

void enter_modular(std::int32_t m, bool tells, bool announces)
{
    if (lintmode) {
        error(err_wrong_ring, token.text);
        return;
    }
    if (tells && announces) std::fputs(" Changing to modular arithmetic.\n", Output);
    if (m < 2 || m > largest_modulus) {
        error(err_bad_modulus, token.text);
        m = 2;
    }
    drop_results();
    set_session_modulus(m);
    modularmode = lintmode = 1;
    set_cutoffs_of_ring(modular_div_cutoff);
    change_everything(&into_words);
    was_in_rat = 0;
    keep_ring(&session_ring);
    if (tells) tell_modulus();
    set_results();
}

void enter_floats()
{
    if (modularmode) leave_modular(false);
    change_everything(&into_doubles);
    change_flote(&rand_denom_n);
    flotemode = lintmode = session_flote = 1;
    keep_ring(&session_ring);
}

// Negative exponents --------------------------------------------------------------------------------------

// The powers of variables that divide the numerator go below it.
static void move_powers_below(quolynode *q)
{
    exponent_shifts shifts;
    if (!clear_bads(&q->top, polynames, &shifts, 0, all_levels)) return;
    if (!q->den) poly_set(1, &q->den);
    eliminate_bads(&q->den, &shifts, -1);
}

static void change_quol(quolynode **slot)
{
    quolynode *q = *slot;
    if (q->is_num) return;
    if (laurent) {
        normal_form(slot, 1);
    } else {
        move_powers_below(q);
    }
}

bool change_laurent(std::int32_t v)
{
    if (values_pinned > 0) {  // a computation waits that has values on its frames
        error(err_not_at_level, token.text);
        return false;
    }
    if (lintmode) {
        error(err_not_in_this_ring, token.text);
        return false;
    }
    laurent = v;
    ++interrupts_held;
    for_each_stored(change_quol);
    for_each_array_entry(change_quol);
    --interrupts_held;
    return true;
}

}  // namespace kelmar

// quoly/ring_change.cpp -- conversions of scalar values.
//
// For a while: the fix records of poly/ring_change.h remember the two polynomials of a value; the quotient in
// lowest terms is made of fresh ones, in their place. A record above those of the links says that what the
// value holds then was made for it.
#include "quoly/ring_change.h"
#include "numbers/convert.h"
#include "numbers/long_gcd.h"
#include "numbers/number.h"
#include "numbers/word_mod.h"
#include "quoly/normal_form.h"
#include "session/report.h"

namespace kelmar {

static const char *const change_goes_on =
    " Change of precedence will continue. Some data may not be reasonably changed.\n";

// Return a fresh record that is 0 among words and among doubles.
static number *zero_without_digits()
{
    number *zero = nullptr;
    newimag(&zero);
    zero->size = zero->word = 0;
    zero->real = 0;
    return zero;
}

// For a while ---------------------------------------------------------------------------------------------

// The value is 0 while the records above those of its polynomials stand.
static void hide_by_zero(quolynode *q)
{
    number *zero = zero_without_digits();
    if (q->den) push_fix_link(&q->den, q->den);
    push_fix_value(q, nullptr, fix_number);
    q->is_num = 1;
    q->is_rat = 0;
    q->num = zero;
}

// The value is the number of its numerator, a constant, and has no denominator.
static void hide_by_number(quolynode *q)
{
    push_fix_value(q, q->top, fix_top);
    q->is_num = 1;
    q->is_rat = 0;
    q->num = q->top->num;
}

// Make the quotient in lowest terms of copies.
static void hide_by_quotient(quolynode **handle)
{
    quolynode *q = *handle;
    push_fix_link(&q->top, q->top);
    push_fix_link(&q->den, q->den);
    polynode *top = copy_poly(q->top);
    polynode *den = copy_poly(q->den);
    push_fix_value(q, nullptr, fix_quotient);
    q->is_rat = 0;
    q->top = top;
    q->den = den;
    lint_check_quoly(handle, laurent);
}

static void change_quotient_to_mod(quolynode **handle)
{
    quolynode *q = *handle;
    poly_change_to_mod(&q->den, 1);
    if (q->den) {
        hide_by_quotient(handle);
        return;
    }
    if (is_constant(q->top)) hide_by_number(q);
    tell_error(err_zero_denominator);
    tell(change_goes_on);
}

void quoly_change_to_mod(quolynode **handle)
{
    quolynode *q = *handle;
    if (!q) return;
    if (q->is_num) {
        change_num(q->num, 0, 1);
        return;
    }
    poly_change_to_mod(&q->top, 1);
    if (!q->top) {
        hide_by_zero(q);
    } else if (q->den) {
        change_quotient_to_mod(handle);
    } else if (is_constant(q->top)) {
        hide_by_number(q);
    }
}

// For good ------------------------------------------------------------------------------------------------

// Release the value, both of whose polynomials hold words, or are null.
static void drop_value(quolynode **q)
{
    free_poly(&(*q)->top);
    free_poly(&(*q)->den);
    give_quoly(q);
}

// The number at the head of p has an inverse.
static bool leads_with_unit(const polynode *p)
{
    while (!p->isnum) p = p->coef;
    return smallgcd(p->num->word, modulus) == 1;
}

// Bring a quotient of words into lowest terms. Modulo a composite there is no gcd to rely on: the denominator
// is made monic, and where it leads with a zero divisor the value is given up.
static void reduce_quotient(quolynode **q)
{
    if (finf || mod_is_prime) {
        lint_check_quoly(q, laurent);
    } else if (leads_with_unit((*q)->den)) {
        lint_normal_form(q, laurent);
    } else {
        tell_error(err_no_inverse);
        tell(change_goes_on);
        drop_value(q);
    }
}

void quoly_change_num(quolynode **handle)
{
    quolynode *q = *handle;
    if (!q) return;
    if (q->is_num) {
        change_num(q->num, 1, 1);
        return;
    }
    q->is_rat = 0;
    const bool quotient = q->den != nullptr;
    poly_change_num(&q->top);
    poly_change_num(&q->den);
    if (!q->top) {
        drop_value(handle);
    } else if (!quotient) {
        polynum_to_quoly(handle);
    } else if (!q->den) {
        drop_value(handle);
        tell("Warning. A zero quoly denominator was found. That quoly was set to 0.\n");
    } else {
        reduce_quotient(handle);
    }
}

// No number of p but 0 vanishes.
static bool stays_whole(const polynode *p)
{
    for (; p; p = p->next) {
        if (!p->isnum) {
            if (!stays_whole(p->coef)) return false;
        } else if (p->num->word != 0 && to_residue(p->num->word) == 0) {
            return false;
        }
    }
    return true;
}

static void words_to_residues(polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            p->num->word = to_residue(p->num->word);
        } else {
            words_to_residues(p->coef);
        }
    }
}

int check_and_mod(quolynode **handle)
{
    quolynode *q = *handle;
    if (q->is_num) {
        const std::int32_t residue = to_residue(q->num->word);
        if (residue == 0 && q->num->word != 0) return 0;
        q->num->word = residue;
        return 1;
    }
    if (!stays_whole(q->top) || !stays_whole(q->den)) return 0;
    words_to_residues(q->top);
    words_to_residues(q->den);
    q->is_rat = 0;
    if (q->den) reduce_quotient(handle);
    return 1;
}

void quoly_change_from_mod(quolynode *q)
{
    if (q->is_num) {
        change_from_mod(q->num);
        return;
    }
    poly_change_from_mod(q->top);
    poly_change_from_mod(q->den);
}

// Doubles -------------------------------------------------------------------------------------------------

void quoly_put_flote(quolynode *q)
{
    if (q->is_num) {
        change_flote(q->num);
        return;
    }
    poly_change_to_flote(q->top);
    poly_change_to_flote(q->den);
}

// unit = the number at the head of den, or 1.
static void take_unit(const polynode *den, number *unit)
{
    unit->size = 0;
    if (!den) {
        special_set(1, unit);
        return;
    }
    while (!den->isnum) den = den->coef;
    spec_num_assign(den->num, unit);
}

void quoly_change_to_flote(quolynode **handle)
{
    quolynode *q = *handle;
    if (q->is_num) {
        change_flote(q->num);
        special_free(q->num);
        return;
    }
    number unit;
    take_unit(q->den, &unit);
    poly_change_ratio(&q->top, &unit);
    poly_change_ratio(&q->den, &unit);
    special_free(&unit);
    q->is_rat = 0;
    if (!q->top) {
        free_poly(&q->den);
        q->top = new_constant(zero_without_digits());
    }
    if (q->den && is_constant(q->den)) free_poly(&q->den);
    polynum_to_quoly(handle);
}

}  // namespace kelmar

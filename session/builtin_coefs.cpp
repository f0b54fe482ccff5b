// session/builtin_coefs.cpp -- built-ins that take coefficients out, or put others in their place.
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/coefs.h"
#include "quoly/divide.h"
#include "quoly/owned.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/expr.h"
#include "session/report.h"

namespace kelmar {

// Coefficients ----------------------------------------------------------------------------------------------

void builtin_coef(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t e = 0, level = 1;
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_paren_coef)) return;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_comma)) return;
    if (!read_whole(stream, cursor, &e, err_bad_coef_exponent)) return;
    if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        if (!read_level(stream, cursor, &level, err_bad_coef_variable)) return;
    }
    close_argument(stream, cursor);
    poly_room room;
    polynode *coef = nullptr;
    const polynode *p = polynomial_of(*n, &room, err_coef_denominator);
    if (!p) return;
    extract_coef(p, level, e, &coef);
    poly_to_quoly(&coef, n);
}

// Read a value and replace it by a part of its polynomial; levels is for lead_coef. Numbers are spared by
// as_poly.
static void leading_part(input_stream **stream, quolynode **n, name_node **cursor, std::int32_t levels)
{
    poly_room room;
    polynode *coef = nullptr;
    if (!standard_read(stream, n, cursor)) return;
    const polynode *p = polynomial_of(*n, &room, err_denominator_refused);
    if (!p || (*n)->is_num) return;
    if (levels > 0) {
        lead_coef(p, levels, &coef);
    } else {
        trailing_coef(p, &coef);
    }
    poly_to_quoly(&coef, n);
}

void builtin_lcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    leading_part(stream, n, cursor, 1);
}

void builtin_fcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    leading_part(stream, n, cursor, field_depth > 1 ? field_depth - 1 : variable_limit + 1);
}

void builtin_ncoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    leading_part(stream, n, cursor, variable_limit + 1);
}

void builtin_tcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    leading_part(stream, n, cursor, 0);
}

void builtin_monic(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    poly_room room;
    polynode *coef = nullptr;
    const polynode *p = polynomial_of(*n, &room, err_denominator_refused);
    if (!p) return;
    quolynode *lead = nullptr;
    own(&lead);
    lead_coef(p, 1, &coef);
    poly_to_quoly(&coef, &lead);
    fast_quoly_quot(n, lead, 0);
    disown();
    free_quoly(&lead);
}

void builtin_lterm(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    polynode *term = nullptr;
    if (!standard_read(stream, n, cursor)) return;
    const polynode *p = polynomial_of(*n, &room, err_denominator_refused);
    if (!p || (*n)->is_num) return;
    leading_term(p, &term);
    poly_to_quoly(&term, n);
}

void builtin_lmon(input_stream **stream, quolynode **n, name_node **cursor)
{
    poly_room room;
    polynode *m = nullptr;
    if (!standard_read(stream, n, cursor)) return;
    const polynode *p = polynomial_of(*n, &room, err_has_denominator);
    if (!p) return;
    leading_monomial(p, &m);
    poly_to_quoly(&m, n);
}

// What is wrong with the operands of Mcoef, as an error number; 0: nothing.
static int mcoef_fault(const quolynode *q, const quolynode *m)
{
    if (!q->is_num && q->den) return err_mcoef_denominator;
    if (q->is_num) return err_mcoef_constant;
    if (m->is_num) return num_isone(m->num) ? 0 : err_need_monomial;
    if (m->den || !monomial(m->top)) return err_bad_monomial;
    return num_isone(leading_coef(m->top)) ? 0 : err_need_monomial;
}

void builtin_mcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    quolynode *m = nullptr;
    own(&m);
    if (read_with_comma(stream, n, &m, cursor)) {
        close_argument(stream, cursor);
        const int fault = mcoef_fault(*n, m);
        if (fault) {
            error(fault, token.text);
        } else {
            poly_room room;
            polynode *coef = nullptr;
            monomial_coef((*n)->top, as_poly(m, &room), &coef);
            poly_to_quoly(&coef, n);
        }
    }
    disown();
    if (m) free_quoly(&m);
}

// Change in place -------------------------------------------------------------------------------------------

// The errors of one of the two.
struct coef_errors {
    int exponent_kind;  // the exponent is no whole number
    int exponent;       // there is no such term
    int value;          // the coefficient has the first variable
    int denominator;    // of the value that is changed
};

static const coef_errors setting_errors = {err_bad_coef_exponent, err_bad_coef_exponent, err_bad_coef_value,
                                           err_set_coef_denominator};
static const coef_errors adding_errors = {err_bad_addend_exponent, err_bad_coef_change, err_bad_coef_addend,
                                          err_change_coef_denominator};

// Why the coefficient of the power e of q cannot be changed by c, as an error number; 0: it can.
static int change_fault(const quolynode *q, std::int32_t e, const quolynode *c, const coef_errors *wrong)
{
    if (!q->is_num && q->den) return wrong->denominator;
    if ((e < 0 && !laurent) || (e != 0 && number_polys == 0)) return wrong->exponent;
    if (c->is_num) return 0;
    if (c->den) return err_has_denominator;
    return is_wrapper(c->top) ? 0 : wrong->value;
}

// *slot gets c as its coefficient of the power e, or added to it. c is consumed.
static void change_coef(quolynode **slot, std::int32_t e, quolynode **c, bool add)
{
    polynode *p = nullptr, *coef = nullptr;
    quoly_consume(slot, &p);
    quoly_consume(c, &coef);
    if (add) {
        polynode *old = nullptr;
        extract_coef(p, 1, e, &old);
        best_poly_add(old, coef, &coef);
    }
    set_first_coef(&p, e, coef);
    poly_to_quoly(&p, slot);
}

// `(^p, k, c)`.
static void read_change(input_stream **stream, quolynode **n, name_node **cursor, bool add)
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    const coef_errors *wrong = add ? &adding_errors : &setting_errors;
    std::int32_t e = 0;
    change c;
    if (begin_change(stream, &c, cursor) && pass_comma(stream, cursor, err_need_comma) &&
        read_whole(stream, cursor, &e, wrong->exponent_kind) && pass_comma(stream, cursor, err_need_comma)) {
        read_argument_value(stream, &c.value, cursor);
        close_argument(stream, cursor);
        quolynode **slot = settled_slot(&c.target);
        const int fault = change_fault(*slot, e, c.value, wrong);
        if (fault) {
            error(fault, token.text);
        } else {
            change_coef(slot, e, &c.value, add);
            close_target(&c.target);
        }
    }
    end_change(&c);
}

void builtin_setcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    read_change(stream, n, cursor, false);
}

void builtin_addcoef(input_stream **stream, quolynode **n, name_node **cursor)
{
    read_change(stream, n, cursor, true);
}

}  // namespace kelmar

// quoly/display.cpp -- the text of a scalar value: a number, or a fraction of polynomials in brackets.
#include "quoly/display.h"
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "numbers/long_div.h"
#include "poly/display.h"

namespace kelmar {

// Polynomials --------------------------------------------------------------------------------------------

// p is written without brackets in a fraction: a single term in at most one variable, without a number before
// it.
static bool poly_small(const polynode *p)
{
    if (is_constant(p)) return true;
    while (!p->isnum && !p->next && p->exp == 0) p = p->coef;
    return !p->next && !p->isnum && is_constant(p->coef) && num_isone(p->coef->num);
}

static void write_part(text_place *t, const polynode *p, bool bracketed)
{
    if (bracketed) {
        std::fputs(uglyprint ? "(" : "( ", t->out);
        t->col += uglyprint ? 1 : 2;
    }
    poly_display(t, p, polynames, 0, 1);
    if (!bracketed || t->cut) return;
    std::fputs(uglyprint ? ")" : " )", t->out);
    t->col += uglyprint ? 1 : 2;
}

// The whole part and the decimals of a fraction of long integers, cut off.
static void write_decimals(std::FILE *out, const quolynode *q, std::int32_t *col)
{
    number whole, rest, decimals;
    whole.size = rest.size = decimals.size = 0;
    calc_disp();
    divide(q->top->num, q->den->num, &whole, &rest);
    std::fputs(";  or  ", out);
    *col += 7;
    if (iszero(&whole) && num_isneg(q->top->num) != num_isneg(q->den->num)) {
        std::putc('-', out);
        ++*col;
    }
    showint(out, &whole, 1, 0, 0, 0, 0, 1, col);
    std::putc('.', out);
    ++*col;
    num_mul(&rest, &disp_cons, &decimals);
    divide(&decimals, q->den->num, &decimals, &rest);
    num_abs(&decimals);
    showint(out, &decimals, 0, 1, 0, 1, 0, 1, col);
    special_free(&whole);
    special_free(&rest);
    special_free(&decimals);
}

// The value is a fraction that is followed by its decimals.
static bool has_decimals(const value_form *form, const quolynode *q)
{
    return form->wrap && form->final && disp_size >= 1 && exact_integers() && !integerflag && q->den &&
           is_constant(q->top) && is_constant(q->den);
}

static void write_polynomials(std::FILE *out, const value_form *form, const quolynode *q, std::int32_t *col)
{
    text_place t;
    begin_text(&t, out, form->wrap, *col);
    if (form->top && form->wrap) {
        std::putc(' ', out);
        ++t.col;
    }
    const bool bracketed = q->den ? !poly_small(q->top) : !form->wrap && !monomial_list;
    write_part(&t, q->top, bracketed);
    if (q->den && !t.cut) {
        std::fputs(uglyprint ? "/" : " / ", out);
        t.col += uglyprint ? 1 : 3;
        write_part(&t, q->den, !poly_small(q->den));
    }
    *col = t.col;
    if (!t.cut && has_decimals(form, q)) write_decimals(out, q, col);
}

// Values -------------------------------------------------------------------------------------------------

static void write_number(std::FILE *out, const value_form *form, const number *n, std::int32_t *col)
{
    std::int32_t code;
    if (form->as_char && num_to_int(n, &code)) {
        std::putc(code & 0xFF, out);
        ++*col;
    } else {
        display(out, form->wrap, 0, n, col, 0);
    }
}

static void end_value(std::FILE *out, const value_form *form)
{
    if (!form->final) return;
    if (!form->wrap && form->terminator) std::fputs(form->terminator, out);
    std::putc('\n', out);
    if (form->extra) std::putc('\n', out);
}

void quoly_display(std::FILE *out, const value_form *form, const quolynode *q, std::int32_t *col)
{
    if (q->is_num) {
        write_number(out, form, q->num, col);
    } else {
        write_polynomials(out, form, q, col);
    }
    end_value(out, form);
}

void quoly_display(std::FILE *out, int wrap, int final, const quolynode *q, std::int32_t *col)
{
    const value_form form = {wrap, final, 0, 0, 0, nullptr};
    quoly_display(out, &form, q, col);
}

}  // namespace kelmar

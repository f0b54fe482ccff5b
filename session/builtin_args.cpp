// session/builtin_args.cpp -- how built-in functions read their arguments.
#include "session/builtin_args.h"
#include <cmath>
#include "matrix/pins.h"
#include "numbers/dispatch.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/report.h"

namespace kelmar {

void bare_word(input_stream **stream, std::int32_t v, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    quoly_set(v, n);
}

bool open_argument(input_stream **stream, name_node **cursor, int number)
{
    scanner(stream, &token, cursor);
    return expect_and_pass('(', number, stream, cursor);
}

void close_argument(input_stream **stream, name_node **cursor)
{
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

bool pass_comma(input_stream **stream, name_node **cursor, int number)
{
    return expect_and_pass(',', number, stream, cursor);
}

void read_argument_value(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (token.text[0] != '^') {
        old_expre(stream, n, cursor);
        return;
    }
    scanner(stream, &token, cursor);
    old_fact(stream, n, cursor);
}

bool standard_read(input_stream **stream, quolynode **n, name_node **cursor)
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return false;
    read_argument_value(stream, n, cursor);
    close_argument(stream, cursor);
    return true;
}

bool read_with_comma(input_stream **stream, quolynode **n, quolynode **second, name_node **cursor)
{
    quoly_set(0, n);
    quoly_set(0, second);
    if (!open_argument(stream, cursor, err_need_open_paren)) return false;
    read_argument_value(stream, n, cursor);
    if (!pass_comma(stream, cursor, err_need_argument_comma)) return false;
    read_argument_value(stream, second, cursor);
    return true;
}

void get_quoly_ptr(input_stream **stream, operand *v, name_node **cursor)
{
    if (token.text[0] == '^') {
        scanner(stream, &token, cursor);
        fact(stream, v, cursor, 0);
        if (!v->p || !*v->p) make_private(v);
        return;
    }
    old_expre(stream, &v->n, cursor);
    v->p = &v->n;
}

quolynode **new_get_quoly_ptr(input_stream **stream, operand *v, name_node **cursor, int number)
{
    if (token.text[0] == '^') scanner(stream, &token, cursor);
    fact(stream, v, cursor, 0);
    if (!v->n && v->p && *v->p) return v->p;
    error(number, token.text);
    return nullptr;
}

quolynode **settled_slot(operand *v)
{
    if (v->at.array_time && v->at.moves != array_moves) refresh_entry(v);
    if (v->p && *v->p) {
        unshare(v->p);
        return v->p;
    }
    v->at.array_time = 0;
    quoly_set(0, &v->n);
    v->p = &v->n;
    return v->p;
}

void close_target(operand *v)
{
    if (!v->at.array_time) return;
    if (v->at.moves != array_moves) refresh_entry(v);
    if (v->at.row) purge_sparse(v->at.row, v->at.col);
}

quolynode **begin_change(input_stream **stream, change *c, name_node **cursor)
{
    *c = {};
    own(&c->target.n);
    own(&c->value);
    borrow();
    return new_get_quoly_ptr(stream, &c->target, cursor, err_need_variable);
}

void end_change(change *c)
{
    give_back();
    disown();
    disown();
    if (c->value) free_quoly(&c->value);
    if (c->target.n) free_quoly(&c->target.n);
}

bool is_finite_number(const quolynode *q)
{
    return q->is_num && (!flotemode || q->num->real - q->num->real == 0.0);
}

// *v = the whole part of a number. Declines (0) where it is out of range.
static int whole_part(const quolynode *q, std::int32_t *v)
{
    if (!is_finite_number(q)) return 0;
    if (num_to_int(q->num, v)) return 1;
    const double real = std::trunc(num_to_double(q->num));
    if (!flotemode || std::fabs(real) > INT32_MAX) return 0;
    *v = static_cast<std::int32_t>(real);
    return 1;
}

int read_whole(input_stream **stream, name_node **cursor, std::int32_t *v, int number)
{
    std::int32_t saved;
    quolynode *value = nullptr;
    own(&value);
    check_modular(&saved);
    old_expre(stream, &value, cursor);
    const int whole = whole_part(value, v);
    restore_modular(&saved);
    disown();
    free_quoly(&value);
    if (whole) return 1;
    *v = 0;
    error(number, token.text);
    return 0;
}

// The level of which q is the variable; 0 when it is none.
static std::int32_t level_of_variable(const quolynode *q)
{
    if (q->is_num || q->den) return 0;
    std::int32_t level = 1;
    const polynode *p = q->top;
    for (; is_wrapper(p); p = p->coef) ++level;
    if (p->isnum || p->exp != 1 || p->next || !is_constant(p->coef)) return 0;
    return num_isone(p->coef->num) ? level : 0;
}

int read_level(input_stream **stream, name_node **cursor, std::int32_t *level, int number)
{
    quolynode *value = nullptr;
    own(&value);
    read_argument_value(stream, &value, cursor);
    int wrong = 0;
    *level = level_of_variable(value);
    if (value->is_num) {
        if (!whole_part(value, level) || *level < 1 || *level > number_polys) wrong = number;
    } else if (*level == 0) {
        wrong = err_need_poly_variable;
    }
    disown();
    free_quoly(&value);
    if (!wrong) return 1;
    *level = 1;
    error(wrong, token.text);
    return 0;
}

polynode *polynomial_of(quolynode *q, poly_room *room, int number)
{
    if (!q->is_num && q->den) {
        error(number, token.text);
        return nullptr;
    }
    return as_poly(q, room);
}

}  // namespace kelmar

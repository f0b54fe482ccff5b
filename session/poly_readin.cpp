// session/poly_readin.cpp -- reading values in the form in which they are displayed.
//
// Terms come in falling order, so each is linked behind the one before it. At any time one list is open at
// each level from that of the polynomial down to that of the last term: a term of the same level goes to the
// end of the innermost, one of a deeper level comes wrapped and opens its own. The polynomial so far always
// hangs, whole, on an announced value, and with it an error releases everything.
#include "session/poly_readin.h"
#include "poly/variables.h"
#include "quoly/divide.h"
#include "quoly/owned.h"
#include "quoly/ring_change.h"
#include "session/evaluator.h"
#include "session/literal.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

// A polynomial while it is read.
struct open_poly {
    quolynode **value;                     // where it hangs, announced
    std::int32_t level;                    // of its outermost list
    std::int32_t inmost;                   // level of the last term's list
    polynode **end[variable_limit + 2];    // by level: where the next term of the open list goes
    std::int32_t exp[variable_limit + 2];  // by level: exponent of the last term of the open list
    polynode **constant;                   // where the term just linked stands, if it is a number; else null
    bool zero;                             // the number 0 was all
};

// A term: coef times the variable of `level` to the power exp; level 0: coef alone.
struct term_read {
    quolynode *coef;  // announced
    std::int32_t level;
    std::int32_t exp;
    bool minus;
    bool bracketed;
};

static bool refuse(int wrong)
{
    error(wrong, token.text);
    return false;
}

// default 0; the warning of a minus sign was given for the value that is read; quoly_readin
static std::int32_t minus_told = 0;

// A minus sign in modular mode may come from data of another ring. One warning a value at the terminal, and
// one a file.
static void warn_of_minus()
{
    const bool due = tt_flag ? !minus_told : minus_warning != 0;
    if (!modularmode || !due) return;
    minus_told = 1;
    minus_warning = 0;
    std::fputs("*** Warning. Negative value seen during poly readin in modular mode.\n", Output);
    std::fputs("    Check your data carefully.\n", Output);
}

// Linking ------------------------------------------------------------------------------------------------

static void open_list(open_poly *p, std::int32_t level, polynode *term)
{
    p->inmost = level;
    p->end[level] = &term->next;
    p->exp[level] = term->exp;
}

// Link the term of that level in; its exponent is in order.
static void link_term(open_poly *p, std::int32_t level, polynode *term)
{
    polynode *whole = term;
    polynode *at[variable_limit + 2];
    at[level] = term;
    for (std::int32_t k = level - 1; k >= p->inmost; --k) at[k] = whole = new_term(0, whole);
    *p->end[p->inmost] = whole;
    for (std::int32_t k = p->inmost; k <= level; ++k) open_list(p, k, at[k]);
    p->constant = nullptr;
}

// The number just linked turns out to be the power 0 in a list of that level: wrap it.
static void lower_constant(open_poly *p, std::int32_t level)
{
    polynode *number = *p->constant;
    *p->constant = nullptr;
    p->end[p->inmost] = p->constant;
    link_term(p, level, number);
}

static bool is_empty(const open_poly *p)
{
    return (*p->value)->top == nullptr;
}

// A term of that level and power may follow. What is free of a variable stands at its power 0, so only a
// negative power of it may come behind, and closes the lists below.
static bool in_order(open_poly *p, std::int32_t level, std::int32_t exp)
{
    if (level < p->level) return false;
    if (is_empty(p)) return true;
    if (level > p->inmost && exp < 0 && p->constant) lower_constant(p, level);
    if (level > p->inmost) return p->exp[p->inmost] > 0;
    if (exp >= p->exp[level]) return false;
    p->inmost = level;
    p->constant = nullptr;
    return true;
}

// Strip the wrappers down to the level below `level` off a coefficient. Declines (0) when it has terms above.
static bool lower_coef(quolynode *coef, std::int32_t from, std::int32_t level)
{
    if (coef->is_num) return true;
    for (; from <= level; ++from) {
        polynode *top = coef->top;
        if (top->isnum) return true;
        if (top->exp != 0 || top->next) return false;
        coef->top = top->coef;
        give_node(top);
    }
    return true;
}

static bool put_number(open_poly *p, term_read *t)
{
    if (!is_empty(p) && p->exp[p->inmost] <= 0) return refuse(err_read_bad_order);
    p->zero = is_empty(p) && quoly_iszero(t->coef);
    if (quoly_iszero(t->coef)) return true;
    polynode *constant = nullptr;
    quoly_consume(&t->coef, &constant);
    p->constant = p->end[p->inmost];
    *p->constant = constant;
    open_list(p, p->inmost, constant);
    return true;
}

static bool put_term(open_poly *p, term_read *t)
{
    if (t->minus) quoly_inplace(&t->coef);
    if (t->level == 0) return put_number(p, t);
    if (!in_order(p, t->level, t->exp)) return refuse(err_read_bad_order);
    if (quoly_iszero(t->coef)) return true;
    if (!lower_coef(t->coef, p->level, t->level)) return refuse(err_read_bad_order);
    polynode *coef = nullptr;
    quoly_consume(&t->coef, &coef);
    link_term(p, t->level, new_term(t->exp, coef));
    return true;
}

// Terms --------------------------------------------------------------------------------------------------

// `(` is in hand; the token behind `)` is left in hand.
static bool read_bracketed(input_stream **stream, quolynode **coef, name_node **cursor, std::int32_t level)
{
    check_stack();
    scanner(stream, &token, cursor);
    if (!poly_readin(stream, coef, cursor, level)) return false;
    if (token.text[0] != ')') return refuse(err_need_close_paren);
    scanner(stream, &token, cursor);
    return true;
}

bool get_the_coef(input_stream **stream, quolynode **coef, name_node **cursor, std::int32_t level)
{
    const char c = token.text[0];
    if (is_digit(c) || c == '.') {
        read_literal(stream, coef, cursor);
        return !*coef || (*coef)->is_num || refuse(err_read_bad_number);  // a fraction is no coefficient
    }
    if (c == '(') return read_bracketed(stream, coef, cursor, level);
    if (!is_lower(c)) return refuse(err_read_bad_number);
    quoly_set(1, coef);
    return true;
}

// ^ is in hand: a positive power; with laurent a negative one too, in brackets or not.
static bool read_power(input_stream **stream, name_node **cursor, std::int32_t *exp)
{
    scanner(stream, &token, cursor);
    const bool bracketed = laurent && token.text[0] == '(';
    if (bracketed) scanner(stream, &token, cursor);
    const bool minus = laurent && token.text[0] == '-';
    if (minus) scanner(stream, &token, cursor);
    std::int64_t v = 0;
    if (!is_digit(token.text[0])) return refuse(err_read_bad_power);
    for (; is_digit(token.text[0]); scanner(stream, &token, cursor)) {
        v = v * 10 + (token.text[0] - '0');
        if (v > INT32_MAX) return refuse(err_read_bad_power);
    }
    if (v == 0) return refuse(err_read_bad_power);
    if (bracketed) {
        if (token.text[0] != ')') return refuse(err_need_close_paren);
        scanner(stream, &token, cursor);
    }
    *exp = static_cast<std::int32_t>(minus ? -v : v);
    return true;
}

// The variable in hand, and its power.
static bool read_variable(input_stream **stream, name_node **cursor, term_read *t)
{
    if (!is_poly_name(token.text, &t->level)) return refuse(err_read_bad_variable);
    t->exp = 1;
    scanner(stream, &token, cursor);
    return token.text[0] != '^' || read_power(stream, cursor, &t->exp);
}

// The term that begins with the token in hand, behind its sign. t->coef is announced. given: its coefficient
// has been read already.
static bool read_term(input_stream **stream, name_node **cursor, term_read *t, std::int32_t level, bool given)
{
    if (!given) {
        t->bracketed = token.text[0] == '(';
        if (!get_the_coef(stream, &t->coef, cursor, level)) return false;
    }
    if (is_lower(token.text[0])) return read_variable(stream, cursor, t);
    return !t->bracketed || refuse(err_read_bad_variable);
}

// Polynomials --------------------------------------------------------------------------------------------

static bool is_sign(const token_rec *t)
{
    return t->text[0] == '+' || t->text[0] == '-';
}

static bool begins_term(const token_rec *t)
{
    const char c = t->text[0];
    return is_digit(c) || is_lower(c) || c == '.' || c == '(';
}

static void begin_poly(open_poly *p, quolynode **value, std::int32_t level)
{
    free_quoly(value);
    newquoly(value);
    (*value)->is_num = 0;
    (*value)->top = nullptr;
    (*value)->den = nullptr;
    (*value)->is_rat = 0;
    p->value = value;
    p->level = p->inmost = level;
    p->end[level] = &(*value)->top;
    p->exp[level] = 0;
    p->constant = nullptr;
    p->zero = false;
}

// Read the sign in front of a term.
static void read_sign(input_stream **stream, name_node **cursor, term_read *t)
{
    if (!is_sign(&token)) return;
    t->minus = token.text[0] == '-';
    if (t->minus) warn_of_minus();
    scanner(stream, &token, cursor);
}

// Read one term and link it in. first: the coefficient of the term, or null when it is to be read.
static bool take_term(open_poly *p, input_stream **stream, name_node **cursor, quolynode **first)
{
    term_read t = {};
    own(&t.coef);
    if (first) {
        t.coef = *first;
        *first = nullptr;
        t.bracketed = true;
    } else {
        read_sign(stream, cursor, &t);
    }
    bool good = read_term(stream, cursor, &t, p->level, first != nullptr);
    if (good && p->zero) good = refuse(err_read_after_zero);
    if (good) good = put_term(p, &t);
    disown();
    free_quoly(&t.coef);
    return good;
}

// Read the terms up to the end of the polynomial. first as above.
static bool read_terms(input_stream **stream, quolynode **value, name_node **cursor, std::int32_t level,
                       quolynode **first)
{
    open_poly p;
    begin_poly(&p, value, level);
    bool good = first || is_sign(&token) || begins_term(&token) || refuse(err_read_bad_term);
    if (good) good = take_term(&p, stream, cursor, first);
    while (good && is_sign(&token)) good = take_term(&p, stream, cursor, nullptr);
    if (good && begins_term(&token)) good = refuse(err_read_bad_end);
    if (!good || !(*value)->top) {
        quoly_set(0, value);
        return good;
    }
    polynum_to_quoly(value);
    return true;
}

bool poly_readin(input_stream **stream, quolynode **q, name_node **cursor, std::int32_t level)
{
    return read_terms(stream, q, cursor, level, nullptr);
}

// Values -------------------------------------------------------------------------------------------------

// A polynomial, in brackets or not. What stands in brackets at the beginning may be all, or the coefficient
// of the first term.
static bool read_part(input_stream **stream, quolynode **q, name_node **cursor)
{
    if (token.text[0] != '(') return poly_readin(stream, q, cursor, 1);
    quolynode *first = nullptr;
    own(&first);
    bool good = read_bracketed(stream, &first, cursor, 1);
    if (good && is_lower(token.text[0])) {
        good = read_terms(stream, q, cursor, 1, &first);
    } else if (good) {
        free_quoly(q);
        *q = first;
        first = nullptr;
    }
    disown();
    free_quoly(&first);
    return good;
}

// A polynomial whose numbers are read as true integers, if so asked, and then brought into the ground ring.
static bool read_integral_part(input_stream **stream, quolynode **q, name_node **cursor)
{
    std::int32_t saved = 0;
    if (nomodpolyreadin) check_modular(&saved);
    const bool good = read_part(stream, q, cursor);
    restore_modular(&saved);
    if (good && saved && *q && !check_and_mod(q)) return refuse(err_vanishing_modulus);
    return good;
}

// / is in hand.
static bool read_denominator(input_stream **stream, quolynode **q, name_node **cursor)
{
    if (quoly_iszero(*q)) return refuse(err_read_zero_numerator);
    quolynode *den = nullptr;
    own(&den);
    scanner(stream, &token, cursor);
    const bool good = read_integral_part(stream, &den, cursor);
    if (good) fast_quoly_quot(q, den, 0);  // who wrote it may have been in another ring
    disown();
    free_quoly(&den);
    return good;
}

void quoly_readin(input_stream **stream, quolynode **q, name_node **cursor)
{
    quolynode *value = nullptr;
    own(&value);
    minus_told = 0;
    bool good = read_integral_part(stream, &value, cursor);
    if (good && token.text[0] == '/') good = read_denominator(stream, &value, cursor);
    disown();
    free_quoly(q);
    *q = value;
    if (!good || !*q) quoly_set(0, q);
}

}  // namespace kelmar

// poly/display.cpp -- writing nested lists.
//
// A list is one loop over its terms: coefficient, variable, power, and between two terms a connector that the
// sign of the next one decides. A negative number carries its own sign: the connector is then nothing, and
// the number is written with a blank behind its minus. Levels are recursion, so brackets and wrappers need no
// state of their own. Who finds that too many lines were written marks the place as cut, and everybody
// returns.
#include "poly/display.h"
#include <cstring>
#include "numbers/compare.h"
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "session/report.h"

namespace kelmar {

// Lines --------------------------------------------------------------------------------------------------

void begin_text(text_place *t, std::FILE *out, int wrap, std::int32_t col)
{
    *t = {out, wrap, col, 1, 0};
    linesuppression = do_line_sup && is_terminal_output(out);
}

static void end_line(text_place *t)
{
    std::putc('\n', t->out);
    t->col = 0;
    ++t->lines;
    line_written(t->out);
}

static void break_line(text_place *t)
{
    if (uglyprint) {
        std::putc(continuation, t->out);
    } else if (t->wrap) {
        std::fprintf(t->out, " %c", continuation);
    }
    end_line(t);
}

void checklength(text_place *t)
{
    if (t->col >= dispcutoff) break_line(t);
}

void adjlength(std::int32_t *col, std::int32_t n)
{
    *col += *col + 8 >= dispcutoff ? 8 : n;
}

// True when the lines are used up. The first who sees it says so.
static bool is_cut(text_place *t)
{
    if (linesuppression && t->lines > shown_lines) {
        std::fputs("   ... more output suppressed ... \n", t->out);
        linesuppression = 0;
        t->cut = 1;
    }
    return t->cut != 0;
}

static void write_char(text_place *t, char c)
{
    std::putc(c, t->out);
    ++t->col;
}

static void write_text(text_place *t, const char *text)
{
    for (; *text; ++text) write_char(t, *text);
}

// Signs --------------------------------------------------------------------------------------------------

// n is written with a minus sign.
static bool shows_minus(const number *n)
{
    if (live_view() == view_modular) return alt_form_display && n->word > half_modulus;
    return num_isneg(n);
}

// n is 1, or is written as -1.
static bool is_shown_unit(const number *n)
{
    int minus;
    return equal_to_pm1(n, &minus) && (!minus || shows_minus(n));
}

// The number of a constant coefficient of the term, or null.
static const number *number_of(const polynode *term)
{
    if (term->isnum) return term->num;
    return is_constant(term->coef) ? term->coef->num : nullptr;
}

bool need_to(const polynode *p)
{
    while (!p->isnum && p->exp == 0) p = p->coef;
    const number *n = number_of(p);
    return !n || !shows_minus(n);
}

// Write what stands between a term and the next one. Returns the spaced_minus of the next one.
static int connect(text_place *t, const polynode *next)
{
    const bool plus = need_to(next);
    if (t->col >= dispcutoff) {
        if (t->wrap && !uglyprint) std::fprintf(t->out, " %c", continuation);
        end_line(t);
    } else if (!uglyprint) {
        write_char(t, ' ');
    }
    if (plus) write_text(t, uglyprint ? "+" : "+ ");
    return !plus;
}

// Terms --------------------------------------------------------------------------------------------------

static void write_number(text_place *t, const number *n, int spaced_minus)
{
    display(t->out, t->wrap, 0, n, &t->col, spaced_minus);
}

static void write_minus(text_place *t, int spaced_minus)
{
    write_text(t, spaced_minus && !uglyprint ? "- " : "-");
}

// The decimals of v, for powers.
static void write_power(text_place *t, std::int32_t v)
{
    char digits[12];
    int k = sizeof digits;
    std::uint32_t rest = v < 0 ? 0u - static_cast<std::uint32_t>(v) : static_cast<std::uint32_t>(v);
    do {
        digits[--k] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest);
    if (v < 0) digits[--k] = '-';
    std::fwrite(digits + k, 1, sizeof digits - static_cast<std::size_t>(k), t->out);
    adjlength(&t->col, static_cast<std::int32_t>(sizeof digits) - k);
}

static void write_variable(text_place *t, const char *name, std::int32_t exp)
{
    std::fputs(name, t->out);
    adjlength(&t->col, static_cast<std::int32_t>(std::strlen(name)));
    if (exp == 1) return;
    write_char(t, '^');
    const bool bracketed = exp < 0 && uglyprint;
    if (bracketed) write_char(t, '(');
    write_power(t, exp);
    if (bracketed) write_char(t, ')');
}

// Write n in front of a variable. True when something stands there that a * may follow.
static bool write_factor(text_place *t, const number *n, int spaced_minus)
{
    if (!is_shown_unit(n)) {
        write_number(t, n, spaced_minus);
        return true;
    }
    if (shows_minus(n)) {
        write_minus(t, spaced_minus);
        checklength(t);
    }
    return false;
}

static void write_bracketed(text_place *t, const polynode *p, const pt *var)
{
    checklength(t);
    write_char(t, '(');
    poly_display(t, p, var, 0, 0);
    if (!t->cut) write_char(t, ')');
}

// Write the term, which is no wrapper; its variable is var.
static void write_term(text_place *t, const polynode *term, const pt *var, int spaced_minus)
{
    const number *n = number_of(term);
    bool star = true;
    if (term->exp == 0) {
        write_number(t, n, spaced_minus);
    } else if (n) {
        star = write_factor(t, n, spaced_minus);
    } else {
        write_bracketed(t, term->coef, var->next);
    }
    if (is_cut(t) || term->exp == 0) return;
    if (star && uglyprint) write_char(t, '*');
    write_variable(t, var->name, term->exp);
}

void poly_display(text_place *t, const polynode *p, const pt *var, int spaced_minus, int top)
{
    if (top && is_constant(p)) {
        write_number(t, p->num, spaced_minus);
        return;
    }
    if (monomial_list && var->next) {
        monomial_disp(t, p, var, spaced_minus);
        return;
    }
    for (; p; p = p->next) {
        if (p->exp == 0 && !p->isnum) {
            if (is_constant(p->coef)) {
                kelmar_error(" Warning! extra 0-exponent node in this polynomial. Trash it.", 1);
            }
            poly_display(t, p->coef, var->next, spaced_minus, 0);
        } else {
            write_term(t, p, var, spaced_minus);
        }
        if (is_cut(t)) return;
        if (p->next) spaced_minus = connect(t, p->next);
    }
}

// Monomials ----------------------------------------------------------------------------------------------

// A power on the way down to a number.
struct factor {
    const char *name;
    std::int32_t exp;
};

struct monomial_list_state {
    text_place *t;
    factor path[variable_limit];  // the factors of the present monomial, outermost first
    int depth;
    bool first;
    int spaced_minus;  // of the first
};

static void break_at(text_place *t, std::int32_t limit)
{
    if (t->col >= limit) break_line(t);
}

static void write_monomial(monomial_list_state *s, const number *n)
{
    text_place *t = s->t;
    const bool minus = shows_minus(n);
    if (!s->first && !minus) write_text(t, uglyprint ? "+" : "+ ");
    const int spaced = s->first ? s->spaced_minus : 1;
    s->first = false;
    bool star = true;
    if (s->depth == 0) {
        write_number(t, n, spaced);
    } else {
        star = write_factor(t, n, spaced);
    }
    for (int k = 0; k < s->depth; ++k, star = true) {
        if (star) write_char(t, '*');
        break_at(t, dispcutoff - 1);
        write_variable(t, s->path[k].name, s->path[k].exp);
    }
    if (!uglyprint) write_char(t, ' ');
    break_at(t, dispcutoff - 4);
}

static void write_level(monomial_list_state *s, const polynode *p, const pt *var)
{
    break_at(s->t, dispcutoff - 10);
    for (; p; p = p->next) {
        const int above = s->depth;
        if (p->exp != 0) s->path[s->depth++] = {var->name, p->exp};
        const number *n = number_of(p);
        if (n) {
            write_monomial(s, n);
        } else {
            write_level(s, p->coef, var->next);
        }
        s->depth = above;
        if (is_cut(s->t)) return;
    }
}

void monomial_disp(text_place *t, const polynode *p, const pt *var, int spaced_minus)
{
    monomial_list_state s;
    s.t = t;
    s.depth = 0;
    s.first = true;
    s.spaced_minus = spaced_minus;
    write_level(&s, p, var);
}

// Debugging ----------------------------------------------------------------------------------------------

static void crude_list(text_place *t, const polynode *p, int indent, const pt *var)
{
    std::fprintf(t->out, "%*s%s: ", 2 * indent, "", var ? var->name : "");
    for (; p; p = p->next) {
        std::fprintf(t->out, "%li ", static_cast<long>(p->exp));
        if (p->isnum) {
            std::putc('*', t->out);
            write_number(t, p->num, 0);
            std::fputs(indent > 0 ? " ** " : " ", t->out);
        } else {
            end_line(t);
            crude_list(t, p->coef, indent + 1, var ? var->next : nullptr);
        }
    }
    if (t->col > 0) end_line(t);
}

void crude_poly_disp(std::FILE *out, int wrap, const polynode *p, int indent, const pt *var)
{
    const std::int32_t saved = uglyprint;
    text_place t;
    begin_text(&t, out, wrap, 0);
    uglyprint = 1;
    crude_list(&t, p, indent, var);
    uglyprint = saved;
}

}  // namespace kelmar

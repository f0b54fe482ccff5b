// session/plain_run.cpp -- stored expressions of plain numbers.
//
// The descent of the evaluators over again, on doubles or words that are returned in registers. A token's
// form is told once, when a walk first meets its list, and literals get their value then; what remains for
// each round is a switch on one byte. Each function declines (false) at what it does not know. The walk
// alters nothing, so the evaluators can start anew where it started.
#include "session/plain_run.h"
#include "matrix/pins.h"
#include "numbers/dispatch.h"
#include "session/evaluator.h"
#include "session/names.h"
#include "session/pset.h"
#include "session/report.h"
#include "session/trace.h"

namespace kelmar {

static constexpr int deepest_brackets = 100;  // brackets and signs inside each other; beyond: the evaluators
static constexpr int exact_digits = 15;       // decimal digits that a double holds exactly

// Forms of tokens ---------------------------------------------------------------------------------------

// *digits = the number of digits from *at, which moves behind them. Returns their value.
static double walk_digits(const name_node **at, int *digits)
{
    double value = 0.0;
    for (*digits = 0; is_digit((*at)->text[0]); *at = (*at)->next) {
        value = value * 10.0 + ((*at)->text[0] - '0');
        ++*digits;
    }
    return value;
}

// True for e and e1, e25, which make a power of ten of what stands in front.
static bool may_scale(const char *text)
{
    if (text[0] != 'e') return false;
    while (is_digit(*++text)) continue;
    return *text == 0;
}

// The form of the literal that begins with the token, which gets its value.
static token_form tell_literal(name_node *t)
{
    const name_node *at = t;
    int whole_digits;
    int decimals = 0;
    double value = walk_digits(&at, &whole_digits);
    const bool point = at->text[0] == '.';
    if (point) {
        at = at->next;
        const double fraction = walk_digits(&at, &decimals);
        double scale = 1.0;
        for (int i = 0; i < decimals && i < exact_digits; ++i) scale *= 10.0;
        value += fraction / scale;
        if (decimals == 0) return form_general;
    }
    if (whole_digits > exact_digits || decimals > exact_digits || may_scale(at->text)) return form_general;
    t->value = value;
    t->ptr = const_cast<name_node *>(at);
    return point ? form_decimal : form_literal;
}

static token_form tell_form(name_node *t)
{
    const char c = t->text[0];
    if (is_digit(c) || c == '.') return tell_literal(t);
    if (is_lower(c)) {
        if (std::strcmp(t->text, "or") == 0 || std::strcmp(t->text, "and") == 0) return form_stop;
        return t->index < 0 ? form_general : form_name;
    }
    if (is_upper(c)) return form_general;
    switch (c) {
    case '(': return form_open;
    case '+': return form_plus;
    case '-': return form_minus;
    case '*': return form_times;
    case '/':
    case '\\':
    case '|': return form_divide;
    case '[':
    case '^':
    case '!':
    case '#':
    case '"': return form_general;
    default: return form_stop;
    }
}

// Tell the forms from the token to the end of its list, and whether any of them is for the evaluators only.
[[gnu::noinline]] static void tell_forms(name_node *list)
{
    for (name_node *t = list; t; t = t->next) {
        t->form = tell_form(t);
        if (t->form == form_general) list->evaluated = 1;
    }
}

static inline void look_at(name_node *t)
{
    if (__builtin_expect(t->form == form_untold, 0)) tell_forms(t);
}

// Numbers -------------------------------------------------------------------------------------------------

// *v = the plain number. Words: it must be one.
static inline bool number_of(const quolynode *q, double *v)
{
    if (!q || !q->is_num) return false;
    *v = q->num->real;
    return true;
}

static inline bool number_of(const quolynode *q, std::int32_t *v)
{
    double real;
    if (!number_of(q, &real) || !(real > -2147483648.0 && real < 2147483648.0)) return false;
    *v = static_cast<std::int32_t>(real);
    return *v == real;
}

static inline bool literal_of(const name_node *t, double *v)
{
    *v = t->value;
    return true;
}

static inline bool literal_of(const name_node *t, std::int32_t *v)
{
    if (t->form == form_decimal || t->value > INT32_MAX) return false;
    *v = static_cast<std::int32_t>(t->value);
    return true;
}

static inline double sum(double a, double b)
{
    return a + b;
}
static inline double difference(double a, double b)
{
    return a - b;
}
static inline double product(double a, double b)
{
    return a * b;
}
static inline double negative(double a)
{
    return 0.0 - a;  // not -a: that would make -0.0
}

// Words wrap.
static inline std::int32_t wrap(std::int64_t v)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
}
static inline std::int32_t sum(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} + b);
}
static inline std::int32_t difference(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} - b);
}
static inline std::int32_t product(std::int32_t a, std::int32_t b)
{
    return wrap(std::int64_t{a} * b);
}
static inline std::int32_t negative(std::int32_t a)
{
    return wrap(-std::int64_t{a});
}

// *a = *a op b, for the operators / \ |.
static inline bool divide_by(double *a, double b, char op)
{
    if (b == 0.0) return false;
    *a = op == '/' ? *a / b : float_whole(*a, b, op);
    return true;
}

static inline bool divide_by(std::int32_t *a, std::int32_t b, char op)
{
    if (b == 0) return false;
    const std::int64_t rest = std::int64_t{*a} % b;
    if (op != '|') {
        *a = wrap(std::int64_t{*a} / b);
    } else {
        *a = wrap(rest < 0 && pos_mod ? rest + (b < 0 ? -std::int64_t{b} : b) : rest);
    }
    return true;
}

// Expressions ---------------------------------------------------------------------------------------------

// What a walk returns, in registers: the value, and the token behind it; null when the walk declines.
template <class V> struct walked {
    const name_node *at;
    V v;
};

template <class V> static walked<V> walk_sum(const name_node *t, int depth);

template <class V> static inline walked<V> walk_factor(const name_node *t, int depth);

// A sign, or a sum in brackets.
template <class V> [[gnu::noinline]] static walked<V> walk_nested(const name_node *t, int depth)
{
    const walked<V> nothing = {nullptr, 0};
    if (depth >= deepest_brackets) return nothing;
    if (t->form == form_open) {
        const walked<V> inner = walk_sum<V>(t->next, depth + 1);
        if (!inner.at || inner.at->text[0] != ')') return nothing;
        return {inner.at->next, inner.v};
    }
    const walked<V> factor = walk_factor<V>(t->next, depth + 1);
    if (!factor.at || factor.at->form == form_general) return nothing;
    return {factor.at, negative(factor.v)};
}

template <class V> [[gnu::always_inline]] static inline walked<V> walk_factor(const name_node *t, int depth)
{
    walked<V> result = {nullptr, 0};
    if (__builtin_expect(t->form == form_name, 1)) {
        quolynode **const slot = stored_slot(t);
        if (slot && number_of(*slot, &result.v)) result.at = t->next;
    } else if (t->form == form_literal || t->form == form_decimal) {
        if (literal_of(t, &result.v)) result.at = static_cast<const name_node *>(t->ptr);
    } else if (t->form == form_open || t->form == form_minus) {
        return walk_nested<V>(t, depth);
    }
    return result;
}

template <class V> static inline walked<V> walk_term(const name_node *t, int depth)
{
    V term = 0;
    char op = 0;  // what joins the next factor to the term; 0: it is the first
    for (;;) {
        const walked<V> factor = walk_factor<V>(t, depth);
        if (!factor.at) return factor;
        if (op == 0) {
            term = factor.v;
        } else if (op == '*') {
            term = product(term, factor.v);
        } else if (!divide_by(&term, factor.v, op)) {
            return {nullptr, 0};
        }
        t = factor.at;
        if (t->form < form_times) return {t, term};
        if (t->form == form_general) return {nullptr, 0};
        op = '*';  // also of two factors side by side
        if (t->form > form_divide) continue;
        op = t->text[0];
        t = t->next;
    }
}

template <class V> static walked<V> walk_sum(const name_node *t, int depth)
{
    V total = 0;
    token_form sign = form_untold;  // of the next term; untold: it is the first
    for (;;) {
        const walked<V> term = walk_term<V>(t, depth);
        if (!term.at) return term;
        if (sign == form_untold) {
            total = term.v;
        } else {
            total = sign == form_minus ? difference(total, term.v) : sum(total, term.v);
        }
        sign = term.at->form;
        if (sign != form_plus && sign != form_minus) return {term.at, total};
        t = term.at->next;
    }
}

// Comparisons -----------------------------------------------------------------------------------------------

static constexpr char less_equal = '\xB2';
static constexpr char greater_equal = '\xB3';
static constexpr char not_equal = '\xAD';

// *sign = the sign at the token, of one or two tokens. Returns the token behind it.
static const name_node *walk_sign(const name_node *t, char *sign)
{
    *sign = t->text[0];
    t = t->next;
    const char second = t->text[0];
    if (second != '=' && second != '>') return t;
    char both = 0;
    if (*sign == '<') both = second == '=' ? less_equal : not_equal;
    if (*sign == '>' && second == '=') both = greater_equal;
    if (!both) return t;
    *sign = both;
    return t->next;
}

template <class V> static inline int compare(V a, V b, char sign)
{
    switch (sign) {
    case '<': return a < b;
    case '>': return a > b;
    case '=': return a == b;
    case less_equal: return a <= b;
    case greater_equal: return a >= b;
    default: return a != b;
    }
}

static inline bool is_end(const name_node *t)
{
    return t->text[0] == endlist[0];
}

// Returns the token behind the comparison; null when the walk declines.
template <class V> static const name_node *walk_comparison(const name_node *t, int *result)
{
    const walked<V> left = walk_sum<V>(t, 0);
    if (!left.at) return nullptr;
    const char c = left.at->text[0];
    if (!in_set(cond_set, c)) {
        *result = left.v == 1;
        return is_end(left.at) || c == ']' || is_lower(c) ? left.at : nullptr;
    }
    char sign;
    const walked<V> right = walk_sum<V>(walk_sign(left.at, &sign), 0);
    *result = compare(left.v, right.v, sign);
    return right.at;
}

// Statements ------------------------------------------------------------------------------------------------

static inline void put_number(double v, quolynode **n)
{
    number_result(n)->real = v;
}

// The new value behind :+ or :- , whose sign the token is: what is added is one factor, 1 when there is none.
template <class V> static walked<V> walk_increment(const name_node *t, const quolynode *target)
{
    const walked<V> nothing = {nullptr, 0};
    walked<V> amount = {t->next, 1};
    V old;
    if ((t->form != form_plus && t->form != form_minus) || !number_of(target, &old)) return nothing;
    if (!is_end(t->next)) {
        const char c = t->next->text[0];
        if (!is_digit(c) && !is_lower(c) && c != '(') return nothing;
        amount = walk_factor<V>(t->next, 0);
    }
    return {amount.at, sum(old, t->form == form_minus ? negative(amount.v) : amount.v)};
}

static inline void put_in_hand(const name_node *t)
{
    copy_token(&token, t);
    currentchar = t->next;
}

// Run an assignment, or take the value of a sum.
template <class V> static inline int run_statement(name_node *list, quolynode **n)
{
    quolynode **target = nullptr;
    bool shown = true;
    walked<V> value;
    if (list->form == form_name && list->next->text[0] == ':') {
        const name_node *const sign = list->next->next;
        target = stored_slot(list);
        if (!target || !(*target)->is_num || (*target)->den) return 0;
        shown = sign->text[0] != '=' && !integerflag;
        value = sign->text[0] == '=' ? walk_sum<V>(sign->next, 0) : walk_increment<V>(sign, *target);
    } else {
        value = walk_sum<V>(list, 0);
    }
    if (!value.at || !is_end(value.at)) return 0;
    if (target) (*target)->num->real = value.v;
    put_number(shown ? value.v : 0, n);
    startexpr = list;
    uninit = 0;
    put_in_hand(value.at);
    return 1;
}

// A waiting interrupt is answered by the evaluators, and what is pinned is theirs to set aside.
static inline bool may_run()
{
    return flotemode && !interrupt_flag && !values_pinned;
}

int run_plain_statement(name_node *list, quolynode **n)
{
    if (!may_run()) return 0;
    look_at(list);
    if (list->evaluated) return 0;
    if (!integerflag) return run_statement<double>(list, n);
    return !modularmode && run_statement<std::int32_t>(list, n);
}

// The comparison in the live kind of numbers. Returns the token behind it; null when the walk declines.
static inline const name_node *walk_condition(const name_node *t, int *result)
{
    if (!integerflag) return walk_comparison<double>(t, result);
    return modularmode ? nullptr : walk_comparison<std::int32_t>(t, result);
}

int plain_header(name_node *header, bool *holds)
{
    int result;
    if (!may_run()) return 0;
    look_at(header);
    if (header->evaluated) return 0;
    const name_node *const end = walk_condition(header, &result);
    if (!end || !is_end(end)) return 0;
    startexpr = header;
    put_in_hand(end);
    *holds = result != 0;
    return 1;
}

// Inside expressions ----------------------------------------------------------------------------------------

// The token in hand is the one at the cursor, in a list that can be walked.
static inline bool may_walk(name_node *t)
{
    if (!t || !may_run() || std::memcmp(t->text, token.text, sizeof token.text) != 0) return false;
    look_at(t);
    return true;
}

static inline void go_on_at(const name_node *t, name_node **cursor)
{
    *cursor = const_cast<name_node *>(t);
    put_in_hand(t);
}

int plain_comparison(name_node **cursor, int *result)
{
    if (!may_walk(*cursor)) return 0;
    const name_node *const behind = walk_condition(*cursor, result);
    if (!behind) return 0;
    go_on_at(behind, cursor);
    return 1;
}

int read_plain_sum(name_node **cursor, quolynode **n)
{
    if (!may_walk(*cursor)) return 0;
    const walked<double> value = walk_sum<double>(*cursor, 0);
    if (!value.at) return 0;
    put_number(value.v, n);
    go_on_at(value.at, cursor);
    return 1;
}

}  // namespace kelmar

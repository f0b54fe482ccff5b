// session/conditions.cpp -- conditions.
//
// Three levels of descent, one a connective. A comparison reads its left side without copying what stands in
// storage; two-character signs are fused into the one-byte signs.
#include "session/conditions.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"
#include "quoly/owned.h"
#include "quoly/rational.h"
#include "session/expr.h"
#include "session/func_run.h"
#include "session/int_expr.h"
#include "session/plain_run.h"
#include "session/pset.h"
#include "session/report.h"
#include "session/signs.h"

namespace kelmar {

static bool has_word(const char *word)
{
    return token_is(&token, word);
}

// Comparisons -------------------------------------------------------------------------------------------

// The sign in hand, with a second character fused into it; the token behind it is then in hand.
static char take_sign(input_stream **stream, name_node **cursor)
{
    const char sign = token.text[0];
    scanner(stream, &token, cursor);
    const char both = fused_sign(sign, token.text[0]);
    if (!both) return sign;
    scanner(stream, &token, cursor);
    return both;
}

static int compare_numbers(const number *a, const number *b, char sign)
{
    if (live_view() == view_float) return compare_words(a->real, b->real, sign);
    switch (sign) {
    case '<': return bigger(b, a);
    case '>': return bigger(a, b);
    case '=': return equal(a, b);
    case less_equal: return bigger(b, a) || equal(a, b);
    case greater_equal: return bigger(a, b) || equal(a, b);
    default: return !equal(a, b);
    }
}

static int compare_values(const quolynode *a, const quolynode *b, char sign)
{
    if (a->is_num && b->is_num) return compare_numbers(a->num, b->num, sign);
    if (sign == '=') return quoly_equal(a, b);
    if (sign == not_equal) return !quoly_equal(a, b);
    if ((a->is_num || is_rational(a)) && (b->is_num || is_rational(b))) {
        return compare_words(compare_rats(a, b), 0, sign);
    }
    error(err_not_comparable, token.text);
    return 0;
}

// Read one side into *v, whose n is announced.
static void read_side(input_stream **stream, operand *v, name_node **cursor)
{
    term(stream, v, cursor);
    if (token.text[0] == '+' || token.text[0] == '-') {
        make_private(v);
        half_expre(stream, &v->n, cursor);
        v->p = &v->n;
    }
    if (!v->p || !*v->p) make_private(v);
}

// A condition may go on, or end, with the token in hand.
static bool condition_goes_on()
{
    return token.text[0] == ']' || token.text[0] == endlist[0] || has_word("or") || has_word("and");
}

static int expect_condition_end(int value)
{
    if (condition_goes_on()) return value;
    error(err_bad_condition, token.text);
    return 0;
}

static int evalcond_on_values(input_stream **stream, name_node **cursor)
{
    operand a = {};
    operand b = {};
    int result;
    own(&a.n);
    read_side(stream, &a, cursor);
    if (!in_set(cond_set, token.text[0])) {
        result = expect_condition_end((*a.p)->is_num && num_isone((*a.p)->num));
    } else {
        const char sign = take_sign(stream, cursor);
        own(&b.n);
        borrow();
        read_side(stream, &b, cursor);
        if (!*a.p) make_private(&a);  // the right side took the value over
        result = compare_values(*a.p, *b.p, sign);
        give_back();
        disown();
    }
    disown();
    free_quoly(&a.n);
    free_quoly(&b.n);
    return result;
}

static int evalcond_on_integers(input_stream **stream, name_node **cursor)
{
    std::int32_t a;
    std::int32_t b;
    old_iexpre(stream, &a, cursor);
    if (!in_set(cond_set, token.text[0])) return expect_condition_end(a == 1);
    const char sign = take_sign(stream, cursor);
    old_iexpre(stream, &b, cursor);
    return compare_words(a, b, sign);
}

static int evalcond(input_stream **stream, name_node **cursor)
{
    int result;
    if (plain_comparison(cursor, &result)) return result;
    return integerflag ? evalcond_on_integers(stream, cursor) : evalcond_on_values(stream, cursor);
}

// Connectives -----------------------------------------------------------------------------------------------

static int bool_fact(input_stream **stream, name_node **cursor)
{
    check_stack();
    if (has_word("not")) {
        scanner(stream, &token, cursor);
        return !bool_fact(stream, cursor);
    }
    if (token.text[0] != '[') return evalcond(stream, cursor);
    scanner(stream, &token, cursor);
    const int value = bool_expre(stream, cursor);
    if (!expect_and_pass(']', err_need_bracket_condition, stream, cursor)) return 0;
    return value;
}

static int bool_term(input_stream **stream, name_node **cursor)
{
    int value = bool_fact(stream, cursor);
    while (has_word("and")) {
        scanner(stream, &token, cursor);
        const int right = bool_fact(stream, cursor);
        value &= right;
    }
    return value;
}

int bool_expre(input_stream **stream, name_node **cursor)
{
    int value = bool_term(stream, cursor);
    while (has_word("or")) {
        scanner(stream, &token, cursor);
        const int right = bool_term(stream, cursor);
        value |= right;
    }
    if (token.text[0] == ']' || token.text[0] == endlist[0]) return value;
    error(err_bad_condition_end, token.text);
    return 0;
}

bool header_holds(input_stream **stream, name_node *header)
{
    name_node *at = header;
    bool holds;
    if (plain_header(header, &holds)) return holds;
    begin_list(header);
    const int value = bool_expre(stream, &at);
    if (token.text[0] != endlist[0]) error(err_bad_condition_end, token.text);
    return value != 0;
}

}  // namespace kelmar

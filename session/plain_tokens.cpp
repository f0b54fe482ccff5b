// session/plain_tokens.cpp -- what the walk over stored tokens knows of each.
//
// A literal is the run of digit tokens that the scanner made of it, with a point and more digits, perhaps. It
// gets its value, and the token behind it, at its first token.
#include "session/plain_tokens.h"
#include "session/token_list.h"  // no_builtin

namespace kelmar {

static constexpr int exact_digits = 15;  // decimal digits that a double holds exactly

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

// Words that no definition turns into calls at the head of a statement.
static const char *const statement_words[] = {"Compile", "Integer", "Adjoint", "Altmult", "Altpower"};

// The form of a name with a capital letter.
static token_form tell_upper_name(const name_node *t)
{
    if (t->kind != no_builtin) return form_general;
    for (const char *word : statement_words) {
        if (std::strcmp(t->text, word) == 0) return form_general;
    }
    return form_call;
}

static token_form tell_form(name_node *t)
{
    const char c = t->text[0];
    if (is_digit(c) || c == '.') return tell_literal(t);
    if (is_lower(c)) {
        if (std::strcmp(t->text, "or") == 0 || std::strcmp(t->text, "and") == 0) return form_stop;
        return t->index < 0 ? form_general : form_name;
    }
    if (is_upper(c)) return tell_upper_name(t);
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

void tell_forms(name_node *list)
{
    for (name_node *t = list; t; t = t->next) {
        t->form = tell_form(t);
        if (t->form == form_general) list->evaluated = 1;
    }
}

}  // namespace kelmar

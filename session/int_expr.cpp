// session/int_expr.cpp -- the evaluator on machine integers.
//
// An operand is a word, with the slot it came from when that can be assigned to. Names and digits, which make
// up nearly all of an index, are read here; whatever else can be a factor is left to the evaluator of values,
// and its value must then be a whole number.
#include "session/int_expr.h"
#include "matrix/pins.h"
#include "poly/variables.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/builtins.h"
#include "session/entry_links.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/factor.h"
#include "session/int_builtin.h"
#include "session/literal.h"
#include "session/loops.h"
#include "session/names.h"
#include "session/pset.h"
#include "session/report.h"
#include "session/words.h"

namespace kelmar {

struct word_operand {
    std::int32_t word;
    quolynode **slot;  // where it stands, when it can be assigned to
    entry_ref at;      // of an entry of an array; its slot is null when it is absent
};

// The word is no stored one any more.
static inline void set_computed(word_operand *v)
{
    v->slot = nullptr;
    v->at.array_time = 0;
}

// Factors -----------------------------------------------------------------------------------------------

static void ifact(input_stream **stream, word_operand *v, name_node **cursor);

static void take_value(const quolynode *value, word_operand *v)
{
    if (!value_to_word(value, &v->word)) error(err_not_a_number, token.text);
}

// The token behind the name is in hand. What is about to be assigned to may hold anything.
static void read_stored(word_operand *v, quolynode **slot)
{
    v->slot = slot;
    if (token.text[0] != ':') take_value(*slot, v);
}

// The entry in *v, of which nothing is owned.
static void read_entry(word_operand *w, operand *v)
{
    if (v->n) {  // an error came back
        free_quoly(&v->n);
        return;
    }
    w->at = v->at;
    if (v->p) read_stored(w, v->p);
}

// The variable of that name; one that is followed by ":" is created with the value 0.
static void iretrieve(token_rec *name, word_operand *v)
{
    if (var_node *record = find_var(name)) {
        if (is_array_mark(record->value)) {
            error(err_not_a_number, name->text);
        } else {
            read_stored(v, &record->value);
        }
    } else if (token.text[0] == ':') {
        quolynode *zero = nullptr;
        quoly_set(0, &zero);
        insert_var(name, &zero, &record);
        v->slot = &record->value;
    } else {
        error(err_undefined, name->text);
    }
}

static void iread_name(input_stream **stream, word_operand *v, name_node **cursor)
{
    token_rec name = token;
    next_token(stream, cursor);
    if (token.text[0] != '[') {
        iretrieve(&name, v);
        return;
    }
    operand entry = {};
    retrieve_entry(stream, &name, &entry, cursor);
    read_entry(v, &entry);
}

static void iread_linked(input_stream **stream, word_operand *v, name_node **cursor)
{
    if ((*cursor)->kind != linked_scalar) {
        operand entry = {};
        retrieve_linked_entry(stream, &entry, cursor);
        read_entry(v, &entry);
        return;
    }
    quolynode **slot = static_cast<quolynode **>((*cursor)->ptr);
    next_token(stream, cursor);
    read_stored(v, slot);
}

// The digits in hand. Where numbers are floats a literal that fits no word is an error, elsewhere it wraps.
static void iread_digits(input_stream **stream, word_operand *v, name_node **cursor)
{
    if (modularmode) {
        quolynode *value = nullptr;
        std::int32_t ndigits;
        own(&value);
        quoly_set(0, &value);
        new_readin(stream, value->num, cursor, &ndigits);
        v->word = value->num->word;
        disown();
        free_quoly(&value);
        return;
    }
    std::uint32_t word = 0;
    bool fits = true;
    do {
        const std::uint32_t digit = static_cast<std::uint32_t>(token.text[0] - '0');
        fits = fits && std::uint64_t{word} * 10 + digit <= 0x7FFFFFFF;
        word = word * 10 + digit;
        next_token(stream, cursor);
    } while (is_digit(token.text[0]));
    v->word = static_cast<std::int32_t>(word);
    if (flotemode && !fits) error(err_not_an_integer, token.text);
}

// A factor of any other kind, by the evaluator of values.
static void iread_value(input_stream **stream, word_operand *v, name_node **cursor)
{
    quolynode *value = nullptr;
    own(&value);
    old_fact(stream, &value, cursor);
    disown();
    int wrong = 0;
    if (!value->is_num) {
        wrong = err_not_a_number;
    } else if (!value_to_word(value, &v->word) || (flotemode && value->num->real != v->word)) {
        wrong = err_not_an_integer;
    }
    free_quoly(&value);
    if (wrong) error(wrong, token.text);
}

static void iread_negated(input_stream **stream, word_operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    ifact(stream, v, cursor);
    v->word = negate_word(v->word);
    set_computed(v);
}

static void iread_bracketed(input_stream **stream, word_operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    old_iexpre(stream, &v->word, cursor);
    if (!expect(')', err_need_close_paren)) return;
    next_token(stream, cursor);
}

static void iread_absolute(input_stream **stream, word_operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    ifact(stream, v, cursor);
    set_computed(v);
    if (v->word < 0) v->word = negate_word(v->word);
    if (!expect('|', err_need_close_bar)) return;
    next_token(stream, cursor);
}

// `_` is in hand, and numbers are no floats: a factor outside the ring of the modulus.
static void iread_true_integer(input_stream **stream, word_operand *v, name_node **cursor)
{
    std::int32_t saved;
    next_token(stream, cursor);
    check_modular(&saved);
    ifact(stream, v, cursor);
    restore_modular(&saved);
}

// What has a form of its own on machine integers.
static void iread_upper(input_stream **stream, word_operand *v, name_node **cursor)
{
    if (iread_builtin(stream, &v->word, cursor)) return;
    if (token_is(&token, "Sigma") || token_is(&token, "Prod")) {
        const bool product = token_is(&token, "Prod");
        next_token(stream, cursor);
        isum_mult_up(stream, product, &v->word, cursor);
    } else {
        iread_value(stream, v, cursor);
    }
}

// Postfix forms -----------------------------------------------------------------------------------------

static std::int32_t inumber_power(std::int32_t base, std::int32_t e)
{
    std::int32_t power = 1;
    for (; e > 0; e >>= 1) {
        if (e & 1) power = multiply_words(power, base);
        if (e > 1) base = multiply_words(base, base);
    }
    return power;
}

static void iraise(input_stream **stream, word_operand *v, name_node **cursor)
{
    std::int32_t saved;
    word_operand e = {};
    next_token(stream, cursor);
    check_modular(&saved);
    ifact(stream, &e, cursor);
    restore_modular(&saved);
    if (e.word < 0) {
        error(err_bad_exponent, token.text);
        return;
    }
    v->word = inumber_power(v->word, e.word);
}

static void ifactorial(input_stream **stream, word_operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    if (v->word < 0) {
        error(err_bad_factorial, token.text);
        return;
    }
    std::int32_t product = 1;
    for (std::int32_t i = 2; i <= v->word && product != 0; ++i) {
        product = multiply_words(product, modularmode ? i % modulus : i);
    }
    v->word = product;
}

static void ipostfix(input_stream **stream, word_operand *v, name_node **cursor)
{
    const char c = token.text[0];
    if (c != '^' && c != '!' && c != '"') return;
    set_computed(v);
    if (c == '^') iraise(stream, v, cursor);
    if (c == '!') ifactorial(stream, v, cursor);
    for (; token.text[0] == '"'; scanner(stream, &token, cursor)) v->word = 0;
}

static void read_primary(input_stream **stream, word_operand *v, name_node **cursor)
{
    const char c = token.text[0];
    if (is_lower(c) && !(number_polys > 0 && its_a_polyname(token.text))) {
        iread_name(stream, v, cursor);
    } else if (is_digit(c)) {
        iread_digits(stream, v, cursor);
    } else if (c == '(') {
        iread_bracketed(stream, v, cursor);
    } else if (c == '|') {
        iread_absolute(stream, v, cursor);
    } else if (is_upper(c)) {
        iread_upper(stream, v, cursor);
    } else if (c == '_' && !flotemode) {
        iread_true_integer(stream, v, cursor);
    } else {
        iread_value(stream, v, cursor);
    }
}

// *v = one factor. A linked token has its slot beside it.
static void ifact(input_stream **stream, word_operand *v, name_node **cursor)
{
    check_stack();
    v->word = 0;
    set_computed(v);
    if (token.text[0] == '-') {
        iread_negated(stream, v, cursor);
        return;
    }
    if ((*cursor)->linked) {
        iread_linked(stream, v, cursor);
    } else {
        read_primary(stream, v, cursor);
    }
    ipostfix(stream, v, cursor);
}

// Terms and sums ------------------------------------------------------------------------------------------

static bool iterm_goes_on()
{
    const char c = token.text[0];
    if (is_letter(c)) return !token_is(&token, "or") && !token_is(&token, "and");
    return c == '(' || in_set(iterm_set, c);
}

static void iterm(input_stream **stream, word_operand *v, name_node **cursor)
{
    ifact(stream, v, cursor);
    while (iterm_goes_on()) {
        char op = token.text[0];
        if (op == '(' || is_letter(op)) {
            op = '*';
        } else {
            next_token(stream, cursor);
            if (token.text[0] == '/') {
                error(err_double_slash, token.text);
                return;
            }
        }
        word_operand right;
        ifact(stream, &right, cursor);
        v->word = op == '*' ? multiply_words(v->word, right.word) : divide_words(v->word, right.word, op);
        set_computed(v);
    }
}

// The terms behind the first one.
static void isum_rest(input_stream **stream, word_operand *v, name_node **cursor)
{
    while (token.text[0] == '+' || token.text[0] == '-') {
        const bool minus = token.text[0] == '-';
        word_operand right;
        next_token(stream, cursor);
        iterm(stream, &right, cursor);
        v->word = minus ? subtract_words(v->word, right.word) : add_words(v->word, right.word);
        set_computed(v);
    }
}

void old_iexpre(input_stream **stream, std::int32_t *result, name_node **cursor)
{
    word_operand v;
    iterm(stream, &v, cursor);
    isum_rest(stream, &v, cursor);
    *result = v.word;
}

// Assignment ------------------------------------------------------------------------------------------------

// *amount = what stands behind :+ or :- ; 1 when nothing does.
static void iread_amount(input_stream **stream, std::int32_t *amount, name_node **cursor)
{
    const char c = token.text[0];
    *amount = 1;
    if (!is_digit(c) && !is_lower(c) && c != '(') return;
    word_operand v;
    ifact(stream, &v, cursor);
    *amount = v.word;
}

// Arrays have moved since the entry was read: find its slot again.
static void refresh_slot(word_operand *v)
{
    if (!v->at.array_time || v->at.moves == array_moves) return;
    operand entry = {};
    entry.at = v->at;
    refresh_entry(&entry);
    v->at = entry.at;
    v->slot = entry.p;
}

// Put the word where the operand was read. The word of a stored number is written over.
static void store_word(word_operand *v)
{
    refresh_slot(v);
    if (!v->at.array_time || !v->at.row) {
        if (!v->slot) return;
        unshare(v->slot);
        quoly_set(v->word, v->slot);
        return;
    }
    quolynode *value = nullptr;
    operand entry = {};
    entry.p = v->slot;
    entry.at = v->at;
    quoly_set(v->word, &value);
    store_entry(&entry, &value);
}

// ":" is in hand.
static void iassign(input_stream **stream, word_operand *v, name_node **cursor)
{
    next_token(stream, cursor);
    const char form = token.text[0];
    if (form != '=' && form != '+' && form != '-') {
        error(err_bad_colon, token.text);
        return;
    }
    if (!v->slot && !v->at.array_time) {
        error(err_not_assignable, token.text);
        return;
    }
    std::int32_t right;
    next_token(stream, cursor);
    borrow();
    if (form == '=') {
        old_iexpre(stream, &right, cursor);
        v->word = right;
    } else {
        iread_amount(stream, &right, cursor);
        refresh_slot(v);
        v->word = 0;
        if (v->slot) take_value(*v->slot, v);
        v->word = form == '+' ? add_words(v->word, right) : subtract_words(v->word, right);
    }
    store_word(v);
    give_back();
    v->word = 0;
}

void iexpre(input_stream **stream, std::int32_t *result, name_node **cursor)
{
    word_operand v;
    iterm(stream, &v, cursor);
    if (token.text[0] == ':') {
        iassign(stream, &v, cursor);
    } else {
        isum_rest(stream, &v, cursor);
    }
    *result = v.word;
}

void integer_statement(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t result;
    iexpre(stream, &result, cursor);
    quoly_set(result, n);
}

// Bounds ----------------------------------------------------------------------------------------------------

void obtain_int(input_stream **stream, std::int32_t *value, int wrong, name_node **cursor)
{
    *value = 0;
    if (integerflag) {
        old_iexpre(stream, value, cursor);
        return;
    }
    quolynode *bound = nullptr;
    own(&bound);
    old_expre(stream, &bound, cursor);
    disown();
    const int bad = value_to_count(bound, wrong, value);
    free_quoly(&bound);
    if (bad) error(bad, token.text);
}

}  // namespace kelmar

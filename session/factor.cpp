// session/factor.cpp -- factors.
//
// The first character of the token tells the kind of factor, through a table of readers. A reader leaves the
// value in the operand and the token behind it in hand; postfix forms come after. A reader that has read its
// postfix forms already, because its operand was a whole factor, says so.
#include "session/factor.h"
#include <cmath>
#include "matrix/pins.h"
#include "poly/variables.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_system.h"
#include "session/arr_target.h"
#include "session/builtins.h"
#include "session/entry_links.h"
#include "session/expr.h"
#include "session/func_run.h"
#include "session/literal.h"
#include "session/names.h"
#include "session/output.h"
#include "session/postfix.h"
#include "session/private_value.h"
#include "session/report.h"
#include "session/statement.h"
#include "session/token_list.h"

namespace kelmar {

// Names -------------------------------------------------------------------------------------------------

static void use_computed(operand *v)
{
    v->p = &v->n;
}

// A variable of that name was not found.
static void read_unknown_name(token_rec *name, operand *v)
{
    if (token.text[0] == ':') {
        quolynode *zero = nullptr;
        var_node *record;
        quoly_set(0, &zero);
        insert_var(name, &zero, &record);
        v->p = &record->value;
        return;
    }
    quoly_set(0, &v->n);
    use_computed(v);
    if (token_is(name, "quit")) {
        std::fputs(" The quit command is &q.\n", Output);
    } else {
        error(err_undefined, name->text);
    }
}

// The variable of the polynomials whose name is in hand.
static void read_poly_variable(input_stream **stream, operand *v, name_node **cursor)
{
    std::int32_t level = 0;
    is_poly_name(token.text, &level);
    scanner(stream, &token, cursor);
    quoly_variable(level, &v->n);
    use_computed(v);
}

// The name is that of the stored token `at`, and the token behind it is in hand. True when it is a variable
// that has a value: v->p is then its slot.
static inline bool find_stored(const name_node *at, operand *v)
{
    if (at->index < 0 || token.text[0] == '[') return false;
    var_node *variable = stored_var(at);
    if (!variable || is_array_mark(variable->value)) return false;
    v->p = &variable->value;
    return true;
}

static void read_name(input_stream **stream, operand *v, name_node **cursor)
{
    if (number_polys > 0 && its_a_polyname(token.text)) {
        read_poly_variable(stream, v, cursor);
        return;
    }
    token_rec name;
    if (const name_node *at = *cursor) {
        next_token(stream, cursor);
        if (__builtin_expect(find_stored(at, v), 1)) return;
        std::memcpy(name.text, at->text, sizeof name.text);
        name.index = at->index;
    } else {
        name = token;
        scanner(stream, &token, cursor);
    }
    if (token.text[0] == '[' && !token_is(&name, "if") && !token_is(&name, "while")) {
        retrieve_entry(stream, &name, v, cursor);
        return;
    }
    retrieve(&name, &v->p, &v->n, stream, cursor);
    if (!v->p) read_unknown_name(&name, v);
}

// `*` is in hand: the variable behind it hands its value over, and becomes 1.
static void read_handed_over(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!is_lower(token.text[0])) {
        error(err_bad_star, token.text);
        quoly_set(0, &v->n);
        use_computed(v);
        return;
    }
    if (its_a_polyname(token.text)) error(err_star_poly, token.text);
    read_name(stream, v, cursor);
    if (v->n || !v->p) return;
    unshare(v->p);
    v->n = *v->p;
    *v->p = nullptr;
    quoly_set(1, v->p);
    use_computed(v);
}

static void read_upper_name(input_stream **stream, operand *v, name_node **cursor)
{
    const bool stored_call = *cursor && (*cursor)->kind == no_builtin;
    const int index = stored_call ? -1 : find_built_in(token.text);
    if (stored_call) {
        evaluate_stored(stream, &v->n, cursor);
    } else if (index >= 0) {
        builtin_func(stream, &v->n, cursor, index);
    } else {
        token_rec name = token;
        scanner(stream, &token, cursor);
        evaluate(stream, &name, &v->n, cursor);
    }
    use_computed(v);
}

// Prefix forms ------------------------------------------------------------------------------------------

static void read_number(input_stream **stream, operand *v, name_node **cursor)
{
    read_literal(stream, &v->n, cursor);
    use_computed(v);
}

static void read_negated(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    fact(stream, v, cursor, 0);
    if (v->n) {
        quoly_inplace(&v->n);
    } else {
        quoly_makeneg(*v->p, &v->n);
    }
    use_computed(v);
}

static void read_bracketed(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    old_expre(stream, &v->n, cursor);
    use_computed(v);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

static void read_great_int(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    old_fact(stream, &v->n, cursor);
    use_computed(v);
    quoly_great_int(&v->n);
}

static void read_absolute(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    old_fact(stream, &v->n, cursor);
    use_computed(v);
    if (!expect('|', err_need_close_bar)) return;
    quoly_abs(&v->n);
    scanner(stream, &token, cursor);
}

static void read_character(input_stream **stream, operand *v, name_node **cursor)
{
    int at_line_end;
    quoly_set(0, &v->n);
    use_computed(v);
    dumbscanner(stream, &token, cursor, &at_line_end);
    const int code = static_cast<unsigned char>(token.text[0]);
    if (!at_line_end) dumbscanner(stream, &token, cursor, &at_line_end);
    if (at_line_end || token.text[0] != '\'') {
        error(err_need_close_quote, at_line_end ? ";" : token.text);
        return;
    }
    quoly_set(code, &v->n);
    scanner(stream, &token, cursor);
}

// The maths prefix ----------------------------------------------------------------------------------------

struct maths_function {
    const char *name;
    double (*of)(double);
};

static const maths_function maths_functions[] = {
    {"sqrt", std::sqrt}, {"sin", std::sin},   {"cos", std::cos}, {"ln", std::log},
    {"e", std::exp},     {"atan", std::atan}, {"tan", std::tan}, {"asin", std::asin},
};

static void apply_maths(const token_rec *name, number *n)
{
    for (const maths_function &f : maths_functions) {
        if (!token_is(name, f.name)) continue;
        n->real = f.of(n->real);
        return;
    }
    std::fprintf(Output, "Warning. function %s is not defined.\n", name->text);
}

static void read_maths(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    const token_rec name = token;
    scanner(stream, &token, cursor);
    use_computed(v);
    if (token.text[0] != '(') {
        error(err_need_open_paren, token.text);
        quoly_set(0, &v->n);
        return;
    }
    scanner(stream, &token, cursor);
    old_expre(stream, &v->n, cursor);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
    if (v->n->is_num) {
        apply_maths(&name, v->n->num);
    } else {
        error(err_not_a_number, token.text);
    }
}

// `_` is in hand: in float mode the maths prefix, else a factor of true integers.
static void read_underscore(input_stream **stream, operand *v, name_node **cursor)
{
    if (flotemode) {
        read_maths(stream, v, cursor);
        return;
    }
    std::int32_t saved;
    scanner(stream, &token, cursor);
    check_modular(&saved);
    fact(stream, v, cursor, 0);
    restore_modular(&saved);
}

// System values ---------------------------------------------------------------------------------------------

// `<F`: the control statement of the terminal that ran last runs again; not inside a function.
static void read_system_function(input_stream **stream, operand *v, name_node **cursor)
{
    quoly_set(0, &v->n);
    if (*cursor) {
        error(err_not_in_function, token.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (!sys_func) {
        error(err_no_functions, "<F");
        return;
    }
    rerun_control_statement(stream, &v->n);
}

// `[` is in hand: an entry of the system array. It is no variable, so it cannot be assigned to.
static void read_system_entry(input_stream **stream, operand *v, name_node **cursor)
{
    if (system_array_is_empty()) {
        error(err_system_array_empty, token.text);
        quoly_set(0, &v->n);
        return;
    }
    retrieve_system_entry(stream, v, cursor);
}

// `<` is in hand: an entry of the system array, the system function, or the last value.
static void read_last_value(input_stream **stream, operand *v, name_node **cursor)
{
    scanner(stream, &token, cursor);
    use_computed(v);
    if (token.text[0] == '[') {
        read_system_entry(stream, v, cursor);
    } else if (token_is(&token, "F")) {
        read_system_function(stream, v, cursor);
    } else if (prevnum) {
        quoly_assign(prevnum, &v->n);
    } else {
        quoly_set(0, &v->n);
    }
}

static void read_array_of_arrays(input_stream **stream, operand *v, name_node **cursor)
{
    std::int32_t slot;
    use_computed(v);
    scanner(stream, &token, cursor);
    if (!get_arr_arr(stream, &slot, cursor)) {
        quoly_set(0, &v->n);
    } else if (!array_in_slot(slot)) {
        error(err_empty_slot, token.text);
        quoly_set(0, &v->n);
    } else if (token.text[0] != '[') {
        error(err_need_open_index, token.text);
        quoly_set(0, &v->n);
    } else {
        retrieve_entry_of(stream, array_in_slot(slot), "%", v, cursor);
    }
}

// A statement used as a value.
static void read_statement(input_stream **stream, operand *v, name_node **cursor)
{
    parse(stream, &v->n, cursor);
    if (!v->n) quoly_set(0, &v->n);
    use_computed(v);
}

// Dispatch ------------------------------------------------------------------------------------------------

enum primary_kind { plain_primary, whole_factor };  // whole_factor: its postfix forms are read already

struct primary_row {
    const char *first;  // the characters that begin it
    void (*read)(input_stream **, operand *, name_node **);
    primary_kind kind;
};

static const primary_row primaries[] = {
    {"abcdefghijklmnopqrstuvwxyz", read_name, plain_primary},
    {"0123456789.", read_number, plain_primary},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZ", read_upper_name, plain_primary},
    {"-", read_negated, whole_factor},
    {"(", read_bracketed, plain_primary},
    {"$", read_great_int, whole_factor},
    {"|", read_absolute, plain_primary},
    {"'", read_character, plain_primary},
    {"_", read_underscore, plain_primary},
    {"<", read_last_value, plain_primary},
    {"%", read_array_of_arrays, plain_primary},
    {"!&?@", read_statement, whole_factor},
    {"*", read_handed_over, plain_primary},
};

struct primary_table {
    const primary_row *row[256];
};

static primary_table make_primary_table()
{
    primary_table t = {};
    for (const primary_row &row : primaries) {
        for (const char *c = row.first; *c; ++c) t.row[static_cast<unsigned char>(*c)] = &row;
    }
    return t;
}

static const primary_table by_first = make_primary_table();

// Read a primary. Returns what postfix forms may follow it.
static primary_kind read_primary(input_stream **stream, operand *v, name_node **cursor)
{
    const primary_row *row = by_first.row[static_cast<unsigned char>(token.text[0])];
    if (!row) {
        error(err_bad_factor, token.text);
        quoly_set(0, &v->n);
        use_computed(v);
        return whole_factor;
    }
    row->read(stream, v, cursor);
    return row->kind;
}

static inline void read_linked(input_stream **stream, operand *v, name_node **cursor)
{
    if ((*cursor)->kind != linked_scalar) {
        retrieve_linked_entry(stream, v, cursor);
        return;
    }
    v->p = static_cast<quolynode **>((*cursor)->ptr);
    next_token(stream, cursor);
}

static inline bool begins_postfix(char c)
{
    return c == '^' || c == '!' || c == '#' || c == '"';
}

// With leave_evaluation # is no postfix form.
template <bool leave_evaluation>
static inline void read_fact(input_stream **stream, operand *v, name_node **cursor, int keep_absent)
{
    check_stack();
    free_quoly(&v->n);
    v->at.array_time = 0;
    primary_kind kind = plain_primary;
    if (*cursor && (*cursor)->linked) {
        read_linked(stream, v, cursor);
    } else {
        kind = read_primary(stream, v, cursor);
    }
    const bool left = leave_evaluation && token.text[0] == '#';
    if (kind == plain_primary && begins_postfix(token.text[0]) && !left) postfix(stream, v, cursor);
    if (!v->p && !keep_absent && token.text[0] != ':') make_private(v);
}

void fact(input_stream **stream, operand *v, name_node **cursor, int keep_absent)
{
    read_fact<false>(stream, v, cursor, keep_absent);
}

static void any_factor(input_stream **stream, operand *v, name_node **cursor)
{
    fact(stream, v, cursor, 0);
}

static void factor_before_evaluation(input_stream **stream, operand *v, name_node **cursor)
{
    read_fact<true>(stream, v, cursor, 0);
}

void fact_before_evaluation(input_stream **stream, quolynode **n, name_node **cursor)
{
    read_private<factor_before_evaluation>(stream, n, cursor);
}

void old_fact(input_stream **stream, quolynode **n, name_node **cursor)
{
    read_private<any_factor>(stream, n, cursor);
}

void half_fact(input_stream **stream, quolynode **n, name_node **cursor)
{
    continue_private<postfix>(stream, n, cursor);
}

}  // namespace kelmar

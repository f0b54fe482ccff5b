// session/arr_statement.cpp -- statements about arrays.
#include "session/arr_statement.h"
#include <cstring>
#include "matrix/array_vars.h"
#include "matrix/store.h"
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "poly/variables.h"
#include "session/arr_access.h"
#include "session/arr_assign.h"
#include "session/arr_expr.h"
#include "session/arr_ops.h"
#include "session/arr_shape.h"
#include "session/arr_system.h"
#include "session/arr_target.h"
#include "session/output.h"
#include "session/report.h"
#include "session/seams.h"

namespace kelmar {

// Expressions -------------------------------------------------------------------------------------------

static void expression_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    arr_value v;
    quoly_set(0, result);
    open_value(&v);
    arr_expre(stream, &v, cursor);
    fill_syst_array(&v);
    close_value(&v);
}

// The sum of the entries, or the trace, of the factor in hand.
static void reduce_array(input_stream **stream, quolynode **result, name_node **cursor,
                         void (*reduce)(arr_value *v, quolynode **q))
{
    arr_value v;
    open_value(&v);
    arr_fact(stream, &v, cursor);
    if (is_array(&v)) {
        reduce(&v, result);
    } else {
        error(err_need_array, token.text);
        quoly_set(0, result);
    }
    close_value(&v);
}

void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char kind)
{
    switch (kind) {
    case '[':
    case '~': arr_asstat(stream, result, cursor); break;
    case '"':
    case 'A':
    case 'M': expression_statement(stream, result, cursor); break;
    case 'S': reduce_array(stream, result, cursor, sum_value); break;
    case 'T': reduce_array(stream, result, cursor, trace_value); break;
    default: decline_matrix_algorithm(); break;
    }
}

void builtin_array_sum(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_parse(stream, n, cursor, 'S');
}

void builtin_trace(input_stream **stream, quolynode **n, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_parse(stream, n, cursor, 'T');
}

void new_arretrieve(input_stream **stream, token_rec *name, quolynode ***p, name_node **cursor)
{
    operand v = {};
    retrieve_entry(stream, name, &v, cursor);
    *p = v.n ? nullptr : v.p;
    free_quoly(&v.n);
}

// Cancellation ------------------------------------------------------------------------------------------

int remove_arrays(token_rec *name, bool every)
{
    array *a = find_array_named(name);
    if (!a) return 0;
    do {
        if (!removearray(a)) return 1;
        a = every ? find_array_named(name) : nullptr;
    } while (a);
    return 1;
}

void remove_all_arrays()
{
    for (array *&bucket : arr_store) {
        while (bucket) {
            if (!removearray(bucket)) return;
        }
    }
}

int keep_newest_array(token_rec *name)
{
    array *newest = find_array_named(name);
    if (!newest) return 0;
    for (array *a = newest->arr_next; a;) {
        array *next = a->arr_next;
        const array_name n = array_name_of(name);
        if (std::memcmp(a->arr_name.text, n.text, sizeof n.text) == 0 && !removearray(a)) return 1;
        a = next;
    }
    return 1;
}

// Variables ---------------------------------------------------------------------------------------------

void arrays_on_adjoin()
{
    redo_dense();
    redo_sparses();
    for_each_system_entry(wrap_entry);
    for_each_value_entry(wrap_entry);
}

// default 0; the level that goes; arrays_on_cancel
static std::int32_t going = 0;

static void system_entry_down(quolynode **value)
{
    entry_down(
        value, going,
        "Warning. A quoly denominator in the system array has become 0.  That entry has been set to 1.\n");
}

void arrays_on_cancel(std::int32_t level)
{
    badcnt = 0;
    going = level;
    dense_down(level);
    sparse_down(level);
    for_each_system_entry(system_entry_down);
    for_each_value_entry(system_entry_down);
    if (badcnt <= told_cases) return;
    std::fprintf(Output, "... There were %d more such cases.\n", static_cast<int>(badcnt - told_cases));
}

// Arrays as data ----------------------------------------------------------------------------------------

// The number in entry k of an array of at least that many, or 0.
static std::int32_t whole_entry(const array *a, std::int32_t k)
{
    std::int32_t v = 0;
    const quolynode *q = *store_slot(static_cast<std::int32_t>(a->arr_first) + k);
    if (!q || !q->is_num || !num_to_int(q->num, &v)) {
        error(err_bad_array_content, a->arr_name.text);
        return 0;
    }
    return v;
}

bool get_from_array(token_rec *name, char *text, int room)
{
    array *a = find_array_named(name);
    text[0] = 0;
    if (!a) {
        error(err_no_such_array, name->text);
        return false;
    }
    if (a->arr_sparse) {
        error(err_need_plain_array, name->text);
        return false;
    }
    int count = 0;
    for (; count < a->arr_size && count < room - 1; ++count) {
        const std::int32_t code = whole_entry(a, count);
        if (code <= 0 || code > 255) break;
        text[count] = static_cast<char>(code);
    }
    text[count] = 0;
    return true;
}

// The name in the brackets whose [ is in hand; the token behind ] is in hand then. Null after an error.
static array *read_plain_array(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!is_lower(token.text[0])) {
        error(err_need_array_bracket, token.text);
        return nullptr;
    }
    token_rec name = token;
    scanner(stream, &token, cursor);
    if (token.text[0] != ']') {
        error(err_need_array_bracket, token.text);
        return nullptr;
    }
    scanner(stream, &token, cursor);
    array *a = find_array_named(&name);
    if (!a) {
        error(err_no_such_array, name.text);
    } else if (a->arr_sparse) {
        error(err_need_plain_array, name.text);
        a = nullptr;
    }
    return a;
}

void get_cut_from_array(input_stream **stream, name_node **cursor)
{
    const array *a = read_plain_array(stream, cursor);
    if (!a) return;
    std::int32_t k = 0;
    for (pt *r = polynames; r && k < a->arr_size; r = r->next, ++k) {
        const std::int32_t cut = whole_entry(a, k);
        if (cut > 5) {
            r->cut = cut;
        } else if (k == 0) {
            poly_cutoff = 40;
        }
    }
}

}  // namespace kelmar

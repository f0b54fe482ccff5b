// session/arr_declare.cpp -- declarations, conversions, and the array of arrays.
#include "session/arr_declare.h"
#include "numbers/heap.h"
#include "poly/variables.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_assign.h"
#include "session/arr_expr.h"
#include "session/arr_target.h"
#include "session/expr.h"
#include "session/report.h"

namespace kelmar {

// Declarations ------------------------------------------------------------------------------------------

// Read the name of a new array; `[` is in hand then. Declines (0) after an error.
static int read_new_name(input_stream **stream, token_rec *name, name_node **cursor)
{
    *name = token;
    if (!is_lower(name->text[0])) {
        error(err_bad_array_name, name->text);
        return 0;
    }
    if (its_a_polyname(name->text)) {
        error(err_name_is_poly, name->text);
        return 0;
    }
    scanner(stream, &token, cursor);
    if (token.text[0] == '[') return 1;
    error(err_need_open_bracket, token.text);
    return 0;
}

// Declare one array, its name in hand. Declines (0) after an error.
static int declare_one(input_stream **stream, name_node **cursor)
{
    token_rec name;
    coordinates c;
    array *a;
    if (!read_new_name(stream, &name, cursor) || !evalcoords(stream, &c, ']', cursor)) return 0;
    const std::int32_t cols = c.two ? c.j : 1;
    const array_name n = array_name_of(&name);
    if (token_is(&token, "Sparse")) {
        scanner(stream, &token, cursor);
        sparse_create(&n, c.i, cols, !c.two, true, &a);
    } else {
        insertarr(&n, c.i, cols, !c.two, &a);
    }
    return a != nullptr;
}

void create_array(input_stream **stream, quolynode **result, name_node **cursor)
{
    quoly_set(0, result);
    do {
        scanner(stream, &token, cursor);
        if (!declare_one(stream, cursor)) return;
    } while (token.text[0] == ',');
}

// Conversion ----------------------------------------------------------------------------------------------

void sparse_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    quoly_set(0, result);
    scanner(stream, &token, cursor);
    const bool bracketed = token.text[0] == '(';
    if (bracketed) scanner(stream, &token, cursor);
    if (!expect_and_pass('[', err_need_open_bracket, stream, cursor)) return;
    if (token.text[0] == '<') {
        error(err_system_array_refused, token.text);
        return;
    }
    token_rec name = token;
    scanner(stream, &token, cursor);
    if (!expect(']', err_need_close_bracket)) return;
    array *a = known_array(&name);
    if (!a) return;
    scanner(stream, &token, cursor);
    if (bracketed && !expect_and_pass(')', err_need_close_paren, stream, cursor)) return;
    make_sparse(a);
}

// Arrays of arrays ------------------------------------------------------------------------------------------

// An empty array without a name: what an empty slot becomes.
static void make_stash()
{
    if (!arrstash) arrstash = static_cast<array **>(zeroed_block(arrstash_slots * sizeof(array *)));
}

// Behind %[i] : = is in hand: the whole array of that slot is assigned to.
static void assign_slot(input_stream **stream, std::int32_t slot, name_node **cursor)
{
    arr_value v;
    array_target t = {};
    if (!expect_and_pass('=', err_need_equals, stream, cursor)) return;
    make_stash();
    const wanted_array outer = wish_for({0, 0, 0});
    open_value(&v);
    arr_expre(stream, &v, cursor);
    wish_for(outer);
    t.slot = slot;
    refresh_target(&t);
    assign_whole(&t, &v);
    close_value(&v);
}

void arr_arr_state(input_stream **stream, quolynode **result, name_node **cursor)
{
    std::int32_t slot;
    quoly_set(0, result);
    if (!get_arr_arr(stream, &slot, cursor)) return;
    if (token.text[0] == ':') {
        scanner(stream, &token, cursor);
        assign_slot(stream, slot, cursor);
        return;
    }
    if (!array_in_slot(slot)) {
        error(err_empty_slot, "%");
        return;
    }
    if (!expect('[', err_need_open_index)) return;
    operand v = {};
    own(&v.n);
    retrieve_entry_of(stream, array_in_slot(slot), "%", &v, cursor);
    expre_from(stream, &v, cursor);
    make_private(&v);
    disown();
    free_quoly(result);
    *result = v.n;
}

}  // namespace kelmar

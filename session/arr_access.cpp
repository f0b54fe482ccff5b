// session/arr_access.cpp -- entries of arrays.
//
// An entry is found once, when its coordinates have been read. Statements that run before it is used may move
// arrays; then it is looked up again by the stamp of its array and its position.
#include "session/arr_access.h"
#include <cstring>
#include "matrix/pins.h"
#include "quoly/owned.h"
#include "session/arr_system.h"
#include "session/expr.h"
#include "session/int_expr.h"
#include "session/names.h"
#include "session/report.h"
#include "session/words.h"

namespace kelmar {

// Names -------------------------------------------------------------------------------------------------

array_name array_name_of(token_rec *name)
{
    array_name n;
    if (name->index < 0) name->index = hash(name->text, lower_buckets);
    static_assert(sizeof n.text == sizeof name->text && array_buckets == lower_buckets);
    std::memcpy(n.text, name->text, sizeof n.text);
    n.index = name->index;
    return n;
}

array *find_array_named(token_rec *name)
{
    const array_name n = array_name_of(name);
    return find_array(&n);
}

array *known_array(token_rec *name)
{
    array *a = find_array_named(name);
    if (!a) error(err_no_such_array, name->text);
    return a;
}

// Coordinates -----------------------------------------------------------------------------------------------

int read_index(input_stream **stream, std::int32_t *value, int wrong, name_node **cursor)
{
    *value = 0;
    if (integerflag) {
        old_iexpre(stream, value, cursor);
        return 1;
    }
    std::int32_t saved;
    operand v = {};
    check_modular(&saved);
    own(&v.n);
    sum_of_terms(stream, &v, cursor);
    disown();
    const int bad = v.p ? value_to_count(*v.p, wrong, value) : 0;
    restore_modular(&saved);
    free_quoly(&v.n);
    if (!bad) return 1;
    error(bad, token.text);
    return 0;
}

int evalcoords(input_stream **stream, coordinates *c, char closer, name_node **cursor)
{
    *c = {0, 0, false};
    scanner(stream, &token, cursor);
    if (!read_index(stream, &c->i, err_bad_coordinate, cursor)) return 0;
    if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        if (!read_index(stream, &c->j, err_bad_coordinate, cursor)) return 0;
        c->two = true;
    }
    if (token.text[0] != closer) {
        error(err_bad_index_end, token.text);
        return 0;
    }
    scanner(stream, &token, cursor);
    return 1;
}

// Entries -----------------------------------------------------------------------------------------------

static void make_zero(operand *v)
{
    v->at.array_time = 0;
    quoly_set(0, &v->n);
    v->p = &v->n;
}

int entry_operand(array *a, const coordinates *c, const char *name, operand *v)
{
    entry_place place;
    if (is_lost_parameter(a)) {
        error(err_lost_array_parameter, name);
        make_zero(v);
        return 0;
    }
    if (!new_array_quoly_ptr(a, c->i, c->j, c->two, addresser, name, &place)) {
        make_zero(v);
        return 0;
    }
    v->at.array_time = a->arr_time;
    v->at.moves = array_moves;
    const std::int64_t row = std::int64_t{c->i} - addresser;
    v->at.position = c->two ? row + (std::int64_t{c->j} - addresser) * a->arr_rows : row;
    v->at.row = place.row;
    v->at.col = place.col;
    v->p = place.slot;
    if (!v->p) return 1;
    if (!*v->p) quoly_set(0, v->p);
    return 1;
}

void retrieve_entry_of(input_stream **stream, array *a, const char *name, operand *v, name_node **cursor)
{
    coordinates c;
    const std::int64_t stamp = a->arr_time;
    const int whole = evalcoords(stream, &c, ']', cursor);
    if (whole && a->arr_time != stamp) error(err_no_such_array, name);  // an index has cancelled it
    if (!whole || a->arr_time != stamp) {
        make_zero(v);
    } else {
        entry_operand(a, &c, name, v);
    }
}

void retrieve_entry(input_stream **stream, token_rec *name, operand *v, name_node **cursor)
{
    coordinates c;
    if (!evalcoords(stream, &c, ']', cursor)) {
        make_zero(v);
        return;
    }
    array *a = known_array(name);
    if (!a) {
        make_zero(v);
        return;
    }
    entry_operand(a, &c, name->text, v);
}

// At most 20 warnings a statement, then one that there are more.
static void warn_of_unset_entry()
{
    if (++uninit <= 20) {
        tell("Warning. Uninitialized array element in [<] has been set to 0.\n");
    } else if (uninit == 21) {
        tell(" ....etc...\n");
    }
}

// The value of the entry of [<] at those coordinates; an unset one is set to 0. Null after error 27.
static const quolynode *system_entry(const coordinates *c)
{
    entry_place place;
    const std::int64_t row = std::int64_t{c->i} - addresser;
    const std::int64_t col = c->two ? std::int64_t{c->j} - addresser : 0;
    if (syst.arr_sparse) {
        if (!new_array_quoly_ptr(&syst, c->i, c->j, c->two, addresser, "[<]", &place)) return nullptr;
        return entry_or_zero(place.slot ? *place.slot : nullptr);
    }
    const std::int64_t k = row + col * syst.arr_rows;
    if (row < 0 || col < 0 || (c->two && row >= syst.arr_rows) || k > syst.arr_last) {
        error(err_bad_index, "[<]");
        return nullptr;
    }
    quolynode **slot = &syst_entries[k];
    if (!*slot) {
        warn_of_unset_entry();
        quoly_set(0, slot);
    }
    return *slot;
}

void retrieve_system_entry(input_stream **stream, operand *v, name_node **cursor)
{
    coordinates c;
    if (!evalcoords(stream, &c, ']', cursor)) {
        make_zero(v);
        return;
    }
    if (system_array_is_empty()) {  // an index has emptied it
        make_zero(v);
        return;
    }
    const quolynode *value = system_entry(&c);
    if (value) {
        quoly_assign(value, &v->n);
        v->p = &v->n;
    } else {
        make_zero(v);
    }
}

void refresh_entry(operand *v)
{
    entry_place place;
    if (!find_entry(&v->at, &place)) v->at.position = INT64_MAX;  // it will not be found again either
    v->at.moves = array_moves;
    v->at.row = place.row;
    v->at.col = place.col;
    v->p = place.slot;
    if (v->p && !*v->p) quoly_set(0, v->p);
}

void store_entry(operand *v, quolynode **value)
{
    entry_place place;
    if (v->at.moves == array_moves && v->p) {
        place = {v->p, v->at.row, v->at.col};
    } else if (!find_entry(&v->at, &place)) {
        free_quoly(value);
        return;
    }
    const bool absent = place.row && quoly_iszero(*value);
    if (absent) {
        free_quoly(value);
        colm **link = column_link(place.row, place.col);
        if (place.slot) free_colm(link);
        return;
    }
    if (!place.slot) place.slot = sparse_zero_set(place.row, place.col);
    quolynode *old = *place.slot;
    *place.slot = *value;
    *value = nullptr;
    retire_value(&old);
}

}  // namespace kelmar

// session/arr_target.cpp -- the bracketed denotations of stored arrays.
#include "session/arr_target.h"
#include "numbers/heap.h"
#include "poly/variables.h"
#include "session/arr_access.h"
#include "session/arr_system.h"
#include "session/report.h"

namespace kelmar {

bool begins_target()
{
    return is_lower(token.text[0]) || token.text[0] == '%';
}

// Arrays of arrays ------------------------------------------------------------------------------------------

array *array_in_slot(std::int32_t slot)
{
    return arrstash ? arrstash[slot] : nullptr;
}

// The index up to the `]`, its first token in hand.
static int read_slot(input_stream **stream, std::int32_t *slot, name_node **cursor)
{
    std::int32_t index;
    if (!read_index(stream, &index, err_index_not_number, cursor)) return 0;
    if (!expect(']', err_need_close_index)) return 0;
    const std::int64_t place = std::int64_t{index} - addresser;
    if (place < 0 || place >= arrstash_slots) {
        error(err_bad_slot, token.text);
        return 0;
    }
    *slot = static_cast<std::int32_t>(place);
    scanner(stream, &token, cursor);
    return 1;
}

int get_arr_arr(input_stream **stream, std::int32_t *slot, name_node **cursor)
{
    if (!expect_and_pass('[', err_need_open_index, stream, cursor)) return 0;
    return read_slot(stream, slot, cursor);
}

// Sections --------------------------------------------------------------------------------------------------

// A range of one coordinate, as first and last, from 0.
struct index_range {
    std::int32_t first, last;
};

// Read the range whose first token is in hand, within `count` positions.
static int read_range(input_stream **stream, index_range *r, std::int32_t count, int bad, int reversed,
                      name_node **cursor)
{
    std::int32_t first, last;
    if (!read_index(stream, &first, bad, cursor)) return 0;
    last = first;
    if (token.text[0] == '~') {
        scanner(stream, &token, cursor);
        if (!read_index(stream, &last, bad, cursor)) return 0;
    }
    if (last < first) {
        error(reversed, token.text);
        return 0;
    }
    if (first < addresser || std::int64_t{last} - addresser >= count) {
        error(bad, token.text);
        return 0;
    }
    *r = {first - addresser, last - addresser};
    return 1;
}

// The section behind the name, `[` in hand; the token behind its `]` is in hand then.
static int subarray(input_stream **stream, array_target *t, name_node **cursor)
{
    index_range rows = {0, t->a->arr_rows - 1};
    index_range cols = {0, t->a->arr_cols - 1};
    const std::int64_t stamp = t->a->arr_time;
    scanner(stream, &token, cursor);
    if (token.text[0] != ',' &&
        !read_range(stream, &rows, t->a->arr_rows, err_bad_row_range, err_rows_reversed, cursor)) {
        return 0;
    }
    if (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        if (token.text[0] != ']' &&
            !read_range(stream, &cols, t->a->arr_cols, err_bad_col_range, err_cols_reversed, cursor)) {
            return 0;
        }
        if (!expect(']', err_bad_col_range)) return 0;
    }
    if (token.text[0] != ']' || t->a->arr_time != stamp) {
        error(err_bad_row_range, token.text);
        return 0;
    }
    t->section = 1;
    t->row0 = rows.first;
    t->col0 = cols.first;
    t->rows = rows.last - rows.first + 1;
    t->cols = cols.last - cols.first + 1;
    scanner(stream, &token, cursor);
    return 1;
}

// Denotations -----------------------------------------------------------------------------------------------

// The `]` that closes the denotation is in hand.
static int close_target(input_stream **stream, name_node **cursor)
{
    return expect_and_pass(']', err_need_close_bracket, stream, cursor);
}

int system_target(input_stream **stream, array_target *t, name_node **cursor)
{
    *t = {};
    t->slot = -1;
    t->system = 1;
    t->a = system_array_is_empty() ? nullptr : &syst;
    return close_target(stream, cursor);
}

// `%` is in hand.
static int slot_target(input_stream **stream, array_target *t, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (token.text[0] != '[') {  // [%e]: the bracket of the denotation closes the index too
        if (!read_slot(stream, &t->slot, cursor)) return 0;
        t->a = array_in_slot(t->slot);
        return 1;
    }
    if (!get_arr_arr(stream, &t->slot, cursor)) return 0;
    t->a = array_in_slot(t->slot);
    if (token.text[0] == '[') {
        if (!t->a) {
            error(err_empty_slot, "%");
            return 0;
        }
        if (!subarray(stream, t, cursor)) return 0;
    }
    return close_target(stream, cursor);
}

int left_side(input_stream **stream, array_target *t, name_node **cursor)
{
    *t = {};
    t->slot = -1;
    if (token.text[0] == '%') return slot_target(stream, t, cursor);
    if (its_a_polyname(token.text)) {
        error(err_name_is_poly, token.text);
        return 0;
    }
    t->name = token;
    scanner(stream, &token, cursor);
    t->a = find_array_named(&t->name);
    if (t->a && is_lost_parameter(t->a)) {
        error(err_lost_array_parameter, t->name.text);
        return 0;
    }
    if (token.text[0] == '[') {
        if (!t->a) {
            error(err_no_such_array, t->name.text);
            return 0;
        }
        if (!subarray(stream, t, cursor)) return 0;
    }
    return close_target(stream, cursor);
}

void refresh_target(array_target *t)
{
    if (t->system) {
        t->a = system_array_is_empty() ? nullptr : &syst;
    } else {
        t->a = t->slot >= 0 ? array_in_slot(t->slot) : find_array_named(&t->name);
    }
}

static void no_array(arr_value *v, int n, const char *name)
{
    error(n, name);
    empty_value(v);
    quoly_set(0, &v->n);
}

void refer_to_target(array_target *t, arr_value *v)
{
    if (t->system) {
        copy_syst(v);
    } else if (!t->a) {
        no_array(v, t->slot >= 0 ? err_empty_slot : err_no_such_array, t->slot >= 0 ? "%" : t->name.text);
    } else if (!t->section) {
        refer_to_array(v, t->a);
    } else if (t->a->arr_sparse) {
        no_array(v, err_sparse_section, t->name.text);
    } else {
        refer_to_section(v, t->a, t->row0, t->col0, t->rows, t->cols);
    }
}

}  // namespace kelmar

// session/arr_listing.cpp -- arrays in listings, saves and output lists.
//
// A saved array is its declaration and then its entries: numbers all together, as a literal, which reads
// fast; with an entry that is no number, or that was never set, one a line; sparse ones row by row.
#include "session/arr_listing.h"
#include "matrix/sparse.h"
#include "matrix/store.h"
#include "quoly/display.h"
#include "session/arr_access.h"
#include "session/arr_display.h"
#include "session/arr_expr.h"
#include "session/arr_system.h"
#include "session/listing.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

// Saves -------------------------------------------------------------------------------------------------

// An array as it was when it began to be written: an interrupt on the way may change or delete it, and
// what it held is set aside then.
struct written_array {
    array shape;
    quolynode *const *entries;  // of an ordinary one, borrowed
};

static const quolynode *entry_of(const written_array *w, std::int32_t row, std::int32_t col)
{
    return w->entries[row + std::int64_t{col} * w->shape.arr_rows];
}

// Every entry is set, to a number.
static bool all_set_to_numbers(const written_array *w)
{
    for (std::int64_t k = 0; k < w->shape.arr_size; ++k) {
        if (!w->entries[k] || !w->entries[k]->is_num) return false;
    }
    return true;
}

static void save_value(std::FILE *out, const quolynode *q)
{
    const value_form form = {0, 0, 0, 0, 0, nullptr};
    std::int32_t col = 0;
    quoly_display(out, &form, q, &col);
}

// Rows `from` up to `to`, from 0, as what is assigned to: all of them, or the section.
static void write_target(std::FILE *out, const array *a, std::int32_t from, std::int32_t to)
{
    std::fprintf(out, "[%s", a->arr_name.text);
    if (to - from < a->arr_rows) {
        std::fprintf(out, "[%li~%li", long{from} + addresser, long{to} - 1 + addresser);
        if (!a->arr_onedim)
            std::fprintf(out, ", %li~%li", long{addresser}, long{a->arr_cols} - 1 + addresser);
        std::fputc(']', out);
    }
    std::fputs("] := ", out);
}

// One coordinate: [a] := [( 1,
//          2 )];
static void save_column(std::FILE *out, const written_array *w, std::int32_t from, std::int32_t to)
{
    write_target(out, &w->shape, from, to);
    std::fputs("[( ", out);
    for (std::int32_t row = from; row < to; ++row) {
        poll_interrupt();
        if (row > from) std::fputs(",\n          ", out);
        save_value(out, entry_of(w, row, 0));
    }
    std::fputs("\n          )];\n", out);
}

// Two coordinates: [a] := [[ 1,2], [
//   3,4 ]]
static void save_rows(std::FILE *out, const written_array *w, std::int32_t from, std::int32_t to)
{
    write_target(out, &w->shape, from, to);
    std::fputs("[[ ", out);
    for (std::int32_t row = from; row < to; ++row) {
        if (row > from) std::fputs("], [\n   ", out);
        for (std::int32_t col = 0; col < w->shape.arr_cols; ++col) {
            poll_interrupt();
            if (col > 0) std::fputc(',', out);
            save_value(out, entry_of(w, row, col));
        }
    }
    std::fputs(" ]]\n;\n", out);
}

// All entries, in literals that are no longer than the reader takes.
static void save_numbers(std::FILE *out, const written_array *w)
{
    const array *const a = &w->shape;
    const std::int32_t rows_at_once = literal_limit / a->arr_cols;
    for (std::int32_t from = 0; from < a->arr_rows; from += rows_at_once) {
        const std::int32_t rest = a->arr_rows - from;
        const std::int32_t to = from + (rest < rows_at_once ? rest : rows_at_once);
        if (a->arr_onedim) {
            save_column(out, w, from, to);
        } else {
            save_rows(out, w, from, to);
        }
    }
}

static void save_entry(std::FILE *out, const array *a, std::int32_t row, std::int32_t col, const quolynode *q)
{
    const value_form form = {0, 1, 0, 0, 0, ";"};
    std::int32_t column = 0;
    std::fprintf(out, " %s[%2ld", a->arr_name.text, long{row} + addresser);
    if (!a->arr_onedim) std::fprintf(out, ",%2ld", long{col} + addresser);
    std::fprintf(out, "] := %s", needs_reader(q) ? "&_n " : "");
    quoly_display(out, &form, q, &column);
}

static void save_entries(std::FILE *out, const written_array *w)
{
    const array *const a = &w->shape;
    for (std::int32_t col = 0; col < a->arr_cols; ++col) {
        for (std::int32_t row = 0; row < a->arr_rows; ++row) {
            poll_interrupt();
            const quolynode *q = entry_of(w, row, col);
            if (q) save_entry(out, a, row, col, q);
        }
    }
}

// [s] := [ [row, col, value, col, value], [row, ..] ];
static void save_sparse(std::FILE *out, const array *a)
{
    row_walk w = {a->arr_sparse, 0, a->arr_rows};
    bool first = true;
    std::fprintf(out, "[%s] := [ ", a->arr_name.text);
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        if (!*head) continue;
        if (!first) std::fputs(",\n ", out);
        first = false;
        std::fprintf(out, "[%li", long{w.row} - 1 + addresser);
        for (const colm *node = *head; node; node = node->next) {
            std::fprintf(out, ", %li, ", long{node->coord} - 1 + addresser);
            save_value(out, node->val);
        }
        std::fputc(']', out);
    }
    std::fputs(" ];\n", out);
}

static void save_ordinary(std::FILE *out, const written_array *w)
{
    if (all_set_to_numbers(w) && w->shape.arr_cols <= literal_limit) {
        save_numbers(out, w);
    } else {
        save_entries(out, w);
    }
}

static void do_array_p(std::FILE *out, const array *a)
{
    arr_value v;
    open_value(&v);
    refer_to_array(&v, a);
    std::fprintf(out, "Array %s[%li", a->arr_name.text, long{a->arr_rows});
    if (!a->arr_onedim) std::fprintf(out, ",%li", long{a->arr_cols});
    std::fputs(a->arr_sparse ? "] Sparse;\n" : "];\n", out);
    written_array w = {*a, nullptr};
    if (a->arr_sparse) {
        save_sparse(out, &w.shape);
    } else if (gather(&v)) {
        w.entries = v.entries;
        save_ordinary(out, &w);
    }
    close_value(&v);
}

// The array behind that of the stamp, by age; null behind the newest one. An interrupt may have deleted `a`,
// which was the one of the stamp.
static const array *next_by_age(const array *a, std::int64_t stamp)
{
    if (a->arr_time == stamp) return a->younger;
    for (a = oldest_array; a && a->arr_time < stamp; a = a->younger) {}
    return a;
}

void save_arrays(std::FILE *out)
{
    const array *a = oldest_array;
    while (a) {
        const std::int64_t stamp = a->arr_time;
        if (a->arr_name.text[0]) do_array_p(out, a);
        a = next_by_age(a, stamp);
    }
}

bool save_array(std::FILE *out, token_rec *name)
{
    const array *a = find_array_named(name);
    if (a) do_array_p(out, a);
    return a != nullptr;
}

// Listings ----------------------------------------------------------------------------------------------

static constexpr int same_name_limit = 20;    // arrays described of one name, and of a short list
static constexpr int described_limit = 1500;  // in all

static void arrdescribe(const array *a)
{
    if (a->arr_onedim) {
        std::fprintf(Output, "Array %s[%1d]", a->arr_name.text, a->arr_rows);
    } else {
        std::fprintf(Output, "Array %s[%1d,%1d]", a->arr_name.text, a->arr_rows, a->arr_cols);
    }
    std::fputs(a->arr_sparse ? " Sparse" : "", Output);
    std::fputs(is_array_parameter(a) ? " array parameter.\n" : "\n", Output);
}

static bool same_name(const array *a, const array *b)
{
    return std::memcmp(a->arr_name.text, b->arr_name.text, array_name_room) == 0;
}

// How many arrays in front of `a` in its bucket have its name, but at most same_name_limit.
static int namesakes_before(const array *bucket, const array *a)
{
    int n = 0;
    for (const array *b = bucket; b != a && n < same_name_limit; b = b->arr_next) n += same_name(a, b);
    return n;
}

static int namesakes_from(const array *a)
{
    int n = 0;
    for (const array *b = a; b; b = b->arr_next) n += same_name(a, b);
    return n;
}

// Describe the arrays of a bucket as long as *described is below the limit; count them all in *total.
static void describe_bucket(const array *bucket, int limit, int *described, int *total)
{
    for (const array *a = bucket; a; a = a->arr_next) {
        ++*total;
        if (*described >= limit) continue;
        const int before = namesakes_before(bucket, a);
        if (before < same_name_limit) {
            arrdescribe(a);
            ++*described;
        }
        const int behind = before == same_name_limit - 1 ? namesakes_from(a) - 1 : 0;
        if (behind > 0) std::fprintf(Output, " ... %d more with this name. \n", behind);
    }
}

void describe_arrays(bool names_only)
{
    const int limit = names_only ? same_name_limit : described_limit;
    int described = 0, total = 0;
    for (const array *bucket : arr_store) describe_bucket(bucket, limit, &described, &total);
    if (described < limit || total == described) return;
    if (names_only) {
        std::fprintf(Output, " ... %d more.\n", total - described);
    } else {
        std::fputs("   ....\n", Output);
        std::fprintf(Output, " There are %d arrays.\n", total);
        std::fprintf(Output, "   %d were not described here.\n", total - described);
    }
}

// Output lists ------------------------------------------------------------------------------------------

static const char *name_of(const arr_value *v)
{
    if (v->source == &syst || !v->source) return "<";
    return v->source->arr_name.text[0] ? v->source->arr_name.text : "%";
}

void write_array_item(input_stream **stream, name_node **cursor, output_place *place, bool single)
{
    arr_value v;
    item_form form = {default_width, 0};
    open_value(&v);
    arr_fact(stream, &v, cursor);
    if (is_array(&v) && (single || read_item_form(stream, cursor, &form))) {
        const array_form shown = {name_of(&v), form.width, 0, form.as_char};
        for (std::FILE *out : place->out) {
            if (out) arrdisplay(out, &shown, &v);
        }
        place->col = 0;
    }
    close_value(&v);
}

}  // namespace kelmar

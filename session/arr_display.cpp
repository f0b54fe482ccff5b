// session/arr_display.cpp -- the text of arrays.
//
// The width of a number is known only when it is written, so where columns have one it goes to memory first.
#include "session/arr_display.h"
#include <cstring>
#include "matrix/sparse_tests.h"
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "poly/display.h"
#include "quoly/display.h"
#include "session/arr_access.h"
#include "session/arr_system.h"
#include "session/names.h"
#include "session/output.h"
#include "session/report.h"
#include "session/scratch.h"

namespace kelmar {

// Entries -----------------------------------------------------------------------------------------------

static void write_padded(std::FILE *out, const quolynode *q, const array_form *form)
{
    std::int32_t code, col = 0;
    if (form->as_char && num_to_int(q->num, &code)) {
        std::putc(code & 0xFF, out);
        return;
    }
    if (form->width == 0) {
        display(out, 0, 0, q->num, &col, 0);
        return;
    }
    std::FILE *const scratch = open_scratch();
    if (!scratch) return;
    display(scratch, 0, 0, q->num, &col, 0);
    std::size_t length;
    const char *text = scratch_text(&length);
    for (std::int32_t k = static_cast<std::int32_t>(length); k < form->width; ++k) std::putc(' ', out);
    std::fwrite(text, 1, length, out);
}

static bool all_numbers(const arr_value *v)
{
    for (std::int32_t k = 0; k < entry_count(v); ++k) {
        if (v->entries[k] && !v->entries[k]->is_num) return false;
    }
    return true;
}

// Forms -------------------------------------------------------------------------------------------------

static void write_rows(std::FILE *out, const array_form *form, const arr_value *v)
{
    std::fputs("[[ ", out);
    for (std::int32_t row = 0; row < v->rows; ++row) {
        poll_interrupt();
        if (row > 0) std::fputs("], [\n   ", out);
        for (std::int32_t col = 0; col < v->cols; ++col) {
            if (col > 0) std::fputs(form->width ? ", " : ",", out);
            write_padded(out, entry_or_zero(v->entries[row + col * v->rows]), form);
        }
    }
    std::fputs(form->width > 4 ? "   ]]\n" : form->width < 4 ? " ]]\n" : "  ]]\n", out);
}

// The index in front of an entry that stands on a line of its own.
static void write_label(std::FILE *out, const array_form *form, const arr_value *v, std::int32_t row,
                        std::int32_t col)
{
    const long i = long{row} + v->row0 + addresser;
    const long j = long{col} + v->col0 + addresser;
    if (v->onedim) {
        std::fprintf(out, " %s[%2ld] := ", form->name, i);
    } else {
        std::fprintf(out, " %s[%2ld,%2ld] := ", form->name, i, j);
    }
}

static void write_line(std::FILE *out, const array_form *form, const quolynode *q)
{
    const value_form line = {1, 1, 0, 0, form->as_char, nullptr};
    std::int32_t col = 0;
    if (!q->is_num && !q->is_rat && !monomial_list && !uglyprint) std::fputs("&_n ", out);
    quoly_display(out, &line, q, &col);
}

static void write_lines(std::FILE *out, const array_form *form, const arr_value *v)
{
    for (std::int32_t col = 0; col < v->cols; ++col) {
        for (std::int32_t row = 0; row < v->rows; ++row) {
            poll_interrupt();
            write_label(out, form, v, row, col);
            const quolynode *q = v->entries[row + col * v->rows];
            if (q) {
                write_line(out, form, q);
            } else {
                std::fputs("not defined.\n", out);
            }
        }
    }
}

static void write_characters(std::FILE *out, const arr_value *v)
{
    const array_form form = {"", 0, 0, 1};
    for (std::int32_t k = 0; k < entry_count(v); ++k) write_padded(out, entry_or_zero(v->entries[k]), &form);
    std::putc('\n', out);
}

static void better_sparse_display(std::FILE *out, const array_form *form, arr_value *v)
{
    row_walk w = {chain_of(v), 0, v->rows};
    std::int32_t empty = 1;
    sparse_iszero(w.frame, v->rows, &empty);
    if (empty) std::fputs("0\n", out);
    while (colm **head = next_row(&w)) {
        poll_interrupt();
        for (const colm *node = *head; node; node = node->next) {
            const value_form part = {1, 0, 0, 0, 0, nullptr};
            std::int32_t col = 0;
            std::fprintf(out, "%s[%li, %li] := ", form->name, long{w.row} - 1 + addresser,
                         long{node->coord} - 1 + addresser);
            quoly_display(out, &part, node->val, &col);
            std::fputs(";\n", out);
        }
    }
}

void arrdisplay(std::FILE *out, const array_form *form, arr_value *v)
{
    if (v->is_sparse) {
        better_sparse_display(out, form, v);
    } else if (!gather(v)) {
        return;
    } else if (!all_numbers(v) || form->one_a_line) {
        write_lines(out, form, v);
    } else if (form->as_char) {
        write_characters(out, v);
    } else {
        write_rows(out, form, v);
    }
}

void display_system_array()
{
    arr_value v;
    const array_form form = {"<", default_width, 0, 0};
    if (system_array_is_empty()) return;
    open_value(&v);
    refer_to_array(&v, &syst);
    arrdisplay(Output, &form, &v);
    close_value(&v);
}

}  // namespace kelmar

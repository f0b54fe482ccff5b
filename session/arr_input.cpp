// session/arr_input.cpp -- entries of arrays that the user types in.
//
// An answer is an expression, which may run functions: the entry is looked up again when it is stored.
#include "session/arr_input.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/arr_target.h"
#include "session/expr.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/token_list.h"

namespace kelmar {

static void write_question(const char *name, bool two, std::int32_t i, std::int32_t j)
{
    if (two) {
        std::fprintf(Output, "%s[%2d,%2d] := ", name, i, j);
    } else {
        std::fprintf(Output, "%s[%2d] := ", name, i);
    }
    await_answer();
}

// Read the answer for the entry. Declines (0) when it is @ . *result = a copy of it.
static int read_answer(operand *entry, quolynode **result)
{
    quolynode *answer = nullptr;
    scanner(&Input, &token, &zilch);
    if (token.text[0] == '@') return 0;
    own(&answer);
    old_expre(&Input, &answer, &zilch);
    disown();
    quoly_assign(answer, result);
    store_entry(entry, &answer);
    return 1;
}

void arrinsert(input_stream **stream, token_rec *name, quolynode **result, name_node **cursor)
{
    asking a;
    coordinates c;
    operand entry = {};
    quoly_set(0, result);
    if (!evalcoords(stream, &c, ']', cursor)) return;
    array *target = find_array_named(name);
    if (!target || target->arr_sparse) {
        error(target ? err_sparse_refused : err_no_such_array, name->text);
        return;
    }
    if (!entry_operand(target, &c, name->text, &entry)) {
        free_quoly(&entry.n);
        return;
    }
    begin_answer(&a);
    write_question(name->text, c.two, c.i, c.j);
    read_answer(&entry, result);
    end_answer(&a);
}

// Whole arrays ----------------------------------------------------------------------------------------------

static void ask_for_entries(array *a, const char *name)
{
    asking kept;
    quolynode *copy = nullptr;
    const std::int64_t stamp = a->arr_time;
    const std::int32_t rows = a->arr_rows;
    own(&copy);
    for (std::int32_t k = 0; a->arr_time == stamp && k < a->arr_size; ++k) {
        operand entry = {};
        const coordinates c = {k + addresser, 0, false};
        if (!entry_operand(a, &c, name, &entry)) {
            free_quoly(&entry.n);
            break;
        }
        begin_answer(&kept);
        write_question(name, !a->arr_onedim, (a->arr_onedim ? k : k % rows) + addresser,
                       k / rows + addresser);
        const int answered = read_answer(&entry, &copy);
        end_answer(&kept);
        if (!answered) break;
    }
    disown();
    free_quoly(&copy);
}

// Read one line up to its end, which the prompt drops; its characters become the first entries, and a 0
// behind them is its end.
static void ask_for_text(array *a, const char *name)
{
    asking kept;
    std::int32_t k = 0;
    bool line_ended = false;
    begin_answer(&kept);
    std::fprintf(Output, "%s := ", name);
    await_answer();
    for (; k < a->arr_size; ++k) {
        operand entry = {};
        quolynode *code = nullptr;
        const coordinates c = {k + addresser, 0, false};
        const int letter = peek_char(Input);
        line_ended = letter == '\n' || letter == end_of_input;
        if (!line_ended) get_char(Input);
        quoly_set(line_ended ? 0 : letter, &code);
        entry_operand(a, &c, name, &entry);
        store_entry(&entry, &code);
        if (line_ended) break;
    }
    while (peek_char(Input) != '\n' && peek_char(Input) != end_of_input) get_char(Input);
    end_answer(&kept);
}

// `:` is in hand: char must follow. Declines (0) when the colon ends the statement, or after error 334.
static int pass_char(input_stream **stream, name_node **cursor)
{
    if (!*cursor && line_is_over(*stream)) return 0;
    scanner(stream, &token, cursor);
    if (token_is(&token, "char")) {
        scanner(stream, &token, cursor);
        return 1;
    }
    error(err_input_array_kind, token.text);
    return 0;
}

void whole_arrinsert(input_stream **stream, quolynode **result, name_node **cursor)
{
    array_target t;
    quoly_set(0, result);
    scanner(stream, &token, cursor);
    if (!begins_target()) {
        error(err_bad_array_input, token.text);
        return;
    }
    if (!left_side(stream, &t, cursor)) return;
    const char *const name = t.slot >= 0 ? "%" : t.name.text;
    if (!t.a) {
        error(t.slot >= 0 ? err_empty_slot : err_no_such_array, name);
    } else if (t.a->arr_sparse) {
        error(err_sparse_refused, name);
    } else if (t.section) {
        error(err_input_array_kind, name);
    } else if (token.text[0] == ':' && pass_char(stream, cursor)) {
        ask_for_text(t.a, name);
    } else {
        ask_for_entries(t.a, name);
    }
}

}  // namespace kelmar

// session/statement.cpp -- one statement.
//
// A table by first character gives the handler; whatever has none is an expression, which may assign.
#include "session/statement.h"
#include "quoly/owned.h"
#include "session/arr_declare.h"
#include "session/arr_input.h"
#include "session/arr_statement.h"
#include "session/cancel.h"
#include "session/expr.h"
#include "session/levels.h"
#include "session/names.h"
#include "session/output.h"
#include "session/private_value.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/switches.h"
#include "session/write_out.h"

namespace kelmar {

typedef void (*statement_handler)(input_stream **stream, quolynode **result, name_node **cursor);

// Expressions -------------------------------------------------------------------------------------------

static void value_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    read_private<expre>(stream, result, cursor);
}

// The kind of array statement that begins with this name; 0 when it is no such name.
static char array_name_kind(const token_rec *tok)
{
    if (token_is(tok, "Diag")) return '~';
    if (token_is(tok, "Trans")) return '"';
    if (token_is(tok, "Adjoint") || token_is(tok, "Altmult") || token_is(tok, "Altpower")) return 'A';
    return token_is(tok, "MPowermod") ? 'M' : 0;
}

static void name_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    const char kind = array_name_kind(&token);
    if (kind) {
        arr_parse(stream, result, cursor, kind);
    } else if (token.text[0] == 'A' || token.text[0] == 'M') {
        old_expre(stream, result, cursor);
    } else {
        value_statement(stream, result, cursor);
    }
}

static void array_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    arr_parse(stream, result, cursor, token.text[0]);
}

// Others ------------------------------------------------------------------------------------------------

static void empty_statement(input_stream **, quolynode **, name_node **)
{
    set_token(&token, "@");
}

static void cancel_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    rubout(stream, cursor);
    quoly_set(0, result);
}

static void arrays_of_arrays_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    scanner(stream, &token, cursor);
    arr_arr_state(stream, result, cursor);
}

// Read the answer for the variable and store it; "@" leaves it as it was.
static void ask_for_value(token_rec *name, quolynode **result)
{
    quolynode *answer = nullptr;
    var_node *record;
    scanner(&Input, &token, &zilch);
    if (token.text[0] == '@') return;
    own(&answer);
    old_expre(&Input, &answer, &zilch);
    disown();
    quoly_assign(answer, result);
    insert_var(name, &answer, &record);
}

static void question_statement(input_stream **stream, quolynode **result, name_node **cursor)
{
    asking a;
    scanner(stream, &token, cursor);
    token_rec name = token;
    quoly_set(0, result);
    if (name.text[0] == '[') {
        whole_arrinsert(stream, result, cursor);
        return;
    }
    if (!is_lower(name.text[0])) {
        error(err_bad_question, name.text);
        return;
    }
    scanner(stream, &token, cursor);
    if (token.text[0] == '[') {
        arrinsert(stream, &name, result, cursor);
        return;
    }
    begin_answer(&a);
    std::fprintf(Output, "%s := ", name.text);
    await_answer();
    ask_for_value(&name, result);
    end_answer(&a);
    if (*cursor) quoly_set(0, result);
}

// Dispatch ------------------------------------------------------------------------------------------------

struct statement_row {
    char first;
    statement_handler run;
};

static const statement_row statements[] = {
    {'!', write_out},       {'"', array_statement},    {'[', array_statement},
    {'~', array_statement}, {'&', switch_statement},   {'%', arrays_of_arrays_statement},
    {';', empty_statement}, {'?', question_statement}, {'@', cancel_statement},
    {'A', name_statement},  {'D', name_statement},     {'M', name_statement},
    {'T', name_statement},
};

struct statement_table {
    statement_handler run[256];
};

static statement_table make_statement_table()
{
    statement_table t;
    for (statement_handler &run : t.run) run = value_statement;
    for (const statement_row &row : statements) t.run[static_cast<unsigned char>(row.first)] = row.run;
    return t;
}

static const statement_table by_first = make_statement_table();

void parse(input_stream **stream, quolynode **result, name_node **cursor)
{
    by_first.run[static_cast<unsigned char>(token.text[0])](stream, result, cursor);
}

}  // namespace kelmar

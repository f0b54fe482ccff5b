// session/arr_statement.cpp -- statements about arrays, while there are none.
#include "session/arr_statement.h"
#include "session/report.h"

namespace kelmar {

// The name in the brackets that follow is what the report shows.
static void report_no_array(input_stream **stream, name_node **cursor)
{
    if (token.text[0] != '[') scanner(stream, &token, cursor);
    if (token.text[0] == '[') scanner(stream, &token, cursor);
    error(err_no_such_array, token.text);
}

void arr_parse(input_stream **stream, quolynode **result, name_node **cursor, char)
{
    quoly_set(0, result);
    report_no_array(stream, cursor);
}

void new_arretrieve(input_stream **, token_rec *name, quolynode ***p, name_node **)
{
    *p = nullptr;
    error(err_no_such_array, name->text);
}

int remove_arrays(token_rec *, bool)
{
    return 0;
}

void remove_all_arrays()
{
}

int keep_newest_array(token_rec *)
{
    return 0;
}

}  // namespace kelmar

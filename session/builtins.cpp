// session/builtins.cpp -- built-in functions.
//
// The table of names comes from the message file, in the order of the indices; the search runs
// over a permutation of it that is sorted by name.
#include "session/builtins.h"
#include <cstring>
#include "numbers/startup.h"
#include "session/builtin_flow.h"
#include "session/errors.h"
#include "session/output.h"

namespace kelmar {

int find_built_in(const char *name)
{
    int low = 0;
    int high = numbuiltins;
    while (low <= high) {
        const int middle = (low + high) / 2;
        const int order = std::strcmp(name, builtin[builtin_order[middle]].name);
        if (order == 0) return builtin_order[middle];
        if (order < 0) {
            high = middle - 1;
        } else {
            low = middle + 1;
        }
    }
    return -1;
}

// Dispatch ------------------------------------------------------------------------------------------------

typedef void (*builtin_handler)(input_stream **stream, quolynode **n, name_node **cursor);

struct builtin_case {
    int index;
    builtin_handler run;
};

// An index without a row is not implemented.
static const builtin_case builtin_cases[] = {
    {2, builtin_int},   {24, builtin_func_definition}, {25, builtin_func_definition}, {62, builtin_int},
    {66, builtin_prod}, {74, builtin_return},          {82, builtin_sigma},
};

struct builtin_table {
    builtin_handler run[builtin_limit];
};

static builtin_table make_builtin_table()
{
    builtin_table t = {};
    for (const builtin_case &row : builtin_cases) t.run[row.index] = row.run;
    return t;
}

static const builtin_table by_index = make_builtin_table();

void builtin_func(input_stream **stream, quolynode **n, name_node **cursor, int index)
{
    if (by_index.run[index]) {
        by_index.run[index](stream, n, cursor);
        return;
    }
    quoly_set(0, n);
    std::fputs("not implemented\n", Output);
    restart_session();
}

}  // namespace kelmar

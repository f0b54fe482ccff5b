// session/builtins.cpp -- built-in functions.
//
// The table of names comes from the message file, in the order of the indices; the search runs over a permutation
// of it that is sorted by name.
#include "session/builtins.h"
#include <cstring>
#include "numbers/startup.h"
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

void builtin_func(input_stream **, quolynode **n, name_node **, int)
{
    quoly_set(0, n);
    std::fputs("not implemented\n", Output);
    restart_session();
}

}  // namespace kelmar

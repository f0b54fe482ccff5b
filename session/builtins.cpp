// session/builtins.cpp -- built-in functions: look-up by name, dispatch by index.
//
// The table of names comes from the message file, in the order of the indices; the search runs
// over a permutation of it that is sorted by name. Handlers come from the same rows in session/builtins.def.
#include "session/builtins.h"
#include <cstring>
#include <iterator>
#include "numbers/startup.h"
#include "session/builtin_handlers.h"

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

static const builtin_handler handlers[] = {
#define KELMAR_BUILTIN(index, second, name, handler, ...) handler,
#include "session/builtins.def"
#undef KELMAR_BUILTIN
};
static_assert(std::size(handlers) == builtin_limit);

static constexpr int places[] = {
#define KELMAR_BUILTIN(index, ...) index,
#include "session/builtins.def"
#undef KELMAR_BUILTIN
};

static constexpr bool places_are_in_order()
{
    for (int k = 0; k < builtin_limit; ++k) {
        if (places[k] != k) return false;
    }
    return true;
}
static_assert(places_are_in_order());

void builtin_func(input_stream **stream, quolynode **n, name_node **cursor, int index)
{
    if (index >= 0 && index < builtin_limit) {
        handlers[index](stream, n, cursor);
    } else {
        builtin_none(stream, n, cursor);
    }
}

}  // namespace kelmar

// quoly/owned.cpp -- the values that running evaluators own.
#include "quoly/owned.h"
#include <cstdlib>
#include "numbers/heap.h"
#include "session/report.h"

namespace kelmar {

void make_owned()
{
    owned_slots = static_cast<quolynode ***>(heap_record(owned_limit * sizeof(quolynode **)));
}

void owned_overflow()
{
    error(err_too_deep, " ");
}

void free_owned(int mark)
{
    while (owned_count > mark) free_quoly(owned_slots[--owned_count]);
}

}  // namespace kelmar

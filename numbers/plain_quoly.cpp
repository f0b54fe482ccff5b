// numbers/plain_quoly.cpp -- the records of scalar values.
//
// A result handle that holds a plain number lends its number record to the result, so that replacing a number
// by a number touches no free list. plain_result is the one place that decides this.
#include "numbers/plain_quoly.h"
#include "numbers/fresh_number.h"

namespace kelmar {

void give_quoly_slow(quolynode *old)
{
#ifdef KELMAR_MALLOC_RECORDS
    free_record(quolystash, old);
#else
    old->next = quolygarb;
    quolygarb = old;
#endif
}

std::int64_t live_quolys()
{
    std::int64_t live = quolystash ? quolystash->slugs_used : 0;
    for (const quolynode *q = quolygarb; q; q = q->next) --live;
    return live;
}

void fresh_plain(quolynode **c)
{
    number *n = fresh_number();
    newquoly(c);
    (*c)->is_num = 1;
    (*c)->num = n;
    (*c)->den = nullptr;
    (*c)->is_rat = 0;
}

void plain_set(std::int32_t v, quolynode **q)
{
    setvalue(v, plain_result(q));
}

}  // namespace kelmar

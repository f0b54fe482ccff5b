// numbers/plain_quoly.cpp -- the records of scalar values.
//
// A result handle that holds a plain number lends its number record to the result, so that replacing a number
// by a number touches no free list. plain_result is the one place that decides this.
#include "numbers/plain_quoly.h"

namespace kelmar {

void newquoly(quolynode **q)
{
    quolynode *fresh = quolygarb;
    if (fresh) {
        quolygarb = fresh->next;
    } else {
        fresh = static_cast<quolynode *>(get_slug(quolystash));
    }
    *q = fresh;
}

void give_quoly(quolynode **q)
{
    quolynode *old = *q;
    *q = nullptr;
#ifdef KELMAR_MALLOC_RECORDS
    free_record(quolystash, old);
#else
    old->next = quolygarb;
    quolygarb = old;
#endif
}

void free_plain(quolynode **q)
{
    free_imag(&(*q)->num);
    give_quoly(q);
}

std::int64_t live_quolys()
{
    std::int64_t live = quolystash ? quolystash->slugs_used : 0;
    for (const quolynode *q = quolygarb; q; q = q->next) --live;
    return live;
}

number *plain_result(quolynode **c)
{
    if (*c) return (*c)->num;
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    n->word = 0;
    n->real = 0;
    newquoly(c);
    (*c)->is_num = 1;
    (*c)->num = n;
    (*c)->den = nullptr;
    (*c)->is_rat = 0;
    return n;
}

void plain_set(std::int32_t v, quolynode **q)
{
    setvalue(v, plain_result(q));
}

}  // namespace kelmar

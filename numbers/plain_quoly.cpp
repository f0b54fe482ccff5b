// numbers/plain_quoly.cpp -- making, copying and negating scalar values.
//
// A result handle that holds a plain number lends its number record to the result, so that replacing a number
// by a number touches no free list. plain_result is the one place that decides this.
#include "numbers/plain_quoly.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

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

void free_quoly(quolynode **q)
{
    quolynode *old = *q;
    if (!old) return;
    *q = nullptr;
    if (old->is_num) free_imag(&old->num);
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

number *plain_result(quolynode **c)
{
    if (*c && (*c)->is_num) return (*c)->num;
    free_quoly(c);
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

// Setting and copying -----------------------------------------------------------------------------------

void quoly_set(std::int32_t v, quolynode **q)
{
    setvalue(v, plain_result(q));
}

void scalar_to_quoly(number *n, quolynode **q)
{
    number *record = plain_result(q);
    free_num(record);
    *record = *n;
}

void quoly_assign(const quolynode *a, quolynode **b)
{
    if (a == *b) return;
    num_assign(a->num, plain_result(b));
}

bool quoly_iszero(const quolynode *q)
{
    return q->is_num && iszero(q->num);
}

// Sign --------------------------------------------------------------------------------------------------

void quoly_makeneg(const quolynode *a, quolynode **b)
{
    makeneg(a->num, plain_result(b));
}

void quoly_inplace(quolynode **a)
{
    in_place_neg((*a)->num);
}

void quoly_abs(quolynode **q)
{
    num_abs((*q)->num);
}

void quoly_great_int(quolynode **q)
{
    num_floor((*q)->num);
}

}  // namespace kelmar

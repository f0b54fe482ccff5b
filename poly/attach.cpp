// poly/attach.cpp -- a variable set to 1.
//
// Above the level of the variable the lists stay, and only what vanishes below is taken out. At its level the
// coefficients of a list are added up. They are added in pairs of about equal weight, as a binary counter
// carries, because adding them one after the other would walk the growing sum once a term.
#include "poly/attach.h"
#include "poly/add.h"

namespace kelmar {

static constexpr int counter_places = 32;  // 2^32 terms fit no memory

// The sums of 1, 2, 4, .. coefficients that wait for a partner; null: none.
struct sum_counter {
    polynode *sum[counter_places];
};

static void count_in(sum_counter *c, polynode *p)
{
    int k = 0;
    for (; c->sum[k]; ++k) {
        best_poly_add(c->sum[k], p, &p);
        c->sum[k] = nullptr;
    }
    c->sum[k] = p;
}

// The coefficient of the term, as a polynomial of its own; the node is used or given back.
static polynode *take_coef(polynode *term)
{
    term->next = nullptr;
    if (term->isnum) return term;
    polynode *coef = term->coef;
    give_node(term);
    return coef;
}

static polynode *sum_of_coefs(polynode *p)
{
    sum_counter counter = {};
    while (p) {
        polynode *next = p->next;
        count_in(&counter, take_coef(p));
        p = next;
    }
    polynode *total = nullptr;
    for (polynode *part : counter.sum) {
        if (!part) continue;
        if (total) {
            best_poly_add(part, total, &total);
        } else {
            total = part;
        }
    }
    return total;
}

// Put the coefficient into the term. False when the term vanishes, and is given back.
static bool put_coef(polynode *term, polynode *coef)
{
    if (poly_iszero(coef)) {
        free_poly(&coef);
        give_node(term);
        return false;
    }
    if (term->exp == 0 && is_constant(coef)) {
        term->isnum = 1;
        term->num = coef->num;
        give_node(coef);
    } else {
        term->coef = coef;
    }
    return true;
}

static polynode *at_one(polynode *p, std::int32_t level)
{
    if (is_constant(p)) return p;
    if (level == 1) return sum_of_coefs(p);
    polynode *first = nullptr;
    polynode **end = &first;
    while (p) {
        polynode *term = p;
        p = p->next;
        if (!term->isnum && !put_coef(term, at_one(term->coef, level - 1))) continue;
        *end = term;
        end = &term->next;
    }
    *end = nullptr;
    if (!first) poly_set(0, &first);
    return first;
}

void poly_at_one(polynode **p, std::int32_t level)
{
    *p = at_one(*p, level);
}

}  // namespace kelmar

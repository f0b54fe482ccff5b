// poly/node.cpp -- making, copying, negating, releasing and comparing nested lists.
//
// Every routine walks a list in a loop and goes down one level by recursion, so the stack grows with the
// number of variables and never with the number of terms. Lists are built from the front by a pointer to the
// place of the next node. The end of a list is known from the walk that its coefficients need anyway; no list
// is walked only to find its end.
#include "poly/node.h"
#include "numbers/compare.h"
#include "numbers/dispatch.h"

namespace kelmar {

// Nodes -------------------------------------------------------------------------------------------------

void give_nodes_slow(polynode *head, polynode *tail)
{
#ifdef KELMAR_MALLOC_RECORDS
    while (head != tail) {
        polynode *next = head->next;
        free_record(polystash, head);
        head = next;
    }
    free_record(polystash, tail);
#else
    give_nodes(head, tail);
#endif
}

void give_node_slow(polynode *node)
{
    give_nodes_slow(node, node);
}

void prime_polygarb(int count)
{
    for (; count > 0; --count) {
        polynode *node = static_cast<polynode *>(get_slug(polystash));
        node->next = polygarb;
        polygarb = node;
    }
}

std::int64_t live_polynodes()
{
    std::int64_t live = polystash ? polystash->slugs_used : 0;
    for (const polynode *node = polygarb; node; node = node->next) --live;
    return live;
}

// Releasing -----------------------------------------------------------------------------------------------

// Release the numbers of p and chain all nodes below it, each behind the one that it hangs from. Return the
// last. Nodes then come off the free list in the order in which copying a polynomial takes them: a long
// session keeps lists in memory as they are walked.
static polynode *chain_nodes(polynode *p)
{
    polynode *last = p;
    while (p) {
        polynode *next = p->next;
        last = p;
        if (p->isnum) {
            free_imag(&p->num);
        } else if (is_constant(p->coef)) {
            last = p->next = p->coef;
            free_imag(&last->num);
        } else {
            p->next = p->coef;
            last = chain_nodes(p->coef);
        }
        last->next = next;
        p = next;
    }
    return last;
}

void free_poly(polynode **p)
{
    if (!*p) return;
    give_nodes(*p, chain_nodes(*p));
    *p = nullptr;
}

void special_free_poly(polynode **p)
{
    if (!*p) return;
    polynode *last = nullptr;
    for (polynode *t = *p; t; t = t->next) {
        last = t;
        if (t->isnum && t->num) free_imag(&t->num);
    }
    give_nodes(*p, last);
    *p = nullptr;
}

// Copying -------------------------------------------------------------------------------------------------

enum copy_sign { as_it_is, negated };

template <copy_sign S> static number *copy_number(const number *a)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    if (S == negated) {
        makeneg(a, n);
    } else {
        num_assign(a, n);
    }
    return n;
}

template <copy_sign S> static polynode *copy_list(const polynode *p);

// The copy of one node and what hangs below it; next is not set.
template <copy_sign S> static inline polynode *copy_node(const polynode *p)
{
    polynode *node = nullptr;
    newpoly(&node);
    node->exp = p->exp;
    node->isnum = p->isnum;
    if (p->isnum) {
        node->num = copy_number<S>(p->num);
    } else if (is_constant(p->coef)) {
        node->coef = new_constant(copy_number<S>(p->coef->num));
    } else {
        node->coef = copy_list<S>(p->coef);
    }
    return node;
}

template <copy_sign S> static polynode *copy_list(const polynode *p)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *node = copy_node<S>(p);
        *end = node;
        end = &node->next;
    }
    *end = nullptr;
    return first;
}

polynode *copy_poly(const polynode *p)
{
    return copy_list<as_it_is>(p);
}

polynode *negated_poly(const polynode *p)
{
    return copy_list<negated>(p);
}

polynode *copy_term(const polynode *p)
{
    polynode *node = copy_node<as_it_is>(p);
    node->next = nullptr;
    return node;
}

polynode *negated_term(const polynode *p)
{
    polynode *node = copy_node<negated>(p);
    node->next = nullptr;
    return node;
}

void poly_assign(const polynode *a, polynode **b)
{
    polynode *copy = copy_poly(a);
    free_poly(b);
    *b = copy;
}

void poly_makeneg(const polynode *a, polynode **b)
{
    polynode *copy = negated_poly(a);
    free_poly(b);
    *b = copy;
}

void one_var_poly_assign(const polynode *a, polynode **b)
{
    while (is_wrapper(a)) a = a->coef;
    *b = copy_poly(a);
}

void spec_poly_assign(const polynode *a, polynode **b)
{
    polynode **end = b;
    for (; a && !a->isnum; a = a->next) {
        polynode *node = new_term(a->exp, a->coef);
        *end = node;
        end = &node->next;
    }
    // on purpose: from the first number on the list itself is shared, which only its reader can keep apart
    *end = const_cast<polynode *>(a);
}

void poly_inplace(polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            in_place_neg(p->num);
        } else {
            poly_inplace(p->coef);
        }
    }
}

// Construction --------------------------------------------------------------------------------------------

// Return a fresh constant node holding v.
static polynode *word_constant(std::int32_t v)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    setvalue(v, n);
    return new_constant(n);
}

void poly_set(std::int32_t v, polynode **p)
{
    free_poly(p);
    *p = word_constant(v);
}

void base_poly(polynode **p, std::int32_t k)
{
    free_poly(p);
    polynode *variable = new_term(1, word_constant(1));
    add_pad(&variable, k - 1);
    *p = variable;
}

void make_monomial(polynode **p, std::int32_t e, polynode *c)
{
    *p = e == 0 && is_constant(c) ? c : new_term(e, c);
}

void add_pad(polynode **p, std::int32_t k)
{
    if (is_constant(*p)) return;
    for (; k > 0; --k) *p = new_term(0, *p);
}

// Tests ---------------------------------------------------------------------------------------------------

bool poly_iszero(const polynode *p)
{
    return is_constant(p) && iszero(p->num);
}

bool poly_equal(const polynode *a, const polynode *b)
{
    for (; a && b; a = a->next, b = b->next) {
        if (a->isnum != b->isnum) return false;
        if (a->isnum) {
            if (!equal(a->num, b->num)) return false;
        } else if (a->exp != b->exp || !poly_equal(a->coef, b->coef)) {
            return false;
        }
    }
    return !a && !b;
}

bool poly_neg(const polynode *a, const polynode *b)
{
    for (; a && b; a = a->next, b = b->next) {
        if (a->isnum != b->isnum) return false;
        if (a->isnum) {
            if (!negtive(a->num, b->num)) return false;
        } else if (a->exp != b->exp || !poly_neg(a->coef, b->coef)) {
            return false;
        }
    }
    return !a && !b;
}

bool monomial(const polynode *p)
{
    while (!p->next) {
        if (p->isnum) return true;
        p = p->coef;
    }
    return false;
}

number *leading_coef(const polynode *p)
{
    while (!p->isnum) p = p->coef;
    return p->num;
}

bool neg_leading_term(const polynode *p)
{
    return num_isneg(leading_coef(p));
}

// The normal form -------------------------------------------------------------------------------------------

// The record holds a value of the live view in its proper form.
static bool number_is_normal(const number *n)
{
    switch (live_view()) {
    case view_float: return true;
    case view_field:
    case view_modular: return n->word >= 0 && n->word < modulus;
    case view_word: return true;
    case view_small: return n->size > 0;
    case view_digits: return chain_is_normal(n, digit_base);
    }
    __builtin_unreachable();
}

// The term by itself, above `levels` - 1 further levels: rules 2, 3, 5 and 7.
static bool term_is_normal(const polynode *t, std::int32_t levels)
{
    if (t->exp < 0 && !laurent) return false;
    if (t->isnum) {
        return t->isnum == 1 && t->exp == 0 && (!t->next || laurent) && number_is_normal(t->num) &&
               !iszero(t->num);
    }
    if (!t->coef || poly_iszero(t->coef)) return false;
    if (t->exp == 0 && is_constant(t->coef)) return false;  // the number stands there as itself
    return poly_is_normal(t->coef, levels - 1);
}

bool poly_is_normal(const polynode *p, std::int32_t levels)
{
    if (!p) return false;
    if (is_constant(p)) return p->isnum == 1 && p->exp == 0 && number_is_normal(p->num);
    if (levels < 1) return false;
    for (const polynode *t = p; t; t = t->next) {
        if (t->next && t->next->exp >= t->exp) return false;
        if (!term_is_normal(t, levels)) return false;
    }
    return true;
}

}  // namespace kelmar

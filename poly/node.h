#pragma once
// poly/node.h -- the term of a polynomial, and the rules of the normal form.
//
// A polynomial is a nested sparse list, recursive by variable. With `level` the depth of a list, the
// outermost 1:
//
//  1. It is a non-empty list in strictly falling order of exp; the list at level k holds powers of the
//     variable at place k of polynames.
//  2. Zero is one node: exp 0, the number 0. Otherwise no term has a zero coefficient. A null pointer is no
//     polynomial, and only an initial state.
//  3. A number stands only at exp 0: the term c is (0, number c); the term c x^e, e > 0, is (e, list of
//     (0, number c)).
//  4. A constant is the one node (0, number c) at every depth: it may stop the nesting anywhere.
//  5. What does not involve the variable of its level, and is no constant, is there one wrapper (0, list
//     below).
//  6. So the exp 0 term is last, and is either a number or a wrapper that holds the part free of this
//     variable.
//  7. With `laurent`, exponents may be negative, and a number node at exp 0 can have a next.
//
// poly_is_normal checks all seven.

#include <cstdint>
#include <type_traits>
#include "numbers/number.h"

namespace kelmar {

struct polynode {
    std::int32_t exp;
    std::int32_t isnum;  // 1: num is live; 0: coef
    polynode *next;      // the next term, of smaller exp
    union {
        number *num;
        polynode *coef;  // a polynomial one level down
    };
};
static_assert(std::is_trivial_v<polynode>);

// default null; free nodes; newpoly, free_poly; reset: never
inline polynode *polygarb = nullptr;
// default 0; exponents may be negative; the switch &l
inline std::int32_t laurent = 0;

// Nodes -------------------------------------------------------------------------------------------------

// *p = a fresh node, fields undefined.
inline void newpoly(polynode **p)
{
    polynode *node = polygarb;
    if (__builtin_expect(node != nullptr, 1)) {
        polygarb = node->next;
    } else {
        node = static_cast<polynode *>(get_slug(polystash));
    }
    *p = node;
}

// Give one node back; its coefficient is somebody else's by now.
void give_node_slow(polynode *node);
inline void give_node(polynode *node)
{
#ifdef KELMAR_MALLOC_RECORDS
    give_node_slow(node);
#else
    node->next = polygarb;
    polygarb = node;
#endif
}

// Give the list head .. tail back in one step, without its coefficients. tail->next need not be set.
void give_nodes_slow(polynode *head, polynode *tail);
inline void give_nodes(polynode *head, polynode *tail)
{
#ifdef KELMAR_MALLOC_RECORDS
    give_nodes_slow(head, tail);
#else
    tail->next = polygarb;
    polygarb = head;
#endif
}

// Return a node (exp, list coef), and one (0, number num), that owns what it is given; next is null.
inline polynode *new_term(std::int32_t exp, polynode *coef)
{
    polynode *node = nullptr;
    newpoly(&node);
    node->exp = exp;
    node->isnum = 0;
    node->next = nullptr;
    node->coef = coef;
    return node;
}
inline polynode *new_constant(number *num)
{
    polynode *node = nullptr;
    newpoly(&node);
    node->exp = 0;
    node->isnum = 1;
    node->next = nullptr;
    node->num = num;
    return node;
}

// Put `count` nodes on polygarb, so that the first polynomials of a session find them there.
void prime_polygarb(int count);

// Construction and copying --------------------------------------------------------------------------------

void poly_set(std::int32_t v, polynode **p);                    // *p = the constant v. *p replaced
void base_poly(polynode **p, std::int32_t k);                   // *p = the variable of level k. *p replaced
void make_monomial(polynode **p, std::int32_t e, polynode *c);  // *p = c x^e, c consumed. *p filled
void add_pad(polynode **p, std::int32_t k);                     // k wrappers above *p; a constant stays

// Return a copy of p, of -p, numbers in the live view; null of null. The other two copy the first term alone.
polynode *copy_poly(const polynode *p);
polynode *negated_poly(const polynode *p);
polynode *copy_term(const polynode *p);
polynode *negated_term(const polynode *p);

void poly_assign(const polynode *a, polynode **b);   // *b = a copy of a. *b replaced
void poly_makeneg(const polynode *a, polynode **b);  // *b = -a. *b replaced
void poly_inplace(polynode *p);                      // p = -p in place

// *b = a copy of what stands below the leading wrappers of a. *b filled.
void one_var_poly_assign(const polynode *a, polynode **b);

// *b = new nodes in place of the terms of a in front of its number, coefficients and the rest shared. *b
// filled; borrowed from a: it must never be freed with free_poly.
void spec_poly_assign(const polynode *a, polynode **b);

void free_poly(polynode **p);          // release all of *p, which becomes null; null is allowed
void special_free_poly(polynode **p);  // the same for a list whose coefficients are numbers, or null

// Tests -----------------------------------------------------------------------------------------------------

// p involves no variable of its own level, only ones below.
inline bool is_wrapper(const polynode *p)
{
    return !p->isnum && p->exp == 0 && !p->next;
}

// p is the one node (0, number) with nothing behind it.
inline bool is_constant(const polynode *p)
{
    return p->isnum && !p->next;
}

bool poly_iszero(const polynode *p);
bool poly_equal(const polynode *a, const polynode *b);
bool poly_neg(const polynode *a, const polynode *b);  // a = -b
bool monomial(const polynode *p);                     // every list on the way down has one node
bool neg_leading_term(const polynode *p);
number *leading_coef(const polynode *p);  // the number of the leading term, borrowed from p

// The rules above hold, down to `levels` levels. For tests and debug builds.
bool poly_is_normal(const polynode *p, std::int32_t levels);

// Nodes that are out and not on the free list.
std::int64_t live_polynodes();

}  // namespace kelmar

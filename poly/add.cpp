// poly/add.cpp -- sums of nested term lists.
//
// One walk serves all flavours. Both lists fall in exp: the larger exp gives the next term, equal exps are
// added one level down by the same walk. A number node is a polynomial at every level, so "number meets list"
// is no case of its own. Flavours differ in whether a term is copied or linked, sums and differences in
// whether a term of b is turned over on the way, and both are template arguments.
//
// Where a term is consumed its node carries the sum on: the consuming flavours take nothing from the free
// lists but the zero that is left when all terms cancel. A spared number node is never cut off its list; what
// goes one level down in its place is a picture of it on the stack.
#include "poly/add.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"

namespace kelmar {

enum ownership { keep, take };  // keep: operand spared, terms are copied; take: consumed, terms are linked
enum sum_sign { plus, minus };  // what b is multiplied by

// Numbers ------------------------------------------------------------------------------------------------

// a = a +- b in place, b consumed.
template <sum_sign S> static inline void absorb_number(number *a, number *b)
{
    if (exact_integers() && b->size > a->size) {  // the longer chain has the nodes that the sum needs
        const number longer = *b;
        *b = *a;
        *a = longer;
        if (S == minus) {
            in_place_neg(a);
        }
        num_add(a, b, a);
    } else if (S == minus) {
        num_sub(a, b, a);
    } else {
        num_add(a, b, a);
    }
    free_imag(&b);
}

// The sum of two constants, which may be zero.
template <ownership A, ownership B, sum_sign S> static polynode *add_numbers(polynode *a, polynode *b)
{
    if (B == take) {
        absorb_number<S>(a->num, b->num);
        give_node(b);
        return a;
    }
    number *sum = a->num;
    if (A == keep) {
        newimag(&sum);
        sum->size = 0;
    }
    if (S == minus) {
        num_sub(a->num, b->num, sum);
    } else {
        num_add(a->num, b->num, sum);
    }
    return A == keep ? new_constant(sum) : a;
}

// Single terms ---------------------------------------------------------------------------------------------

// Return the coefficient of the term as a polynomial of its own. *shell = the node around it where that is
// ours and no longer needed; one that is there already stays, and this one goes. `picture` is room for the
// node.
template <ownership O> static inline polynode *open_term(polynode *term, polynode *picture, polynode **shell)
{
    if (term->isnum) {
        if (O == keep) {
            *picture = *term;
            term = picture;
        }
        term->next = nullptr;
        return term;
    }
    polynode *coef = term->coef;
    if (O == take) {
        if (*shell) give_node(*shell);
        *shell = term;
    }
    return coef;
}

// Return the term (exp, coef), or null when coef is zero. shell: a node for it, or null.
static inline polynode *close_term(polynode *shell, std::int32_t exp, polynode *coef)
{
    const bool constant = is_constant(coef);
    if (constant && (exp == 0 || iszero(coef->num))) {
        if (shell) give_node(shell);
        if (!iszero(coef->num)) return coef;  // a number stands at exp 0 as itself
        free_poly(&coef);
        return nullptr;
    }
    if (!shell) return new_term(exp, coef);
    shell->coef = coef;
    return shell;
}

template <ownership A, ownership B, sum_sign S> static polynode *add_lists(polynode *a, polynode *b);

// Return the sum of the terms *a and *b of equal exp, or null when they cancel. Both move on.
template <ownership A, ownership B, sum_sign S> static polynode *add_terms(polynode **a, polynode **b)
{
    const std::int32_t exp = (*a)->exp;
    polynode *const a_term = *a, *const b_term = *b;
    *a = a_term->next;
    *b = b_term->next;
    polynode a_picture, b_picture;
    polynode *shell = nullptr;
    polynode *a_coef = open_term<A>(a_term, &a_picture, &shell);
    polynode *b_coef = open_term<B>(b_term, &b_picture, &shell);
    return close_term(shell, exp, add_lists<A, B, S>(a_coef, b_coef));
}

// Return the first term of *p, times S, as a node for the sum, or null when it is the number zero. *p moves
// on.
template <ownership O, sum_sign S> static inline polynode *cut_term(polynode **p)
{
    polynode *term = *p;
    *p = term->next;
    if (term->isnum && iszero(term->num)) {
        term->next = nullptr;
        if (O == take) free_poly(&term);
        return nullptr;
    }
    if (O == keep) return S == minus ? negated_term(term) : copy_term(term);
    if (S == minus) {
        if (term->isnum) {
            in_place_neg(term->num);
        } else {
            poly_inplace(term->coef);
        }
    }
    return term;
}

// Lists ----------------------------------------------------------------------------------------------------

// *end = what is left of p, times S; a zero in front of it goes.
template <ownership O, sum_sign S> static void append_rest(polynode *p, polynode **end)
{
    polynode *first = p ? cut_term<O, S>(&p) : nullptr;
    if (first) {
        *end = first;
        end = &first->next;
    }
    if (O == keep) {
        p = S == minus ? negated_poly(p) : copy_poly(p);
    } else if (S == minus) {
        poly_inplace(p);
    }
    *end = p;
}

template <ownership A, ownership B, sum_sign S> static polynode *add_lists(polynode *a, polynode *b)
{
    if (is_constant(a) && is_constant(b)) return add_numbers<A, B, S>(a, b);  // every recursion ends here

    polynode *sum = nullptr;
    polynode **end = &sum;  // where the next term goes
    while (a && b) {
        polynode *term = a->exp > b->exp   ? cut_term<A, plus>(&a)
                         : a->exp < b->exp ? cut_term<B, S>(&b)
                                           : add_terms<A, B, S>(&a, &b);
        if (!term) continue;
        *end = term;
        end = &term->next;
    }
    if (a) {
        append_rest<A, plus>(a, end);
    } else {
        append_rest<B, S>(b, end);
    }
    if (!sum) poly_set(0, &sum);
    return sum;
}

// One level ------------------------------------------------------------------------------------------------

// *a = *a +- b for doubles, residues or elements of a table field.
template <num_view V, sum_sign S> static inline void absorb_word(number *a, const number *b)
{
    if (V == view_float) {
        a->real = S == minus ? a->real - b->real : a->real + b->real;
    } else if (V == view_field) {
        a->word ^= b->word;
    } else if (S == minus) {
        a->word = mod_sub(a->word, b->word, modulus);
    } else {
        a->word = mod_add(a->word, b->word, modulus);
    }
}

template <num_view V> static inline bool word_iszero(const number *n)
{
    return V == view_float ? n->real == 0.0 : n->word == 0;
}

// The number of a term of a list of one level.
static inline number *term_number(const polynode *t)
{
    return t->isnum ? t->num : t->coef->num;
}

// Release a term of a list of one level.
static inline void drop_term(polynode *t)
{
    if (t->isnum) {
        free_imag(&t->num);
    } else {
        free_imag(&t->coef->num);
        give_node(t->coef);
    }
    give_node(t);
}

// Add to the term, or subtract from it, another one of its exp, which is consumed. Return whether anything is
// left; else the term is consumed too.
template <num_view V, sum_sign S> static inline bool absorb_term(polynode *term, polynode *other)
{
    absorb_word<V, S>(term_number(term), term_number(other));
    drop_term(other);
    if (!word_iszero<V>(term_number(term))) return true;
    drop_term(term);
    return false;
}

// The sum of two lists of one level. A list of one zero is empty here: it is dropped first.
template <num_view V, sum_sign S> static polynode *add_one_level(polynode *a, polynode *b)
{
    polynode *sum = nullptr;
    polynode **end = &sum;
    while (a && b) {
        polynode *term = a;
        if (a->exp < b->exp) {
            term = b;
            b = b->next;
            if (S == minus) in_place_neg(term_number(term));
        } else {
            polynode *other = a->exp == b->exp ? b : nullptr;
            a = a->next;
            if (other) b = other->next;
            if (other && !absorb_term<V, S>(term, other)) continue;
        }
        *end = term;
        end = &term->next;
    }
    if (S == minus && b) poly_inplace(b);
    *end = a ? a : b;
    if (!sum) poly_set(0, &sum);
    return sum;
}

// Return p, or null when it is zero.
static inline polynode *without_zero(polynode *p)
{
    if (poly_iszero(p)) free_poly(&p);
    return p;
}

template <sum_sign S> static polynode *add_simplest(polynode *a, polynode *b)
{
    a = without_zero(a);
    b = without_zero(b);
    if (flotemode) return add_one_level<view_float, S>(a, b);
    return finf ? add_one_level<view_field, S>(a, b) : add_one_level<view_modular, S>(a, b);
}

// The flavours ---------------------------------------------------------------------------------------------

// on purpose: the walk is one for spared and consumed operands, and writes to consumed ones alone
static inline polynode *spared(const polynode *p)
{
    return const_cast<polynode *>(p);
}

void poly_add(const polynode *a, const polynode *b, polynode **c)
{
    *c = add_lists<keep, keep, plus>(spared(a), spared(b));
}

void poly_sub(const polynode *a, const polynode *b, polynode **c)
{
    *c = add_lists<keep, keep, minus>(spared(a), spared(b));
}

void better_poly_add(polynode *a, const polynode *b, polynode **c)
{
    *c = add_lists<take, keep, plus>(a, spared(b));
}

void better_poly_sub(polynode *a, const polynode *b, polynode **c)
{
    *c = add_lists<take, keep, minus>(a, spared(b));
}

void best_poly_add(polynode *a, polynode *b, polynode **c)
{
    *c = add_lists<take, take, plus>(a, b);
}

void best_poly_sub(polynode *a, polynode *b, polynode **c)
{
    *c = add_lists<take, take, minus>(a, b);
}

void simplest_poly_add(polynode *a, polynode *b, polynode **c)
{
    *c = add_simplest<plus>(a, b);
}

void simplest_poly_sub(polynode *a, polynode *b, polynode **c)
{
    *c = add_simplest<minus>(a, b);
}

}  // namespace kelmar

// poly/mul_school.cpp -- the schoolbook product of nested lists.
//
// The shorter operand drives the loop: each of its terms makes one scaled copy of the other. The copies are
// added up as a binary counter: two sums of one make a sum of two, two of these a sum of four. A copy is so
// walked once for each bit of the count, where one running sum would walk all terms so far for each new one.
#include "poly/mul_school.h"
#include <cstdlib>
#include "numbers/dispatch.h"
#include "poly/add.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Partial sums ----------------------------------------------------------------------------------------------

static void add_two(polynode *a, polynode *b, bool simple, polynode **c)
{
    if (simple) {
        simplest_poly_add(a, b, c);
    } else {
        best_poly_add(a, b, c);
    }
}

void add_part(polynode *p, polynode **parts, bool simple)
{
    if (!p) return;
    int k = 0;
    for (; parts[k]; ++k) {
        polynode *other = parts[k];
        parts[k] = nullptr;
        add_two(other, p, simple, &p);
    }
    parts[k] = p;
}

void total_parts(polynode **parts, int count, bool simple, polynode **c)
{
    polynode *total = nullptr;
    for (int k = 0; k < count; ++k) {
        polynode *part = parts[k];
        parts[k] = nullptr;
        if (total && part) {
            add_two(part, total, simple, &total);
        } else if (part) {
            total = part;
        }
    }
    if (!total) poly_set(0, &total);
    *c = total;
}

// Scaled copies -----------------------------------------------------------------------------------------

// Return the coefficient of the term t as a polynomial that ends with it: a number node that has a next is
// copied to *alone first.
static polynode *coef_of(const polynode *t, polynode *alone)
{
    if (!t->isnum) return t->coef;
    *alone = *t;
    alone->next = nullptr;
    return alone;
}

// Append coef x^exp at *end, unless it is zero. coef consumed.
static polynode **append_product(std::int32_t exp, polynode *coef, polynode **end)
{
    if (poly_iszero(coef)) {
        free_poly(&coef);
        return end;
    }
    make_monomial(&coef, exp, coef);
    *end = coef;
    return &coef->next;
}

void node_by_poly(const polynode *term, const polynode *p, polynode **c, const pt *var)
{
    polynode term_alone, p_alone;
    polynode *const factor = coef_of(term, &term_alone);
    polynode **end = c;
    *c = nullptr;
    for (; p; p = p->next) {
        polynode *coef = nullptr;
        poly_mult(factor, coef_of(p, &p_alone), &coef, var ? var->next : nilpol);
        end = append_product(term->exp + p->exp, coef, end);
        *end = nullptr;
    }
}

static number *term_number(const polynode *t)
{
    return t->isnum ? t->num : t->coef->num;
}

void node_by_poly_3(const polynode *term, const polynode *p, polynode **c)
{
    number *const factor = term_number(term);
    polynode **end = c;
    *c = nullptr;
    for (; p; p = p->next) {
        number *n = nullptr;
        newimag(&n);
        n->size = 0;
        num_mul(factor, term_number(p), n);
        end = append_product(term->exp + p->exp, new_constant(n), end);
        *end = nullptr;
    }
}

// The product -------------------------------------------------------------------------------------------

[[gnu::noinline]] void school_poly_mult(polynode *a, polynode *b, std::int32_t len_a, std::int32_t len_b,
                                        polynode **c, const pt *var)
{
    const bool b_drives = std::abs(len_b) < std::abs(len_a);
    const polynode *term = b_drives ? b : a;
    const polynode *const other = b_drives ? a : b;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const copy = &work->parts[0], **const sums = &work->parts[1];
    for (; term; term = term->next) {
        poll_interrupt();
        node_by_poly(term, other, copy, var);
        if (*copy && var && var->relation) fold_poly(copy, var);
        polynode *part = *copy;
        *copy = nullptr;
        add_part(part, sums, false);
    }
    total_parts(sums, work_parts - 1, false, c);
    close_work(work);
}

}  // namespace kelmar

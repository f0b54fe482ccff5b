// gcd/square_free.cpp -- square-free decompositions.
//
// Yun's scheme: of f = f1 f2^2 f3^3 .. the gcd with the derivative and the cofactors tell f1, then f2, and so
// on, with gcds of smaller and smaller polynomials. In characteristic p the factors whose multiplicity p
// divides do not show in the derivative: they stay behind as a p-th power, whose root starts anew with all
// multiplicities times p.
#include "gcd/square_free.h"
#include <utility>
#include "gcd/content.h"
#include "gcd/polygcd.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/add.h"
#include "poly/derivative.h"
#include "poly/div_exact.h"
#include "poly/monic.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Pieces -------------------------------------------------------------------------------------------------

// Put *factor, consumed, into the list behind all of higher multiplicity.
static void insert_factor(polynode **list, std::int32_t multiplicity, polynode **factor, std::int32_t *count)
{
    while (*list && (*list)->exp > multiplicity) list = &(*list)->next;
    polynode *const node = new_term(multiplicity, *factor);
    *factor = nullptr;
    node->next = *list;
    *list = node;
    ++*count;
}

// *q = a / b, which is exact; b may be a number. *q replaced, may be a.
static void quotient(polynode *a, polynode *b, polynode **q, pt *names)
{
    int fail = 0;
    if (is_constant(b)) {
        polynode *copy = copy_poly(a);
        num_poly_quot(&copy, b->num);
        free_poly(q);
        *q = copy;
        return;
    }
    polynode *exact = nullptr;
    gen_poly_divide(a, b, &exact, names, &fail);
    if (fail) {
        kelmar_error(" failed in square free factor.", 1);
        poly_assign(a, &exact);
    }
    free_poly(q);
    *q = exact;
}

static void gcd_of(polynode *a, polynode *b, polynode **g, pt *names)
{
    poll_interrupt();
    polygcd(a, b, g, 0, 1, 1, names, 1, 1, 1);
}

// *d = the derivative of f. *d replaced.
static void derivative(const polynode *f, polynode **d)
{
    polynode *copy = copy_poly(f);
    poly_diff(&copy, 1);
    free_poly(d);
    *d = copy;
}

// Hand what *part holds to *result.
static void deliver(polynode **part, polynode **result)
{
    *result = *part;
    *part = nullptr;
}

// Prime characteristic -----------------------------------------------------------------------------------

static std::int32_t characteristic()
{
    return finf ? 2 : modulus;
}

// The number n = its root of the order of the characteristic.
static void number_root(number *n)
{
    if (finf) n->word = f256 ? f256sqr[field_code(n->word)] : f2t16sqr[field_code(n->word)];
}

// A polynomial in inner variables has a root only where relations make it an element of a field. Declines
// (0), after the error.
static int pth_root(polynode **, const pt *)
{
    error(finf ? err_root_in_table_field : err_no_relation_root, "Sqfree");
    return 0;
}

// *r = its root of order p, all of whose exponents p divides. Declines (0) after an error; *r stays.
static int take_root(polynode **r, std::int32_t p, pt *names)
{
    for (polynode *t = *r; t; t = t->next) {
        if (!t->isnum && !is_constant(t->coef) && !pth_root(&t->coef, names)) return 0;
    }
    for (polynode *t = *r; t; t = t->next) {
        t->exp /= p;
        number_root(t->isnum ? t->num : t->coef->num);
    }
    return 1;
}

struct yun_parts {
    polynode **r, **d, **c, **w, **y, **z, **list;
    std::int32_t *count;
    pt *names;
};

// The factors whose multiplicity is i m, p not dividing i. *w = their product, *c = what else they and the
// others are: at the end the others alone.
static void take_factors(const yun_parts *f, std::int32_t p, std::int32_t m)
{
    for (std::int32_t i = 1; (*f->w)->exp > 0; ++i) {
        if (i % p == 0) {
            quotient(*f->c, *f->w, f->c, f->names);
            ++i;
        }
        gcd_of(*f->w, *f->c, f->y, f->names);
        quotient(*f->w, *f->y, f->z, f->names);
        if ((*f->z)->exp > 0) insert_factor(f->list, m * i, f->z, f->count);
        std::swap(*f->w, *f->y);
        if (!is_constant(*f->w)) quotient(*f->c, *f->w, f->c, f->names);
    }
}

// One round: *r loses all factors but those whose multiplicity p divides, and becomes the root of what is
// left. Declines (0) when the root fails.
static int yun_round(const yun_parts *f, std::int32_t p, std::int32_t *m)
{
    derivative(*f->r, f->d);
    if (!poly_iszero(*f->d)) {
        gcd_of(*f->d, *f->r, f->c, f->names);
        quotient(*f->r, *f->c, f->w, f->names);
        take_factors(f, p, *m);
        std::swap(*f->r, *f->c);
        if ((*f->r)->exp < 1) return 1;
    }
    if (!take_root(f->r, p, f->names)) return 0;
    *m *= p;
    return 1;
}

[[gnu::noinline]] void square_free_factor(polynode *f, polynode **list, std::int32_t *count, pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const part = work->parts;
    const yun_parts parts = {part, part + 1, part + 2, part + 3, part + 4, part + 5, part + 6, count, names};
    const std::int32_t p = characteristic();
    std::int32_t m = 1;
    *parts.r = copy_poly(f);
    while ((*parts.r)->exp >= 1) {
        if (yun_round(&parts, p, &m)) continue;
        insert_factor(parts.list, m, parts.r, count);
        break;
    }
    deliver(parts.list, list);
    close_work(work);
}

// Characteristic 0 ---------------------------------------------------------------------------------------

void reduce2(polynode *f, polynode *d, polynode *g, polynode **f_over_g, polynode **d_over_g, pt *names)
{
    quotient(f, g, f_over_g, names);
    quotient(d, g, d_over_g, names);
}

// *d = w - the derivative of c. *d replaced.
static void next_difference(polynode *w, const polynode *c, polynode **d)
{
    derivative(c, d);
    polynode *const less = *d;
    *d = nullptr;
    polynode *difference = nullptr;
    poly_sub(w, less, &difference);
    free_poly(d);
    polynode *used = less;
    free_poly(&used);
    *d = difference;
}

// *c = the product of the factors left, *d = w - c'. Take the factors of multiplicity 1, 2, .. off. bound:
// there is no higher one.
static void take_rational_factors(const yun_parts *f, std::int32_t bound)
{
    for (std::int32_t i = 1; !poly_iszero(*f->d); ++i) {
        if (i >= bound || is_constant(*f->c)) {  // doubles may not come to zero
            insert_factor(f->list, i, f->c, f->count);
            break;
        }
        if (is_constant(*f->d)) {
            poly_set(1, f->y);
        } else {
            gcd_of(*f->c, *f->d, f->y, f->names);
        }
        if (is_constant(*f->y)) {
            std::swap(*f->w, *f->d);
        } else {
            reduce2(*f->c, *f->d, *f->y, f->c, f->w, f->names);
            insert_factor(f->list, i, f->y, f->count);
        }
        next_difference(*f->w, *f->c, f->d);
        if (poly_iszero(*f->d)) insert_factor(f->list, i + 1, f->c, f->count);
    }
}

[[gnu::noinline]] void rat_sq_free_factor(polynode **f, polynode **list, std::int32_t *count, pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const part = work->parts;
    const yun_parts parts = {part, part + 1, part + 2, part + 3, part + 4, part + 5, part + 6, count, names};
    std::swap(*parts.r, *f);
    const std::int32_t degree = (*parts.r)->exp;
    derivative(*parts.r, parts.d);
    gcd_of(*parts.d, *parts.r, parts.y, names);
    if (is_constant(*parts.y)) {
        insert_factor(parts.list, 1, parts.r, count);
    } else {
        reduce2(*parts.r, *parts.d, *parts.y, parts.c, parts.w, names);
        next_difference(*parts.w, *parts.c, parts.d);
        take_rational_factors(&parts, degree);
    }
    deliver(parts.list, list);
    close_work(work);
}

// All variables ------------------------------------------------------------------------------------------

// Take the units out of *f: its number content with the sign, or modulo a prime the lead when that is asked.
static void drop_units(polynode **f, std::int32_t monic)
{
    number lead;
    lead.size = 0;
    if (modularmode && !flotemode) {
        if (monic) monic_poly(f, &lead);
    } else if (!lintmode && neg_leading_term(*f)) {
        poly_inplace(*f);
    }
}

// *list and *count = the decomposition of *c, a content one level below names.
static void decompose_content(polynode **c, polynode **list, std::int32_t *count, std::int32_t monic,
                              pt *names)
{
    total_sq_free(c, list, count, monic, names->next);
    for (polynode *t = *list; t; t = t->next) add_pad(&t->coef, 1);
}

// Divide *f by its content *c.
static void divide_by_content(polynode **f, polynode *c, polynode **padded, pt *names)
{
    if (is_constant(c)) {
        if (!lintmode && !num_isone(c->num)) num_poly_quot(f, c->num);
        return;
    }
    *padded = copy_poly(c);
    add_pad(padded, 1);
    fast_poly_divide(f, *padded, names, 27);
}

[[gnu::noinline]] void total_sq_free(polynode **f, polynode **list, std::int32_t *count, std::int32_t monic,
                                     pt *names)
{
    check_stack();
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const g = &work->parts[0], **const c = &work->parts[1], **const padded = &work->parts[2];
    polynode **const own = &work->parts[3], **const inner = &work->parts[4];
    std::swap(*g, *f);
    if (!is_constant(*g)) {
        drop_units(g, monic);
        content(*g, c, names, 0, 1, 1);
        divide_by_content(g, *c, padded, names);
        if (!is_constant(*c)) decompose_content(c, inner, count, monic, names);
    }
    if (is_constant(*g)) {
        // Nothing is left but a number.
    } else if (modularmode && !flotemode) {
        square_free_factor(*g, own, count, names);
    } else {
        rat_sq_free_factor(g, own, count, names);
    }
    polynode **end = own;
    while (*end) end = &(*end)->next;
    std::swap(*end, *inner);
    deliver(own, list);
    close_work(work);
}

}  // namespace kelmar

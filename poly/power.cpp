// poly/power.cpp -- powers: by squaring, by repeated products, and through the power map over a prime.
//
// Over a prime field of q elements (a + b)^q = a^q + b^q and c^q = c for numbers, so a power with exponent
// q only multiplies the exponents. A power e is then put together from the digits of e to the base q.
#include "poly/power.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "poly/flat.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

bool power_by_products(const polynode *p)
{
    for (; !p->isnum; p = p->coef) {
        if (!p->next) continue;
        for (const polynode *t = p; t; t = t->next) {
            if (!t->isnum && !is_constant(t->coef)) return true;
        }
    }
    return false;
}

// *p = (*p)^e for a number.
static void constant_power(polynode *p, std::int32_t e)
{
    if (modularmode && mod_is_prime && !flotemode && e > 0 && !iszero(p->num)) e %= modulus - 1;
    number_power(p->num, e);
}

// *p = the power, which the newest work record holds. The record is given back.
static void take_power(product_work *work, polynode **p)
{
    free_poly(p);
    *p = result_of_work(work);
}

[[gnu::noinline]] static void power_of_products(polynode **p, std::int32_t e, const pt *var)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const power = &work->parts[0];
    poly_assign(*p, power);
    for (; e > 1; --e) poly_mult(*power, *p, power, var);
    take_power(work, p);
}

[[gnu::noinline]] static void power_of_squares(polynode **p, std::int32_t e, const pt *var)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const power = &work->parts[0];
    poly_assign(*p, power);
    std::int32_t bit = 1;
    while (bit <= e / 2) bit *= 2;
    for (bit /= 2; bit > 0; bit /= 2) {
        poly_mult(*power, *power, power, var);
        if (e & bit) poly_mult(*power, *p, power, var);
    }
    take_power(work, p);
}

// Multiply all exponents of p by q, for which there is room.
static void stretch_exponents(polynode *p, std::int32_t q)
{
    for (; p; p = p->next) {
        p->exp *= q;
        if (!p->isnum) stretch_exponents(p->coef, q);
    }
}

int poly_to_prime(polynode *p, std::int32_t q)
{
    flat_shape shape;
    measure_flat(p, &shape);
    for (std::int32_t k = 0; k < shape.levels; ++k) {
        std::int32_t product;
        if (__builtin_mul_overflow(shape.top[k], q, &product) ||
            __builtin_mul_overflow(shape.low[k], q, &product)) {
            error(err_bad_exponent, "^");
            return 0;
        }
    }
    stretch_exponents(p, q);
    return 1;
}

// *p = *p reduced by the relations of var and of all variables further in.
static void reduce_by_relations(polynode **p, const pt *var)
{
    if (!var || is_constant(*p)) return;
    for (polynode **at = p; *at;) {
        polynode *term = *at;
        if (!term->isnum) reduce_by_relations(&term->coef, var->next);
        if (!term->isnum && poly_iszero(term->coef)) {
            *at = term->next;
            free_poly(&term->coef);
            give_node(term);
        } else {
            at = &term->next;
        }
    }
    if (!*p) poly_set(0, p);
    if (var->relation) fold_poly(p, var);
}

[[gnu::noinline]] void poly_mod_prime(polynode **p, std::int32_t e, const pt *var)
{
    const std::int32_t q = modulus;
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const power = &work->parts[0], **const base = &work->parts[1], **const digit = &work->parts[2];
    poly_set(1, power);
    poly_assign(*p, base);
    for (;; e /= q) {
        if (e % q > 0) {
            poly_assign(*base, digit);
            compute_power(digit, e % q, var);
            poly_mult(*power, *digit, power, var);
        }
        if (e < q) break;
        if (!poly_to_prime(*base, q)) {
            poly_set(0, power);
            break;
        }
        if (relation_from(var)) reduce_by_relations(base, var);
    }
    take_power(work, p);
}

void compute_power(polynode **p, std::int32_t e, const pt *var)
{
    if (e < 0) {
        kelmar_error("negative exponent", 1);
        poly_set(1, p);
        return;
    }
    if (e == 0) return poly_set(1, p);
    if (is_constant(*p)) return constant_power(*p, e);
    if (!flotemode && modularmode && mod_is_prime && e >= modulus && (!pseudo_polynames || modulus < 10)) {
        return poly_mod_prime(p, e, var);
    }
    if (number_polys >= 2 && !pseudo_polynames && power_by_products(*p)) return power_of_products(p, e, var);
    power_of_squares(p, e, var);
}

}  // namespace kelmar

// poly/mass.cpp -- sums over all nodes of a polynomial.
//
// A mass by weight is cut to its limit after every product and every sum, so nothing overflows: all factors
// are below 2^31. A sum that has reached the limit stays there, and the walk ends.
#include "poly/mass.h"
#include <cmath>
#include <cstdlib>
#include "numbers/long_power.h"
#include "poly/measure.h"
#include "storage/accounting.h"

namespace kelmar {

// Sizes -----------------------------------------------------------------------------------------------------

std::int64_t sizepoly(const polynode *p)
{
    std::int64_t bytes = 0;
    for (; p; p = p->next) bytes += polynodesize + (p->isnum ? sizenumber(p->num) : sizepoly(p->coef));
    return bytes;
}

static std::int32_t bits_of_chain(const number *n)
{
    return n->head->digit < 0 ? logg2_neg(n) : logg2(n);
}

static std::int32_t rounded_size(const number *n)
{
    const double size = std::round(std::fabs(n->real));
    return size < INT32_MAX ? static_cast<std::int32_t>(size) : INT32_MAX;
}

static std::int32_t digits_of(const number *n)
{
    switch (live_view()) {
    case view_float: return rounded_size(n);
    case view_field:
    case view_modular:
    case view_word: return logg2lint(n->word);
    case view_small:
    case view_digits: return bits_of_chain(n);
    }
    __builtin_unreachable();
}

std::int32_t max_digits(const polynode *p)
{
    std::int32_t most = -1;
    for (; p; p = p->next) {
        const std::int32_t digits = p->isnum ? digits_of(p->num) : max_digits(p->coef);
        if (digits > most) most = digits;
    }
    return most;
}

// Masses by weight ------------------------------------------------------------------------------------------

enum mass_kind { plain_mass, better_mass, full_mass, new_mass };

template <mass_kind K> static std::int64_t limited(std::int64_t mass)
{
    constexpr std::int64_t limit = K == full_mass ? full_mass_limit : mass_limit;
    return mass < limit ? mass : limit;
}

// The bits of the live view of n.
static std::int64_t bits_of_number(const number *n)
{
    if (exact_integers()) return bits_of_chain(n);
    if (!flotemode) return logg2lint(n->word);
    int exponent = 0;
    std::frexp(n->real, &exponent);
    return exponent > 1 ? exponent : 1;
}

template <mass_kind K> static std::int64_t number_weight(const number *n)
{
    if (K == full_mass) return bits_of_number(n);
    return exact_integers() ? n->size : 1;
}

template <mass_kind K> static std::int64_t weight(std::int32_t exp, std::int32_t factor, std::int32_t level)
{
    const std::int64_t degree = std::llabs(exp);
    switch (K) {
    case plain_mass:
    case full_mass: return limited<K>(limited<K>(degree * level) * factor);
    case better_mass: return limited<K>(limited<K>(degree * factor) + level);
    case new_mass: return limited<K>(level);
    }
    __builtin_unreachable();
}

template <mass_kind K>
static std::int64_t list_mass(const polynode *p, std::int32_t factor, std::int32_t level)
{
    std::int64_t total = 0;
    for (; p && total < limited<K>(INT64_MAX); p = p->next) {
        std::int64_t mass = p->isnum ? number_weight<K>(p->num) : list_mass<K>(p->coef, 1, level + 1);
        if (!p->isnum && p->exp != 0) mass *= weight<K>(p->exp, factor, level);
        total = limited<K>(total + limited<K>(mass));
    }
    return total;
}

template <mass_kind K> static std::int32_t mass_of(const polynode *p, std::int32_t factor, std::int32_t level)
{
    if (laurent && !is_constant(p) && monomial(p)) return poly_height(p) + poly_depth(p);
    return static_cast<std::int32_t>(list_mass<K>(p, factor, level));
}

std::int32_t poly_mass(const polynode *p, std::int32_t factor, std::int32_t level)
{
    return mass_of<plain_mass>(p, factor, level);
}

std::int32_t better_poly_mass(const polynode *p, std::int32_t factor, std::int32_t level)
{
    return mass_of<better_mass>(p, factor, level);
}

std::int32_t full_poly_mass(const polynode *p, std::int32_t factor, std::int32_t level)
{
    return mass_of<full_mass>(p, factor, level);
}

std::int32_t new_poly_mass(const polynode *p, std::int32_t level)
{
    return mass_of<new_mass>(p, 1, level);
}

// Masses by records -----------------------------------------------------------------------------------------

static constexpr std::int64_t mass_of_node = 13;
static constexpr std::int64_t mass_of_number = 31;
static constexpr std::int64_t mass_of_digit = 8;

// Return `total` and the mass of p, or the first sum above `enough`.
static std::int64_t add_records(const polynode *p, std::int64_t total, std::int64_t enough)
{
    for (; p && total <= enough; p = p->next) {
        total += mass_of_node;
        if (!p->isnum) {
            total = add_records(p->coef, total, enough);
        } else {
            total += mass_of_number + (exact_integers() ? p->num->size : 0) * mass_of_digit;
        }
    }
    return total;
}

std::int64_t simple_poly_mass(const polynode *p)
{
    return add_records(p, 0, INT64_MAX);
}

std::int64_t very_simple_poly_mass(const polynode *p)
{
    return add_records(p, 0, 250);
}

std::int64_t more_simple_poly_mass(const polynode *p)
{
    return add_records(p, 0, 350);
}

}  // namespace kelmar

// quoly/power.cpp -- powers of scalar values: of numbers, of the numerator, of the denominator.
//
// What is sure to outgrow the storage is refused before it starts: a number's power has so many digits more
// as the exponent says, and so has the power of a polynomial of which it is a coefficient.
#include "quoly/power.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "numbers/word_mod.h"
#include "poly/power.h"
#include "quoly/divide.h"
#include "quoly/normal_form.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int64_t largest_power = std::int64_t{1} << 22;  // digits of an exact power

// Sizes ---------------------------------------------------------------------------------------------------

// n^e has more digits than a power may have. 0, 1 and -1 stay small.
static bool outgrows(const number *n, std::int32_t e)
{
    int minus;
    return n->size * std::int64_t{e} > largest_power && !iszero(n) && !equal_to_pm1(n, &minus);
}

static bool outgrows(const polynode *p, std::int32_t e)
{
    for (; p; p = p->next) {
        if (p->isnum ? outgrows(p->num, e) : outgrows(p->coef, e)) return true;
    }
    return false;
}

static bool power_outgrows(const quolynode *q, std::int32_t e)
{
    if (!exact_integers()) return false;
    if (q->is_num) return outgrows(q->num, e);
    return outgrows(q->top, e) || (q->den && outgrows(q->den, e));
}

// Powers ----------------------------------------------------------------------------------------------------

// *q = 1 after the report.
static void refuse(int number, quolynode **q)
{
    error(number, "^");
    quoly_set(1, q);
}

// With relations: what the powers of a fraction have become. Declines (0): the denominator is zero.
static int close_in_tower(quolynode **q)
{
    if ((*q)->den && poly_iszero((*q)->den)) {
        refuse(err_zero_denominator, q);
        return 0;
    }
    check_quoly(q, 0);
    return 1;
}

void lint_quoly_compute_power(quolynode **q, std::int32_t e)
{
    quoly_compute_power(q, e);
}

// n = n^e, e > 0. Over a prime field the exponent counts modulo the order of the group.
static void power_of_number(number *n, std::int32_t e)
{
    if (modularmode) n->word = to_residue(n->word);
    if (prime_field() && !iszero(n)) e %= modulus - 1;
    number_power(n, e);
}

void quoly_compute_power(quolynode **q, std::int32_t e)
{
    quolynode *value = *q;
    if (value->is_num) return power_of_number(value->num, e);
    if (value->is_rat) {
        number_power(value->top->num, e);
        number_power(value->den->num, e);
        return;
    }
    compute_power(&value->top, e, polynames);
    if (value->den) compute_power(&value->den, e, polynames);
    if (pseudo_polynames && !close_in_tower(q)) return;
    polynum_to_quoly(q);
    if (!(*q)->is_num && !(*q)->den) (*q)->is_rat = 0;
}

// *q = 1 / *q.
static void take_reciprocal(quolynode **q)
{
    quolynode *one = nullptr;
    quoly_set(1, &one);
    quoly_quot(one, *q, 1, q);
    free_quoly(&one);
}

void raise_to_power(quolynode **q, std::int32_t e)
{
    if (e == 0) return quoly_set(1, q);
    if (e < 0 && quoly_iszero(*q)) return refuse(err_zero_divisor, q);
    if (e == INT32_MIN) return refuse(err_bad_exponent, q);
    const std::int32_t times = e < 0 ? -e : e;
    if (power_outgrows(*q, times)) return refuse(err_bad_exponent, q);
    quoly_compute_power(q, times);
    if (e < 0) take_reciprocal(q);
}

}  // namespace kelmar

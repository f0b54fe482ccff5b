// numbers/long_power.cpp -- binary powers from the top bit down.
//
// From the top bit down every second factor is the base itself, which is short. Powers of an even long
// integer are those of its odd part, shifted: a power of two costs nothing but its digits.
#include "numbers/long_power.h"

#include "numbers/dispatch.h"
#include "numbers/long_shift.h"
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

// The factors 2 in the last digit of the long integer n > 0 that are worth taking out; 0 when none are, or
// when there would be too many in n^e.
static std::int32_t even_part(const number *n, std::int32_t e)
{
    if (live_view() != view_digits || n->head->digit <= 0 || n->tail->digit == 0) return 0;
    const std::int32_t twos = __builtin_ctz(static_cast<unsigned>(n->tail->digit));
    return std::int64_t{twos} * e > INT32_MAX ? 0 : twos;
}

void number_power(number *n, std::int32_t e)
{
    if (e <= 0) {
        setvalue(1, n);
        return;
    }
    const std::int32_t twos = even_part(n, e);
    if (twos > 0) shift_right(n, twos);
    number base = {};
    num_assign(n, &base);
    for (int bit = 30 - __builtin_clz(static_cast<unsigned>(e)); bit >= 0; --bit) {
        num_mul(n, n, n);
        if (e >> bit & 1) num_mul(n, &base, n);
    }
    special_free(&base);
    if (twos > 0) shift_left(n, twos * e);
}

void mod_number_power(std::int32_t x, std::int32_t e, std::int32_t *r)
{
    if (x == 0) {
        if (e < 0) error(err_zero_divisor, "^");
        *r = e == 0;
        return;
    }
    if (e >= 16 || e < 0) {
        e %= modulus - 1;
        if (e < 0) e += modulus - 1;
    }
    std::int32_t power = 1;
    for (int bit = 31; bit >= 0; --bit) {
        power = modmult(power, power);
        if (e >> bit & 1) power = modmult(power, x);
    }
    *r = power;
}

// Sizes -----------------------------------------------------------------------------------------------------

static std::int32_t bits_of(std::uint32_t v)
{
    return v ? 32 - __builtin_clz(v) : 0;
}

std::int32_t logg2(const number *n)
{
    return digit_bits * (n->size - 1) + bits_of(static_cast<std::uint32_t>(n->head->digit));
}

std::int32_t logg2_neg(const number *n)
{
    return digit_bits * (n->size - 1) + bits_of(static_cast<std::uint32_t>(-n->head->digit));
}

std::int32_t logg2lint(std::int32_t v)
{
    std::uint32_t m = v < 0 ? 0u - static_cast<std::uint32_t>(v) : static_cast<std::uint32_t>(v);
    const std::uint32_t n = static_cast<std::uint32_t>(modulus);
    if (modularmode && m <= n && m > n / 2) m = n - m;
    return bits_of(m);
}

}  // namespace kelmar

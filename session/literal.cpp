// session/literal.cpp -- numeric literals.
//
// The whole part goes through the decimal chains of the number layer. Decimals are a second
// literal, divided by a power of ten; in float mode they are a running double, and digits
// beyond what a double can feel are skipped.
#include "session/literal.h"
#include <cmath>
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/owned.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t felt_decimals = 300;  // digits; 10^300 is still a double

void new_readin(input_stream **stream, number *n, name_node **cursor, std::int32_t *ndigits)
{
    literal lit;
    open_literal(&lit);
    do {
        literal_digit(&lit, token.text[0] - '0');
        scanner(stream, &token, cursor);
    } while (is_digit(token.text[0]));
    *ndigits = lit.ndigits;
    close_literal(&lit);
    literal_to_number(&lit, n);
}

// 10^k; from the table where the power is a double itself.
static double power_of_ten(std::int32_t k)
{
    static const double exact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    return k <= 22 ? exact[k] : std::pow(10.0, k);
}

// The decimals in hand, as a double below 1.
static double read_float_decimals(input_stream **stream, name_node **cursor)
{
    double digits = 0.0;
    std::int32_t count = 0;
    for (; is_digit(token.text[0]); scanner(stream, &token, cursor)) {
        if (count >= felt_decimals) continue;
        digits = digits * 10.0 + (token.text[0] - '0');
        ++count;
    }
    return digits / power_of_ten(count);
}

// *q = *q + the decimals in hand / 10^count.
static void add_exact_decimals(input_stream **stream, quolynode **q, name_node **cursor)
{
    quolynode *digits = nullptr;
    quolynode *scale = nullptr;
    std::int32_t count;
    own(&digits);
    own(&scale);
    quoly_set(0, &digits);
    quoly_set(10, &scale);
    std::int32_t leading = 0;
    for (; token.text[0] == '0'; ++leading) scanner(stream, &token, cursor);
    count = leading;
    if (is_digit(token.text[0])) {
        std::int32_t read = 0;
        new_readin(stream, digits->num, cursor, &read);
        count += read;
    }
    number_power(scale->num, count);
    fast_quoly_quot(&digits, scale, 0);
    better_quoly_add(q, digits);
    disown();
    disown();
    free_quoly(&digits);
    free_quoly(&scale);
}

// The point is in hand.
static void add_decimals(input_stream **stream, quolynode **q, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!is_digit(token.text[0])) {
        error(err_no_decimals, token.text);
        return;
    }
    if (flotemode) {
        (*q)->num->real += read_float_decimals(stream, cursor);
    } else {
        add_exact_decimals(stream, q, cursor);
    }
}

// True for e and e1, e25: a power of ten that lacks its sign, or has one behind.
static bool begins_power_of_ten(const token_rec *t)
{
    if (t->text[0] != 'e') return false;
    for (const char *c = t->text + 1; *c; ++c) {
        if (!is_digit(*c)) return false;
    }
    return true;
}

// e is in hand: +digits or -digits must follow.
static void scale_by_power_of_ten(input_stream **stream, number *n, name_node **cursor)
{
    const bool bare = token.text[1] == 0;
    if (bare) scanner(stream, &token, cursor);
    const char sign = token.text[0];
    if (bare && (sign == '+' || sign == '-')) scanner(stream, &token, cursor);
    if (!bare || (sign != '+' && sign != '-') || !is_digit(token.text[0])) {
        error(err_exponent_sign, token.text);
        return;
    }
    std::int32_t k = 0;
    for (; is_digit(token.text[0]); scanner(stream, &token, cursor)) {
        if (k < 100000) k = k * 10 + (token.text[0] - '0');
    }
    if (n->real == 0.0) return;
    if (k > 308) {  // in two steps, so that the last subnormal values come out
        n->real = sign == '+' ? n->real * 1e300 : n->real / 1e300;
        k -= 300;
    }
    const double scale = power_of_ten(k);
    n->real = sign == '+' ? n->real * scale : n->real / scale;
}

void read_literal(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t ndigits;
    quoly_set(0, n);
    if (token.text[0] != '.') new_readin(stream, (*n)->num, cursor, &ndigits);
    if (token.text[0] == '.') add_decimals(stream, n, cursor);
    if (flotemode && begins_power_of_ten(&token)) scale_by_power_of_ten(stream, (*n)->num, cursor);
}

}  // namespace kelmar

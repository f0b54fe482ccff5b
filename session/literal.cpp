// session/literal.cpp -- numeric literals.
//
// Exact: the whole part goes through the decimal chains of the number layer, and decimals are a second
// literal, divided by a power of ten. In float mode all digits make one decimal number, which is rounded
// once: by one operation where digits and power are doubles themselves, else by the C library.
#include "session/literal.h"
#include <cstdio>
#include <cstdlib>
#include "numbers/decimal.h"
#include "numbers/dispatch.h"
#include "numbers/long_power.h"
#include "quoly/add.h"
#include "quoly/divide.h"
#include "quoly/owned.h"
#include "session/report.h"

namespace kelmar {

// A whole number while it is read, on the frame of its reader: between two digits an interrupt may give
// it up.
struct open_digits {
    literal lit;
    open_digits *outer;
};

void release_digits(open_digits *mark)
{
    while (newest_digits != mark) {
        open_digits *const gone = newest_digits;
        newest_digits = gone->outer;
        special_free(&gone->lit.groups);
    }
}

void new_readin(input_stream **stream, number *n, name_node **cursor, std::int32_t *ndigits)
{
    open_digits here;
    open_literal(&here.lit);
    here.outer = newest_digits;
    newest_digits = &here;
    do {
        literal_digit(&here.lit, token.text[0] - '0');
        scanner(stream, &token, cursor);
    } while (is_digit(token.text[0]));
    newest_digits = here.outer;
    *ndigits = here.lit.ndigits;
    close_literal(&here.lit);
    literal_to_number(&here.lit, n);
}

// Doubles -------------------------------------------------------------------------------------------------

// More digits than decide how any double is rounded; the others count as one.
static constexpr std::int32_t kept_digits = 800;
static constexpr std::int32_t exact_digits = 15;  // so many are a double themselves
static constexpr std::int32_t exact_power = 22;   // so are the powers of ten up to this one
static constexpr std::int32_t most_power = 100000;

// A decimal number on its way: its digits without leading zeros, times a power of ten.
struct decimal_text {
    char digit[kept_digits + 20];  // with room for what is written behind them
    std::int32_t count;
    std::int64_t power;
    std::int64_t value;    // of the digits, while they are few
    std::int32_t inexact;  // a digit other than 0 was dropped
};

static void add_digit(decimal_text *t, char c, bool decimal)
{
    if (decimal) --t->power;
    if (t->count == 0 && c == '0') return;
    if (t->count == kept_digits) {
        ++t->power;
        t->inexact |= c != '0';
        return;
    }
    if (t->count < exact_digits) t->value = t->value * 10 + (c - '0');
    t->digit[t->count++] = c;
}

// The double that is nearest to it.
static double double_of(decimal_text *t)
{
    static const double ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (t->count == 0) return 0.0;
    if (t->count <= exact_digits && std::abs(t->power) <= exact_power) {
        const double v = static_cast<double>(t->value);
        return t->power < 0 ? v / ten[-t->power] : v * ten[t->power];
    }
    std::int64_t power = t->power;
    if (t->inexact) {
        t->digit[t->count++] = '1';
        --power;
    }
    std::snprintf(t->digit + t->count, sizeof t->digit - static_cast<std::size_t>(t->count), "e%ld",
                  static_cast<long>(power));
    return std::strtod(t->digit, nullptr);
}

static void add_digits(input_stream **stream, decimal_text *t, bool decimals, name_node **cursor)
{
    for (; is_digit(token.text[0]); next_token(stream, cursor)) add_digit(t, token.text[0], decimals);
}

// The point is in hand. Declines (0) after error 341.
static int add_float_decimals(input_stream **stream, decimal_text *t, name_node **cursor)
{
    next_token(stream, cursor);
    if (!is_digit(token.text[0])) {
        error(err_no_decimals, token.text);
        return 0;
    }
    add_digits(stream, t, true, cursor);
    return 1;
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
static void scale_by_power_of_ten(input_stream **stream, decimal_text *t, name_node **cursor)
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
        if (k < most_power) k = k * 10 + (token.text[0] - '0');
    }
    t->power += sign == '+' ? k : -k;
}

// The literal as the double that is nearest to it, so that what was saved comes back bit for bit.
static void read_float(input_stream **stream, number *n, name_node **cursor)
{
    decimal_text t;
    t.count = t.inexact = 0;
    t.power = t.value = 0;
    add_digits(stream, &t, false, cursor);
    if (token.text[0] != '.' || add_float_decimals(stream, &t, cursor)) {
        if (begins_power_of_ten(&token)) scale_by_power_of_ten(stream, &t, cursor);
    }
    n->real = double_of(&t);
}

// Exact numbers -------------------------------------------------------------------------------------------

// The point is in hand: *q = *q + the decimals / 10^count.
static void add_decimals(input_stream **stream, quolynode **q, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!is_digit(token.text[0])) {
        error(err_no_decimals, token.text);
        return;
    }
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

void read_literal(input_stream **stream, quolynode **n, name_node **cursor)
{
    std::int32_t ndigits;
    quoly_set(0, n);
    if (flotemode) {
        read_float(stream, (*n)->num, cursor);
        return;
    }
    if (token.text[0] != '.') new_readin(stream, (*n)->num, cursor, &ndigits);
    if (token.text[0] == '.') add_decimals(stream, n, cursor);
}

}  // namespace kelmar

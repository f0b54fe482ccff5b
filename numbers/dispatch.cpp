// numbers/dispatch.cpp -- the primitives of the six views.
//
// Each routine is one switch with a line a view; what takes more than a line has a function of its own above.
// Doubles follow IEEE. Words wrap: their sums go through unsigned, so that overflow is defined.
#include "numbers/dispatch.h"
#include "numbers/long_add.h"
#include "numbers/long_div.h"
#include "numbers/long_mul.h"
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

// Words -------------------------------------------------------------------------------------------------

static std::int32_t wrap(std::uint32_t v)
{
    return static_cast<std::int32_t>(v);
}

static std::uint32_t bits(std::int32_t v)
{
    return static_cast<std::uint32_t>(v);
}

// a / b truncated, b nonzero; the one quotient that leaves the range wraps.
static std::int32_t word_quot(std::int32_t a, std::int32_t b)
{
    return b == -1 ? wrap(0u - bits(a)) : a / b;
}

// The remainder to word_quot, made non-negative with pos_mod.
static std::int32_t word_rem(std::int32_t a, std::int32_t b)
{
    const std::int32_t r = b == -1 ? 0 : a % b;
    if (r >= 0 || !pos_mod) return r;
    return b < 0 ? r - b : r + b;
}

static std::int32_t whole_word(std::int32_t a, std::int32_t b, char op)
{
    return op == '|' ? word_rem(a, b) : word_quot(a, b);
}

// a times the inverse of b, in the present ring. Errors: 85; then 0.
static std::int32_t residue_quot(std::int32_t a, std::int32_t b)
{
    std::int32_t inverse = 0;
    emod_inverse(b, &inverse);
    return modmult(to_residue(a), inverse);
}

// Digits ------------------------------------------------------------------------------------------------

// c = the one digit v, of any size: carries are left out in the small view. c replaced.
static void set_small(std::int32_t v, number *c)
{
    if (c->size == 1) {
        c->head->digit = v;
        return;
    }
    numnode *digit = new_digit(v, nullptr);
    take_chain(c, digit, digit, 1);
}

static void long_sum(const number *a, const number *b, number *c)
{
    if (c == a) {
        fastsum(c, b);
    } else if (c == b) {
        fastsum(c, a);
    } else {
        summ(a, b, c, digit_base);
    }
}

static void long_quot(const number *a, const number *b, number *c)
{
    number rest;
    rest.size = 0;
    divide(a, b, c, &rest);
    special_free(&rest);
}

// c = the remainder that has the sign of a, or with pos_mod none below 0.
static void long_rem(const number *a, const number *b, number *c)
{
    number quotient, rest;
    quotient.size = rest.size = 0;
    const bool minus = b->head->digit < 0;
    divide(a, b, &quotient, &rest);
    special_free(&quotient);
    if (minus) in_place_neg(&rest);  // there divide gives the opposite of the sign of a
    if (pos_mod && rest.head->digit < 0) {
        if (minus) {
            fastdiff(&rest, b);
        } else {
            fastsum(&rest, b);
        }
    }
    take_chain(c, rest.head, rest.tail, rest.size);
}

static void long_whole(const number *a, const number *b, number *c, char op)
{
    if (op == '|') {
        long_rem(a, b, c);
    } else {
        long_quot(a, b, c);
    }
}

static double long_to_double(const number *a)
{
    double v = 0;
    for (const numnode *node = a->head; node; node = node->next) v = v * digit_base + node->digit;
    return v;
}

// Floats ------------------------------------------------------------------------------------------------

static constexpr double exact_limit = 9007199254740992.0;  // 2^53: below it whole numbers are exact

static inline bool is_exact_whole(double v)
{
    return __builtin_fabs(v) < exact_limit && static_cast<double>(static_cast<std::int64_t>(v)) == v;
}

// fmod, by one machine division where both are whole numbers; a zero has the sign of a, as there.
static inline double float_remainder(double a, double b)
{
    if (b == 0.0 || !is_exact_whole(a) || !is_exact_whole(b)) return __builtin_fmod(a, b);
    const std::int64_t r = static_cast<std::int64_t>(a) % static_cast<std::int64_t>(b);
    return __builtin_copysign(static_cast<double>(r), a);
}

// Both are taken from the exact remainder, so that quotient times b plus remainder is a.
double float_whole(double a, double b, char op)
{
    const double r = float_remainder(a, b);
    if (op != '|') return (a - r) / b;
    return pos_mod && r < 0 ? r + __builtin_fabs(b) : r;
}

// *v = d by the rule of num_to_int.
static int double_to_int(double d, std::int32_t *v)
{
    const double whole = __builtin_round(d);
    const double size = __builtin_fabs(d);
    const double room = 1e-9 * (size > 1 ? size : 1);
    if (!(__builtin_fabs(d - whole) <= room && __builtin_fabs(whole) < 2147483648.0)) return 0;
    *v = static_cast<std::int32_t>(whole);
    return 1;
}

static int int64_to_int(std::int64_t w, std::int32_t *v)
{
    if (w > INT32_MAX || w < -INT32_MAX) return 0;
    *v = static_cast<std::int32_t>(w);
    return 1;
}

static int long_to_int(const number *a, std::int32_t *v)
{
    if (a->size > 2) return 0;
    std::int64_t w = a->head->digit;
    if (a->size == 2) w = w * digit_base + a->tail->digit;
    return int64_to_int(w, v);
}

// Sums and products -------------------------------------------------------------------------------------

void num_add(const number *a, const number *b, number *c)
{
    switch (live_view()) {
    case view_float: c->real = a->real + b->real; return;
    case view_field:
    case view_modular: c->word = mod_add(to_residue(a->word), to_residue(b->word), modulus); return;
    case view_word: c->word = wrap(bits(a->word) + bits(b->word)); return;
    case view_small: set_small(wrap(bits(a->head->digit) + bits(b->head->digit)), c); return;
    case view_digits: long_sum(a, b, c); return;
    }
}

void num_sub(const number *a, const number *b, number *c)
{
    switch (live_view()) {
    case view_float: c->real = a->real - b->real; return;
    case view_field:
    case view_modular: c->word = mod_sub(to_residue(a->word), to_residue(b->word), modulus); return;
    case view_word: c->word = wrap(bits(a->word) - bits(b->word)); return;
    case view_small: set_small(wrap(bits(a->head->digit) - bits(b->head->digit)), c); return;
    case view_digits: sub(a, b, c); return;
    }
}

void num_mul(number *a, number *b, number *c)
{
    switch (live_view()) {
    case view_float: c->real = a->real * b->real; return;
    case view_field: c->word = field_mult(a->word, b->word); return;
    case view_modular: c->word = nmodmult(to_residue(a->word), to_residue(b->word)); return;
    case view_word: c->word = wrap(bits(a->word) * bits(b->word)); return;
    case view_small: set_small(wrap(bits(a->head->digit) * bits(b->head->digit)), c); return;
    case view_digits: fast_mult(a, b, c); return;
    }
}

// Quotients ---------------------------------------------------------------------------------------------

// The divisor is zero, as a residue if it is a count.
static bool divides_nothing(const number *b)
{
    return modularmode ? to_residue(b->word) == 0 : iszero(b);
}

void quot(number *a, number *b, number *c)
{
    if (divides_nothing(b)) {
        error(err_zero_divisor, "/");
        if (exact_integers()) {
            setvalue(1, c);
        } else {
            num_assign(a, c);
        }
        return;
    }
    switch (live_view()) {
    case view_float: c->real = a->real / b->real; return;
    case view_field:
    case view_modular: c->word = residue_quot(a->word, b->word); return;
    case view_word: c->word = word_quot(a->word, b->word); return;
    case view_small: set_small(word_quot(a->head->digit, b->head->digit), c); return;
    case view_digits: long_quot(a, b, c); return;
    }
}

void mod_or_div(number *a, number *b, number *c, char op)
{
    if (divides_nothing(b)) {
        error(err_zero_divisor, "/");
        setvalue(1, c);
        return;
    }
    switch (live_view()) {
    case view_float: c->real = float_whole(a->real, b->real, op); return;
    case view_field:
    case view_modular: c->word = op == '|' ? 0 : residue_quot(a->word, b->word); return;
    case view_word: c->word = whole_word(a->word, b->word, op); return;
    case view_small: set_small(whole_word(a->head->digit, b->head->digit, op), c); return;
    case view_digits: long_whole(a, b, c, op); return;
    }
}

void num_floor(number *n)
{
    switch (live_view()) {
    case view_float: n->real = __builtin_floor(n->real); return;
    case view_field:
    case view_modular:
    case view_word: error(err_wrong_ring, "$"); return;
    case view_small:
    case view_digits: return;
    }
}

void num_abs(number *n)
{
    switch (live_view()) {
    case view_float: n->real = __builtin_fabs(n->real); return;
    case view_field:
    case view_modular: return;
    case view_word:
    case view_small:
    case view_digits:
        if (num_isneg(n)) in_place_neg(n);
        return;
    }
}

// Questions ---------------------------------------------------------------------------------------------

bool num_isneg(const number *a)
{
    switch (live_view()) {
    case view_float: return a->real < 0;
    case view_field:
    case view_modular: return false;
    case view_word: return a->word < 0;
    case view_small:
    case view_digits: return a->head->digit < 0;
    }
    __builtin_unreachable();
}

bool num_isone(const number *a)
{
    switch (live_view()) {
    case view_float: return a->real == 1.0;
    case view_field:
    case view_modular:
    case view_word: return a->word == 1;
    case view_small:
    case view_digits: return is_longint(a, 1);
    }
    __builtin_unreachable();
}

double num_to_double(const number *a)
{
    switch (live_view()) {
    case view_float: return a->real;
    case view_field:
    case view_modular:
    case view_word: return a->word;
    case view_small:
    case view_digits: return long_to_double(a);
    }
    __builtin_unreachable();
}

int num_to_int(const number *a, std::int32_t *v)
{
    switch (live_view()) {
    case view_float: return double_to_int(a->real, v);
    case view_field:
    case view_modular:
    case view_word: return int64_to_int(a->word, v);
    case view_small:
    case view_digits: return long_to_int(a, v);
    }
    __builtin_unreachable();
}

}  // namespace kelmar

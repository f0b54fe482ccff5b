// session/words.cpp -- machine integers: a value as a word of 32 bits, and the division of words.
//
// In each view of numbers a value has its own way to a word: a float may be near to a whole number, residues
// are words already, and of a chain of digits only the last bits count.
#include "session/words.h"
#include <cmath>
#include "numbers/dispatch.h"
#include "session/report.h"
#include "session/scanner.h"

namespace kelmar {

static constexpr double counts_as_whole = 1e-9;  // relative distance to a whole number

static int float_to_word(double v, std::int32_t *word)
{
    if (v > -word_limit && v < word_limit) {
        *word = static_cast<std::int32_t>(v);
        if (*word == v) return 1;
    }
    *word = 0;
    const double near = std::nearbyint(v);
    const double size = std::fabs(v) > 1.0 ? std::fabs(v) : 1.0;
    const double whole = std::fabs(v - near) <= counts_as_whole * size ? near : std::trunc(v);
    if (!(whole >= -word_limit && whole < word_limit)) return 0;
    *word = static_cast<std::int32_t>(whole);
    return 1;
}

static std::int32_t digits_to_word(const number *n)
{
    std::uint32_t word = 0;
    const numnode *digit = n->head;
    for (std::int32_t i = 0; i < n->size; ++i, digit = digit->next) {
        word = (word << digit_bits) + static_cast<std::uint32_t>(digit->digit);
    }
    return static_cast<std::int32_t>(word);
}

int value_to_word(const quolynode *value, std::int32_t *word)
{
    *word = 0;
    if (!value->is_num) return 0;
    switch (live_view()) {
    case view_float: return float_to_word(value->num->real, word);
    case view_field:
    case view_modular:
    case view_word: *word = value->num->word; return 1;
    case view_small:
    case view_digits: *word = digits_to_word(value->num); return 1;
    }
    __builtin_unreachable();
}

int value_to_count(const quolynode *value, int wrong, std::int32_t *word)
{
    *word = 0;
    if (!value->is_num) return wrong;
    const double v = num_to_double(value->num);
    if (!std::isfinite(v)) return wrong;
    if (std::fabs(v) >= word_limit) return err_counter_too_big;
    value_to_word(value, word);
    return 0;
}

std::int32_t divide_words(std::int32_t a, std::int32_t b, char op)
{
    if (b == 0) {
        error(err_need_integer_value, token.text);
        return 0;
    }
    if (op != '|') return wrap(std::int64_t{a} / b);
    const std::int64_t rest = std::int64_t{a} % b;
    return wrap(rest < 0 && pos_mod ? rest + (b < 0 ? -std::int64_t{b} : b) : rest);
}

}  // namespace kelmar

#pragma once
// session/words.h -- machine integers: a value as a word of 32 bits, and the arithmetic of words.
//
// What does not fit wraps, and division truncates. In modular mode sums, products and negatives are taken in
// the ring of the modulus.

#include "numbers/mode.h"
#include "numbers/word_mod.h"
#include "quoly/quoly.h"

namespace kelmar {

inline constexpr double word_limit = 2147483648.0;  // what is as large fits no word

// *word = the value as an integer: what is near a whole number is that number, else it is cut towards zero;
// long integers are taken modulo 2^32. Declines (0) when it is no number, or a float that fits no word.
int value_to_word(const quolynode *value, std::int32_t *word);

// *word = the value of a finite number below 2^31 in magnitude, as a coordinate or a bound. Return 0, or the
// number of the error: `wrong` when it is no such number, 47 when it is too large; *word is then 0.
int value_to_count(const quolynode *value, int wrong, std::int32_t *word);

// a / b, a \ b, a | b, by op. Errors: 68 for b = 0; the result is then 0.
std::int32_t divide_words(std::int32_t a, std::int32_t b, char op);

inline std::int32_t wrap(std::int64_t v)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
}

// a + b, a - b, a * b and -a.
inline std::int32_t add_words(std::int32_t a, std::int32_t b)
{
    return modularmode ? mod_add(to_residue(a), to_residue(b), modulus) : wrap(std::int64_t{a} + b);
}

inline std::int32_t subtract_words(std::int32_t a, std::int32_t b)
{
    return modularmode ? mod_sub(to_residue(a), to_residue(b), modulus) : wrap(std::int64_t{a} - b);
}

inline std::int32_t multiply_words(std::int32_t a, std::int32_t b)
{
    return modularmode ? modmult(to_residue(a), to_residue(b)) : wrap(std::int64_t{a} * b);
}

inline std::int32_t negate_word(std::int32_t a)
{
    if (!modularmode) return wrap(-std::int64_t{a});
    const std::int32_t residue = to_residue(a);
    return finf || residue == 0 ? residue : modulus - residue;
}

}  // namespace kelmar

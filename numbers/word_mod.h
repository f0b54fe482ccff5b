#pragma once
// numbers/word_mod.h -- arithmetic on single residues and on elements of the two table fields.
//
// Residues stand in 0 .. modulus-1. The three sizes of modulus have paths of their own: below 65535 a product
// fits 32 bits, above it takes 64, and the table fields look it up. `%` runs only when the product reaches
// the modulus.
//
// Inverses come from the extended Euclidean algorithm, in table fields from f2t16inv. They differ in what a
// residue without inverse gets: mod_inverse is for code that knows better, so it is an internal fault; the
// other two answer for what a user typed, so it is an error.
//
// A count (a degree, a loop counter) stands unreduced in its word, so that it is shown and compared, and used
// as an exponent or a bound, as it is. Where it takes part in arithmetic, as a number or in a polynomial,
// to_residue comes first; in a table field the low bits count.

#include <cstdint>
#include "numbers/fields.h"
#include "numbers/mode.h"

namespace kelmar {

// The word is a residue of the present ring.
inline bool is_residue(std::int32_t w)
{
    return static_cast<std::uint32_t>(w) < static_cast<std::uint32_t>(modulus);
}

// The residue that the word, which is none, stands for.
std::int32_t residue_of_count(std::int32_t w);

// The residue that any word stands for.
inline std::int32_t to_residue(std::int32_t w)
{
    return __builtin_expect(is_residue(w), 1) ? w : residue_of_count(w);
}

// a + b in the ring of modulus m, both residues.
inline std::int32_t mod_add(std::int32_t a, std::int32_t b, std::int32_t m)
{
    if (finf) return a ^ b;
    std::uint32_t s = static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b);
    if (s >= static_cast<std::uint32_t>(m)) s -= static_cast<std::uint32_t>(m);
    return static_cast<std::int32_t>(s);
}

// a - b in the ring of modulus m, both residues.
inline std::int32_t mod_sub(std::int32_t a, std::int32_t b, std::int32_t m)
{
    if (finf) return a ^ b;
    const std::int32_t d = a - b;
    return d < 0 ? d + m : d;
}

// a + b for any word b, brought into 0 .. m-1 first. Not for table fields.
std::int32_t spec_mod_add(std::int32_t a, std::int32_t b, std::int32_t m);

// a * b in a prime or composite ring: modmult without the test for a table field.
inline std::int32_t nmodmult(std::int32_t a, std::int32_t b)
{
    if (smallmodulus) {
        std::uint32_t p = static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b);
        if (p >= static_cast<std::uint32_t>(modulus)) p %= static_cast<std::uint32_t>(modulus);
        return static_cast<std::int32_t>(p);
    }
    std::uint64_t p = static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b);
    if (p >= static_cast<std::uint64_t>(modulus)) p %= static_cast<std::uint64_t>(modulus);
    return static_cast<std::int32_t>(p);
}

// a * b in the field of 2^16 elements, by logarithms.
inline std::int32_t wide_field_mult(std::int32_t a, std::int32_t b)
{
    const auto x = static_cast<std::uint16_t>(a), y = static_cast<std::uint16_t>(b);
    if (x == 0 || y == 0) return 0;
    const std::int32_t s = f2t16log[x] + f2t16log[y];
    return f2t16exp[s < 65535 ? s : s - 65535];
}

// a * b in the field of 2^8 elements.
inline std::int32_t byte_field_mult(std::int32_t a, std::int32_t b)
{
    return f256prod[static_cast<std::uint8_t>(a) * 256 + static_cast<std::uint8_t>(b)];
}

// The element that a word stands for in the present table field; outside one, the word.
inline std::int32_t code_mask()
{
    return !finf ? -1 : f256 ? 255 : 65535;
}
inline std::int32_t field_code(std::int32_t a)
{
    return a & code_mask();
}

// a * b in the present field, by its tables.
inline std::int32_t field_mult(std::int32_t a, std::int32_t b)
{
    return f256 ? byte_field_mult(a, b) : wide_field_mult(a, b);
}

// a * b in the present ring. f256 is set in its field only, and asked first: there the product is one
// look-up, so that a second test would be half as long as all the rest.
inline std::int32_t modmult(std::int32_t a, std::int32_t b)
{
    if (f256) return byte_field_mult(a, b);
    return finf ? wide_field_mult(a, b) : nmodmult(a, b);
}

// a * b modulo m < 65535; in a table field, the field's product.
std::int32_t mod_mult(std::int32_t a, std::int32_t b, std::int32_t m);

// a * b modulo modulus - 1: arithmetic on exponents.
std::int32_t spec_modmult(std::int32_t a, std::int32_t b);

// *r = the inverse of a. Faults: "bad seca." for a = 0; on a zero divisor the result is undefined.
void mod_inverse(std::int32_t a, std::int32_t *r);

// *r = the inverse of a. Errors: 85 when a has none; then *r = 0.
void emod_inverse(std::int32_t a, std::int32_t *r);

// Return the inverse of a. Errors: 85, after a line with a; then 0.
std::int32_t imod_inverse(std::int32_t a);

struct word_node;  // numbers/primes.h

// Return the inverse of the product of the words of the list, any words; 1 for none. Faults: as mod_inverse.
std::int32_t inverse_prod(const word_node *list);

// Return the inverse of the product over the list of x - p, residues. Faults: as mod_inverse, for x in the
// list.
std::int32_t multi_inverse_prod(const word_node *list, std::int32_t x);

}  // namespace kelmar

#pragma once
// numbers/limbs.h -- the scratch form of long integers: magnitudes as arrays of 56-bit limbs.
//
// Chains are how a long integer is kept. Inside one long product or quotient its digits are gathered two to a
// limb, least significant first, and the result is written out as a fresh chain. 56 bits leave room in a word
// for a sum or a difference with its carry, and in 128 bits for a column of 2^16 products.
//
// Arrays are borrowed from one kept buffer that only grows. A jump that leaves a routine half done harms
// nothing: the next one takes the buffer from its start.

#include "numbers/number.h"

namespace kelmar {

using limb = std::uint64_t;
using double_limb = unsigned __int128;

inline constexpr std::int32_t limb_bits = 2 * digit_bits;
inline constexpr limb limb_mask = (limb{1} << limb_bits) - 1;

// x with the sign `sign`, 0 or -1, put on or taken off.
inline std::int32_t turned(std::int32_t x, std::int32_t sign)
{
    return (x ^ sign) - sign;
}

// -1 for a negative long integer, else 0.
inline std::int32_t sign_of(const number *a)
{
    return a->head->digit < 0 ? -1 : 0;
}

inline std::int32_t limbs_of(std::int32_t size)
{
    return (size + 1) / 2;
}

// to[0 .. limbs_of(size)) = the magnitude of the chain of `size` digits from head. to filled.
void gather_limbs(const numnode *head, std::int32_t size, limb *to);

// c = from[0 .. n), negated when sign is -1 (else 0), n > 0; leading zeros are allowed. c replaced.
void scatter_limbs(const limb *from, std::int32_t n, std::int32_t sign, number *c);

// Give c `size` > 0 digits, whatever they hold: the nodes that it has, less some, or fresh ones in front.
void resize_chain_slow(number *c, std::int32_t size);
inline void resize_chain(number *c, std::int32_t size)
{
    if (c->size != size) resize_chain_slow(c, size);
}

// c = v, negated when sign is -1 (else 0), in the nodes that it has. c replaced.
void set_small_value(limb v, std::int32_t sign, number *c);
void set_small_value(double_limb v, std::int32_t sign, number *c);  // v < 2^112

// Return n limbs of the kept buffer, borrowed until the next call.
limb *scratch_limbs(std::int64_t n);

}  // namespace kelmar

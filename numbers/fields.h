#pragma once
// numbers/fields.h -- the tables of the fields of 2^8 and 2^16 elements.
//
// GF(2^8) is the polynomials over GF(2) modulo x^8 + x^4 + x^3 + x + 1, an element coded by its bits.
// GF(2^16) is GF(2^8)[t] modulo t^2 + 2t + 1, where 2 is the element x of GF(2^8); code 256 * high + low;
// logarithms to the base 263, that is t + 7. Inverses of both fields stand in f2t16inv, because its first 255
// are those of GF(2^8). The start-up data fill the tables; a file that can't be read leaves zeros.

#include <cstdint>

namespace kelmar {

inline std::uint16_t f256prod[256 * 256];  // a * 256 + b holds a b
inline std::uint16_t f256sqr[256];         // square roots
inline std::uint16_t f256inv[256];         // 1 .. 255; loaded and checked, not consulted
inline std::uint16_t f2t16exp[65536];      // powers of 263
inline std::uint16_t f2t16log[65536];      // 1 .. 65535
inline std::uint16_t f2t16inv[65536];      // 1 .. 65535
inline std::uint16_t f2t16sqr[65536];      // square roots

}  // namespace kelmar

#pragma once
// tests/support/ring_brackets.h -- brackets of rings that no computation opens by itself: modulo a number
// that may have divisors, and of exact numbers.

#include "poly/ring_change.h"

namespace kelmar_test {

// Residues modulo m, 2 .. 2147483646, prime or not, are live until leave_ring.
inline void enter_any_modulus(std::int32_t m, kelmar::ring_bracket *b)
{
    kelmar::enter_modulus(2, b);
    kelmar::set_modulus(m);
}

// Digit chains are live until leave_ring. Interrupts are answered.
inline void enter_exact(kelmar::ring_bracket *b)
{
    kelmar::enter_modulus(2, b);
    kelmar::flotemode = kelmar::modularmode = kelmar::lintmode = 0;
    kelmar::interrupts_held = b->held;
}

}  // namespace kelmar_test

#pragma once
// gcd/word_steps.h -- steps of Euclid's algorithm on word arrays.
//
// a[i] is the coefficient of x^i, a residue modulo a prime. A degree of -1 is zero.
//
// Nearly every step of Euclid's algorithm has a quotient of degree 1, so that one is a pass of its own: each
// word becomes s x[i] - q0 y[i] - q1 y[i-1], three products and one reduction. Two degrees at a time is also
// how a longer quotient is taken off. Where the length of a pass does not make up for an inverse, the
// dividend is scaled by the square of the divisor's lead instead: a remainder counts up to a unit.

#include <cstdint>
#include <type_traits>

namespace kelmar {

// default 16; words that a pass does at once at most, where the processor can: 1, 8 or 16; tests; reset:
// never
inline std::int32_t word_lanes = 16;

// What a prime needs for its passes.
struct word_ring {
    std::uint32_t p;
    std::uint32_t low_inverse;  // of p modulo 2^32; 0 for p = 2
    std::uint32_t square;       // 2^64 mod p
};
static_assert(std::is_trivial_v<word_ring>);

// A step: x := scale x - (q1 X + q0) X^shift y.
struct word_step {
    std::int32_t scale, q1, q0;
    std::int32_t shift;
};
static_assert(std::is_trivial_v<word_step>);

// *ring = the field of the live modulus, a prime.
void set_word_ring(word_ring *ring);

// Return a b in the ring.
std::int32_t ring_product(const word_ring *ring, std::int32_t a, std::int32_t b);

// *step = the next step of x modulo y, of degrees dx >= dy >= 0. exact: scale 1.
void next_step(const word_ring *ring, const std::int32_t *x, std::int32_t dx, const std::int32_t *y,
               std::int32_t dy, bool exact, word_step *step);

// x = scale x - (q1 X + q0) X^shift y, where y has degree dy; x is written up to x[shift + dy + 1], which it
// must have, at most. A scale other than 1 asks for shift 0.
void take_step(const word_ring *ring, const word_step *step, std::int32_t *x, const std::int32_t *y,
               std::int32_t dy);

// Lower *d to the greatest degree of x that is not zero.
inline void trim_degree(const std::int32_t *x, std::int32_t *d)
{
    while (*d >= 0 && x[*d] == 0) --*d;
}

// x = a unit times x modulo y. *dx = its degree; what stands above it is undefined. *dx >= dy >= 0.
// *dx - dy <= 25000.
void reduce_words(const word_ring *ring, std::int32_t *x, std::int32_t *dx, const std::int32_t *y,
                  std::int32_t dy);

}  // namespace kelmar

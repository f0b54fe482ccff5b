#pragma once
// poly/transform.h -- products of long dense arrays by number-theoretic transforms.
//
// Coefficients are residues modulo a prime just below 2^62 that has roots of unity of order 2^32. One prime
// gives integers below 2^60 in magnitude, two give them below 2^122, more of them longer ones
// (poly/residues.h).

#include <cstdint>

namespace kelmar {

inline constexpr int transform_primes = 12;
inline constexpr std::uint64_t transform_prime[transform_primes] = {
    0x3fffffee00000001, 0x3fffffb400000001, 0x3fffffa000000001, 0x3fffff5d00000001,
    0x3fffff4900000001, 0x3fffff4600000001, 0x3fffff3000000001, 0x3fffff2800000001,
    0x3fffff1c00000001, 0x3fffff1800000001, 0x3ffffed600000001, 0x3ffffecb00000001};
inline constexpr int longest_transform = 22;  // logarithm of the greatest length
inline constexpr int one_prime_bits = 60;     // of a magnitude that the first prime tells, sign apart
inline constexpr int two_primes_bits = 122;   // that the first two tell

// x = the cyclic product of x and y, arrays of 2^log entries, all below transform_prime[k]. y may be x,
// else it is destroyed. x replaced. Declines (0) when the heap has no room for the roots. Polls: between
// transforms.
// Cost: three transforms of log 2^(log - 1) steps. Source: Cooley and Tukey, Gentleman and Sande; Harvey's
// sums below four times the prime.
int cyclic_product(int k, std::uint64_t *x, std::uint64_t *y, int log);

// Return the integer that is r[k] modulo each prime, least in magnitude.
std::int64_t integer_of(std::uint64_t r);
__int128 integer_of(std::uint64_t r0, std::uint64_t r1);

}  // namespace kelmar

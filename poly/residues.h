#pragma once
// poly/residues.h -- integers of several words, and their residues modulo the primes of transforms.

#include "poly/transform.h"

namespace kelmar {

// The first so many primes, and their product in words, the least significant first.
struct residue_basis {
    int primes;
    std::uint64_t all[transform_primes];
    std::uint64_t half[transform_primes];
};

// How many primes tell integers below 2^bits in magnitude.
inline constexpr int primes_of_bits(int bits)
{
    return (bits + 2) / 62 + 1;
}

// *b = the basis of so many primes.
void set_basis(int primes, residue_basis *b);

// Return w[0 .. words), the least significant first, modulo prime k.
std::uint64_t residue_of_words(int k, const std::uint64_t *w, int words);

// to[0 .. words) = the integer that is r[k] modulo each prime of the basis, least in magnitude; two's
// complement. It must fit. r destroyed. Source: Garner's mixed radix.
void integer_of_residues(const residue_basis *b, std::uint64_t *r, std::uint64_t *to, int words);

}  // namespace kelmar

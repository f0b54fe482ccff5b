#pragma once
// gcd/half_gcd.h -- half of Euclid's algorithm at once, on word arrays modulo a prime.
//
// The quotients of the first half of Euclid's sequence depend on the upper halves of the operands alone. So
// they are found on those, by recursion, and what they do to the pair is one matrix product. The matrices
// have determinant 1 up to a unit: the gcd of the pair stays, whatever else happens.
//
// Operands have at most the degree array_degree_limit. Words above a degree that is told are undefined.
// Nothing polls; the work is done in one block that is never freed.

#include "gcd/onevar_gcd.h"
#include "poly/onevar.h"

namespace kelmar {

inline constexpr std::int32_t half_gcd_base = 100;     // degree below which parthg takes single steps
inline constexpr std::int32_t half_gcd_leaves = 4001;  // sum of degrees below which hgcd takes them

// The matrix by which a pair was multiplied: x' = r11 x + r12 y, y' = r21 x + r22 y. For a pair whose first
// had degree n, each entry has room for n / 2 + 2 words.
struct word_matrix {
    std::int32_t *r11, *r12, *r21, *r22;
    std::int32_t d11, d12, d21, d22;
};
static_assert(std::is_trivial_v<word_matrix>);

// Single steps on x, y, of degrees *dx >= *dy, while 2 *dy is not below the first *dx. All filled anew.
void euclid_onevar(std::int32_t *x, std::int32_t *y, std::int32_t *dx, std::int32_t *dy, word_matrix *m);

// The same by halves. Nothing, where *dy is not above half of *dx: then the matrix is the unit. top: this is
// the first call, which may use all of the block.
void parthg(std::int32_t *x, std::int32_t *y, std::int32_t top, std::int32_t *dx, std::int32_t *dy,
            word_matrix *m);

// The same without the matrix. *dx < *dy is put right, after a message. Faults: " onevar_split_poly.", when
// both have degree 1; then nothing is done.
void fullhg(std::int32_t *x, std::int32_t *y, std::int32_t *dx, std::int32_t *dy);

// simple_onevar_gcd, by halves. Faults: as divide_y_into_x_1, for a pair with a zero.
void hgcd(word_pair *pair);

}  // namespace kelmar

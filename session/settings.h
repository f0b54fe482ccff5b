#pragma once
// session/settings.h -- switches of what the system does not do yet.
//
// They are kept, shown and saved. Each moves to the header of its module when that comes.

#include <cstdint>

namespace kelmar {

// Gcds --------------------------------------------------------------------------------------------------

// default 1; gcds found by lifting are checked twice; &c; reset: never
inline std::int32_t hen_check = 1;
// default 400; primes looked for, at most largest_first_factor; &X; reset: never
inline std::int32_t aux_num_1factor = 400;
inline constexpr std::int32_t largest_first_factor = 4583;  // as many candidates as the table offers
// default 100; primes looked for, second list; &A; reset: never
inline std::int32_t aux_num_2factor = 100;

// Matrices ----------------------------------------------------------------------------------------------

// default -1; rows; a smaller determinant is expanded by minors, negative: the default applies; &D; reset:
// never
inline std::int32_t detcutoff = -1;
// default 0; 1: determinants try fraction-free elimination; &K; reset: never
inline std::int32_t gauss_cutoff = 0;
// default 5000, 150; mass beyond which determinants over the rationals, modulo a prime, are interpolated; &L;
// reset: never
inline std::int32_t rat_det_method_cut = 5000;
inline std::int32_t mod_det_method_cut = 150;
// default 0; interpolated determinants write what they have to the save file; &5; reset: never
inline std::int32_t lagrange_stash = 0;
// default 1; integer matrices are inverted through images modulo primes; &I; reset: never
inline std::int32_t mod_matrix_ok = 1;
// default 1; characteristic polynomials modulo a prime take the slow road; &B; reset: never
inline std::int32_t chpoly_block = 1;
// default 0; 0 .. 5; how pivots of sparse matrices are chosen; &u; reset: never
inline std::int32_t pseudet_heur = 0;

// Storage -----------------------------------------------------------------------------------------------

// default 0; large data may go to the disk; &&; reset: never
inline std::int32_t diskstore = 0;

}  // namespace kelmar

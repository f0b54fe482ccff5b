#pragma once
// quoly/charpoly_data.h -- the stored interpolation data: Lagrange basis polynomials.
//
// Row r of the table has the r + 1 basis polynomials of degree r, in the first variable, for the points 1 ..
// r + 1: entry k is 1 at the point k + 1 and 0 at the others. Rows 0 to 11, but for the last entry of each,
// are read at the start; the rest when somebody asks for it.

#include <cstdint>
#include "numbers/plain_quoly.h"

namespace kelmar {

inline constexpr std::int32_t pol_side = 38;  // rows of the table, and room in each

// default null; entry k of row r at pol_side * r + k, null until it is read; its reader; reset: never
inline quolynode *pol[pol_side * pol_side];

// The values 1 to 998 -------------------------------------------------------------------------------------

inline constexpr std::int32_t denom_count = 999;
inline quolynode
    *denom[denom_count];  // by value; digits, words and doubles are filled, so they hold in any mode

// default 998; how many of them characteristic polynomials may divide by: the modulus when that is less;
// the mode changes
inline std::int32_t limit_char_arrays = denom_count - 1;
// default 1; stored data of characteristic polynomials wait to be made; Set_prods_for_char; reset: never
inline std::int32_t need_to_set_char_poly = 1;

// Fill denom, in the digit view. Called once a session.
void Set_prods_for_char();

// Reading ------------------------------------------------------------------------------------------------

// *p = the next polynomial of the interpolation file: its degree, above 0, and all coefficients from the top.
// *p filled, in the digit view. Declines (0) with *p null when the file is damaged or at its end.
int direct_poly_read(polynode **p);

// *q = the next entry: its denominator, above 0, and its numerator. A denominator 1 is left out. The rest as
// direct_poly_read.
int direct_quoly_read(quolynode **q);

// Set entry 0 of row 0 to 1, and read the 66 entries that belong to the start. Called once a session, in the
// digit view, when the files are open; called again, it starts anew.
void load_char_data();

// Return entry `index` of row `row`, reading on as far as need be, in any mode; digits and doubles are
// filled. Borrowed from the table. Null when there is no such entry, or the file doesn't give it: the caller
// computes it.
const quolynode *get_char_poly(std::int32_t row, std::int32_t index);

}  // namespace kelmar

#pragma once
// numbers/decimal.h -- decimal literals in, decimal text out.
//
// A literal is gathered eight digits a node, as its digits come, into a base 10^8 chain; close_literal shifts
// the groups so that all but the first are full. Nothing here knows where the digits come from.

#include <cstdio>
#include "numbers/number.h"

namespace kelmar {

// default 76; columns; lines are broken at or past it; &_d
inline std::int32_t dispcutoff = 76;
// default backquote; ends a broken line, and joins lines for the scanner; &U
inline char continuation = '`';
// default 0; output is suited to reading back; &U
inline std::int32_t uglyprint = 0;
// default 5; groups of eight decimals shown behind the point; &d
inline std::int32_t disp_size = 5;
// default none, 10^40 from the start on; 10^(8 disp_size), which turns a fraction into its shown decimals;
// calc_disp; reset: never
inline number disp_cons = {};
// default 0; doubles are written with as many digits as reading them back needs; saves; reset: unwind
inline std::int32_t round_trip = 0;

// No long integer has more groups; a larger disp_size stands for this.
inline constexpr std::int32_t groups_limit = 34525;

// Return how many groups of decimals are shown.
inline std::int32_t places_shown()
{
    return disp_size < groups_limit ? disp_size : groups_limit;
}

// disp_cons = 10^(8 places_shown()), a long integer whatever the view: for who has changed disp_size, and who
// is to read it. Cost: nothing when it is so already.
void calc_disp();

// A decimal literal while it is read.
struct literal {
    number groups;          // base 10^8, most significant first
    std::int32_t ndigits;   // digits read, leading zeros included: the scale of a fraction
    std::int32_t in_group;  // digits in the last group
};

void open_literal(literal *lit);                       // *lit filled
void literal_digit(literal *lit, std::int32_t digit);  // add one decimal digit, 0 .. 9
void close_literal(literal *lit);                      // make the groups a normal base 10^8 chain; none is 0

// n = the closed literal in the live view; its chain is released. n replaced. Words that overflow write a
// warning, limited by warn_cnt to 30 a statement.
void literal_to_number(literal *lit, number *n);

// Write n in the live view to `out`; *col advances. wrap: long integers break at dispcutoff. no_sign: the
// sign of a long integer is not written. spaced_minus: a negative value is "- " and its magnitude.
void display(std::FILE *out, int wrap, int no_sign, const number *n, std::int32_t *col, int spaced_minus);

// Write a long integer. compact: no leading zeros in the first group. pad: zeros up to places_shown()
// groups first. is_base10: n holds a base 10^8 chain. Faults: "bad 0 node found in showint".
void showint(std::FILE *out, const number *n, int compact, int pad, int is_base10, int no_sign,
             int spaced_minus, int wrap, std::int32_t *col);

// out = the base 10^8 chain of the long integer n. out replaced.
void make_base_10(const number *n, number *out);

}  // namespace kelmar

#pragma once
// poly/display.h -- the text of a polynomial.
//
// For x at level 1 and y at level 2 a polynomial reads (y + 1)x^2 - x + y - 3: the highest power first, a
// coefficient of several terms in brackets, what is free of x behind, without brackets. Ugly text has no
// blanks and an explicit *, so that it can be typed in again. Columns are counted by estimate, lines exactly.

#include <cstdio>
#include "poly/variables.h"

namespace kelmar {

inline constexpr std::int32_t shown_lines = 150;  // of one value; what comes after them is suppressed

// default 0; polynomials of several variables are shown as a list of monomials; &2; reset: never
inline std::int32_t monomial_list = 0;
// default 1; the display of a long value stops after shown_lines lines; &_s; reset: never
inline std::int32_t do_line_sup = 1;
// default 0; lines of the present value are counted, and it was not cut yet; begin_text, poly_display
inline std::int32_t linesuppression = 0;

// Where a value is written to, and how far it has come.
struct text_place {
    std::FILE *out;
    std::int32_t wrap;   // 1: a broken line ends in the continuation character
    std::int32_t col;    // estimated
    std::int32_t lines;  // begun
    std::int32_t cut;    // 1: the rest of the value is suppressed
};

// *t = a place at column `col`, where a value begins. Lines are counted only at the terminal.
void begin_text(text_place *t, std::FILE *out, int wrap, std::int32_t col);

// Write p, whose outer list belongs to var. spaced_minus: a sign in front of it gets a blank behind. top: p
// is the whole of what is written. Faults: an exp 0 term that is a wrapped number.
void poly_display(text_place *t, const polynode *p, const pt *var, int spaced_minus, int top);

// Write p as a flat list of monomials, each with a blank behind it. p spared.
void monomial_disp(text_place *t, const polynode *p, const pt *var, int spaced_minus);

// Break the line if it is full.
void checklength(text_place *t);

// *col += n, or 8 within 8 columns of dispcutoff: the line breaks soon.
void adjlength(std::int32_t *col, std::int32_t n);

// The first number that the text of p shows is to get a + in front; below wrappers, brackets count as
// positive.
bool need_to(const polynode *p);

// Write the nodes of p, a level a line, with two blanks of indent a level. For debugging.
void crude_poly_disp(std::FILE *out, int wrap, const polynode *p, int indent, const pt *var);

}  // namespace kelmar

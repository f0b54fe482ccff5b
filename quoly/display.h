#pragma once
// quoly/display.h -- the text of a scalar value.

#include <cstdio>
#include "quoly/quoly.h"

namespace kelmar {

// How a value is written.
struct value_form {
    std::int32_t wrap;       // lines break at dispcutoff; 0: a form to be read back, polynomials in brackets
    std::int32_t final;      // the value ends here, with a line end
    std::int32_t top;        // a value shown by itself: a polynomial is led by a blank
    std::int32_t extra;      // one more line end behind the final one
    std::int32_t as_char;    // a number is written as the character of that code
    const char *terminator;  // written behind the value when it is final and wrap is 0
};

// Write q to `out`, *col advancing. At the terminal do_line_sup holds.
void quoly_display(std::FILE *out, const value_form *form, const quolynode *q, std::int32_t *col);

// The same for a value within other text, with the line end if it is final.
void quoly_display(std::FILE *out, int wrap, int final, const quolynode *q, std::int32_t *col);

}  // namespace kelmar

#pragma once
// quoly/display.h -- the text of a scalar value.

#include <cstdio>
#include "numbers/plain_quoly.h"

namespace kelmar {

// Write q to `out`, *col advancing. wrap: lines break at dispcutoff. final: the value ends here, with a line end.
void quoly_display(std::FILE *out, int wrap, int final, const quolynode *q, std::int32_t *col);

}  // namespace kelmar

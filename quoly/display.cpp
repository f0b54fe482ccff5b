// quoly/display.cpp -- the text of a scalar value: a plain number.
#include "quoly/display.h"
#include "numbers/decimal.h"

namespace kelmar {

void quoly_display(std::FILE *out, int wrap, int final, const quolynode *q, std::int32_t *col)
{
    display(out, wrap, 0, q->num, col, 0);
    if (final && wrap) std::fputc('\n', out);
}

}  // namespace kelmar

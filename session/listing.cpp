// session/listing.cpp -- what exists, in the form in which it can be typed again.
#include "session/listing.h"
#include "numbers/decimal.h"
#include "poly/display.h"
#include "quoly/display.h"
#include "session/names.h"
#include "session/output.h"

namespace kelmar {

// Write the variable and its value. In front of a polynomial that is not written in a form which the
// evaluator reads stands the command that reads it.
static void write_p_stuff(const var_node *v)
{
    std::fprintf(Output, " %s", v->text);
    if (!v->value || is_array_mark(v->value)) {
        std::fputs(" array parameter.\n", Output);
        return;
    }
    std::fputs(" := ", Output);
    std::int32_t col = 0;
    if (!v->value->is_num && !monomial_list && !uglyprint) std::fputs("&_n ", Output);
    quoly_display(Output, 1, 1, v->value, &col);
}

void listvars()
{
    for (const var_node *bucket : sca_store) {
        for (const var_node *v = bucket; v; v = v->next) write_p_stuff(v);
    }
    std::fputs("arrays:\n", Output);
}

}  // namespace kelmar

// session/listing.cpp -- what exists, in the form in which it can be typed again.
#include "session/listing.h"
#include "quoly/display.h"
#include "session/names.h"
#include "session/output.h"

namespace kelmar {

static void write_scalar(const var_node *v)
{
    std::fprintf(Output, " %s", v->text);
    if (!v->value || is_array_mark(v->value)) {
        std::fputs(" array parameter.\n", Output);
        return;
    }
    std::fputs(" := ", Output);
    std::int32_t col = 0;
    quoly_display(Output, 1, 1, v->value, &col);
}

void listvars()
{
    for (const var_node *bucket : sca_store) {
        for (const var_node *v = bucket; v; v = v->next) write_scalar(v);
    }
    std::fputs("arrays:\n", Output);
}

}  // namespace kelmar

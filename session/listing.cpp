// session/listing.cpp -- what exists, in the form in which it can be typed again.
#include "session/listing.h"
#include "numbers/decimal.h"
#include "poly/display.h"
#include "quoly/display.h"
#include "session/arr_listing.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

bool needs_reader(const quolynode *q)
{
    return !q->is_num && !q->is_rat && !monomial_list && !uglyprint;
}

// Write the variable and its value.
static void write_p_stuff(std::FILE *out, const var_node *v, const value_form *form)
{
    std::fprintf(out, " %s", v->text);
    if (!v->value || is_array_mark(v->value)) {
        std::fputs(" array parameter.\n", out);
        return;
    }
    std::fputs(" := ", out);
    if (needs_reader(v->value)) std::fputs("&_n ", out);
    std::int32_t col = 0;
    quoly_display(out, form, v->value, &col);
}

void listvars(bool names_only)
{
    const value_form form = {1, 1, 0, 0, 0, nullptr};
    for (const var_node *bucket : sca_store) {
        for (const var_node *v = bucket; v; v = v->next) {
            if (names_only) {
                std::fprintf(Output, " %s\n", v->text);
            } else {
                write_p_stuff(Output, v, &form);
            }
        }
    }
    std::fputs("arrays:\n", Output);
    describe_arrays(names_only);
}

void save_scalar(std::FILE *out, const var_node *v)
{
    const value_form form = {0, 1, 0, 0, 0, ";"};
    write_p_stuff(out, v, &form);
}

static void save_bucket(std::FILE *out, const var_node *v)
{
    check_stack();
    if (v->next) save_bucket(out, v->next);
    const bool parameter_of_call = v->role == parameter || !v->value || is_array_mark(v->value);
    if (!parameter_of_call) save_scalar(out, v);
}

void save_scalars(std::FILE *out)
{
    for (const var_node *bucket : sca_store) {
        if (bucket) save_bucket(out, bucket);
    }
}

}  // namespace kelmar

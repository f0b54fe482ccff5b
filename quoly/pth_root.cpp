// quoly/pth_root.cpp -- roots of the order of the characteristic.
//
// All exponents are looked at before one is written. In a table field of q elements the root of a number is
// its power with exponent q / 2.
#include "quoly/pth_root.h"
#include "numbers/long_power.h"
#include "poly/variables.h"
#include "session/report.h"

namespace kelmar {

// 0: there is none, or roots are another matter.
static std::int32_t characteristic()
{
    if (flotemode || !modularmode || pseudo_polynames) return 0;
    return finf ? 2 : mod_is_prime ? modulus : 0;
}

static bool exponents_divide(const polynode *p, std::int32_t by)
{
    check_stack();
    for (; p; p = p->next) {
        if (p->exp % by != 0) return false;
        if (!p->isnum && !exponents_divide(p->coef, by)) return false;
    }
    return true;
}

static void root_of_number(number *n)
{
    if (finf) mod_number_power(n->word, f2t16 ? 32768 : 128, &n->word);
}

static void divide_exponents(polynode *p, std::int32_t by)
{
    for (; p; p = p->next) {
        p->exp /= by;
        if (p->isnum) {
            root_of_number(p->num);
        } else {
            divide_exponents(p->coef, by);
        }
    }
}

int pth_root(polynode **p)
{
    const std::int32_t by = characteristic();
    if (by == 0 || !exponents_divide(*p, by)) return 0;
    divide_exponents(*p, by);
    return 1;
}

void quoly_pth_root(quolynode **q)
{
    poly_room room;
    const std::int32_t by = characteristic();
    const bool has_root = by != 0 && ((*q)->is_num || (exponents_divide((*q)->top, by) &&
                                                       (!(*q)->den || exponents_divide((*q)->den, by))));
    if (!has_root) {
        error(err_no_pth_root, "Proot");
        return;
    }
    divide_exponents(as_poly(*q, &room), by);
    if (!(*q)->is_num && (*q)->den) divide_exponents((*q)->den, by);
}

}  // namespace kelmar

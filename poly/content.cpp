// poly/content.cpp -- gcds of all numbers of a polynomial.
//
// One walk in the order of the terms, that ends as soon as the gcd is 1. Most contents are 1, and are known
// to be after two numbers. The running gcd stands where a jump out of a poll finds it.
#include "poly/content.h"
#include "numbers/dispatch.h"
#include "numbers/long_gcd.h"
#include "poly/div_exact.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// g = gcd(g, c) in the digit views. Return whether it is still above 1.
static bool gcd_step(number *g, const number *c)
{
    if (integerflag) {
        const std::int32_t a = g->head->digit, b = c->head->digit;
        g->head->digit = smallgcd(a < 0 ? -a : a, b < 0 ? -b : b);
    } else {
        binary_gcd(g, c, g);
    }
    return !is_longint(g, 1);
}

// g = the gcd of g and all numbers of p. Return whether it is still above 1.
static bool gcd_with_list(number *g, const polynode *p)
{
    for (; p; p = p->next) {
        if (!p->isnum) {
            if (!gcd_with_list(g, p->coef)) return false;
            continue;
        }
        poll_interrupt();
        if (!gcd_step(g, p->num)) return false;
    }
    return true;
}

[[gnu::noinline]] void find_gcdcoefs(const polynode *p, number *g)
{
    const number *lead = leading_coef(p);
    if (iszero(lead)) kelmar_error("0 in find gcd coefs.", 1);
    if (iszero(lead) || lintmode) {
        setvalue(1, g);
        return;
    }
    product_work *work = open_work(__builtin_frame_address(0));
    number *running = nullptr;
    newimag(&running);
    running->size = 0;
    work->parts[0] = new_constant(running);
    setvalue(0, running);
    gcd_with_list(running, p);
    num_assign(running, g);
    close_work(work);
}

void gcd_coefs(const polynode *p, polynode **c)
{
    number content;
    content.size = 0;
    find_gcdcoefs(p, &content);  // which may be left: nothing is taken before
    number *g = nullptr;
    newimag(&g);
    *g = content;
    free_poly(c);
    *c = new_constant(g);
}

}  // namespace kelmar

// poly/monic.cpp -- division of a polynomial by its leading number.
#include "poly/monic.h"
#include <cmath>
#include "numbers/dispatch.h"
#include "poly/div_steps.h"
#include "session/report.h"

namespace kelmar {

int monic_poly(polynode **p, number *c)
{
    const number *lead = leading_coef(*p);
    if (iszero(lead) || (flotemode && !std::isfinite(lead->real))) {
        setvalue(1, c);
        return 0;
    }
    num_assign(lead, c);
    number_divisor d;
    if (!set_divisor(c, 1, &d)) {
        setvalue(1, c);
        error(err_no_inverse, "/");
        return 0;
    }
    divide_in_place(p, &d, 0);
    return 1;
}

}  // namespace kelmar

#pragma once
// tests/support/views.h -- make one view of numbers live for the length of a block.

#include "numbers/fields.h"
#include "numbers/mode.h"

namespace kelmar_test {

// The view is live until the end of the block; then the flags are as before. `m` is the modulus of the modular
// view. The tables of the field of 2^16 elements must be loaded before its products are asked for.
struct in_view {
    std::int32_t saved[11];

    explicit in_view(kelmar::num_view view, std::int32_t m = 101)
        : saved{kelmar::flotemode, kelmar::modularmode,  kelmar::lintmode,     kelmar::integerflag,
                kelmar::modulus,   kelmar::half_modulus, kelmar::smallmodulus, kelmar::mod_is_prime,
                kelmar::finf,      kelmar::f256,         kelmar::f2t16}
    {
        using namespace kelmar;
        flotemode = view == view_float;
        modularmode = view == view_field || view == view_modular;
        lintmode = view != view_small && view != view_digits;
        integerflag = view == view_small;
        finf = f256 = view == view_field;
        f2t16 = 0;
        modulus = view == view_field ? 256 : view == view_modular ? m : -1;
        half_modulus = modulus / 2;
        smallmodulus = modulus < 65535;
        mod_is_prime = finf;
    }
    in_view(const in_view &) = delete;
    in_view &operator=(const in_view &) = delete;

    ~in_view()
    {
        using namespace kelmar;
        std::int32_t *const flags[11] = {&flotemode, &modularmode,  &lintmode,     &integerflag,
                                         &modulus,   &half_modulus, &smallmodulus, &mod_is_prime,
                                         &finf,      &f256,         &f2t16};
        for (int k = 0; k < 11; ++k) *flags[k] = saved[k];
    }
};

}  // namespace kelmar_test

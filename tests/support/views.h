#pragma once
// tests/support/views.h -- make one view of numbers live for the length of a block.

#include "numbers/fields.h"
#include "numbers/mode.h"
#include "tests/support/catch_error.h"

namespace kelmar_test {

inline constexpr kelmar::num_view all_views[] = {kelmar::view_float, kelmar::view_field, kelmar::view_modular,
                                                 kelmar::view_word,  kelmar::view_small, kelmar::view_digits};

inline constexpr int view_flags = 12;
inline std::int32_t *const view_flag[view_flags] = {
    &kelmar::flotemode, &kelmar::modularmode,  &kelmar::lintmode,     &kelmar::integerflag,
    &kelmar::modulus,   &kelmar::half_modulus, &kelmar::smallmodulus, &kelmar::mod_is_prime,
    &kelmar::finf,      &kelmar::f256,         &kelmar::f2t16,        &kelmar::two28_mod};

// At the end of the block the view is what it was at the start.
struct kept_view {
    std::int32_t saved[view_flags];

    kept_view()
    {
        for (int k = 0; k < view_flags; ++k) saved[k] = *view_flag[k];
    }
    kept_view(const kept_view &) = delete;
    kept_view &operator=(const kept_view &) = delete;
    ~kept_view()
    {
        for (int k = 0; k < view_flags; ++k) *view_flag[k] = saved[k];
    }
};

// The view is live until the end of the block; then the flags are as before. `m` is the modulus of the
// modular view; the field is that of 2^8 elements.
struct in_view {
    kept_view kept;

    explicit in_view(kelmar::num_view view, std::int32_t m = 101)
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
};

// caught_error, with the view put back that an unwinding error leaves.
template <class F> int error_in_view(F f)
{
    const kept_view kept;
    return caught_error(f);
}

}  // namespace kelmar_test

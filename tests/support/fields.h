#pragma once
// tests/support/fields.h -- prime fields and both table fields, variables in force, and reports of faults.

#include <gtest/gtest.h>
#include "poly/variables.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "tests/support/divisions.h"

namespace kelmar_test {

// Six variables are in force until the end of the block.
struct six_in_force : six_variables {
    kelmar::pt *saved_names = kelmar::polynames;
    std::int32_t saved_count = kelmar::number_polys;
    six_in_force()
    {
        kelmar::polynames = record;
        kelmar::number_polys = 6;
    }
    six_in_force(const six_in_force &) = delete;
    ~six_in_force()
    {
        kelmar::polynames = saved_names;
        kelmar::number_polys = saved_count;
    }
    kelmar::pt *names()
    {
        return record;
    }
};

// The product in the field of 2^16 elements, by its definition.
inline int product_of_wide_elements(int a, int b)
{
    const int ah = a >> 8, al = a & 255, bh = b >> 8, bl = b & 255;
    const int high = product_of_elements(ah, bh);  // t^2 = 2 t + 1
    const int middle = product_of_elements(ah, bl) ^ product_of_elements(al, bh) ^
                       product_of_elements(high, 2);
    return middle << 8 | (product_of_elements(al, bl) ^ high);
}

// Fill the tables of the field of 2^16 elements, and the roots of both.
inline void make_wide_field()
{
    using namespace kelmar;
    make_small_field();
    for (int a = 0; a < 256; ++a) f256sqr[product_of_elements(a, a)] = static_cast<std::uint16_t>(a);
    int power = 1;
    for (int k = 0; k < 65535; ++k) {
        f2t16exp[k] = static_cast<std::uint16_t>(power);
        f2t16log[power] = static_cast<std::uint16_t>(k);
        power = product_of_wide_elements(power, 263);
    }
    f2t16exp[65535] = 1;
    for (int a = 1; a < 65536; ++a) {
        f2t16inv[a] = f2t16exp[(65535 - f2t16log[a]) % 65535];
        f2t16sqr[f2t16exp[f2t16log[a] * 2 % 65535]] = static_cast<std::uint16_t>(a);
    }
}

// A prime field, or with 256 and 65536 a table field, is live until the end of the block.
struct in_field {
    in_view live;
    explicit in_field(std::int32_t order)
        : live(order == 256 || order == 65536 ? kelmar::view_field : kelmar::view_modular, order)
    {
        kelmar::mod_is_prime = 1;
        if (!kelmar::finf) return;
        make_wide_field();
        kelmar::f256 = order == 256;
        kelmar::f2t16 = order == 65536;
        kelmar::modulus = order;
        kelmar::half_modulus = order / 2;
        kelmar::smallmodulus = order < 65535;
    }
};

// What f writes. At the highest command level no further one is pushed, so a fault unwinds.
template <class F> std::string report_of(F f)
{
    using namespace kelmar;
    const kept_view view;
    const auto saved = levelcount;
    levelcount = highest_level;
    testing::internal::CaptureStdout();
    caught_error([&] {
        Output = stdout;
        f();
    });
    levelcount = saved;
    return testing::internal::GetCapturedStdout();
}

}  // namespace kelmar_test

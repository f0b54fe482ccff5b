#pragma once
// tests/support/fields.h -- rings of numbers: prime fields, both table fields, and others.

#include "numbers/fields.h"
#include "tests/support/views.h"

namespace kelmar_test {

// A ring of numbers: a view, and a modulus.
struct ring {
    kelmar::num_view view;
    std::int32_t modulus;
    int prime;
};
inline constexpr ring field_rings[] = {{kelmar::view_float, 101, 0},         {kelmar::view_field, 256, 1},
                                       {kelmar::view_modular, 3, 1},         {kelmar::view_modular, 101, 1},
                                       {kelmar::view_modular, 65521, 1},     {kelmar::view_modular, 65537, 1},
                                       {kelmar::view_modular, 2147483629, 1}};
inline constexpr ring other_rings[] = {{kelmar::view_modular, 100, 0},
                                       {kelmar::view_word, 101, 0},
                                       {kelmar::view_small, 101, 0},
                                       {kelmar::view_digits, 101, 0}};

// The product in the field of 2^8 elements, by shifts.
inline int product_of_elements(int a, int b)
{
    int product = 0;
    for (; b; b >>= 1) {
        if (b & 1) product ^= a;
        a = a & 0x80 ? (a << 1) ^ 0x11b : a << 1;
    }
    return product;
}

// Fill the tables of the field of 2^8 elements.
inline void make_small_field()
{
    if (kelmar::f256prod[256 + 1] == 1 && kelmar::f2t16inv[1] == 1) return;
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const int product = product_of_elements(a, b);
            kelmar::f256prod[a * 256 + b] = static_cast<std::uint16_t>(product);
            if (product == 1) kelmar::f2t16inv[a] = static_cast<std::uint16_t>(b);
        }
    }
}

struct in_ring {
    in_view live;
    explicit in_ring(const ring &r) : live(r.view, r.modulus)
    {
        kelmar::mod_is_prime = r.prime;
        if (r.view == kelmar::view_field) make_small_field();
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

}  // namespace kelmar_test

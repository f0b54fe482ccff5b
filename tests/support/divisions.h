#pragma once
// tests/support/divisions.h -- what the tests of divisions share: rings, variables, and checks
// by the flat form.

#include <gtest/gtest.h>
#include "poly/variables.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

namespace kelmar_test {

// laurent has the value until the end of the block.
struct in_laurent {
    std::int32_t saved = kelmar::laurent;
    explicit in_laurent(std::int32_t v)
    {
        kelmar::laurent = v;
    }
    in_laurent(const in_laurent &) = delete;
    ~in_laurent()
    {
        kelmar::laurent = saved;
    }
};

// A word that tests change, put back at the end of the block.
struct kept_word {
    std::int32_t *word;
    std::int32_t saved;
    kept_word(std::int32_t *w, std::int32_t v) : word(w), saved(*w)
    {
        *w = v;
    }
    kept_word(const kept_word &) = delete;
    ~kept_word()
    {
        *word = saved;
    }
};

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

// Records of six variables, the outermost first.
struct six_variables {
    kelmar::pt record[6] = {};
    six_variables()
    {
        for (int k = 0; k < 6; ++k) {
            record[k].level = static_cast<std::int16_t>(k + 1);
            record[k].cut = 20;
            record[k].next = k < 5 ? &record[k + 1] : nullptr;
        }
    }
    const kelmar::pt *first() const
    {
        return record;
    }
};

// p is normal, on `vars` levels. The text tells which one it is.
inline void expect_normal(const kelmar::polynode *p, std::int32_t vars, const char *what)
{
    EXPECT_TRUE(kelmar::poly_is_normal(p, vars)) << what << ": " << poly_text(p);
}

// q m + r, by the flat form.
inline kelmar::polynode *product_and_rest(const kelmar::polynode *q, const kelmar::polynode *m,
                                          const kelmar::polynode *r, std::int32_t vars)
{
    poly_operand product(reference_product(q, m, vars));
    return reference_sum(product.p, r, vars);
}

// A random polynomial that is neither zero nor a number.
inline kelmar::polynode *random_divisor(test_random *r, const poly_shape &shape)
{
    for (;;) {
        kelmar::polynode *p = random_poly(r, shape);
        if (!kelmar::is_constant(p)) return p;
        kelmar::free_poly(&p);
    }
}

}  // namespace kelmar_test

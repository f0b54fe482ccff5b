// poly/mul_flat.cpp -- the choice of a ring for a flat product.
#include "poly/mul_flat.h"
#include "poly/flat_product.h"

namespace kelmar {

static int integer_product(const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
                           const flat_packing *packing, polynode **c)
{
    if (sa->size > 2 || sb->size > 2) return flat_long_product(a, b, sa, sb, packing, c);
    const std::int64_t most = std::min(sa->terms, sb->terms);  // products that meet in one term
    const int bits = bits_of(sa->magnitude) + bits_of(sb->magnitude) +
                     bits_of(static_cast<std::uint64_t>(most));
    if (bits <= short_sum_bits) return flat_product(short_integers{}, a, b, sa, sb, packing, c);
    if (bits <= wide_sum_bits) return flat_product(wide_integers{}, a, b, sa, sb, packing, c);
    return flat_long_product(a, b, sa, sb, packing, c);
}

int flat_poly_mult(const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
                   polynode **c)
{
    flat_packing packing;
    if (!pack_pair(sa, sb, &packing)) return 0;
    const std::uint32_t m = static_cast<std::uint32_t>(modulus);
    switch (live_view()) {
    case view_float: return flat_product(real_ring{}, a, b, sa, sb, &packing, c);
    case view_field: return flat_product(field_ring{}, a, b, sa, sb, &packing, c);
    case view_modular:
        if (smallmodulus) return flat_product(small_residues{m}, a, b, sa, sb, &packing, c);
        return flat_product(wide_residues{m, static_cast<std::uint64_t>(m) * m}, a, b, sa, sb, &packing, c);
    case view_word: return flat_product(word_ring{}, a, b, sa, sb, &packing, c);
    case view_small: return 0;
    case view_digits: return integer_product(a, b, sa, sb, &packing, c);
    }
    __builtin_unreachable();
}

}  // namespace kelmar

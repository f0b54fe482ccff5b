// poly/mul_flat_long.cpp -- flat products of long integers: the choice of a length.
//
// Each length has its own copy of the product, whose inner loops are as long as they need to be.
#include "poly/flat_long_dense.h"
#include "poly/flat_product.h"
#include "poly/mul_flat.h"

namespace kelmar {

static constexpr int most_words = words_of(long_coef_limit);

int flat_long_product(const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
                      const flat_packing *packing, polynode **c)
{
    const std::int32_t words = words_of(std::max(sa->size, sb->size));
    if (words <= 1) return flat_product(long_integers<1>{}, a, b, sa, sb, packing, c);
    if (words <= 2) return flat_product(long_integers<2>{}, a, b, sa, sb, packing, c);
    if (words <= 3) return flat_product(long_integers<3>{}, a, b, sa, sb, packing, c);
    if (words <= 4) return flat_product(long_integers<4>{}, a, b, sa, sb, packing, c);
    if (words <= 5) return flat_product(long_integers<5>{}, a, b, sa, sb, packing, c);
    if (words <= 10) return flat_product(long_integers<10>{}, a, b, sa, sb, packing, c);
    if (words <= most_words) return flat_product(long_integers<most_words>{}, a, b, sa, sb, packing, c);
    return 0;
}

}  // namespace kelmar

// poly/real_rows.cpp -- rows of doubles, in lanes of two or four.
//
// The lanes are the sums, so a sum is taken in its order whatever their number.
#include "poly/real_rows.h"

namespace kelmar {

typedef double two_lanes __attribute__((vector_size(16)));
typedef double four_lanes __attribute__((vector_size(32)));

// The sums of `rows` rows from k on, as long as there are whole blocks. Return where they end.
template <class lanes, int rows>
[[gnu::always_inline]] static inline std::int64_t add_blocks(double *s, const double *c,
                                                             const double *const *d, std::int64_t k,
                                                             std::int64_t n)
{
    typedef lanes block __attribute__((aligned(8), may_alias));
    constexpr std::int64_t width = sizeof(lanes) / sizeof(double);
    const double c0 = c[0], c1 = c[rows / 4], c2 = c[rows / 2], c3 = c[rows - 1];
    const double *const d0 = d[0], *const d1 = d[rows / 4];
    const double *const d2 = d[rows / 2], *const d3 = d[rows - 1];
    for (; k + width <= n; k += width) {
        lanes sum = *reinterpret_cast<const block *>(s + k);
        sum += *reinterpret_cast<const block *>(d0 + k) * c0;
        if (rows == 4) {
            sum += *reinterpret_cast<const block *>(d1 + k) * c1;
            sum += *reinterpret_cast<const block *>(d2 + k) * c2;
            sum += *reinterpret_cast<const block *>(d3 + k) * c3;
        }
        *reinterpret_cast<block *>(s + k) = sum;
    }
    return k;
}

template <int rows>
static void add_by_twos(double *s, const double *c, const double *const *d, std::int64_t n)
{
    const std::int64_t k = add_blocks<two_lanes, rows>(s, c, d, 0, n);
    add_blocks<double, rows>(s, c, d, k, n);
}

#ifdef __x86_64__
template <int rows>
[[gnu::target("avx2")]] static void add_by_fours(double *s, const double *c, const double *const *d,
                                                 std::int64_t n)
{
    const std::int64_t k = add_blocks<four_lanes, rows>(s, c, d, 0, n);
    add_blocks<double, rows>(s, c, d, k, n);
}
#endif

template <int rows> static void add_rows(double *s, const double *c, const double *const *d, std::int64_t n)
{
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) {
        add_by_fours<rows>(s, c, d, n);
        return;
    }
#endif
    add_by_twos<rows>(s, c, d, n);
}

void add_real_row(double *s, double c, const double *d, std::int64_t n)
{
    add_rows<1>(s, &c, &d, n);
}

void add_four_real_rows(double *s, const double *c, const double *const *d, std::int64_t n)
{
    add_rows<4>(s, c, d, n);
}

}  // namespace kelmar

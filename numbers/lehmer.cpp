// numbers/lehmer.cpp -- quotients from 128 leading bits.
//
// The matrix need not hold the exact quotients of the operands, only keep both non-negative: any matrix of
// determinant 1 keeps the gcd. It does so because both leading parts stay at 2^64 or above while no entry
// reaches that.
// Source: Lehmer's gcd with double-word matrices.
#include "numbers/lehmer.h"

namespace kelmar {

// The double word of the 128 bits that start `lead` bits below the top of limb n - 1, n > 2.
static double_limb leading_bits(const limb *x, std::int32_t n, int lead)
{
    double_limb v = static_cast<double_limb>(x[n - 1]) << (72 + lead);
    v |= static_cast<double_limb>(x[n - 2]) << (16 + lead);
    if (lead <= 40) return v | x[n - 3] >> (40 - lead);
    v |= static_cast<double_limb>(x[n - 3]) << (lead - 40);
    return n > 3 ? v | x[n - 4] >> (96 - lead) : v;
}

static constexpr double_limb floor_of_lead = static_cast<double_limb>(1) << 64;

// *a -= q b for the largest q that leaves *a at floor_of_lead or above, which both are. Return q. *last: the
// remainder itself would have been below.
static std::uint64_t take_quotient(double_limb *a, double_limb b, bool *last)
{
    double_limb q = 0, rest = *a;
    for (int i = 0; i < 4 && rest >= b; ++i) {
        rest -= b;
        ++q;
    }
    if (rest >= b) {
        const double_limb more = rest / b;
        rest -= more * b;
        q += more;
    }
    *last = rest < floor_of_lead;
    if (*last) {
        rest += b;
        --q;
    }
    *a = rest;
    return static_cast<std::uint64_t>(q);
}

// *m = the quotients that the leading bits a and b tell. Declines (0) when they tell none.
static int find_matrix(double_limb a, double_limb b, step_matrix *m)
{
    if (a < floor_of_lead || b < floor_of_lead) return 0;
    *m = {1, 0, 0, 1};
    bool last = false;
    while (!last) {
        std::uint64_t q = take_quotient(&a, b, &last);
        m->m01 += q * m->m00;
        m->m11 += q * m->m10;
        if (last) break;
        q = take_quotient(&b, a, &last);
        m->m00 += q * m->m01;
        m->m10 += q * m->m11;
    }
    return (m->m01 | m->m10) != 0;
}

void apply_step(const step_matrix *m, limb *a, limb *b, std::int32_t n)
{
    __int128 carry_a = 0, carry_b = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        const __int128 x = static_cast<__int128>(a[i]), y = static_cast<__int128>(b[i]);
        carry_a += static_cast<__int128>(m->m11) * x - static_cast<__int128>(m->m01) * y;
        carry_b += static_cast<__int128>(m->m00) * y - static_cast<__int128>(m->m10) * x;
        a[i] = static_cast<limb>(carry_a) & limb_mask;
        b[i] = static_cast<limb>(carry_b) & limb_mask;
        carry_a >>= limb_bits;
        carry_b >>= limb_bits;
    }
}

int find_step(const limb *a, const limb *b, std::int32_t n, step_matrix *m)
{
    const int lead = __builtin_clzll(a[n - 1] | b[n - 1]) - (64 - limb_bits);
    return find_matrix(leading_bits(a, n, lead), leading_bits(b, n, lead), m);
}

}  // namespace kelmar

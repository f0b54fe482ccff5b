// gcd/float_images.cpp -- Euclid's algorithm on values at points.
//
// A common divisor shows at every point, as a remainder that is only what rounding left, and at three points
// none did. The bound for what may be rounding is far above that of gcd/float_gcd.h, for here being wrong
// would lose a divisor, and being undecided costs time alone.
#include "gcd/float_images.h"
#include <cmath>
#include <cstring>

namespace kelmar {

static constexpr std::int32_t most_degree = 60;
static constexpr double doubtful_part = 0x1p-16;  // of the largest number met

// A polynomial in one variable: the number of x^k in place k.
struct image {
    std::int32_t degree;
    double at[most_degree + 1];
};

// The value of the variable of a list in a round, of a size near 1.
static double point_for(std::int32_t level, std::int32_t round)
{
    const double part = 0.618034 * level + 0.414214 * round;
    const double size = 0.6 + 0.8 * (part - std::floor(part));
    return (level + round) % 2 ? size : -size;
}

// Return the value of p, the list `level` of its polynomial.
static double value_at(const polynode *p, std::int32_t level, std::int32_t round)
{
    const double x = point_for(level, round);
    double sum = 0;
    for (; p; p = p->next) {
        sum += p->isnum ? p->num->real : value_at(p->coef, level + 1, round);
        const std::int32_t step = p->exp - (p->next ? p->next->exp : 0);
        if (step > 0) sum *= __builtin_powi(x, step);
    }
    return sum;
}

static double largest(const image *f)
{
    double most = 0;
    for (std::int32_t k = 0; k <= f->degree; ++k) most = std::fmax(most, std::fabs(f->at[k]));
    return most;
}

// Set *f to p at the point of the round. false: its leading coefficient is next to nothing there.
static bool take_image(const polynode *p, std::int32_t round, image *f)
{
    f->degree = p->exp;
    std::memset(f->at, 0, sizeof f->at);
    for (; p; p = p->next) f->at[p->exp] = p->isnum ? p->num->real : value_at(p->coef, 2, round);
    const double most = largest(f);
    return std::isfinite(most) && std::fabs(f->at[f->degree]) > doubtful_part * most;
}

static void make_monic(image *f)
{
    const double lead = f->at[f->degree];
    for (std::int32_t k = 0; k <= f->degree; ++k) f->at[k] /= lead;
}

// a = a mod b, for a monic b. Return the largest number met.
static double reduce_image(image *a, const image *b)
{
    double met = largest(a);
    const double divisor = largest(b);
    for (std::int32_t k = a->degree - b->degree; k >= 0; --k) {
        const double q = a->at[k + b->degree];
        met = std::fmax(met, std::fabs(q) * divisor);
        for (std::int32_t j = 0; j <= b->degree; ++j) a->at[k + j] -= q * b->at[j];
    }
    a->degree = b->degree - 1;
    return met;
}

// Euclid's algorithm, a of no lower degree than b. true: every remainder, the last one, a number, too, is far
// above what rounding leaves.
static bool far_from_common(image *a, image *b)
{
    while (b->degree > 0) {
        make_monic(a);
        make_monic(b);
        const double doubtful = doubtful_part * reduce_image(a, b);
        if (!(std::fabs(a->at[a->degree]) > doubtful)) return false;
        image *const next = a;
        a = b;
        b = next;
    }
    return true;
}

bool coprime_at_points(const polynode *a, const polynode *b)
{
    constexpr std::int32_t rounds = 6, enough = 3;
    if (a->exp > most_degree || b->exp > most_degree) return false;
    std::int32_t coprime = 0;
    for (std::int32_t round = 0; round < rounds && coprime < enough; ++round) {
        image f, g;
        if (!take_image(a, round, &f) || !take_image(b, round, &g)) continue;
        coprime += f.degree >= g.degree ? far_from_common(&f, &g) : far_from_common(&g, &f);
        if (round == 1 && coprime == 0) return false;
    }
    return coprime >= enough;
}

}  // namespace kelmar

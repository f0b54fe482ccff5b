// gcd/images.cpp -- Euclid's algorithm on values in a field of words.
//
// Values of the variables look like chance and are the same in every run. A bound is taken from several
// points, for one of them may be a bad one; a coprime pair needs one only.
#include "gcd/images.h"
#include <cmath>
#include <utility>
#include "numbers/word_mod.h"
#include "poly/mul.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

using word = std::uint32_t;
using wide = std::uint64_t;

// Fields -------------------------------------------------------------------------------------------------

static constexpr word image_primes[] = {2147483647, 2147483629, 2147483587, 2147483579,
                                        2147483563, 2147483549, 2147483543, 2147483497};
static constexpr std::int32_t most_rounds = sizeof image_primes / sizeof image_primes[0];

// The field of a round.
struct image_field {
    word elements;
    std::int32_t round;
    bool own;  // it is the live one, whose words stand in the numbers
};

// Set *f to the field of the round. Declines (0): the live ring has none.
static int field_of_round(std::int32_t round, image_field *f)
{
    const num_view view = live_view();
    f->round = round;
    f->own = view == view_modular || view == view_field;
    f->elements = f->own ? static_cast<word>(modulus) : image_primes[round];
    return f->own ? mod_is_prime : view == view_digits || view == view_float;
}

// Arithmetic in the field; Table: in a table field.
template <bool Table> static inline word product(const image_field *f, word x, word y)
{
    if (!Table) return static_cast<word>(wide{x} * y % f->elements);
    return static_cast<word>(field_mult(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)));
}

template <bool Table> static inline word sum(const image_field *f, word x, word y)
{
    if (Table) return x ^ y;
    const word s = x + y;
    return s >= f->elements ? s - f->elements : s;
}

template <bool Table> static inline word difference(const image_field *f, word x, word y)
{
    if (Table) return x ^ y;
    return x >= y ? x - y : x + f->elements - y;
}

template <bool Table> static word power(const image_field *f, word x, std::int32_t e)
{
    word result = 1;
    for (; e > 0; e >>= 1) {
        if (e & 1) result = product<Table>(f, result, x);
        if (e > 1) x = product<Table>(f, x, x);
    }
    return result;
}

// Values -------------------------------------------------------------------------------------------------

static word residue_of(const image_field *f, std::int64_t v)
{
    const std::int64_t r = v % std::int64_t{f->elements};
    return static_cast<word>(r < 0 ? r + f->elements : r);
}

// Return the value of a number. *fits = false: it has none.
static word value_of_number(const image_field *f, const number *n, bool *fits)
{
    constexpr double exact_up_to = 0x1p53;
    if (f->own) return static_cast<word>(n->word);
    if (flotemode) {
        if (!(std::fabs(n->real) <= exact_up_to) || n->real != std::trunc(n->real)) *fits = false;
        return *fits ? residue_of(f, static_cast<std::int64_t>(n->real)) : 0;
    }
    std::int64_t r = 0;
    for (const numnode *d = n->head; d; d = d->next) r = (r * digit_base + d->digit) % f->elements;
    return residue_of(f, r);
}

// Return the value of the variable of a list.
static word point_for(const image_field *f, std::int32_t level)
{
    wide x = static_cast<wide>(level) * 0x9E3779B97F4A7C15u +
             static_cast<wide>(f->round) * 0xD1B54A32D192ED03u;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
    return static_cast<word>((x ^ (x >> 31)) % f->elements);
}

// Return the value of p, the list `level` of its polynomial.
template <bool Table>
static word value_at(const image_field *f, const polynode *p, std::int32_t level, bool *fits)
{
    if (p->isnum && !p->next) return value_of_number(f, p->num, fits);
    const word x = point_for(f, level);
    word v = 0;
    for (; p; p = p->next) {
        v = sum<Table>(
            f, v, p->isnum ? value_of_number(f, p->num, fits) : value_at<Table>(f, p->coef, level + 1, fits));
        const std::int32_t step = p->exp - (p->next ? p->next->exp : 0);
        if (step > 0) v = product<Table>(f, v, step == 1 ? x : power<Table>(f, x, step));
    }
    return v;
}

// A polynomial in one variable: the coefficient of x^k in place k.
struct image {
    word *at;
    std::int32_t degree;
};

// Set *image to p at the point of the field. false: it has no value, or its leading coefficient has value 0.
template <bool Table> static bool take_image(const image_field *f, const polynode *p, image *image)
{
    bool fits = true;
    image->degree = p->exp;
    for (std::int32_t k = 0; k <= p->exp; ++k) image->at[k] = 0;
    for (const polynode *t = p; t && fits; t = t->next) {
        poll_interrupt();
        image->at[t->exp] = t->isnum ? value_of_number(f, t->num, &fits)
                                     : value_at<Table>(f, t->coef, 2, &fits);
        if (image->at[p->exp] == 0) return false;
    }
    return fits;
}

// Euclid's algorithm -------------------------------------------------------------------------------------

// a = a mod b
template <bool Table> static void reduce_image(const image_field *f, image *a, const image *b)
{
    const std::int32_t to_inverse = static_cast<std::int32_t>(f->elements - 2);
    const word inverse = power<Table>(f, b->at[b->degree], to_inverse);
    for (std::int32_t k = a->degree - b->degree; k >= 0; --k) {
        const word q = product<Table>(f, a->at[k + b->degree], inverse);
        if (q == 0) continue;
        for (std::int32_t j = 0; j < b->degree; ++j)
            a->at[k + j] = difference<Table>(f, a->at[k + j], product<Table>(f, q, b->at[j]));
    }
    a->degree = b->degree - 1;
    while (a->degree >= 0 && a->at[a->degree] == 0) --a->degree;
}

// Return the degree of the gcd.
template <bool Table> static std::int32_t degree_of_gcd(const image_field *f, image *a, image *b)
{
    if (a->degree < b->degree) std::swap(a, b);
    while (b->degree > 0) {
        poll_interrupt();
        reduce_image<Table>(f, a, b);
        std::swap(a, b);
    }
    return b->degree == 0 ? 0 : a->degree;
}

// Bounds -------------------------------------------------------------------------------------------------

// Lower *bound by what one point tells. Return 1 when it told something.
template <bool Table>
static int ask_point(const image_field *f, const polynode *a, const polynode *b, image *images,
                     std::int32_t *bound)
{
    if (!take_image<Table>(f, a, &images[0]) || !take_image<Table>(f, b, &images[1])) return 0;
    const std::int32_t degree = degree_of_gcd<Table>(f, &images[0], &images[1]);
    if (degree < *bound) *bound = degree;
    return 1;
}

[[gnu::noinline]] std::int32_t degree_by_images(const polynode *a, const polynode *b)
{
    constexpr word small_field = 1000;
    const bool small = modularmode && !flotemode && static_cast<word>(modulus) < small_field;
    const std::int32_t enough = small ? 6 : 2;
    std::int32_t bound = a->exp < b->exp ? a->exp : b->exp;
    if (laurent || a->exp > fast_gcd_size || b->exp > fast_gcd_size) return bound;
    const std::size_t words_a = static_cast<std::size_t>(a->exp) + 1,
                      words_b = static_cast<std::size_t>(b->exp) + 1;
    product_work *work = open_work(__builtin_frame_address(0));
    image images[2] = {};
    images[0].at = static_cast<word *>(get_room(work, 0, (words_a + words_b) * sizeof(word)));
    std::int32_t served = 0;
    for (std::int32_t round = 0; images[0].at && round < most_rounds && served < enough && bound > 0;
         ++round) {
        image_field f;
        images[1].at = images[0].at + words_a;
        if (!field_of_round(round, &f)) break;
        served += finf && f.own ? ask_point<true>(&f, a, b, images, &bound)
                                : ask_point<false>(&f, a, b, images, &bound);
    }
    close_work(work);
    return bound;
}

}  // namespace kelmar

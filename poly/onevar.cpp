// poly/onevar.cpp -- the schoolbook product and Karatsuba's product on word arrays.
//
// Below the cut-off each coefficient of the product is one inner product, reduced once at its end: products
// of small residues fit 32 bits, so their sum is kept in one word; those of wide ones fit 62 bits, so the
// two halves of each are summed up apart. Above it the arrays are cut at h: with x = x0 + x1 X^h and y
// likewise,
//
//     x y = x0 y0 + ((x0 + x1)(y0 + y1) - x0 y0 - x1 y1) X^h + x1 y1 X^2h,
//
// where x0 y0 and x1 y1 stand in their final places from the start. All works on lengths; the ranges of
// degrees are the outer shell.
#include "poly/onevar.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include "numbers/word_mod.h"
#include "poly/mul.h"
#include "session/report.h"
#include "storage/low_memory.h"

namespace kelmar {

using word = std::int32_t;

// Storage -------------------------------------------------------------------------------------------------

// *words = room for `count` words, of which *has are there. What was in it is lost.
static void reserve_words(word **words, std::int64_t *has, std::int64_t count)
{
    while (*has < count) {
        std::free(*words);
        *has = 0;
        *words = static_cast<word *>(std::malloc(static_cast<std::size_t>(count) * sizeof(word)));
        if (*words) {
            *has = count;
        } else {
            mem_error();
        }
    }
}

void get_word_arrays()
{
    static constexpr std::int64_t length = array_degree_limit + 1;
    if (zz) return;
    word *all = nullptr;
    std::int64_t has = 0;
    reserve_words(&all, &has, 3 * length);
    xx = all;
    yy = xx + length;
    zz = yy + length;
}

// default null; what a product needs beside its operands, and its length; fast_array_onevar_mult; reset:
// never
static word *scratch = nullptr;
static std::int64_t scratch_length = 0;

// Rings ---------------------------------------------------------------------------------------------------

enum word_ring_kind { ring_small, ring_wide, ring_field };  // products below 2^32; below 2^62; by tables

// default 0; (2^64 - 1) / modulus; live_ring, at the begin of each product; reset: never
static std::uint64_t reciprocal = 0;

static word_ring_kind live_ring()
{
    reciprocal = ~std::uint64_t{0} / static_cast<std::uint64_t>(modulus);
    if (finf) return ring_field;
    return smallmodulus ? ring_small : ring_wide;
}

// v modulo m, the modulus: the product with the reciprocal gives the quotient, or one less.
static inline std::uint64_t reduced(std::uint64_t v, std::uint64_t m)
{
    const auto quotient = static_cast<std::uint64_t>(static_cast<unsigned __int128>(v) * reciprocal >> 64);
    const std::uint64_t r = v - quotient * m;
    return r >= m ? r - m : r;
}

template <word_ring_kind K> static inline word sum_of(word a, word b)
{
    if (K == ring_field) return a ^ b;
    const std::uint32_t m = static_cast<std::uint32_t>(modulus);
    const std::uint32_t s = static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b);
    return static_cast<word>(s >= m ? s - m : s);
}

template <word_ring_kind K> static inline word difference_of(word a, word b)
{
    if (K == ring_field) return a ^ b;
    const word d = a - b;
    return d < 0 ? d + modulus : d;
}

// Return the sum of x[i] * y[-i] for 0 <= i < n.
template <word_ring_kind K> static word inner_product(const word *x, const word *y, word n)
{
    if (K == ring_field) {
        word s = 0;
        for (word i = 0; i < n; ++i) s ^= field_mult(x[i], y[-i]);
        return s;
    }
    const std::uint64_t m = static_cast<std::uint64_t>(modulus);
    std::uint64_t low = 0, high = 0;
    for (word i = 0; i < n; ++i) {
        const std::uint64_t p = static_cast<std::uint64_t>(x[i]) * static_cast<std::uint64_t>(y[-i]);
        if (K == ring_wide) {
            high += p >> 32;
            low += p & 0xffffffff;
        } else {
            low += p;
        }
    }
    if (K == ring_wide) low = reduced(low, m) + reduced(reduced(high, m) << 32, m);
    return static_cast<word>(reduced(low, m));
}

// Products of lengths ---------------------------------------------------------------------------------------

// z[0 .. nx + ny - 1) = x[0 .. nx) * y[0 .. ny), nx <= ny.
template <word_ring_kind K> static void school(const word *x, word nx, const word *y, word ny, word *z)
{
    for (word d = 0; d < nx; ++d) z[d] = inner_product<K>(x, y + d, d + 1);
    for (word d = nx; d < ny; ++d) z[d] = inner_product<K>(x, y + d, nx);
    for (word d = ny; d < nx + ny - 1; ++d) {
        const word from = d - ny + 1;
        z[d] = inner_product<K>(x + from, y + ny - 1, nx - from);
    }
}

// Karatsuba serves operands of these lengths, nx <= ny.
static bool long_and_balanced(word nx, word ny)
{
    return nx - 1 >= poly_cutoff && nx > 2 && (ny - 1) / array_ratio_limit <= nx - 1 &&
           ny - 1 <= array_ratio_limit * (nx - 1);
}

template <word_ring_kind K> static void add_to(word *z, const word *t, word n)
{
    for (word i = 0; i < n; ++i) z[i] = sum_of<K>(z[i], t[i]);
}

template <word_ring_kind K> static void take_from(word *z, const word *t, word n)
{
    for (word i = 0; i < n; ++i) z[i] = difference_of<K>(z[i], t[i]);
}

// s[0 .. h) = x[0 .. h) + x[h .. n), h <= n <= 2h.
template <word_ring_kind K> static void add_halves(const word *x, word n, word h, word *s)
{
    for (word i = 0; i < n - h; ++i) s[i] = sum_of<K>(x[i], x[h + i]);
    std::memcpy(s + (n - h), x + (n - h), static_cast<std::size_t>(2 * h - n) * sizeof(word));
}

// z[0 .. nx + ny - 1) = x * y, nx <= ny. `room` has product_room(ny) words.
template <word_ring_kind K>
static void array_product(const word *x, word nx, const word *y, word ny, word *z, word *room);

static std::int64_t product_room(std::int64_t ny)
{
    return 5 * ny + 256;
}

// array_product for ny >= 2 nx - 1: y is cut in a low part and a part as long as x.
template <word_ring_kind K>
static void unbalanced_step(const word *x, word nx, const word *y, word ny, word *z, word *room)
{
    const word low = ny - nx;
    if (low < nx) {
        array_product<K>(y, low, x, nx, z, room);
    } else {
        array_product<K>(x, nx, y, low, z, room);
    }
    array_product<K>(x, nx, y + low, nx, room, room + 2 * nx);
    add_to<K>(z + low, room, nx - 1);
    std::memcpy(z + low + nx - 1, room + nx - 1, static_cast<std::size_t>(nx) * sizeof(word));
}

template <word_ring_kind K>
static void karatsuba_step(const word *x, word nx, const word *y, word ny, word *z, word *room)
{
    const word h = (ny + 1) / 2;
    array_product<K>(x, h, y, h, z, room);
    z[2 * h - 1] = 0;
    array_product<K>(x + h, nx - h, y + h, ny - h, z + 2 * h, room);
    word *const sum = room;
    word *const middle = room + 2 * h;
    add_halves<K>(x, nx, h, sum);
    add_halves<K>(y, ny, h, sum + h);
    array_product<K>(sum, h, sum + h, h, middle, middle + 2 * h);
    take_from<K>(middle, z, 2 * h - 1);
    take_from<K>(middle, z + 2 * h, nx + ny - 2 * h - 1);
    add_to<K>(z + h, middle, nx + ny - 1 - h < 2 * h - 1 ? nx + ny - 1 - h : 2 * h - 1);
}

template <word_ring_kind K>
static void array_product(const word *x, word nx, const word *y, word ny, word *z, word *room)
{
    if (!long_and_balanced(nx, ny)) {
        school<K>(x, nx, y, ny, z);
    } else if (ny > 2 * (nx - 1)) {
        unbalanced_step<K>(x, nx, y, ny, z, room);
    } else {
        karatsuba_step<K>(x, nx, y, ny, z, room);
    }
}

// Ranges of degrees -----------------------------------------------------------------------------------------

static long wide(std::int32_t v)
{
    return v;
}

void slower_onevar_mult(const word *x, const word *y, word *z, word x_lo, word x_hi, word y_lo, word y_hi)
{
    for (word d = x_lo + y_lo; d <= x_hi + y_hi; ++d) {
        const word from = d - y_hi > x_lo ? d - y_hi : x_lo;
        const word to = d - y_lo < x_hi ? d - y_lo : x_hi;
        word s = 0;
        for (word i = from; i <= to; ++i) s = mod_add(s, modmult(x[i], y[d - i]), modulus);
        z[d] = s;
    }
}

template <word_ring_kind K>
static void school_of_ranges(const word *x, const word *y, word *z, word x_lo, word x_hi, word y_lo,
                             word y_hi)
{
    const word nx = x_hi - x_lo + 1, ny = y_hi - y_lo + 1;
    if (nx <= ny) {
        school<K>(x + x_lo, nx, y + y_lo, ny, z + x_lo + y_lo);
    } else {
        school<K>(y + y_lo, ny, x + x_lo, nx, z + x_lo + y_lo);
    }
}

void onevar_mult(const word *x, const word *y, word *z, word x_lo, word x_hi, word y_lo, word y_hi)
{
    if (x_hi < x_lo || y_hi < y_lo) {
        std::printf(" ** bad exps onevar %li, %li, %li, %li\n", wide(x_lo), wide(x_hi), wide(y_lo),
                    wide(y_hi));
        kelmar_error("potential 0 in onevar_mult.", 1);
        return;
    }
    if ((x[x_hi] == 0) != (y[y_hi] == 0)) {
        std::printf(" ** bad upper limits, onevar %li, %li, %li, %li, %li, %li\n", wide(x_lo), wide(x_hi),
                    wide(y_lo), wide(y_hi), wide(x[x_hi]), wide(y[y_hi]));
        kelmar_error("0 upper value in onevar_mult.", 1);
    }
    switch (live_ring()) {
    case ring_small: school_of_ranges<ring_small>(x, y, z, x_lo, x_hi, y_lo, y_hi); return;
    case ring_wide: school_of_ranges<ring_wide>(x, y, z, x_lo, x_hi, y_lo, y_hi); return;
    case ring_field: slower_onevar_mult(x, y, z, x_lo, x_hi, y_lo, y_hi); return;
    }
}

// Raise *lo to the lowest degree with an entry, *hi at most.
static void pass_low_zeros(const word *x, word *lo, word hi)
{
    while (*lo < hi && x[*lo] == 0) ++*lo;
}

template <word_ring_kind K>
static void ordered_product(const word *x, word nx, const word *y, word ny, word *z)
{
    if (nx <= ny) {
        array_product<K>(x, nx, y, ny, z, scratch);
    } else {
        array_product<K>(y, ny, x, nx, z, scratch);
    }
}

void fast_array_onevar_mult(const word *x, const word *y, word *z, word x_lo, word x_hi, word y_lo, word y_hi)
{
    if (x_hi < x_lo || y_hi < y_lo) {
        kelmar_error("bad exps in fast_array_onevar_mult.", 1);
        return;
    }
    const word bottom = x_lo + y_lo;
    pass_low_zeros(x, &x_lo, x_hi);
    pass_low_zeros(y, &y_lo, y_hi);
    std::memset(z + bottom, 0, static_cast<std::size_t>(x_lo + y_lo - bottom) * sizeof(word));
    const word nx = x_hi - x_lo + 1, ny = y_hi - y_lo + 1;
    reserve_words(&scratch, &scratch_length, product_room(nx > ny ? nx : ny));
    x += x_lo;
    y += y_lo;
    z += x_lo + y_lo;
    switch (live_ring()) {
    case ring_small: ordered_product<ring_small>(x, nx, y, ny, z); return;
    case ring_wide: ordered_product<ring_wide>(x, nx, y, ny, z); return;
    case ring_field: ordered_product<ring_field>(x, nx, y, ny, z); return;
    }
}

// Lists and arrays --------------------------------------------------------------------------------------

void fill_poly_array(const polynode *p, word *x)
{
    std::memset(x, 0, (static_cast<std::size_t>(p->exp) + 1) * sizeof(word));
    const word mask = code_mask();
    for (; p; p = p->next) x[p->exp] = (p->isnum ? p->num->word : p->coef->num->word) & mask;
}

static polynode *constant_of_word(word v)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    n->word = v;
    return new_constant(n);
}

polynode *list_of_array(const word *x, word deg)
{
    polynode *first = nullptr;
    polynode **end = &first;
    for (; deg >= 0; --deg) {
        if (x[deg] == 0) continue;
        polynode *constant = constant_of_word(x[deg]);
        *end = deg == 0 ? constant : new_term(deg, constant);
        end = &(*end)->next;
    }
    return first;
}

void array_to_poly(const word *x, word deg, polynode **p)
{
    if (deg == 0 && x[0] == 0) kelmar_error("bad x[0] in array_to_poly.", 1);
    *p = list_of_array(x, deg);
    if (!*p) poly_set(0, p);
}

}  // namespace kelmar

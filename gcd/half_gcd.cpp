// gcd/half_gcd.cpp -- the half-gcd on word arrays.
//
// With x = x1 X^m + x0, m half the degree rounded up, and y likewise: the recursion on x1, y1 works in
// place, on the upper words of x and y; then its matrix is applied to x0, y0, and the sums added in. One
// division step and the same once more bring the degree of y below m. How far the entries of a matrix grow
// is told by the degrees of the quotients alone, so the rooms suffice whatever the words are.
#include "gcd/half_gcd.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>
#include "gcd/word_products.h"
#include "gcd/word_steps.h"
#include "numbers/word_mod.h"
#include "poly/div_words.h"
#include "session/report.h"

namespace kelmar {

using word = std::int32_t;

// Rooms --------------------------------------------------------------------------------------------------

static constexpr word block_words = 8 * (array_degree_limit + 1);

// default; what a half-gcd works in, taken from the front; parthg, fullhg; reset: by the next first call
static word block[block_words];
static word block_used = 0;

static word *take_room(word count)
{
    word *const room = block + block_used;
    block_used += count;
    return room;
}

// A matrix for a pair of degree n.
static void take_matrix(word n, word_matrix *m)
{
    const word length = n / 2 + 2;
    word *const room = take_room(4 * length);
    *m = {room, room + length, room + 2 * length, room + 3 * length, 0, 0, 0, 0};
}

static void unit_matrix(word_matrix *m)
{
    m->r11[0] = m->r22[0] = 1;
    m->d11 = m->d22 = 0;
    m->d12 = m->d21 = -1;
}

// Array polynomials with their degrees -------------------------------------------------------------------

// c = c + p, where c has degree *dc.
static void add_words(word *c, word *dc, const word *p, word dp)
{
    const word common = *dc < dp ? *dc : dp, m = modulus;
    for (word i = 0; i <= common; ++i) {
        const word s = c[i] - (m - p[i]);
        c[i] = s < 0 ? s + m : s;
    }
    if (dp > *dc) {
        std::memcpy(c + common + 1, p + common + 1, static_cast<std::size_t>(dp - common) * sizeof(word));
        *dc = dp;
    }
    trim_degree(c, dc);
}

// z = a x + b y, and its degree. product: room for a summand.
static word sum_of_products(const word *a, word da, const word *x, word dx, const word *b, word db,
                            const word *y, word dy, word *z, word *product)
{
    word dz = -1;
    if (da >= 0 && dx >= 0) {
        word_product(a, da + 1, x, dx + 1, z);
        dz = da + dx;
    }
    if (db >= 0 && dy >= 0) {
        word_product(b, db + 1, y, dy + 1, product);
        add_words(z, &dz, product, db + dy);
    }
    trim_degree(z, &dz);
    return dz;
}

static word larger(word a, word b)
{
    return a > b ? a : b;
}

// Single steps -------------------------------------------------------------------------------------------

// (x, y) = (y, x) when they have been exchanged an odd number of times: their words go to their places.
static void exchange(word *x, word *y, word *dx, word *dy)
{
    const word common = *dx < *dy ? *dx : *dy;
    std::swap_ranges(x, x + (common + 1), y);
    if (*dx > common)
        std::memcpy(y + common + 1, x + common + 1, static_cast<std::size_t>(*dx - common) * sizeof(word));
    if (*dy > common)
        std::memcpy(x + common + 1, y + common + 1, static_cast<std::size_t>(*dy - common) * sizeof(word));
    std::swap(*dx, *dy);
}

// a = scale a - (q1 X + q0) X^shift b, for two entries of a column.
static void step_entry(const word_ring *ring, const word_step *step, word *a, word *da, const word *b,
                       word db)
{
    const word top = db < 0 ? -1 : db + step->shift + (step->q1 ? 1 : 0);
    if (step->scale != 1) {
        for (word i = top + 1; i <= *da; ++i) a[i] = ring_product(ring, step->scale, a[i]);
    }
    if (db < 0) return;
    for (word i = *da + 1; i <= top; ++i) a[i] = 0;
    take_step(ring, step, a, b, db);
    *da = larger(*da, top);
    trim_degree(a, da);
}

// The first row of the matrix loses a multiple of the second.
static void step_matrix(const word_ring *ring, const word_step *step, word_matrix *m)
{
    step_entry(ring, step, m->r11, &m->d11, m->r21, m->d21);
    step_entry(ring, step, m->r12, &m->d12, m->r22, m->d22);
}

static void exchange_rows(word_matrix *m)
{
    std::swap(m->r11, m->r21);
    std::swap(m->d11, m->d21);
    std::swap(m->r12, m->r22);
    std::swap(m->d12, m->d22);
}

// x = x modulo y up to a unit, and the rows of m as x and y; m may be null.
static void divide_step(const word_ring *ring, word *x, word *dx, const word *y, word dy, word_matrix *m)
{
    while (*dx >= dy) {
        word_step step;
        next_step(ring, x, *dx, y, dy, *dx - dy > 1, &step);
        take_step(ring, &step, x, y, dy);
        if (m) step_matrix(ring, &step, m);
        *dx = *dx > dy ? *dx - 2 : dy - 1;
        trim_degree(x, dx);
    }
}

void euclid_onevar(word *x, word *y, word *dx, word *dy, word_matrix *m)
{
    const word start = *dx;
    word *u = x, *v = y;
    word_ring ring;
    set_word_ring(&ring);
    unit_matrix(m);
    while (*dy >= 0 && 2 * *dy >= start) {
        divide_step(&ring, u, dx, v, *dy, m);
        exchange_rows(m);
        std::swap(u, v);
        std::swap(*dx, *dy);
    }
    if (u != x) {
        std::swap(*dx, *dy);
        exchange(x, y, dx, dy);
    }
}

// Halves -------------------------------------------------------------------------------------------------

// (x, y) = m (x0, y0) + what stands above the lower `low` words of each.
static void apply_to_low(const word_matrix *m, word *x, word *y, word low, word *dx, word *dy)
{
    const word mark = block_used;
    const word length = low + larger(larger(m->d11, m->d12), larger(m->d21, m->d22)) + 1;
    word *const t = take_room(length), *const u = take_room(length), *const product = take_room(length);
    word x_low = low - 1, y_low = low - 1;
    trim_degree(x, &x_low);
    trim_degree(y, &y_low);
    const word dt = sum_of_products(m->r11, m->d11, x, x_low, m->r12, m->d12, y, y_low, t, product);
    const word du = sum_of_products(m->r21, m->d21, x, x_low, m->r22, m->d22, y, y_low, u, product);
    std::memset(x, 0, static_cast<std::size_t>(low) * sizeof(word));
    std::memset(y, 0, static_cast<std::size_t>(low) * sizeof(word));
    add_words(x, dx, t, dt);
    add_words(y, dy, u, du);
    block_used = mark;
}

static void copy_entry(word *to, word *d_to, const word *from, word d)
{
    std::memcpy(to, from, static_cast<std::size_t>(d + 1) * sizeof(word));
    *d_to = d;
}

// The column (a, b) = r (a, b).
static void multiply_column(const word_matrix *r, word *a, word *da, word *b, word *db, word length)
{
    const word mark = block_used;
    word *const t = take_room(length), *const u = take_room(length), *const product = take_room(length);
    const word dt = sum_of_products(r->r11, r->d11, a, *da, r->r12, r->d12, b, *db, t, product);
    const word du = sum_of_products(r->r21, r->d21, a, *da, r->r22, r->d22, b, *db, u, product);
    copy_entry(a, da, t, dt);
    copy_entry(b, db, u, du);
    block_used = mark;
}

// parthg on the words from `low` up, and its matrix on the words below. n: the degree of x there.
static void half_above(word *x, word *y, word low, word *dx, word *dy, word_matrix *m)
{
    word high_x = *dx - low, high_y = *dy - low;
    parthg(x + low, y + low, 0, &high_x, &high_y, m);
    *dx = low + high_x;
    *dy = low + high_y;
    if (m->d12 < 0 && m->d21 < 0) return;  // the unit
    apply_to_low(m, x, y, low, dx, dy);
}

// (x, y) = (y, x mod y), and the rows of m, when it is there.
static void step_in_place(word *x, word *y, word *dx, word *dy, word_matrix *m)
{
    word_ring ring;
    set_word_ring(&ring);
    divide_step(&ring, x, dx, y, *dy, m);
    exchange(x, y, dx, dy);
    if (m) exchange_rows(m);
}

// The half-gcd of a pair of degrees *dx >= *dy > *dx / 2. With m its matrix is filled; else the two that were
// applied are forgotten.
static void both_halves(word *x, word *y, word *dx, word *dy, word_matrix *m)
{
    const word mark = block_used, n = *dx, middle = n - n / 2;
    word_matrix first, second;
    if (!m) take_matrix(n - middle, &first);
    half_above(x, y, middle, dx, dy, m ? m : &first);
    if (*dy >= middle) step_in_place(x, y, dx, dy, m);
    if (*dy >= middle) {
        const word low = 2 * middle - *dx;
        take_matrix(*dx - low, &second);
        half_above(x, y, low, dx, dy, &second);
        if (m) {
            multiply_column(&second, m->r11, &m->d11, m->r21, &m->d21, n / 2 + 2);
            multiply_column(&second, m->r12, &m->d12, m->r22, &m->d22, n / 2 + 2);
        }
    }
    while (*dy >= middle) step_in_place(x, y, dx, dy, m);  // where the second half began just below
    block_used = mark;
}

void parthg(word *x, word *y, word top, word *dx, word *dy, word_matrix *m)
{
    if (top) block_used = 0;
    if (*dy <= *dx / 2) {
        unit_matrix(m);
    } else if (*dx < half_gcd_base) {
        euclid_onevar(x, y, dx, dy, m);
    } else {
        both_halves(x, y, dx, dy, m);
    }
}

void fullhg(word *x, word *y, word *dx, word *dy)
{
    if (*dx < *dy) {
        std::printf(" degrees in reverse order in fullhg: %li, %li\n", static_cast<long>(*dx),
                    static_cast<long>(*dy));
        exchange(x, y, dx, dy);
    }
    if (*dy <= *dx / 2) return;
    if (*dx / 2 == 0) {
        kelmar_error(" onevar_split_poly.", 1);
        return;
    }
    block_used = 0;
    both_halves(x, y, dx, dy, nullptr);
}

// One division step of the pair, the higher degree as the dividend.
static void divide_larger(word_pair *pair)
{
    if (pair->deg_x >= pair->deg_y) {
        divide_y_into_x_1(pair);
    } else {
        divide_x_into_y_1(pair);
    }
}

// fullhg of the pair, the higher degree first; done when one of the two is zero then.
static void half_of_pair(word_pair *pair)
{
    if (pair->deg_x >= pair->deg_y) {
        fullhg(xx, yy, &pair->deg_x, &pair->deg_y);
    } else {
        fullhg(yy, xx, &pair->deg_y, &pair->deg_x);
    }
    pair->done = pair->deg_x < 0 || pair->deg_y < 0;
}

void hgcd(word_pair *pair)
{
    while (!pair->done) {
        if (pair->deg_x > 0 && pair->deg_y > 0 && pair->deg_x + pair->deg_y > 2) half_of_pair(pair);
        if (!pair->done) divide_larger(pair);
        if (!pair->done && pair->deg_x + pair->deg_y < half_gcd_leaves) simple_onevar_gcd(pair);
    }
}

}  // namespace kelmar

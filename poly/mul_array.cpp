// poly/mul_array.cpp -- which products over words go to arrays, and the two-variable product on rows.
//
// Short and sparse lists stay lists. A dense pair whose degrees sum up to no more than the arrays hold is
// written out in them; longer ones are halved as lists until they fit. In two variables each row of the
// product is the sum of products of rows. These rows stand in the work record of the product, since an
// interrupt is answered between them and another product may run then; xx, yy and zz are shared, and
// nothing polls while they are in use.
#include "poly/mul_array.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include "numbers/word_mod.h"
#include "poly/measure.h"
#include "poly/mul.h"
#include "poly/mul_list.h"
#include "poly/mul_school.h"
#include "poly/mul_work.h"
#include "poly/scale.h"
#include "session/report.h"
#include "storage/low_memory.h"

namespace kelmar {

// One variable ----------------------------------------------------------------------------------------------

[[gnu::noinline]] void simplest_standard(const polynode *a, const polynode *b, std::int32_t len_a,
                                         std::int32_t len_b, polynode **c)
{
    const bool b_drives = std::abs(len_b) < std::abs(len_a);
    const polynode *term = b_drives ? b : a;
    const polynode *const other = b_drives ? a : b;
    product_work *work = open_work(__builtin_frame_address(0));
    for (; term; term = term->next) {
        poll_interrupt();
        polynode *part = nullptr;
        node_by_poly_3(term, other, &part);
        add_part(part, work->parts, true);
    }
    total_parts(work->parts, work_parts, true, c);
    close_work(work);
}

// The lowest degree at which x[0 .. deg] has an entry.
static std::int32_t lowest_entry(const std::int32_t *x, std::int32_t deg)
{
    std::int32_t low = 0;
    while (low < deg && x[low] == 0) ++low;
    return low;
}

void k_fastest_poly_mult(const polynode *a, const polynode *b, polynode **c)
{
    const std::int32_t deg_a = a->exp, deg_b = b->exp;
    get_word_arrays();
    fill_poly_array(a, xx);
    const std::int32_t *const y = a == b ? xx : yy;
    if (a != b) fill_poly_array(b, yy);
    if (xx[deg_a] == 0 || y[deg_b] == 0) {
        std::printf("BAD 4: %li, %li, %li, %li\n", static_cast<long>(deg_a), static_cast<long>(xx[deg_a]),
                    static_cast<long>(deg_b), static_cast<long>(y[deg_b]));
    }
    if (deg_a > poly_cutoff && deg_b > poly_cutoff) {
        fast_array_onevar_mult(xx, y, zz, 0, deg_a, 0, deg_b);
    } else {
        const std::int32_t low_a = lowest_entry(xx, deg_a), low_b = lowest_entry(y, deg_b);
        std::memset(zz, 0, static_cast<std::size_t>(low_a + low_b) * sizeof(std::int32_t));
        onevar_mult(xx, y, zz, low_a, deg_a, low_b, deg_b);
    }
    *c = list_of_array(zz, deg_a + deg_b);  // modulo a composite nothing may be left
    if (!*c) poly_set(0, c);
}

void fastest_standard(const polynode *a, const polynode *b, std::int32_t len_a, std::int32_t len_b,
                      polynode **c)
{
    const std::int64_t room_a = 4 * std::int64_t{std::abs(len_a)}, room_b = 4 * std::int64_t{std::abs(len_b)};
    if (a->exp < room_a && b->exp < room_b) {
        k_fastest_poly_mult(a, b, c);
    } else {
        simplest_standard(a, b, len_a, len_b, c);
    }
}

// xx, yy and zz hold the pair, and its product.
static bool word_arrays_hold(const polynode *a, const polynode *b, std::int32_t low_a, std::int32_t low_b)
{
    const std::int64_t degree = std::int64_t{a->exp} + b->exp;
    return modulus >= 3 && !finf && low_a >= 0 && low_b >= 0 && degree <= fast_gcd_size &&
           degree <= array_degree_limit;
}

void simplest_poly_mult(polynode *a, polynode *b, polynode **c, std::int32_t len_a, std::int32_t len_b,
                        std::int32_t low_a, std::int32_t low_b)
{
    if (is_constant(a)) return scalar_by_poly(a->num, b, c);
    if (is_constant(b)) return scalar_by_poly(b->num, a, c);
    if (len_a == 0) {
        int dense = 0;
        len_a = exp_poly_length(a, &low_a, &dense);
        len_b = exp_poly_length(b, &low_b, &dense);
    }
    if (len_a < fast_mult_cut || len_b < fast_mult_cut || len_a < 2 || len_b < 2) {
        simplest_standard(a, b, len_a, len_b, c);
    } else if (word_arrays_hold(a, b, low_a, low_b)) {
        fastest_standard(a, b, len_a, len_b, c);
    } else {
        simplest_karatsuba(a, b, len_a, len_b, low_a, low_b, c);
    }
}

// Two variables -----------------------------------------------------------------------------------------

static const polynode *row_of(const polynode *t)
{
    return t->isnum ? t : t->coef;
}

int depth_density(const polynode *p, std::int32_t *top, std::int32_t *inner, std::int32_t *low,
                  std::int32_t *count)
{
    *top = p->exp;
    *inner = 0;
    *count = 0;
    for (; p; p = p->next) {
        ++*count;
        *low = p->exp;
        const polynode *row = row_of(p);
        if (row->exp > *inner) *inner = row->exp;
        if (p->isnum) continue;
        for (; row; row = row->next) {
            if (!row->isnum && !is_constant(row->coef)) return 0;
        }
    }
    return 1;
}

// p has two levels, more than 25 terms, few gaps, and degrees below row_limit.
static bool fits_rows(const polynode *p, std::int32_t *inner)
{
    std::int32_t top = 0, low = 0, count = 0;
    if (!depth_density(p, &top, inner, &low, &count)) return false;
    return *inner > 0 && count > 25 && low >= 0 && top - low < 3 * count && top < row_limit &&
           *inner < row_limit;
}

bool try_fast_2_var(const polynode *a, const polynode *b)
{
    if (!modularmode || field_depth >= 1 || modout_above_field || finf) return false;
    if (a->exp < b->exp) {
        const polynode *larger = b;
        b = a;
        a = larger;
    }
    if (a->exp > 9 * std::int64_t{b->exp}) return false;
    std::int32_t inner_a = 0, inner_b = 0;
    if (!fits_rows(a, &inner_a) || !fits_rows(b, &inner_b)) return false;
    return a->exp + b->exp < row_limit && inner_a + inner_b < row_limit;
}

static std::int32_t *row(const word_rows *x, std::int32_t i)
{
    return x->cell + static_cast<std::ptrdiff_t>(i) * row_limit;
}

void fill_poly2_array(const polynode *p, word_rows *x)
{
    for (std::int32_t i = 0; i <= p->exp; ++i) x->degree[i] = -1;
    for (; p; p = p->next) {
        std::int32_t *const to = row(x, p->exp);
        if (p->isnum) {
            to[0] = p->num->word;
            x->degree[0] = 0;
        } else {
            fill_poly_array(p->coef, to);
            x->degree[p->exp] = p->coef->exp;
        }
    }
}

void array_to_poly2(const word_rows *z, std::int32_t deg, polynode **p)
{
    polynode **end = p;
    *p = nullptr;
    for (; deg >= 0; --deg) {
        polynode *coef = z->degree[deg] < 0 ? nullptr : list_of_array(row(z, deg), z->degree[deg]);
        if (!coef) continue;
        make_monomial(&coef, deg, coef);
        *end = coef;
        end = &coef->next;
    }
    if (!*p) poly_set(0, p);
}

// Row d of z = row d of z + t[0 .. deg].
static void add_row(word_rows *z, std::int32_t d, const std::int32_t *t, std::int32_t deg)
{
    std::int32_t *const to = row(z, d);
    const std::int32_t common = deg < z->degree[d] ? deg : z->degree[d];
    for (std::int32_t i = 0; i <= common; ++i) to[i] = mod_add(to[i], t[i], modulus);
    if (deg > common) {
        std::memcpy(to + common + 1, t + common + 1,
                    static_cast<std::size_t>(deg - common) * sizeof(std::int32_t));
        z->degree[d] = deg;
    }
    while (z->degree[d] >= 0 && to[z->degree[d]] == 0) --z->degree[d];
}

// Row d of z = the sum of the products of rows i of x and d - i of y.
static void row_product(const word_rows *x, std::int32_t deg_x, const word_rows *y, std::int32_t deg_y,
                        std::int32_t d, word_rows *z)
{
    std::int32_t product[2 * row_limit];
    z->degree[d] = -1;
    for (std::int32_t i = d > deg_y ? d - deg_y : 0; i <= deg_x && i <= d; ++i) {
        const std::int32_t top_x = x->degree[i], top_y = y->degree[d - i];
        if (top_x < 0 || top_y < 0) continue;
        fast_array_onevar_mult(row(x, i), row(y, d - i), product, 0, top_x, 0, top_y);
        add_row(z, d, product, top_x + top_y);
    }
}

static word_rows *rows_in_room(product_work *work, int k)
{
    constexpr std::size_t cells = static_cast<std::size_t>(row_limit) * row_limit * sizeof(std::int32_t);
    void *room = nullptr;
    while (!(room = get_room(work, k, sizeof(word_rows) + cells))) mem_error();
    auto *rows = static_cast<word_rows *>(room);
    rows->cell = reinterpret_cast<std::int32_t *>(rows + 1);
    return rows;
}

[[gnu::noinline]] void fastest_poly2_mult(const polynode *a, const polynode *b, polynode **c)
{
    product_work *work = open_work(__builtin_frame_address(0));
    word_rows *x = rows_in_room(work, 0), *z = rows_in_room(work, 2);
    word_rows *y = a == b ? x : rows_in_room(work, 1);
    fill_poly2_array(a, x);
    if (a != b) fill_poly2_array(b, y);
    for (std::int32_t d = 0; d <= a->exp + b->exp; ++d) {
        poll_interrupt();
        row_product(x, a->exp, y, b->exp, d, z);
    }
    array_to_poly2(z, a->exp + b->exp, c);
    close_work(work);
}

}  // namespace kelmar

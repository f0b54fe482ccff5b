// numbers/half_gcd.cpp -- Euclidean steps by halves.
//
// The leading half of two operands tells the steps that take a quarter off them. Their product is a matrix
// with entries of a quarter's length, which is applied to all of the operands by long products; the leading
// half of what is left tells the steps for the next quarter. So the steps come out of ever shorter leading
// parts, down to where Lehmer's steps find them, and all else is products.
//
// No step is ever taken back. Of n limbs, both values stay at base^s or above for s = n / 2 + 1, which keeps
// the entries below base^(n - s). A step that the leading part tells leaves the whole value at least the
// difference of the two, so it never falls below 0. Where the next step would be a long quotient, the work
// ends early; the caller divides.
#include "numbers/half_gcd.h"

#include "numbers/lehmer.h"

namespace kelmar {

// (a, b) = M (a', b') with determinant 1, as a step_matrix, of entries with `length` limbs each.
struct long_matrix {
    limb *entry[4];  // m00, m01, m10, m11
    std::int32_t length;
};

static std::int32_t room_of_entry(std::int32_t n)
{
    return n / 2 + 3;
}

// *m = 1, its entries borrowed from room. Return what of the room is left.
static limb *open_matrix(long_matrix *m, std::int32_t n, limb *room)
{
    for (limb *&entry : m->entry) {
        entry = room;
        room += room_of_entry(n);
    }
    return room;
}

static void set_one(long_matrix *m)
{
    for (int i = 0; i < 4; ++i) m->entry[i][0] = i == 0 || i == 3;
    m->length = 1;
}

// Lower `length` while the top limbs of all entries are 0.
static void strip_entries(limb *const *entry, int count, std::int32_t *length)
{
    for (; *length > 1; --*length) {
        limb any = 0;
        for (int i = 0; i < count; ++i) any |= entry[i][*length - 1];
        if (any) return;
    }
}

// Both operands ---------------------------------------------------------------------------------------------

static std::int32_t common_length(const limb *a, const limb *b, std::int32_t n)
{
    while (n > 0 && (a[n - 1] | b[n - 1]) == 0) --n;
    return n;
}

static void multiply_any(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb,
                         limb *scratch)
{
    if (na >= nb) {
        multiply_limbs(r, a, na, b, nb, scratch);
    } else {
        multiply_limbs(r, b, nb, a, na, scratch);
    }
}

// The limbs from p on have been through the steps of m: let the p limbs below follow. n limbs in all.
static void apply_below(const long_matrix *m, limb *a, limb *b, std::int32_t p, std::int32_t n, limb *work)
{
    const std::int32_t width = p + m->length;
    limb *part[4], *room = work;
    for (limb *&r : part) {
        r = room;
        room += width;
    }
    multiply_any(part[0], a, p, m->entry[3], m->length, room);
    multiply_any(part[1], b, p, m->entry[1], m->length, room);
    multiply_any(part[2], b, p, m->entry[0], m->length, room);
    multiply_any(part[3], a, p, m->entry[2], m->length, room);
    for (std::int32_t i = 0; i < p; ++i) a[i] = b[i] = 0;
    // What leaves at the top of one comes back at the top of the other.
    add_limbs<binary_limbs>(a, n, part[0], width);
    subtract_limbs<binary_limbs>(a, n, part[1], width);
    add_limbs<binary_limbs>(b, n, part[2], width);
    subtract_limbs<binary_limbs>(b, n, part[3], width);
}

// Matrices --------------------------------------------------------------------------------------------------

// m = m * w.
static void append_step(long_matrix *m, const step_matrix *w)
{
    for (int row = 0; row < 2; ++row) {
        limb *const left = m->entry[2 * row], *const right = m->entry[2 * row + 1];
        double_limb carry_left = 0, carry_right = 0;
        for (std::int32_t i = 0; i < m->length; ++i) {
            const double_limb x = left[i], y = right[i];
            carry_left += x * w->m00 + y * w->m10;
            carry_right += x * w->m01 + y * w->m11;
            left[i] = static_cast<limb>(carry_left) & limb_mask;
            right[i] = static_cast<limb>(carry_right) & limb_mask;
            carry_left >>= limb_bits;
            carry_right >>= limb_bits;
        }
        for (std::int32_t i = m->length; i < m->length + 2; ++i) {
            left[i] = static_cast<limb>(carry_left) & limb_mask;
            right[i] = static_cast<limb>(carry_right) & limb_mask;
            carry_left >>= limb_bits;
            carry_right >>= limb_bits;
        }
    }
    m->length += 2;
    strip_entries(m->entry, 4, &m->length);
}

// m = m * x.
static void append_matrix(long_matrix *m, const long_matrix *x, limb *work)
{
    const std::int32_t width = m->length + x->length + 1;
    limb *const sum[4] = {work, work + width, work + 2 * width, work + 3 * width};
    limb *const part = work + 4 * width, *const scratch = part + width;
    for (int i = 0; i < 4; ++i) {
        const limb *left = m->entry[i & 2], *right = m->entry[(i & 2) + 1];
        const limb *up = x->entry[i & 1], *down = x->entry[(i & 1) + 2];
        multiply_any(sum[i], left, m->length, up, x->length, scratch);
        sum[i][width - 1] = 0;
        multiply_any(part, right, m->length, down, x->length, scratch);
        add_limbs<binary_limbs>(sum[i], width, part, width - 1);
    }
    m->length = width;
    strip_entries(sum, 4, &m->length);
    for (int i = 0; i < 4; ++i) {
        for (std::int32_t k = 0; k < m->length; ++k) m->entry[i][k] = sum[i][k];
    }
}

// Halves ----------------------------------------------------------------------------------------------------

// The steps that Lehmer's method finds one by one. A step from `top` limbs leaves both values 128 bits below
// the longer at most.
static int half_by_steps(limb *a, limb *b, std::int32_t n, long_matrix *m)
{
    const std::int32_t floor = n / 2 + 1;
    int found = 0;
    for (;;) {
        const std::int32_t top = common_length(a, b, n);
        step_matrix w;
        if (top < floor + 4 || !find_step(a, b, top, &w)) return found;
        apply_step(&w, a, b, top);
        append_step(m, &w);
        found = 1;
    }
}

// Take steps on a and b, n limbs each, while both stay at base^(n / 2 + 1) or above; *m = their matrix.
// Declines (0) when there is none.
static int half(limb *a, limb *b, std::int32_t n, long_matrix *m, limb *work)
{
    set_one(m);
    if (n < half_base_cut) return half_by_steps(a, b, n, m);
    const std::int32_t floor = n / 2 + 1;
    if (!half(a + floor, b + floor, n - floor, m, work)) return 0;
    apply_below(m, a, b, floor, n, work);

    const std::int32_t left = common_length(a, b, n) - floor;
    if (left <= 0 || left > (n - floor) / 4 * 3) return 1;  // none is left, or a long quotient is in the way
    const std::int32_t below = floor - left;
    long_matrix next;
    limb *const rest = open_matrix(&next, 2 * left, work);
    if (!half(a + below, b + below, 2 * left, &next, rest)) return 1;
    apply_below(&next, a, b, below, below + 2 * left, rest);
    append_matrix(m, &next, rest);
    return 1;
}

int half_step(limb *a, limb *b, std::int32_t n, limb *work)
{
    const std::int32_t below = n / 2;
    long_matrix m;
    limb *const rest = open_matrix(&m, n - below, work);
    if (!half(a + below, b + below, n - below, &m, rest)) return 0;
    apply_below(&m, a, b, below, n, rest);
    return 1;
}

}  // namespace kelmar

// poly/div_flat.cpp -- exact division in a row of cells.
//
// A cell holds its value modulo a power of 2^64, which is enough: when the sizes of quotient and divisor show
// that no sum could leave a cell, equal is equal. Numbers are divided from the low end, where each word of
// the quotient is one product with an inverse modulo 2^64; what is left in the high words tells whether they
// divide.
#include "poly/div_flat.h"
#include "numbers/limbs.h"
#include "numbers/mode.h"
#include "poly/flat_job.h"
#include "poly/flat_long.h"
#include "poly/flat_terms.h"
#include "session/report.h"

namespace kelmar {

using cell_word = std::uint64_t;

// Terms --------------------------------------------------------------------------------------------------

// A magnitude and its sign, or a value in two's complement; borrowed.
struct cell_ref {
    cell_word *w;
    std::int32_t words;
    std::int32_t sign;  // of a magnitude: 0 or -1
};

// Where the words of coefficients are put.
struct cell_ring {
    using coef = cell_ref;
    using sum = cell_ref;
    cell_word **next;
};

static cell_ref load_coef(cell_ring ring, const number *n)
{
    cell_ref c = {*ring.next, words_of(n->size), sign_of(n)};
    for (std::int32_t k = 0; k < c.words; ++k) c.w[k] = 0;
    std::int32_t at = n->size * digit_bits;
    for (const numnode *d = n->head; d; d = d->next) {
        at -= digit_bits;
        const cell_word digit = static_cast<cell_word>(turned(d->digit, c.sign));
        c.w[at / 64] |= digit << (at % 64);
        if (at % 64 > 64 - digit_bits && at / 64 + 1 < c.words) c.w[at / 64 + 1] |= digit >> (64 - at % 64);
    }
    while (c.words > 0 && c.w[c.words - 1] == 0) --c.words;
    *ring.next += c.words;
    return c;
}

// Make a value in two's complement its magnitude, in place. Return its sign.
static std::int32_t take_sign(cell_word *w, std::int32_t words)
{
    if (!(w[words - 1] >> 63)) return 0;
    cell_word carry = 1;
    for (std::int32_t k = 0; k < words; ++k) {
        w[k] = ~w[k] + carry;
        carry = carry && w[k] == 0;
    }
    return -1;
}

static void store_sum(cell_ring, const cell_ref &s, number *n)
{
    std::int32_t words = s.words;
    while (words > 1 && s.w[words - 1] == 0) --words;
    const std::int32_t limbs = (64 * words + limb_bits - 1) / limb_bits;
    limb *const to = scratch_limbs(limbs);
    for (std::int32_t k = 0; k < limbs; ++k) {
        const std::int32_t bit = k * limb_bits, word = bit / 64, shift = bit % 64;
        cell_word v = s.w[word] >> shift;
        if (shift > 64 - limb_bits && word + 1 < words) v |= s.w[word + 1] << (64 - shift);
        to[k] = v & limb_mask;
    }
    scatter_limbs(to, limbs, s.sign, n);
}

// Numbers ------------------------------------------------------------------------------------------------

// to[0 .. words) = to - q from. Return what had to be borrowed from above.
static cell_word subtract_multiple(cell_word *to, std::int32_t words, const cell_ref *from, cell_word q)
{
    const std::int32_t n = from->words < words ? from->words : words;
    cell_word carry = 0;
    for (std::int32_t j = 0; j < n; ++j) {
        const double_limb t = static_cast<double_limb>(from->w[j]) * q + carry;
        const cell_word low = static_cast<cell_word>(t), old = to[j];
        to[j] = old - low;
        carry = static_cast<cell_word>(t >> 64) + (old < low);
    }
    for (std::int32_t j = n; j < words && carry; ++j) {
        const cell_word old = to[j];
        to[j] = old - carry;
        carry = old < carry;
    }
    return carry;
}

// to[0 .. words) = to + q from. Return what went beyond.
static cell_word add_multiple(cell_word *to, std::int32_t words, const cell_ref *from, cell_word q)
{
    const std::int32_t n = from->words < words ? from->words : words;
    cell_word carry = 0;
    for (std::int32_t j = 0; j < n; ++j) {
        const double_limb t = static_cast<double_limb>(from->w[j]) * q + to[j] + carry;
        to[j] = static_cast<cell_word>(t);
        carry = static_cast<cell_word>(t >> 64);
    }
    for (std::int32_t j = n; j < words && carry; ++j) {
        to[j] += carry;
        carry = to[j] < carry;
    }
    return carry;
}

// A number that divides many: an odd one times a power of 2.
struct odd_divisor {
    cell_ref odd;
    std::int32_t words_of_zeros, bits_of_zeros;
    cell_word inverse;  // of the odd one's first word
};

// *d = the magnitude of c, whose words are shifted in place.
static void set_odd_divisor(const cell_ref *c, odd_divisor *d)
{
    std::int32_t k = 0;
    while (c->w[k] == 0) ++k;
    const std::int32_t shift = __builtin_ctzll(c->w[k]);
    *d = {{c->w, c->words - k, c->sign}, k, shift, 0};
    for (std::int32_t i = 0; i < d->odd.words; ++i) {
        const cell_word high = shift > 0 && i + k + 1 < c->words ? c->w[i + k + 1] << (64 - shift) : 0;
        d->odd.w[i] = (c->w[i + k] >> shift) | high;
    }
    if (d->odd.words > 1 && d->odd.w[d->odd.words - 1] == 0) --d->odd.words;
    cell_word inverse = d->odd.w[0];
    for (int i = 0; i < 5; ++i) inverse *= 2 - d->odd.w[0] * inverse;  // correct bits: 3, 6, 12, 24, 48, 96
    d->inverse = inverse;
}

// Shift the magnitude x down by the zeros of d. false: there are others than zeros.
static bool drop_zeros(cell_word *x, std::int32_t words, const odd_divisor *d)
{
    const std::int32_t k = d->words_of_zeros, shift = d->bits_of_zeros;
    if (k == 0 && shift == 0) return true;
    for (std::int32_t i = 0; i < k; ++i) {
        if (i >= words || x[i] != 0) return false;
    }
    if (k >= words || (shift > 0 && x[k] << (64 - shift) != 0)) return false;
    for (std::int32_t i = 0; i + k < words; ++i) {
        const cell_word high = shift > 0 && i + k + 1 < words ? x[i + k + 1] << (64 - shift) : 0;
        x[i] = (x[i + k] >> shift) | high;
    }
    for (std::int32_t i = words - k; i < words; ++i) x[i] = 0;
    return true;
}

// x = x / d for magnitudes, x[0 .. words). Return the words of the quotient, or 0 when it is not exact.
static std::int32_t divide_magnitude(cell_word *x, std::int32_t words, const odd_divisor *d)
{
    if (!drop_zeros(x, words, d)) return 0;
    while (words > 0 && x[words - 1] == 0) --words;
    const std::int32_t length = words - d->odd.words + 1;
    for (std::int32_t i = 0; i < length; ++i) {
        const cell_word q = x[i] * d->inverse;
        if (subtract_multiple(x + i, words - i, &d->odd, q)) return 0;
        x[i] = q;  // what stood there is used up
    }
    for (std::int32_t i = length > 0 ? length : 0; i < words; ++i) {
        if (x[i] != 0) return 0;
    }
    return length > 0 ? length : 0;
}

// The division -------------------------------------------------------------------------------------------

enum cell_room { room_m, room_m_coefs, room_n, room_n_coefs, room_words, room_cells, room_q, room_q_coefs };

// A division under way.
struct cell_division {
    product_work *work;
    flat_shape of_n, of_m, of_q;
    flat_packing packing;  // of n
    flat_terms<cell_ring> n, m;
    flat_sums<cell_ring> q;
    cell_word *cells;             // by packed exponent
    std::int32_t width;           // words of a cell
    std::int32_t q_bits, m_bits;  // of the longest coefficient
    odd_divisor lead;
    std::int64_t unpolled;
};

static std::int32_t bits_of_cell(const cell_word *w, std::int32_t words)
{
    while (words > 0 && w[words - 1] == 0) --words;
    return words == 0 ? 0 : 64 * words - __builtin_clzll(w[words - 1]);
}

// Exponents that the quotient may have. Declines (0): it can have none.
static int set_quotient_shape(cell_division *d)
{
    d->of_q = d->of_n;
    for (std::int32_t k = 0; k < d->of_m.levels; ++k) {
        d->of_q.low[k] -= d->of_m.low[k];
        d->of_q.top[k] -= d->of_m.top[k];
    }
    for (std::int32_t k = 0; k < d->of_q.levels; ++k) {
        if (d->of_q.low[k] < 0 || d->of_q.low[k] > d->of_q.top[k]) return 0;
    }
    return 1;
}

// There is enough to do, and there are not many more cells than terms.
static bool suits(cell_division *d)
{
    constexpr std::uint64_t most_bytes = std::uint64_t{1} << 25;
    constexpr std::int32_t most_width = 200;  // words; above it products of long integers have better ways
    const std::int64_t n = d->of_n.terms, m = d->of_m.terms;
    if (m < 2 || n * m < flat_division_cut || d->of_m.levels > d->of_n.levels) return false;
    for (std::int32_t k = 0; k < d->of_n.levels; ++k) {
        if (d->of_n.low[k] < 0) return false;
    }
    for (std::int32_t k = 0; k < d->of_m.levels; ++k) {
        if (d->of_m.low[k] < 0 || d->of_m.top[k] - d->of_m.low[k] > d->of_n.top[k] - d->of_n.low[k])
            return false;
    }
    const std::int32_t longest = d->of_n.size > d->of_m.size ? d->of_n.size : d->of_m.size;
    d->width = words_of(longest) + 1;
    if (d->width > most_width) return false;
    if (!set_quotient_shape(d) || !pack_pair(&d->of_m, &d->of_q, &d->packing)) return false;
    if (d->packing.span > 32 * static_cast<std::uint64_t>(n) + 1024) return false;
    return d->packing.span * static_cast<std::uint64_t>(d->width) * sizeof(cell_word) <= most_bytes;
}

template <class T> static T *room_for(product_work *work, cell_room k, std::int64_t count)
{
    return static_cast<T *>(get_room(work, k, static_cast<std::size_t>(count) * sizeof(T)));
}

// Have the arrays. Declines (0).
static int get_rooms(cell_division *d)
{
    const std::int64_t n = d->of_n.terms, m = d->of_m.terms;
    const std::int64_t span = static_cast<std::int64_t>(d->packing.span);
    const std::int64_t most_q = span - 1 < 0 ? 0 : span;
    d->m.key = room_for<std::uint64_t>(d->work, room_m, m);
    d->m.coef = room_for<cell_ref>(d->work, room_m_coefs, m);
    d->n.key = room_for<std::uint64_t>(d->work, room_n, n);
    d->n.coef = room_for<cell_ref>(d->work, room_n_coefs, n);
    d->q.key = room_for<std::uint64_t>(d->work, room_q, most_q);
    d->q.sum = room_for<cell_ref>(d->work, room_q_coefs, most_q);
    d->cells = room_for<cell_word>(d->work, room_cells, span * d->width);
    return d->m.key && d->m.coef && d->n.key && d->n.coef && d->q.key && d->q.sum && d->cells;
}

static void gather(cell_division *d, const polynode *p, const flat_shape *shape, cell_word **words,
                   flat_terms<cell_ring> *to)
{
    flat_operand o;
    set_operand(&d->packing, shape, &o);
    to->count = 0;
    gather_terms(cell_ring{words}, &o, p, 0, 0, to);
}

// Write n and m out. Declines (0).
static int write_out(cell_division *d, const polynode *n, const polynode *m)
{
    const std::int64_t words = d->of_n.terms * words_of(d->of_n.size) +
                               d->of_m.terms * words_of(d->of_m.size);
    cell_word *next = room_for<cell_word>(d->work, room_words, words + 1);
    if (!next) return 0;
    gather(d, m, &d->of_m, &next, &d->m);
    gather(d, n, &d->of_n, &next, &d->n);
    const std::int64_t all = static_cast<std::int64_t>(d->packing.span) * d->width;
    for (std::int64_t k = 0; k < all; ++k) d->cells[k] = 0;
    for (std::int64_t i = 0; i < d->n.count; ++i) {
        cell_word *const cell = d->cells + static_cast<std::int64_t>(d->n.key[i]) * d->width;
        const cell_ref *c = &d->n.coef[i];
        (c->sign ? subtract_multiple : add_multiple)(cell, d->width, c, 1);
    }
    d->m_bits = 0;
    for (std::int64_t i = 0; i < d->m.count; ++i) {
        const std::int32_t bits = bits_of_cell(d->m.coef[i].w, d->m.coef[i].words);
        if (bits > d->m_bits) d->m_bits = bits;
    }
    set_odd_divisor(&d->m.coef[0], &d->lead);
    return 1;
}

// A term of the quotient may have the packed exponent.
static bool is_quotient_key(const cell_division *d, std::uint64_t key)
{
    for (std::int32_t k = 0; k < d->packing.levels; ++k) {
        const std::uint64_t digit = key / d->packing.stride[k];
        if (digit > static_cast<std::uint64_t>(d->of_q.top[k] - d->of_q.low[k])) return false;
        key -= digit * d->packing.stride[k];
    }
    return key == 0;
}

// No sum of products could have left its cell.
static bool sums_fit(const cell_division *d)
{
    const std::int64_t least = d->q.count < d->m.count ? d->q.count : d->m.count;
    const std::int32_t more = 64 - __builtin_clzll(static_cast<std::uint64_t>(least) + 1);
    return d->q_bits + d->m_bits + more < 64 * d->width - 2;
}

static bool is_zero_cell(const cell_word *w, std::int32_t words)
{
    for (std::int32_t k = 0; k < words; ++k) {
        if (w[k] != 0) return false;
    }
    return true;
}

// Take the multiple of the divisor off whose leading term is the one of the quotient in hand.
static void take_off_multiple(cell_division *d, std::uint64_t key, const cell_ref *q)
{
    for (std::int64_t i = 1; i < d->m.count; ++i) {
        const cell_ref *c = &d->m.coef[i];
        cell_word *const cell = d->cells + static_cast<std::int64_t>(key + d->m.key[i]) * d->width;
        if (q->sign == c->sign) {
            for (std::int32_t k = 0; k < q->words; ++k) subtract_multiple(cell + k, d->width - k, c, q->w[k]);
        } else {
            for (std::int32_t k = 0; k < q->words; ++k) add_multiple(cell + k, d->width - k, c, q->w[k]);
        }
    }
}

// The term of the quotient for the cell at `key`, which is not zero; it stays in the cell. Return whether the
// leading term of m divides that of the cell.
static bool quotient_term(cell_division *d, cell_word *cell, std::uint64_t key)
{
    const std::int32_t sign = take_sign(cell, d->width);
    const std::int32_t words = divide_magnitude(cell, d->width, &d->lead);
    if (words == 0 || !is_quotient_key(d, key)) return false;
    cell_ref q = {cell, words, sign ^ d->lead.odd.sign};
    while (q.words > 1 && q.w[q.words - 1] == 0) --q.words;
    const std::int32_t bits = bits_of_cell(q.w, q.words);
    if (bits > d->q_bits) d->q_bits = bits;
    d->q.key[d->q.count] = key;
    d->q.sum[d->q.count++] = q;
    take_off_multiple(d, key, &q);
    count_products(&d->unpolled, (d->m.count * q.words * d->m_bits >> 6) + 1);
    return true;
}

static flat_quotient run_division(cell_division *d)
{
    const std::uint64_t top = d->m.key[0];
    d->q.count = 0;
    d->q_bits = 0;
    for (std::uint64_t at = d->packing.span; at-- > 0;) {
        cell_word *const cell = d->cells + static_cast<std::int64_t>(at) * d->width;
        if (is_zero_cell(cell, d->width)) continue;
        if (at < top || !quotient_term(d, cell, at - top))
            return sums_fit(d) ? flat_not_exact : flat_not_suited;
    }
    return sums_fit(d) ? flat_exact : flat_not_suited;
}

// *q = the list of the quotient.
static void build_quotient(cell_division *d, polynode **q)
{
    flat_packing packing = d->packing;
    for (std::int32_t k = packing.levels - 1; k >= 0; --k) {
        packing.low[k] = d->of_q.low[k];
        packing.origin[k] = packing.origin[k + 1] -
                            static_cast<std::uint64_t>(std::int64_t{packing.low[k]}) * packing.stride[k];
    }
    flat_reader<cell_ring> from = {cell_ring{nullptr}, &packing, &d->q, 0};
    build_list(&from, 0, 0, q);
}

[[gnu::noinline]] static flat_quotient divide_cells(cell_division *d, polynode *n, polynode *m, polynode **q)
{
    d->work = open_work(__builtin_frame_address(0));
    d->unpolled = 0;
    polynode **const quotient = &d->work->parts[0], **const dividend = &d->work->parts[1];
    *dividend = n;
    poll_interrupt();
    flat_quotient end = flat_not_suited;
    if (get_rooms(d) && write_out(d, n, m)) end = run_division(d);
    if (end == flat_exact) {
        free_poly(dividend);
        build_quotient(d, quotient);
        *q = *quotient;
        *quotient = nullptr;
    }
    if (end == flat_not_suited) *dividend = nullptr;
    close_work(d->work);
    return end;
}

flat_quotient divide_flat_exactly(polynode *n, polynode *m, polynode **q)
{
    cell_division d;
    if (live_view() != view_digits || laurent || poly_iszero(n)) return flat_not_suited;
    measure_flat(m, &d.of_m);
    if (d.of_m.terms < 2) return flat_not_suited;
    measure_flat(n, &d.of_n);
    return suits(&d) ? divide_cells(&d, n, m, q) : flat_not_suited;
}

}  // namespace kelmar

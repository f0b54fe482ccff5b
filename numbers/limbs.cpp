// numbers/limbs.cpp -- gathering and writing of scratch limbs, and their products.
//
// Short products go column by column: all products that meet in one limb of the result are summed in 128 bits,
// and one carry leaves the column. Longer ones are cut at half the longer operand, Karatsuba's way, with the
// difference of the halves, so that no intermediate value outgrows its half. An operand of at most half the
// other's length multiplies it block by block.
#include "numbers/limbs.h"
#include <cstdlib>
#include "storage/low_memory.h"

namespace kelmar {

// Between chains and limbs ----------------------------------------------------------------------------------

static inline limb turned_limb(std::int32_t digit, std::int32_t sign)
{
    return static_cast<limb>(turned(digit, sign));
}

void gather_limbs(const numnode *head, std::int32_t size, limb *to)
{
    const std::int32_t sign = head->digit < 0 ? -1 : 0;
    std::int32_t i = limbs_of(size);
    if (size & 1) {
        to[--i] = turned_limb(head->digit, sign);
        head = head->next;
    }
    while (i-- > 0) {
        const numnode *low = head->next;
        to[i] = turned_limb(head->digit, sign) << digit_bits | turned_limb(low->digit, sign);
        head = low->next;
    }
}

void scatter_limbs(const limb *from, std::int32_t n, std::int32_t sign, number *c)
{
    while (n > 1 && from[n - 1] == 0) --n;
    numnode *head = nullptr;
    numnode **end = &head;
    numnode *last = nullptr;
    std::int32_t size = 2 * n;
    if (from[n - 1] >> digit_bits == 0) {
        --size;
        last = new_digit(turned(static_cast<std::int32_t>(from[--n]), sign), nullptr);
        *end = last;
        end = &last->next;
    }
    while (n-- > 0) {
        numnode *high = new_digit(turned(static_cast<std::int32_t>(from[n] >> digit_bits), sign), nullptr);
        last = new_digit(turned(static_cast<std::int32_t>(from[n] & digit_mask), sign), nullptr);
        *end = high;
        high->next = last;
        end = &last->next;
    }
    take_chain(c, head, last, size);
}

void resize_chain_slow(number *c, std::int32_t size)
{
    if (c->size == 0) {
        c->head = c->tail = new_digit(0, nullptr);
        c->size = 1;
    }
    for (; c->size < size; ++c->size) c->head = new_digit(0, c->head);
    if (c->size == size) return;
    numnode *end = c->head;  // give all in front of the last `size` back
    for (std::int32_t i = c->size - size; i > 1; --i) end = end->next;
    numnode *old = c->head;
    c->head = end->next;
    c->size = size;
    give_chain(old, end);
}

static inline std::int32_t low_digit(limb v, std::int32_t sign)
{
    return turned(static_cast<std::int32_t>(v & digit_mask), sign);
}

void set_small_value(limb v, std::int32_t sign, number *c)
{
    const limb high = v >> digit_bits;
    if (high == 0) {
        resize_chain(c, 1);
        c->head->digit = low_digit(v, sign);
        return;
    }
    if (high >> digit_bits == 0) {
        resize_chain(c, 2);
        c->head->digit = low_digit(high, sign);
    } else {
        resize_chain(c, 3);
        c->head->digit = low_digit(high >> digit_bits, sign);
        c->head->next->digit = low_digit(high, sign);
    }
    c->tail->digit = low_digit(v, sign);
}

void set_small_value(double_limb v, std::int32_t sign, number *c)
{
    const limb high = static_cast<limb>(v >> limb_bits), low = static_cast<limb>(v) & limb_mask;
    if (high == 0) return set_small_value(low, sign, c);
    resize_chain(c, high >> digit_bits == 0 ? 3 : 4);
    numnode *node = c->head;
    if (c->size == 4) {
        node->digit = low_digit(high >> digit_bits, sign);
        node = node->next;
    }
    node->digit = low_digit(high, sign);
    node->next->digit = low_digit(low >> digit_bits, sign);
    c->tail->digit = low_digit(low, sign);
}

// default null; the kept buffer of scratch limbs, and its length; scratch_limbs; reset: never
static limb *kept = nullptr;
static std::int64_t kept_length = 0;

#ifdef KELMAR_MALLOC_RECORDS
static constexpr bool exact = true;  // a fresh array each time, so that a sanitizer sees each step over its end
#else
static constexpr bool exact = false;
#endif

limb *scratch_limbs(std::int64_t n)
{
    if (exact) kept_length = 0;
    while (n > kept_length) {
        std::free(kept);
        kept_length = 0;
        const std::int64_t wanted = exact ? n : n + n / 2;
        kept = static_cast<limb *>(std::malloc(static_cast<std::size_t>(wanted) * sizeof(limb)));
        if (kept) {
            kept_length = wanted;
        } else {
            mem_error();
        }
    }
    return kept;
}

// Columns -----------------------------------------------------------------------------------------------------

static inline void add_product(double_limb *sum, limb a, limb b)
{
    *sum += static_cast<double_limb>(a) * b;
}

static inline limb column_end(double_limb *sum)
{
    const limb low = static_cast<limb>(*sum) & limb_mask;
    *sum >>= limb_bits;
    return low;
}

static void multiply_columns(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb)
{
    double_limb sum = 0;
    for (std::int32_t k = 0; k < na + nb - 1; ++k) {
        const std::int32_t from = k < na ? 0 : k - na + 1;
        const std::int32_t to = k < nb ? k : nb - 1;
        const limb *up = b + from;
        const limb *down = a + (k - from);
        for (std::int32_t i = to - from; i >= 0; --i) add_product(&sum, *up++, *down--);
        r[k] = column_end(&sum);
    }
    r[na + nb - 1] = static_cast<limb>(sum);
}

static void square_columns(limb *r, const limb *a, std::int32_t n)
{
    double_limb carry = 0;
    for (std::int32_t k = 0; k < 2 * n - 1; ++k) {
        const limb *up = a + (k < n ? 0 : k - n + 1);
        const limb *down = a + (k < n ? k : n - 1);
        double_limb sum = 0;
        while (up < down) add_product(&sum, *up++, *down--);
        sum = 2 * sum + carry;
        if (up == down) add_product(&sum, *up, *up);
        r[k] = column_end(&sum);
        carry = sum;
    }
    r[2 * n - 1] = static_cast<limb>(carry);
}

// Karatsuba -------------------------------------------------------------------------------------------------

// r[0 .. n) = |low - high| where high has nh <= n limbs. Return whether high was the larger.
static bool distance(limb *r, const limb *low, std::int32_t n, const limb *high, std::int32_t nh)
{
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < n; ++i) {
        carry += static_cast<std::int64_t>(low[i]) - static_cast<std::int64_t>(i < nh ? high[i] : 0);
        r[i] = static_cast<limb>(carry) & limb_mask;
        carry >>= limb_bits;
    }
    if (carry == 0) return false;
    limb borrow = 1;
    for (std::int32_t i = 0; i < n; ++i) {
        borrow += ~r[i] & limb_mask;
        r[i] = borrow & limb_mask;
        borrow >>= limb_bits;
    }
    return true;
}

// r[0 .. n) += t[0 .. nt), nt <= n; the sum is known to fit.
static void add_into(limb *r, std::int32_t n, const limb *t, std::int32_t nt)
{
    limb carry = 0;
    std::int32_t i = 0;
    for (; i < nt; ++i) {
        carry += r[i] + t[i];
        r[i] = carry & limb_mask;
        carry >>= limb_bits;
    }
    for (; carry && i < n; ++i) {
        carry += r[i];
        r[i] = carry & limb_mask;
        carry >>= limb_bits;
    }
}

// r[h .. n) += r[0 .. 2h) + r[2h .. n) - or + t[0 .. 2h): the middle term of Karatsuba's product of n limbs.
static void add_middle(limb *r, std::int32_t n, std::int32_t h, limb *t, bool minus)
{
    const std::int64_t turn = minus ? -1 : 0;
    std::int64_t carry = 0;
    for (std::int32_t i = 0; i < 2 * h; ++i) {
        carry += (static_cast<std::int64_t>(t[i]) ^ turn) - turn + static_cast<std::int64_t>(r[i]);
        if (2 * h + i < n) carry += static_cast<std::int64_t>(r[2 * h + i]);
        t[i] = static_cast<limb>(carry) & limb_mask;
        carry >>= limb_bits;
    }
    const std::int32_t room = n - h;
    add_into(r + h, room, t, room < 2 * h ? room : 2 * h);
    const limb top = static_cast<limb>(carry);
    if (top) add_into(r + 3 * h, n - 3 * h, &top, 1);
}

// a is at least twice as long as b: block by block.
static void multiply_blocks(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    multiply_limbs(r, a, nb, b, nb, scratch);
    std::int32_t done = nb;
    for (; na - done >= nb; done += nb) {
        for (std::int32_t i = 0; i < nb; ++i) r[done + nb + i] = 0;
        multiply_limbs(scratch, a + done, nb, b, nb, scratch + 2 * nb);
        add_into(r + done, 2 * nb, scratch, 2 * nb);
    }
    const std::int32_t rest = na - done;
    if (rest == 0) return;
    for (std::int32_t i = 0; i < rest; ++i) r[done + nb + i] = 0;
    multiply_limbs(scratch, b, nb, a + done, rest, scratch + 2 * nb);
    add_into(r + done, nb + rest, scratch, nb + rest);
}

void multiply_limbs(limb *r, const limb *a, std::int32_t na, const limb *b, std::int32_t nb, limb *scratch)
{
    const bool square = a == b && na == nb;
    if (square && na < square_cut) return square_columns(r, a, na);
    if (nb < column_cut && !square) return multiply_columns(r, a, na, b, nb);
    const std::int32_t h = (na + 1) / 2;
    if (nb <= h) return multiply_blocks(r, a, na, b, nb, scratch);

    const bool turned_a = distance(r, a, h, a + h, na - h);
    const bool turned_b = square ? turned_a : distance(r + h, b, h, b + h, nb - h);
    limb *const rest = scratch + 2 * h;
    multiply_limbs(scratch, r, h, square ? r : r + h, h, rest);
    multiply_limbs(r, a, h, b, h, rest);
    multiply_limbs(r + 2 * h, a + h, na - h, b + h, nb - h, rest);
    add_middle(r, na + nb, h, scratch, turned_a == turned_b);
}

}  // namespace kelmar

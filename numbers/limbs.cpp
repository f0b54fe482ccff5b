// numbers/limbs.cpp -- gathering digits in scratch limbs, and writing limbs as chains.
//
// A chain begins at its top, an array at its bottom, so both ways run from the top limb down: an odd count of
// digits leaves one digit for the top limb. Values of a few digits are written into the nodes that are there.
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
static constexpr bool exact = true;  // a fresh array each time, for the sanitizer to see its end
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

}  // namespace kelmar

// numbers/long_add.cpp -- sums and differences of digit chains.
//
// All digits are handled as magnitudes in the sign of the result, which the leading sum tells. The pass goes
// forward; each pair gives a digit and a carry of -1, 0 or 1 that falls on the digit before, still in a
// register. That digit is then in 0 .. base, or is -1. If it is -1 or base its node is remembered, and only
// the rightmost such node: all that is out of range lies at it or in front of it. After the pass the links
// from the head to that node are reversed, the carries run back along them, and the links are restored.
//
// Values of one and two digits, which carry most of the traffic, are added in a register instead.
//
// In place the same pass writes into the nodes of a: each is read before it is written, and a carry only
// reaches back to a node that was read already, so b may be a.
#include "numbers/long_add.h"
#include "numbers/limbs.h"
#include "numbers/word_mod.h"

namespace kelmar {

enum operation { plus, minus };
enum radix { base_fixed, base_given };  // base_fixed: 2^28, carries by shift and mask
enum place { apart, in_place };         // digits go to fresh nodes, or to those of the first chain

// A result under way. `front` is no digit of the result: its next is the head, and its digit collects the
// carry out of the first pair when no unmatched digits stand before that.
struct pass {
    numnode front;
    numnode *last;         // the node that `pending` belongs to
    numnode *damaged;      // the rightmost node out of range, or null
    std::int32_t pending;  // magnitude that *last will hold; the next pair's carry is still to come
    std::int32_t sign;     // 0, or -1 for a negative result: magnitudes are turned by (x ^ sign) - sign
    std::int32_t size;
};

template <operation Op> static inline std::int32_t combined(std::int32_t a, std::int32_t b)
{
    return Op == plus ? a + b : a - b;
}

// Bring *x, one pair's sum of magnitudes or a digit with a carry, into 0 .. base-1; return what is carried.
template <radix R> static inline std::int32_t split_carry(std::int32_t *x, std::int32_t base)
{
    if (R == base_fixed) {
        const std::int32_t carry = *x >> digit_bits;
        *x &= digit_mask;
        return carry;
    }
    const std::int32_t carry = *x < 0 ? -1 : *x >= base ? 1 : 0;
    *x -= carry * base;
    return carry;
}

// Ends ----------------------------------------------------------------------------------------------------

// Drop head nodes that hold 0; of a zero, all but the last node.
static inline void strip_head(number *n)
{
    while (n->size > 1 && n->head->digit == 0) {
        numnode *old = n->head;
        n->head = old->next;
        --n->size;
        give_digit(old);
    }
}

void mend_carries(number *n, numnode *damaged, std::int32_t sign, std::int32_t base)
{
    numnode *back = nullptr;
    for (numnode *node = n->head; node != damaged;) {
        numnode *next = node->next;
        node->next = back;
        back = node;
        node = next;
    }
    std::int32_t carry = 0;
    for (numnode *node = damaged;;) {
        std::int32_t x = turned(node->digit, sign) + carry;
        carry = split_carry<base_given>(&x, base);
        node->digit = turned(x, sign);
        if (!back) break;
        numnode *before = back->next;
        back->next = node;
        node = back;
        back = before;
    }
    if (carry) {
        n->head = new_digit(turned(carry, sign), n->head);
        ++n->size;
    }
    strip_head(n);
}

// The pass --------------------------------------------------------------------------------------------------

// Write the pending digit, after which `node` stands, and wait with `digit` for the next carry.
template <radix R>
static inline void advance(pass *p, std::int32_t carry, numnode *node, std::int32_t digit, std::int32_t base)
{
    const std::int32_t done = p->pending + carry;
    const std::uint32_t limit = static_cast<std::uint32_t>(R == base_fixed ? digit_base : base);
    if (__builtin_expect(static_cast<std::uint32_t>(done) >= limit, 0)) p->damaged = p->last;
    p->last->digit = turned(done, p->sign);
    p->last->next = node;
    p->last = node;
    p->pending = digit;
}

// A node off the free list `free`, which is the caller's copy of numhead; its fields are those of a free one.
static inline numnode *take_node(numnode **free)
{
    numnode *node = *free;
    if (__builtin_expect(node != nullptr, 1)) {
        *free = node->next;
    } else {
        numhead = nullptr;
        node = static_cast<numnode *>(get_slug(numstash));
    }
    return node;
}

// Add the remaining n pairs. The loop is advance() on locals: stores to nodes could alias numhead and the
// fields of the pass, and reading those back would take longer than the sum.
template <operation Op, radix R, place P>
static inline void add_pairs(pass *p, numnode *a, const numnode *b, std::int32_t n, std::int32_t base)
{
    const std::uint32_t limit = static_cast<std::uint32_t>(R == base_fixed ? digit_base : base);
    const std::int32_t sign = p->sign;
    std::int32_t pending = p->pending;
    numnode *last = p->last;
    numnode *damaged = p->damaged;
    numnode *free = numhead;
    if (P == in_place) last->next = a;
    while (n-- > 0) {
        std::int32_t x = turned(combined<Op>(a->digit, b->digit), sign);
        const std::int32_t done = pending + split_carry<R>(&x, base);
        numnode *const node = P == in_place ? a : take_node(&free);
        a = a->next;
        b = b->next;
        if (__builtin_expect(static_cast<std::uint32_t>(done) >= limit, 0)) damaged = last;
        last->digit = turned(done, sign);
        if (P == apart) last->next = node;
        last = node;
        pending = x;
    }
    if (P == apart) numhead = free;
    p->last = last;
    p->damaged = damaged;
    p->pending = pending;
}

// Append copies of n unmatched leading digits, negated when `negate`. Return what follows them.
static const numnode *copy_prefix(pass *p, const numnode *from, std::int32_t n, bool negate,
                                  std::int32_t base)
{
    const std::int32_t turn = p->sign ^ (negate ? -1 : 0);  // from its own sign to magnitude
    while (n-- > 0) {
        advance<base_given>(p, 0, new_digit(0, nullptr), turned(from->digit, turn), base);
        from = from->next;
    }
    return from;
}

// Pass over n unmatched leading digits of the chain that is changed in place. Return what follows them.
static numnode *keep_prefix(pass *p, numnode *from, std::int32_t n)
{
    p->front.next = from;
    while (--n > 0) from = from->next;
    p->last = from;
    p->pending = turned(from->digit, p->sign);
    return from->next;
}

// Close the chain and hand it to c, whose old chain goes unless its nodes are those of the result.
template <place P> static inline void finish(pass *p, number *c, std::int32_t base)
{
    p->last->digit = turned(p->pending, p->sign);
    p->last->next = nullptr;
    numnode *head = p->front.next;
    if (p->front.digit) {
        head = new_digit(p->front.digit, head);
        ++p->size;
    }
    if (P == in_place) {
        c->head = head;
        c->tail = p->last;
        c->size = p->size;
    } else {
        take_chain(c, head, p->last, p->size);
    }
    strip_head(c);
    if (__builtin_expect(p->damaged != nullptr, 0)) mend_carries(c, p->damaged, p->sign, base);
}

// Give back the first n nodes of the chain from head.
static void give_front(numnode *head, std::int32_t n)
{
    numnode *end = head;
    for (std::int32_t i = 1; i < n; ++i) end = end->next;
    give_chain(head, end);
}

// Operands of equal size: leading pairs that cancel are passed over; the first that does not tells the sign.
template <operation Op, radix R, place P>
static inline void add_equal(numnode *a, const numnode *b, std::int32_t size, number *c, std::int32_t base)
{
    numnode *const head = a;
    const std::int32_t all = size;
    std::int32_t top;
    while ((top = combined<Op>(a->digit, b->digit)) == 0 && --size > 0) {
        a = a->next;
        b = b->next;
    }
    if (top == 0) {
        if (P == in_place) {
            if (all > 1) give_front(head, all - 1);
            c->head = c->tail;
            c->size = 1;
            c->head->digit = 0;
        } else {
            set_small_value(limb{0}, 0, c);
        }
        return;
    }
    pass p = {{0, nullptr}, nullptr, nullptr, 0, top < 0 ? -1 : 0, size};
    p.last = &p.front;
    add_pairs<Op, R, P>(&p, a, b, size, base);
    finish<P>(&p, c, base);
    if (P == in_place && size < all) give_front(head, all - size);
}

static inline std::int64_t small_value(const numnode *head, std::int32_t size)
{
    const std::int64_t v = head->digit;
    return size == 1 ? v : v * digit_base + head->next->digit;
}

// c = a + b or a - b for at most two digits of base 2^28, in a register.
template <operation Op>
static inline void add_small(const numnode *a, std::int32_t size_a, const numnode *b, std::int32_t size_b,
                             number *c)
{
    const std::int64_t va = small_value(a, size_a), vb = small_value(b, size_b);
    const std::int64_t v = Op == plus ? va + vb : va - vb;
    const std::int32_t sign = v < 0 ? -1 : 0;
    set_small_value(static_cast<limb>((v ^ sign) - sign), sign, c);
}

// c = a + b or a - b. In place, a is the chain of c; apart, a is spared, whatever its type says.
template <operation Op, radix R, place P>
static void add_chains(numnode *a, std::int32_t size_a, const numnode *b, std::int32_t size_b, number *c,
                       std::int32_t base)
{
    if (R == base_fixed && size_a <= 2 && size_b <= 2) return add_small<Op>(a, size_a, b, size_b, c);
    if (size_a == size_b) return add_equal<Op, R, P>(a, b, size_a, c, base);

    const bool a_longer = size_a > size_b;
    const bool negate = Op == minus && !a_longer;
    const std::int32_t top = a_longer ? a->digit : b->digit;
    pass p = {{0, nullptr}, nullptr, nullptr, 0, (top < 0) != negate ? -1 : 0, a_longer ? size_a : size_b};
    p.last = &p.front;
    if (!a_longer) {
        b = copy_prefix(&p, b, size_b - size_a, negate, base);
    } else if (P == in_place) {
        a = keep_prefix(&p, a, size_a - size_b);
    } else {
        a = const_cast<numnode *>(copy_prefix(&p, a, size_a - size_b, false, base));
    }
    add_pairs<Op, R, P>(&p, a, b, a_longer ? size_b : size_a, base);
    finish<P>(&p, c, base);
}

// The named forms -------------------------------------------------------------------------------------------

void fastsum(number *a, const number *b)
{
    add_chains<plus, base_fixed, in_place>(a->head, a->size, b->head, b->size, a, digit_base);
}

void fastdiff(number *a, const number *b)
{
    add_chains<minus, base_fixed, in_place>(a->head, a->size, b->head, b->size, a, digit_base);
}

void medsum(std::int32_t size_a, std::int32_t size_b, const numnode *head_a, const numnode *head_b, number *c)
{
    numnode *a = const_cast<numnode *>(head_a);
    add_chains<plus, base_fixed, apart>(a, size_a, head_b, size_b, c, digit_base);
}

void meddiff(std::int32_t size_a, std::int32_t size_b, const numnode *head_a, const numnode *head_b,
             number *c)
{
    numnode *a = const_cast<numnode *>(head_a);
    add_chains<minus, base_fixed, apart>(a, size_a, head_b, size_b, c, digit_base);
}

void summ(const number *a, const number *b, number *c, std::int32_t base)
{
    if (base == digit_base) return medsum(a->size, b->size, a->head, b->head, c);
    add_chains<plus, base_given, apart>(a->head, a->size, b->head, b->size, c, base);
}

void diff(const numnode *head_a, std::int32_t size_a, const number *b, number *c, std::int32_t base)
{
    if (base == digit_base) return meddiff(size_a, b->size, head_a, b->head, c);
    numnode *a = const_cast<numnode *>(head_a);
    add_chains<minus, base_given, apart>(a, size_a, b->head, b->size, c, base);
}

static inline std::int32_t wrapped(std::int64_t v)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
}

void sub(const number *a, const number *b, number *c)
{
    switch (live_view()) {
    case view_float: c->real = a->real - b->real; return;
    case view_field:
    case view_modular: c->word = mod_sub(to_residue(a->word), to_residue(b->word), modulus); return;
    case view_word: c->word = wrapped(static_cast<std::int64_t>(a->word) - b->word); return;
    case view_small:
    case view_digits:
        if (c->size > 0 && c->head == a->head) return fastdiff(c, b);
        return meddiff(a->size, b->size, a->head, b->head, c);
    }
}

}  // namespace kelmar

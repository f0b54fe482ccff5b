#pragma once
// poly/flat_terms.h -- from nested lists to flat arrays and back, for one ring of coefficients.

#include "poly/flat.h"
#include "poly/flat_rings.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

// Terms, the leading one first: packed exponents fall.
template <class R> struct flat_terms {
    std::uint64_t *key;
    typename R::coef *coef;
    std::int64_t count;
};

// The sums that make a product.
template <class R> struct flat_sums {
    std::uint64_t *key;
    typename R::sum *sum;
    std::int64_t count;
    std::int64_t room;  // entries that the arrays have
};

// The arrays of a flat product in its work record.
enum flat_room {
    room_rows,
    room_inner,
    room_cursors,
    room_products,
    room_sorted,
    room_counts,
    room_keys,
    room_sums
};

// Have room for `more` sums behind those that are there. Declines (0) when the heap has none.
template <class R> int reserve_sums(product_work *work, flat_sums<R> *out, std::int64_t more)
{
    if (out->count + more <= out->room) return 1;
    const std::int64_t room = out->count + more + out->count / 2;
    const std::size_t n = static_cast<std::size_t>(room);
    out->key = static_cast<std::uint64_t *>(get_room(work, room_keys, n * sizeof(std::uint64_t)));
    if (!out->key) return 0;
    out->sum = static_cast<typename R::sum *>(get_room(work, room_sums, n * sizeof(typename R::sum)));
    if (!out->sum) return 0;
    out->room = room;
    return 1;
}

// Append a sum that is complete, unless it is zero. There is room.
template <class R>
inline void append_sum(R ring, std::uint64_t key, const typename R::sum &raw, flat_sums<R> *out)
{
    const typename R::sum s = settled(ring, raw);
    if (is_zero_sum(s)) return;
    out->key[out->count] = key;
    out->sum[out->count++] = s;
}

// What packs one operand of a pair.
struct flat_operand {
    const flat_packing *packing;
    const flat_shape *shape;
    std::uint64_t origin[variable_limit + 1];  // what exponent 0 from this level down adds
};

inline void set_operand(const flat_packing *packing, const flat_shape *shape, flat_operand *o)
{
    o->packing = packing;
    o->shape = shape;
    o->origin[shape->levels] = 0;
    for (std::int32_t k = shape->levels - 1; k > 0; --k) {
        o->origin[k] = o->origin[k + 1] -
                       static_cast<std::uint64_t>(std::int64_t{shape->low[k]}) * packing->stride[k];
    }
}

// Append the terms of the list p at `level`, whose packed exponents start at base.
template <class R>
void gather_terms(R ring, const flat_operand *o, const polynode *p, std::int32_t level, std::uint64_t base,
                  flat_terms<R> *to)
{
    const std::int64_t low = o->shape->low[level];
    const std::uint64_t stride = o->packing->stride[level];
    for (; p; p = p->next) {
        const std::uint64_t key = base + static_cast<std::uint64_t>(p->exp - low) * stride;
        const polynode *coef = p->isnum ? p : p->coef;
        if (!p->isnum && !is_constant(coef)) {
            gather_terms(ring, o, coef, level + 1, key, to);
            continue;
        }
        to->key[to->count] = key + o->origin[level + 1];
        to->coef[to->count++] = load_coef(ring, coef->num);
    }
}

// A flat product on its way to a nested list.
template <class R> struct flat_reader {
    R ring;
    const flat_packing *packing;
    const flat_sums<R> *sums;
    std::int64_t at;  // the next term
};

// A poll for so many terms made, and one.
#ifdef KELMAR_STORM
inline constexpr std::int64_t build_poll_mask = (1 << 3) - 1;
#else
inline constexpr std::int64_t build_poll_mask = (1 << 14) - 1;
#endif

// Return a fresh number with the value of the sum.
template <class R> number *number_of_sum(R ring, const typename R::sum &s)
{
    number *n = nullptr;
    newimag(&n);
    n->size = 0;
    store_sum(ring, s, n);
    return n;
}

// *end = the list of all next terms with packed exponents from base up. The list ends with null at every
// poll; a coefficient that is not made yet is null.
template <class R>
void build_list(flat_reader<R> *from, std::int32_t level, std::uint64_t base, polynode **end)
{
    const std::uint64_t stride = from->packing->stride[level];
    const std::uint64_t inner_origin = from->packing->origin[level + 1];
    const std::uint64_t *const key = from->sums->key;
    const std::int64_t count = from->sums->count;
    while (from->at < count && key[from->at] >= base) {
        const std::uint64_t digit = stride == 1 ? key[from->at] - base : (key[from->at] - base) / stride;
        const std::uint64_t block = base + digit * stride;
        const std::int32_t exp = static_cast<std::int32_t>(std::int64_t{from->packing->low[level]} +
                                                           static_cast<std::int64_t>(digit));
        const bool lone = from->at + 1 == count || key[from->at + 1] < block;
        if (lone && key[from->at] == block + inner_origin) {
            polynode *constant = new_constant(number_of_sum(from->ring, from->sums->sum[from->at++]));
            *end = exp == 0 ? constant : new_term(exp, constant);
            if ((from->at & build_poll_mask) == 0) poll_interrupt();
        } else {
            *end = new_term(exp, nullptr);
            build_list(from, level + 1, block, &(*end)->coef);
        }
        end = &(*end)->next;
    }
}

}  // namespace kelmar

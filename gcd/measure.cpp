// gcd/measure.cpp -- counts that stop early.
//
// A count that stops in each list by itself sees more than one branch of a polynomial whose first coefficient
// is huge; one that stops for good is the cheaper. Sums saturate, so that no exponent makes them overflow.
#include "gcd/measure.h"
#include <cstring>
#include "numbers/dispatch.h"
#include "poly/measure.h"
#include "poly/variables.h"
#include "storage/low_memory.h"

namespace kelmar {

// Nodes --------------------------------------------------------------------------------------------------

// Each list stops above `enough`.
static std::int32_t nodes_by_list(const polynode *p, std::int32_t enough)
{
    std::int32_t count = 0;
    for (; p && count <= enough; p = p->next) count += p->isnum ? 1 : 1 + nodes_by_list(p->coef, enough);
    return count < 2 * enough ? count : 2 * enough;
}

std::int32_t big_node_total(const polynode *p)
{
    return nodes_by_list(p, 800);
}

std::int32_t bigger_node_total(const polynode *p)
{
    return nodes_by_list(p, 1000);
}

std::int32_t bigg_node_total(const polynode *p)
{
    return nodes_by_list(p, 10000);
}

std::int32_t new_node_total(const polynode *p)
{
    return nodes_by_list(p, 100);
}

std::int32_t node_total(const polynode *p)
{
    std::int32_t count = 0;
    for (; p; p = p->next) count += p->isnum ? 1 : 1 + node_total(p->coef);
    return count;
}

// count + the nodes of p, the first count above limit at most.
static std::int32_t add_nodes(const polynode *p, std::int32_t count, std::int32_t limit)
{
    for (; p && count <= limit; p = p->next)
        count = p->isnum ? count + 1 : add_nodes(p->coef, count + 1, limit);
    return count;
}

std::int32_t poly_nodes(const polynode *p, std::int32_t limit)
{
    return add_nodes(p, 0, limit);
}

// Weights ------------------------------------------------------------------------------------------------

static constexpr std::int32_t weighed_nodes = 4000;

static std::int64_t limited(std::int64_t weight)
{
    return weight < weight_limit ? weight : weight_limit;
}

// above: the product of |exp| + 1 along the way to p.
static void add_weights(const polynode *p, std::int64_t above, std::int32_t most_nodes, node_weight *sum)
{
    for (; p && sum->nodes < most_nodes && sum->weight < weight_limit; p = p->next) {
        const std::int64_t e = p->exp;
        const std::int64_t weight = above >= weight_limit ? weight_limit
                                                          : limited(above * ((e < 0 ? -e : e) + 1));
        ++sum->nodes;
        sum->weight = limited(sum->weight + weight);
        if (!p->isnum) add_weights(p->coef, weight, most_nodes, sum);
    }
}

node_weight expon_node_total(const polynode *p)
{
    node_weight sum = {0, 0};
    add_weights(p, 1, weighed_nodes, &sum);
    return sum;
}

std::int64_t poly_weight(const polynode *p)
{
    node_weight sum = {0, 0};
    add_weights(p, 1, INT32_MAX, &sum);
    return sum.weight;
}

// Terms --------------------------------------------------------------------------------------------------

// count + the terms of p, the first count above limit at most.
static std::int32_t add_terms(const polynode *p, std::int32_t count, std::int32_t limit)
{
    for (; p && count <= limit; p = p->next) count = p->isnum ? count + 1 : add_terms(p->coef, count, limit);
    return count;
}

std::int32_t fast_numterms(const polynode *p)
{
    return add_terms(p, 0, 30);
}

std::int32_t fast_f_numterms(const polynode *p)
{
    return add_terms(p, 0, 30);
}

std::int32_t f_poly_numterms(const polynode *p)
{
    return add_terms(p, 0, 2000);
}

std::int32_t q_poly_numterms(const polynode *p)
{
    return add_terms(p, 0, 200000);
}

std::int32_t poly_numterms(const polynode *p)
{
    return add_terms(p, 0, INT32_MAX - 1);
}

// Shape --------------------------------------------------------------------------------------------------

std::int32_t polys_there(const polynode *p)
{
    std::int32_t count = 0;
    for (; p; p = p->next) count += !p->isnum && !is_constant(p->coef);
    return count;
}

std::int64_t sum_degrees(const polynode *p, std::int64_t enough)
{
    std::int64_t sum = 0;
    for (; p && sum <= enough; p = p->next) {
        if (p->isnum) continue;
        for (const polynode *q = p->coef; !q->isnum; q = q->coef)
            sum += q->exp < 0 ? -std::int64_t{q->exp} : q->exp;
    }
    return sum;
}

std::int32_t max_degree(const polynode *p, std::int32_t level)
{
    if (level <= 1) return p->exp;
    std::int32_t most = 0;
    bool first = true;
    for (; p; p = p->next) {
        const std::int32_t degree = p->isnum ? 0 : max_degree(p->coef, level - 1);
        if (first || degree > most) most = degree;
        first = false;
    }
    return most;
}

bool depth_only_2(const polynode *p)
{
    char flags[variable_limit + 1];
    std::memset(flags, 0, sizeof flags);
    for (std::int32_t k = 0; p && k < 4; p = p->next, ++k) {
        if (!p->isnum) poly_vars(p->coef, 2, flags);
    }
    std::int32_t variables = 0;
    for (const char flag : flags) variables += flag != 0;
    return variables <= 1;
}

// Hash ---------------------------------------------------------------------------------------------------

static std::uint32_t mix(std::uint32_t h, std::uint32_t v)
{
    return (h ^ v) * 0x9e3779b1u + (h >> 15);
}

static std::uint32_t hash_number(const number *n)
{
    std::uint32_t h = 1;
    switch (live_view()) {
    case view_float: {
        const double v = n->real == 0 ? 0.0 : n->real;
        std::uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        return mix(static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(bits >> 32));
    }
    case view_field:
    case view_modular:
    case view_word: return static_cast<std::uint32_t>(n->word);
    case view_small: return static_cast<std::uint32_t>(n->head->digit);
    case view_digits:
        for (const numnode *d = n->head; d; d = d->next) h = mix(h, static_cast<std::uint32_t>(d->digit));
        return h;
    }
    __builtin_unreachable();
}

static std::uint32_t hash_list(const polynode *p, std::uint32_t h)
{
    for (; p; p = p->next) {
        h = mix(h, static_cast<std::uint32_t>(p->exp));
        h = p->isnum ? mix(h, hash_number(p->num)) : hash_list(p->coef, h + 1);
    }
    return h;
}

std::int32_t hash_1(const polynode *p)
{
    return static_cast<std::int32_t>(hash_list(p, 0) % static_cast<std::uint32_t>(gcd_stash_lists));
}

}  // namespace kelmar

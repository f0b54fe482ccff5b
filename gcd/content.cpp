// gcd/content.cpp -- contents in the outer variable.
//
// All three take the gcd of a pool of polynomials: the coefficients of one list, or of two, and with
// aux_content another one in front. The pool is walked once for the two smallest, whose gcd is mostly
// the answer already; then the others only confirm it. As soon as one coefficient is a number the answer is a
// number, and no gcd of polynomials is taken at all.
#include "gcd/content.h"
#include <utility>
#include "gcd/driver.h"
#include "gcd/measure.h"
#include "numbers/dispatch.h"
#include "poly/content.h"
#include "poly/div_steps.h"
#include "poly/measure.h"
#include "session/report.h"

namespace kelmar {

// Number contents ----------------------------------------------------------------------------------------

bool all_coefs_invrtble(const polynode *p, std::int32_t level)
{
    for (; p; p = p->next) {
        if (p->isnum || is_constant(p->coef)) continue;
        if (field_depth == 0 || level + poly_depth(p->coef) < field_depth) return false;
    }
    return true;
}

static bool has_number_coefficient(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum || is_constant(p->coef)) return true;
    }
    return false;
}

// The content of p, which is not zero, is a number for sure.
static bool number_is_due(const polynode *p, std::int32_t level)
{
    if (field_depth > 0 && field_depth <= level) return true;
    return number_polys == 1 || has_number_coefficient(p) || all_coefs_invrtble(p, level);
}

static std::int32_t level_of(const pt *names)
{
    return names ? names->level : 1;
}

static pt *below(pt *names)
{
    return names ? names->next : nullptr;
}

// Pools --------------------------------------------------------------------------------------------------

// Polynomials of one level, in the order in which they are taken.
struct coef_pool {
    polynode *other;  // null: none
    polynode *a, *b;  // lists whose coefficients follow; b null: none
    std::int32_t other_ours, a_ours, b_ours;
};

struct pool_place {
    polynode *coef;  // null: the end
    polynode *term;  // of a list; null for the other one
    std::int32_t ours;
    int in_b;
};

static pool_place place_at(polynode *term, std::int32_t ours, int in_b)
{
    return {term->isnum ? term : term->coef, term, ours, in_b};
}

static pool_place first_place(const coef_pool *pool)
{
    if (pool->other) return {pool->other, nullptr, pool->other_ours, 0};
    return place_at(pool->a, pool->a_ours, 0);
}

static void next_place(const coef_pool *pool, pool_place *at)
{
    if (!at->term) {
        *at = place_at(pool->a, pool->a_ours, 0);
    } else if (at->term->next) {
        *at = place_at(at->term->next, at->ours, at->in_b);
    } else if (!at->in_b && pool->b) {
        *at = place_at(pool->b, pool->b_ours, 1);
    } else {
        at->coef = nullptr;
    }
}

// How a pool is walked.
struct pool_rules {
    std::int32_t *count;                       // of visits
    std::int32_t enough_first, enough_second;  // nodes below which the smallest, or the second, ends the walk
    const char *text;                          // of the progress line
    pt *names;                                 // of the coefficients
    std::int32_t deep;
};

// The two smallest of a pool.
struct pool_pair {
    polynode *first, *second;
    std::int32_t first_ours, second_ours;
};

// Count a visit. A count that overflows stops all looking.
static void count_visit(std::int32_t *count)
{
    *count = static_cast<std::int32_t>(static_cast<std::uint32_t>(*count) + 1);
    if (*count >= 0) return;
    warning(0, "");
    c_cntcount = a_cntcount = d_cntcount = count_limit + 1;
}

// A number as a coefficient, bare or in wrappers: those that are in order have been looked for before.
static bool broken_number(const pool_place *at, const char *fault)
{
    if (!at->term) return false;
    const polynode *p = at->coef;
    while (is_wrapper(p)) p = p->coef;
    if (!is_constant(p)) return false;
    kelmar_error(fault, 1);
    return true;
}

// Find the pair. Declines (0) after a fault. second is null in a pool of one.
static int find_pair(const coef_pool *pool, const pool_rules *rules, pool_pair *pair)
{
    std::int32_t first_size = 0, second_size = 0;
    *pair = {};
    for (pool_place at = first_place(pool); at.coef; next_place(pool, &at)) {
        if (broken_number(&at, " *** pp numb in content")) return 0;
        count_visit(rules->count);
        if (*rules->count > count_limit) break;
        const std::int32_t size = bigger_node_total(at.coef);
        if (!pair->first || size < first_size) {
            *pair = {at.coef, pair->first, at.ours, pair->first_ours};
            second_size = first_size;
            first_size = size;
        } else if (!pair->second || size < second_size) {
            pair->second = at.coef;
            pair->second_ours = at.ours;
            second_size = size;
        }
        if (pair->second && (first_size < rules->enough_first || second_size < rules->enough_second)) break;
    }
    return 1;
}

// g is 1 up to a unit: no further gcd can change it.
static bool is_final(const polynode *g)
{
    int minus = 0;
    return is_constant(g) && (lintmode || equal_to_pm1(g->num, &minus));
}

// *g = gcd(*g, coef), where *g is our own. room: an empty slot.
static void take_gcd_into(polynode **g, polynode *coef, std::int32_t ours, const pool_rules *rules,
                          polynode **room)
{
    polygcd(*g, coef, room, 0, 1, rules->deep, rules->names, 0, ours, 0);
    std::swap(*g, *room);
    free_poly(room);
}

// *g = the gcd of the pool. looks: the two smallest come first. Declines (0) after a fault.
static int gcd_of_pool(const coef_pool *pool, const pool_rules *rules, bool looks, polynode **g,
                       polynode **room)
{
    pool_pair pair = {};
    if (looks && !find_pair(pool, rules, &pair)) return 0;
    if (pair.second) {
        polygcd(pair.first, pair.second, g, 0, 1, rules->deep, rules->names, pair.first_ours,
                pair.second_ours, 0);
    } else {
        pair.first = first_place(pool).coef;
        *g = copy_poly(pair.first);
        normalise_gcd(g);
    }
    for (pool_place at = first_place(pool); at.coef && !is_final(*g); next_place(pool, &at)) {
        if (at.coef == pair.first || at.coef == pair.second) continue;
        poll_interrupt();
        if (broken_number(&at, " *** q numb in content")) return 0;
        take_gcd_into(g, at.coef, at.ours, rules, room);
    }
    return 1;
}

// *result = the gcd of the pool, of `terms` polynomials; 1 after a fault.
[[gnu::noinline]] static void run_pool(const coef_pool *pool, const pool_rules *rules, bool looks,
                                       std::int32_t show, std::int32_t terms, polynode **result)
{
    check_stack();
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const g = &work->parts[0], **const room = &work->parts[1];
    dumpitt(rules->text, terms, 0, show, 0);
    if (!gcd_of_pool(pool, rules, looks, g, room)) poly_set(1, g);
    decr_dumpitt(terms);
    polynode *found = nullptr;
    std::swap(found, *g);
    close_work(work);
    free_poly(result);
    *result = found;
}

// Contents -----------------------------------------------------------------------------------------------

// *result = a copy of p in the form of a gcd.
static void copy_normalised(const polynode *p, polynode **result)
{
    polynode *copy = copy_poly(p);
    if (!poly_iszero(copy)) normalise_gcd(&copy);
    free_poly(result);
    *result = copy;
}

// Return the number content of p, which is not zero; 1 where numbers divide each other.
static polynode *number_content(const polynode *p)
{
    polynode *c = nullptr;
    if (lintmode) {
        poly_set(1, &c);
    } else {
        gcd_coefs(p, &c);
    }
    return c;
}

// *c = the number content of p, or p itself when it is a number. *c replaced.
static void number_part(const polynode *p, polynode **c)
{
    polynode *const part = is_constant(p) ? copy_poly(p) : number_content(p);
    free_poly(c);
    *c = part;
}

// *result = gcd(a, b) when it is a number: that of their numbers.
[[gnu::noinline]] static void gcd_of_numbers(const polynode *a, const polynode *b, polynode **result,
                                             std::int32_t deep, pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const c = &work->parts[0], **const d = &work->parts[1], **const g = &work->parts[2];
    number_part(a, c);
    number_part(b, d);
    polygcd(*c, *d, g, 0, 1, deep, names, 0, 0, 0);
    polynode *found = nullptr;
    std::swap(found, *g);
    close_work(work);
    free_poly(result);
    *result = found;
}

// The level of p, and one more for each leading exponent 0.
static std::int32_t counting_level(const polynode *p, std::int32_t level)
{
    for (; !p->isnum && p->exp == 0; p = p->coef) ++level;
    return level;
}

void content(polynode *p, polynode **result, pt *names, std::int32_t show, std::int32_t deep,
             std::int32_t ours)
{
    const std::int32_t level = level_of(names);
    if (poly_iszero(p)) {
        poly_set(0, result);
        return;
    }
    if (number_is_due(p, level)) {
        polynode *const c = number_content(p);
        free_poly(result);
        *result = c;
        return;
    }
    if (c_cntcount == 0) c_cntdepth = counting_level(p, level);
    const bool looks = level <= c_cntdepth + 10 && c_cntcount <= count_limit && p->next;
    const coef_pool pool = {nullptr, p, nullptr, 0, ours, 0};
    const pool_rules rules = {&c_cntcount, 25, 50, "Content, counting to ", below(names), deep};
    run_pool(&pool, &rules, looks, show, poly_length(p), result);
}

void aux_content(polynode *other, polynode *p, polynode **result, pt *names, std::int32_t show,
                 std::int32_t deep, std::int32_t other_ours, std::int32_t p_ours)
{
    const std::int32_t level = level_of(names);
    if (poly_iszero(other)) {
        content(p, result, names, show, deep, p_ours);
        return;
    }
    if (poly_iszero(p)) {
        copy_normalised(other, result);
        return;
    }
    if (is_constant(other) || number_is_due(p, level)) {
        gcd_of_numbers(p, other, result, deep, below(names));
        return;
    }
    if (a_cntcount == 0) a_cntdepth = counting_level(p, level);
    const bool looks = bigger_node_total(other) >= 20 && level <= a_cntdepth + 10 &&
                       a_cntcount <= count_limit;
    const coef_pool pool = {other, p, nullptr, other_ours, p_ours, 0};
    const pool_rules rules = {&a_cntcount, 20, 40, "Aux Content, counting to ", below(names), deep};
    run_pool(&pool, &rules, looks, show, poly_length(p) + 1, result);
}

// dual_content when one operand is zero. Declines (0).
static int content_beside_zero(polynode *a, polynode *b, polynode **result, pt *names, std::int32_t show,
                               std::int32_t deep, std::int32_t a_ours, std::int32_t b_ours)
{
    if (poly_iszero(a)) {
        content(b, result, names, show, deep, b_ours);
    } else if (poly_iszero(b)) {
        content(a, result, names, show, deep, a_ours);
    } else {
        return 0;
    }
    return 1;
}

void dual_content(polynode *a, polynode *b, polynode **result, pt *names, std::int32_t show,
                  std::int32_t deep, std::int32_t a_ours, std::int32_t b_ours)
{
    const std::int32_t level = level_of(names);
    if (content_beside_zero(a, b, result, names, show, deep, a_ours, b_ours)) return;
    if (number_is_due(a, level) || number_is_due(b, level)) {
        gcd_of_numbers(a, b, result, deep, below(names));
        return;
    }
    if (d_cntcount == 0) d_cntdepth = level + 1 + 2 * quick_depth_below(a) / 3;
    const bool looks = level <= d_cntdepth + 2 && d_cntcount <= count_limit &&
                       bigger_node_total(a->coef) >= 20;
    const coef_pool pool = {nullptr, a, b, 0, a_ours, b_ours};
    const pool_rules rules = {&d_cntcount, 20, 40, "Dual Content, counting to ", below(names), deep};
    run_pool(&pool, &rules, looks, show, poly_length(a) + poly_length(b), result);
}

void content_2(polynode *a, polynode *b, polynode **result, pt *names)
{
    dual_content(a, b, result, names, 0, 1, 1, 1);
}

}  // namespace kelmar

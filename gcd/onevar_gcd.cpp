// gcd/onevar_gcd.cpp -- gcds in one variable over a field of words.
//
// Euclid's algorithm on two arrays that never move: they take turns as dividend, and the end tells which of
// them holds the gcd. What is too long for the arrays is reduced once on lists, which mostly makes it fit;
// the half-gcd on lists takes the rest.
#include "gcd/onevar_gcd.h"
#include <utility>
#include "gcd/emgcd.h"
#include "gcd/half_gcd.h"
#include "gcd/stash.h"
#include "gcd/word_steps.h"
#include "numbers/dispatch.h"
#include "numbers/word_mod.h"
#include "poly/add.h"
#include "poly/div.h"
#include "poly/measure.h"
#include "poly/monic.h"
#include "poly/mul.h"
#include "poly/mul_list.h"
#include "poly/mul_work.h"
#include "session/report.h"

namespace kelmar {

using word = std::int32_t;

// Steps in table fields ----------------------------------------------------------------------------------

// x = x + (q1 X + q0) y in the field of 2^8 elements, q1 and q0 not both 0.
static void add_row_256(word *x, const word *y, word dy, word q1, word q0)
{
    const std::uint16_t *const row0 = f256prod + q0 * 256, *const row1 = f256prod + q1 * 256;
    x[0] ^= row0[y[0]];
    for (word i = 1; i <= dy; ++i) x[i] ^= row0[y[i]] ^ row1[y[i - 1]];
    if (q1) x[dy + 1] ^= row1[y[dy]];
}

static void add_row_field(word *x, const word *y, word dy, word q1, word q0)
{
    x[0] ^= field_mult(q0, y[0]);
    for (word i = 1; i <= dy; ++i) x[i] ^= field_mult(q0, y[i]) ^ field_mult(q1, y[i - 1]);
    if (q1) x[dy + 1] ^= field_mult(q1, y[dy]);
}

// x = x modulo y in a table field. *dx = its degree.
template <void (*AddRow)(word *, const word *, word, word, word)>
static void reduce_in_field(word *x, word *dx, const word *y, word dy)
{
    word inverse;
    mod_inverse(y[dy], &inverse);
    while (*dx >= dy) {
        const word first = modmult(x[*dx], inverse);
        if (*dx == dy) {
            AddRow(x, y, dy, 0, first);
            *dx = dy - 1;
        } else {
            const word below = dy > 0 ? modmult(first, y[dy - 1]) : 0;
            AddRow(x + (*dx - dy - 1), y, dy, first, modmult(x[*dx - 1] ^ below, inverse));
            *dx -= 2;
        }
        trim_degree(x, dx);
    }
}

// Division steps of a pair -------------------------------------------------------------------------------

// A divisor y that is a number ends it, or is a fault when it is zero.
static bool number_divisor_ends(word *dx, word *y, word dy, word *done, const char *fault)
{
    if (dy > 0) return false;
    if (dy < 0) {
        kelmar_error(fault, 1);
    } else {
        y[0] = 1;
        *dx = -1;
    }
    *done = 1;
    return true;
}

// x was reduced modulo y: a remainder that is a number ends it.
static void settle(word *x, const word *dx, word *dy, word *done)
{
    if (*dx > 0) return;
    if (*dx == 0) {
        x[0] = 1;
        *dy = -1;
    }
    *done = 1;
}

static void divide_in_pair(word *x, word *dx, word *y, word *dy, word *done, const char *fault)
{
    if (number_divisor_ends(dx, y, *dy, done, fault)) return;
    if (finf) {
        reduce_in_field<add_row_field>(x, dx, y, *dy);
    } else {
        word_ring ring;
        set_word_ring(&ring);
        reduce_words(&ring, x, dx, y, *dy);
    }
    settle(x, dx, dy, done);
}

static const char zero_y_fault[] = " y is 0 in divide_y_into_x.";
static const char zero_x_fault[] = " x is 0 in divide_x_into_y.";

void divide_y_into_x_1(word_pair *pair)
{
    divide_in_pair(xx, &pair->deg_x, yy, &pair->deg_y, &pair->done, zero_y_fault);
}

void divide_x_into_y_1(word_pair *pair)
{
    divide_in_pair(yy, &pair->deg_y, xx, &pair->deg_x, &pair->done, zero_x_fault);
}

static void divide_in_256(word *x, word *dx, word *y, word *dy, word *done, const char *fault)
{
    if (number_divisor_ends(dx, y, *dy, done, fault)) return;
    reduce_in_field<add_row_256>(x, dx, y, *dy);
    settle(x, dx, dy, done);
}

void f_divide_y_into_x(word_pair *pair)
{
    divide_in_256(xx, &pair->deg_x, yy, &pair->deg_y, &pair->done, zero_y_fault);
}

void f_divide_x_into_y(word_pair *pair)
{
    divide_in_256(yy, &pair->deg_y, xx, &pair->deg_x, &pair->done, zero_x_fault);
}

// Run the two in turn, the higher degree as the first dividend, until one array is zero.
static void divide_in_turn(word_pair *pair, void (*y_into_x)(word_pair *), void (*x_into_y)(word_pair *))
{
    bool x_next = pair->deg_x >= pair->deg_y;
    for (; !pair->done; x_next = !x_next) (x_next ? y_into_x : x_into_y)(pair);
}

// Euclid's algorithm over a prime ------------------------------------------------------------------------

// x and y exchanged as often as it takes; return whether the first argument holds the gcd.
static int euclid(const word_ring *ring, word *x, word *y, word *dx, word *dy)
{
    int first = 1;
    if (*dx < *dy) {
        std::swap(x, y);
        std::swap(dx, dy);
        first = 0;
    }
    while (*dy > 0) {
        reduce_words(ring, x, dx, y, *dy);
        std::swap(x, y);
        std::swap(dx, dy);
        first = !first;
    }
    if (*dy < 0) return first;
    y[0] = 1;  // a number divides all
    return !first;
}

int euclid_total(word *x, word *y, word *dx, word *dy)
{
    word_ring ring;
    set_word_ring(&ring);
    return euclid(&ring, x, y, dx, dy);
}

void simple_onevar_gcd(word_pair *pair)
{
    const int in_x = euclid_total(xx, yy, &pair->deg_x, &pair->deg_y);
    *(in_x ? &pair->deg_y : &pair->deg_x) = -1;
    pair->done = 1;
}

// Lists through the arrays -------------------------------------------------------------------------------

enum gcd_method { by_steps, by_choice };

static void reduce_pair(word_pair *pair, gcd_method method)
{
    if (finf && f256) {
        divide_in_turn(pair, f_divide_y_into_x, f_divide_x_into_y);
    } else if (finf || method == by_steps) {
        divide_in_turn(pair, divide_y_into_x_1, divide_x_into_y_1);
    } else if (pair->deg_x + pair->deg_y < half_gcd_degree_sum) {
        simple_onevar_gcd(pair);
    } else {
        hgcd(pair);
    }
}

static void make_monic(word *x, word deg)
{
    word inverse;
    if (x[deg] == 1) return;
    mod_inverse(x[deg], &inverse);
    for (word i = 0; i < deg; ++i) x[i] = modmult(x[i], inverse);
    x[deg] = 1;
}

static polynode *array_gcd(const polynode *a, const polynode *b, int monic, gcd_method method)
{
    get_word_arrays();
    fill_poly_array(a, xx);
    fill_poly_array(b, yy);
    word_pair pair = {b->exp, a->exp, 0};
    reduce_pair(&pair, method);
    const bool in_x = pair.deg_y < 0;
    word *const g = in_x ? xx : yy;
    const word deg = in_x ? pair.deg_x : pair.deg_y;
    if (monic) make_monic(g, deg);
    polynode *result = nullptr;
    array_to_poly(g, deg, &result);
    return result;
}

// Lists --------------------------------------------------------------------------------------------------

static word lowest_exp(const polynode *p)
{
    while (p->next) p = p->next;
    return p->exp;
}

static constexpr word plain_list_sum = 20;  // sum of degrees below which lists take Euclid's plain steps

static polynode *unit()
{
    polynode *one = nullptr;
    poly_set(1, &one);
    return one;
}

// gcd(a, b) by plain steps, deg a >= deg b > 0.
[[gnu::noinline]] static polynode *plain_list_gcd(polynode *a, polynode *b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **u = &work->parts[0], **v = &work->parts[1], **r = &work->parts[2];
    *u = copy_poly(a);
    *v = copy_poly(b);
    while (!is_constant(*v)) {
        poll_interrupt();
        poly_div_no_q(*u, *v, r);
        polynode **const free_slot = u;
        u = v;
        v = r;
        r = free_slot;
    }
    polynode *result = nullptr;
    if (poly_iszero(*v)) {
        result = *u;
        *u = nullptr;
    }
    close_work(work);
    return result ? result : unit();
}

// *power = X^e modulo b. product: an empty slot.
static void power_modulo(std::int32_t e, polynode *b, polynode **power, polynode **product)
{
    poly_set(1, power);
    for (int bit = 30; bit >= 0; --bit) {
        poll_interrupt();
        if (!is_constant(*power)) {
            poly_mult(*power, *power, product, nilpol);
            poly_div_no_q(*product, b, power);
            free_poly(product);
        }
        if (e >> bit & 1) {
            shift_exponents(power, 1);
            poly_div_no_q(*power, b, power);
        }
    }
}

// Return a modulo b, deg b > 0, by powers of X from term to term.
[[gnu::noinline]] static polynode *sparse_remainder(const polynode *a, polynode *b)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const rest = &work->parts[0], **const power = &work->parts[1],
                     **const product = &work->parts[2];
    poly_set(0, rest);
    for (; a; a = a->next) {
        polynode *const c = a->isnum ? copy_term(a) : copy_poly(a->coef), *const so_far = *rest;
        *rest = nullptr;
        best_poly_add(so_far, c, rest);
        const word gap = a->exp - (a->next ? a->next->exp : 0);
        if (gap == 0 || poly_iszero(*rest)) continue;
        power_modulo(gap, b, power, product);
        poly_mult(*rest, *power, product, nilpol);
        poly_div_no_q(*product, b, rest);
        free_poly(product);
    }
    polynode *result = *rest;
    *rest = nullptr;
    close_work(work);
    return result;
}

// The gaps of a are so long that the powers across them cost less than the steps of a division by b.
static bool has_long_gaps(const polynode *a, const polynode *b)
{
    constexpr std::int64_t steps_of_power = 200;
    return a->exp / poly_length(a) > steps_of_power * (std::int64_t{b->exp} + 1);
}

// gcd(a, b) where a is too long for the arrays and b is not: one step, then the arrays.
static polynode *gcd_after_step(polynode *a, polynode *b, int monic, gcd_method method)
{
    polynode *rest = nullptr;
    if (has_long_gaps(a, b)) {
        rest = sparse_remainder(a, b);
    } else {
        poly_div_no_q(a, b, &rest);
    }
    polynode *result = nullptr;
    if (poly_iszero(rest)) {
        result = copy_poly(b);
    } else if (is_constant(rest)) {
        result = unit();
    } else {
        result = array_gcd(b, rest, monic, method);
    }
    free_poly(&rest);
    return result;
}

// gcd(a, b), deg a >= deg b > 0, neither a single term.
static polynode *choose_gcd(polynode *a, polynode *b, int monic, gcd_method method, const pt *names)
{
    const bool negative = laurent && (lowest_exp(a) < 0 || lowest_exp(b) < 0);
    polynode *result = nullptr;
    if (!negative && a->exp <= fast_gcd_size) {
        return array_gcd(a, b, monic, method);
    }
    if (!negative && b->exp <= fast_gcd_size) {
        result = gcd_after_step(a, b, monic, method);
    } else if (static_cast<std::int64_t>(a->exp) + b->exp < plain_list_sum) {
        result = plain_list_gcd(a, b);
    } else {
        emgcd_poly(a, b, &result, names, 1);
    }
    return result;
}

// Entries ------------------------------------------------------------------------------------------------

// The gcd when an operand is zero, a number or a single term; else null.
static polynode *easy_gcd(polynode *a, polynode *b)
{
    if (poly_iszero(a)) return copy_poly(b);
    if (poly_iszero(b)) return copy_poly(a);
    if (is_constant(a) || is_constant(b)) {
        kelmar_error(" number in basic_poly_gcd ", 1);
        return unit();
    }
    if (a->next && b->next) return nullptr;
    const word low_a = lowest_exp(a), low_b = lowest_exp(b);
    polynode *power = unit();
    make_monomial(&power, low_a < low_b ? low_a : low_b, power);
    return power;
}

// *result = g, which becomes monic when that is asked and g is no number.
static void deliver(polynode *g, int monic, polynode **result)
{
    if (monic && !is_constant(g) && !num_isone(leading_coef(g))) {
        number lead;
        lead.size = 0;
        monic_poly(&g, &lead);
    }
    free_poly(result);
    *result = g;
}

static void ordered_gcd(polynode *a, polynode *b, polynode **result, int monic, gcd_method method,
                        const pt *names)
{
    polynode *g = easy_gcd(a, b);
    if (!g)
        g = a->exp >= b->exp ? choose_gcd(a, b, monic, method, names)
                             : choose_gcd(b, a, monic, method, names);
    deliver(g, monic, result);
}

void faster_poly_gcd(polynode *a, polynode *b, polynode **result, word monic, const pt *names)
{
    ordered_gcd(a, b, result, monic, by_steps, names);
}

void fastest_poly_gcd(polynode *a, polynode *b, polynode **result, word monic, const pt *names)
{
    ordered_gcd(a, b, result, monic, by_choice, names);
}

// The gcd through the stash: it is kept for the pair made monic.
[[gnu::noinline]] static void gcd_by_stash(polynode *a, polynode *b, polynode **result, word monic,
                                           const pt *names)
{
    product_work *work = open_work(__builtin_frame_address(0));
    polynode **const u = &work->parts[0], **const v = &work->parts[1], **const g = &work->parts[2];
    pending_gcd pending;
    number lead;
    lead.size = 0;
    *u = copy_poly(a);
    *v = copy_poly(b);
    monic_poly(u, &lead);
    monic_poly(v, &lead);
    if (!find_gcd(*u, *v, g, &pending)) {
        ordered_gcd(*u, *v, g, monic, by_choice, names);
        keep_gcd(&pending, *g, "negative polygcd_stack_depth 2");
    }
    polynode *const found = *g;
    *g = nullptr;
    close_work(work);
    deliver(found, monic, result);
}

bool stash_takes(const polynode *a, const polynode *b)
{
    if (lookupgcd <= 0 || is_constant(a) || is_constant(b)) return false;
    const bool long_enough = static_cast<std::int64_t>(a->exp) + b->exp > small_gcd_stash_cut;
    return long_enough && (a->exp < b->exp ? a->exp : b->exp) > 1 && stash_is_open();
}

void basic_poly_gcd(polynode *a, polynode *b, polynode **result, word monic, const pt *names)
{
    if (stash_takes(a, b)) {
        gcd_by_stash(a, b, result, monic, names);
    } else {
        ordered_gcd(a, b, result, monic, by_choice, names);
    }
}

}  // namespace kelmar

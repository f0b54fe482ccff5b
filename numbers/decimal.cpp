// numbers/decimal.cpp -- between decimal text and the three views.
//
// The base 10^8 chain stands between text and digits in both ways. A literal is read from the left, so its
// groups are full from the left, and the last is short; one walk shifts the decimals of each group that is
// not the first down to full groups from the right. Long literals become digits by halves: the high half
// times a power of 10^8 plus the low half, down to runs that are converted on a small array.
#include "numbers/decimal.h"
#include <cmath>
#include <cstdlib>
#include "numbers/dispatch.h"
#include "numbers/long_add.h"
#include "numbers/long_mul.h"
#include "numbers/long_power.h"
#include "numbers/radix.h"
#include "numbers/word_mod.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t group_width = 8;  // decimal digits in a group
static constexpr std::int32_t warn_limit = 30;  // warnings of one statement

#ifdef KELMAR_TINY_LIMITS
static constexpr std::int32_t run_length = 2;
static constexpr std::int32_t short_size = 4;
#else
static constexpr std::int32_t run_length = 16;  // groups converted on an array; fewer digits than groups
static constexpr std::int32_t short_size = 16;  // digits; from here on make_base_10 divides by halves
#endif

static std::int32_t power_of_ten(std::int32_t k)
{
    std::int32_t p = 1;
    for (; k > 0; --k) p *= 10;
    return p;
}

// Reading -----------------------------------------------------------------------------------------------

void open_literal(literal *lit)
{
    lit->groups.head = nullptr;
    lit->groups.tail = nullptr;
    lit->groups.size = 0;
    lit->ndigits = 0;
    lit->in_group = group_width;
}

// Begin a group with the digit 0 .. 9. A leading group of zeros is used again.
static void begin_group(literal *lit, std::int32_t digit)
{
    number *g = &lit->groups;
    lit->in_group = 1;
    if (g->size == 0) {
        g->head = g->tail = new_digit(digit, nullptr);
        g->size = 1;
    } else if (g->head->digit == 0) {
        g->head->digit = digit;
    } else {
        numnode *node = new_digit(digit, nullptr);
        g->tail->next = node;
        g->tail = node;
        ++g->size;
    }
}

void literal_digit(literal *lit, std::int32_t digit)
{
    ++lit->ndigits;
    if (lit->in_group == group_width) {
        begin_group(lit, digit);
        return;
    }
    ++lit->in_group;
    lit->groups.tail->digit = lit->groups.tail->digit * 10 + digit;
}

// Shift the decimals of the chain right until the last group, of `in_last` digits, is full.
static void fill_last_group(number *g, std::int32_t in_last)
{
    const std::int32_t low_part = power_of_ten(group_width - in_last);  // what moves to the next group
    const std::int32_t scale = power_of_ten(in_last);
    std::int32_t moved = 0;
    for (numnode *node = g->head; node; node = node->next) {
        const std::int32_t old = node->digit;
        node->digit = moved * scale + (node->next ? old / low_part : old);
        moved = old % low_part;
    }
}

static void drop_zero_head(number *g)
{
    numnode *head = g->head;
    if (head->digit != 0 || g->size == 1) return;
    g->head = head->next;
    --g->size;
    give_digit(head);
}

void close_literal(literal *lit)
{
    number *g = &lit->groups;
    if (g->size == 0) begin_group(lit, 0);
    if (g->size > 1 && lit->in_group < group_width) {
        fill_last_group(g, lit->in_group);
        drop_zero_head(g);
    }
    lit->in_group = group_width;
}

// Groups to a word ----------------------------------------------------------------------------------------

static double groups_to_double(const number *g)
{
    double v = 0;
    for (const numnode *node = g->head; node; node = node->next) v = v * 100000000.0 + node->digit;
    return v;
}

static std::int32_t groups_to_residue(const number *g)
{
    const std::int32_t base = decimal_base % modulus;
    std::int32_t v = g->head->digit % modulus;
    for (const numnode *node = g->head->next; node; node = node->next) {
        v = mod_add(modmult(v, base), node->digit % modulus, modulus);
    }
    return v;
}

static std::int32_t groups_to_word(const number *g)
{
    std::uint32_t w = 0;
    for (const numnode *node = g->head; node; node = node->next) {
        w = w * static_cast<std::uint32_t>(decimal_base) + static_cast<std::uint32_t>(node->digit);
    }
    const auto v = static_cast<std::int32_t>(w);
    const bool overflow = g->size > 2 || v < 0 || (g->size == 2 && v >= 0x7ffffffe);
    if (overflow && warn_cnt < warn_limit) {
        ++warn_cnt;
        std::printf(" *** Warning. overflow while reading constant.\n");
    }
    return v;
}

// Groups to digits ----------------------------------------------------------------------------------------

static constexpr std::int32_t max_halvings = 26;  // for more groups than a 32-bit count of decimals has

// n = the next `count` <= run_length groups from *at, which moves on. n filled.
static void run_to_digits(const numnode **at, std::int32_t count, number *n)
{
    std::int64_t digits[run_length + 1] = {0};  // least significant first
    std::int32_t used = 1;
    for (; count > 0; --count, *at = (*at)->next) {
        std::int64_t carry = (*at)->digit;
        for (std::int32_t k = 0; k < used; ++k) {
            carry += digits[k] * decimal_base;
            digits[k] = carry & digit_mask;
            carry >>= digit_bits;
        }
        if (carry > 0) digits[used++] = carry;
    }
    numnode *tail = new_digit(static_cast<std::int32_t>(digits[0]), nullptr);
    numnode *head = tail;
    for (std::int32_t k = 1; k < used; ++k) head = new_digit(static_cast<std::int32_t>(digits[k]), head);
    n->head = head;
    n->tail = tail;
    n->size = used;
}

// n = the next `count` groups from *at, which moves on; powers[j] = 10^8 to the run_length * 2^j. n filled.
static void part_to_digits(const numnode **at, std::int32_t count, number *powers, number *n)
{
    if (count <= run_length) {
        run_to_digits(at, count, n);
        return;
    }
    std::int32_t j = 0;
    while (count > (run_length << (j + 1))) ++j;
    const std::int32_t low = run_length << j;
    part_to_digits(at, count - low, powers, n);
    number rest;
    part_to_digits(at, low, powers, &rest);
    fast_mult(n, &powers[j], n);
    fastsum(n, &rest);
    special_free(&rest);
}

// n = the value of the groups. n replaced.
static void groups_to_digits(const number *g, number *n)
{
    number powers[max_halvings];
    std::int32_t made = 0;
    for (; made < max_halvings && g->size > (run_length << made); ++made) {
        powers[made].size = 0;
        if (made > 0) {
            fast_mult(&powers[made - 1], &powers[made - 1], &powers[made]);
            continue;
        }
        special_set(1, &powers[0]);
        number base;
        base.size = 0;
        special_set(decimal_base, &base);
        for (std::int32_t k = 0; k < run_length; ++k) fast_mult(&powers[0], &base, &powers[0]);
        special_free(&base);
    }
    number value;
    const numnode *at = g->head;
    part_to_digits(&at, g->size, powers, &value);
    take_chain(n, value.head, value.tail, value.size);
    while (made > 0) special_free(&powers[--made]);
}

void literal_to_number(literal *lit, number *n)
{
    number *g = &lit->groups;
    switch (live_view()) {
    case view_float: n->real = groups_to_double(g); break;
    case view_field:
    case view_modular: n->word = groups_to_residue(g); break;
    case view_word: n->word = groups_to_word(g); break;
    case view_small:
    case view_digits: groups_to_digits(g, n); break;
    }
    special_free(g);
}

// Digits to groups ----------------------------------------------------------------------------------------

// Divide the `size` digits by 10^8 in place, most significant first, and return the remainder.
static std::int32_t cut_group(std::int32_t *digits, std::int32_t size)
{
    std::int64_t rest = 0;
    for (std::int32_t k = 0; k < size; ++k) {
        rest = rest * digit_base + digits[k];
        digits[k] = static_cast<std::int32_t>(rest / decimal_base);
        rest %= decimal_base;
    }
    return static_cast<std::int32_t>(rest);
}

void make_base_10(const number *n, number *out)
{
    if (n->size >= short_size) {
        verybig_base_10(n->head, n->tail, n->size, out);
        return;
    }
    std::int32_t digits[short_size];
    std::int32_t size = 0;
    for (const numnode *node = n->head; node; node = node->next) digits[size++] = node->digit;

    const std::int32_t *end = digits + size;
    std::int32_t *from = digits;
    numnode *tail = new_digit(cut_group(from, size), nullptr);
    numnode *head = tail;
    std::int32_t groups = 1;
    for (;; ++groups) {
        while (from < end && *from == 0) ++from;
        if (from == end) break;
        head = new_digit(cut_group(from, static_cast<std::int32_t>(end - from)), head);
    }
    take_chain(out, head, tail, groups);
}

// Writing -----------------------------------------------------------------------------------------------

static std::int32_t magnitude_of(const numnode *node)
{
    return node->digit < 0 ? -node->digit : node->digit;
}

// Write the group with leading zeros.
static void write_group(std::FILE *out, std::int32_t group, std::int32_t *col)
{
    char text[group_width];
    for (std::int32_t k = group_width - 1; k >= 0; --k, group /= 10) {
        text[k] = static_cast<char>('0' + group % 10);
    }
    std::fwrite(text, 1, group_width, out);
    *col += group_width;
}

// Break the line when it is full; lines after the first begin with a blank.
static void break_full_line(std::FILE *out, int wrap, std::int32_t *col)
{
    if (*col < dispcutoff || uglyprint) return;
    if (wrap) {
        std::fprintf(out, " %c\n", continuation);
        *col = 0;
    }
    std::fputc(' ', out);
}

// Write `groups` groups of zeros, each with a blank behind it.
static void write_padding(std::FILE *out, std::int32_t groups, int wrap, std::int32_t *col)
{
    for (; groups > 0; --groups) {
        write_group(out, 0, col);
        if (*col >= dispcutoff && !uglyprint) {
            break_full_line(out, wrap, col);
        } else {
            std::fputc(' ', out);
        }
    }
}

// Write the first group without leading zeros; in a field of eight places when the sign is not written apart.
static void write_compact(std::FILE *out, const numnode *head, int no_sign, std::int32_t *col)
{
    if (!no_sign) {
        *col += std::fprintf(out, "%d", magnitude_of(head));
        return;
    }
    char text[16];
    std::snprintf(text, sizeof text, "%c%d", head->digit < 0 ? '-' : ' ', magnitude_of(head));
    std::fprintf(out, "%8s", text);
    *col += group_width;
}

static void write_groups(std::FILE *out, const numnode *node, int wrap, std::int32_t *col)
{
    for (; node; node = node->next) {
        break_full_line(out, wrap, col);
        write_group(out, magnitude_of(node), col);
    }
}

// default -1; the groups that disp_cons stands for; calc_disp; reset: never
static std::int32_t disp_cons_groups = -1;

void calc_disp()
{
    if (disp_cons_groups == places_shown()) return;
    disp_cons_groups = places_shown();
    saved_view saved;
    enter_digits(&saved);
    special_set(decimal_base, &disp_cons);
    number_power(&disp_cons, places_shown());
    leave_view(&saved);
}

void showint(std::FILE *out, const number *n, int compact, int pad, int is_base10, int no_sign,
             int spaced_minus, int wrap, std::int32_t *col)
{
    number made;
    made.size = 0;
    if (!is_base10) make_base_10(n, &made);
    const number *g = is_base10 ? n : &made;

    if (pad) write_padding(out, places_shown() - g->size, wrap, col);
    if (g->size > 1 && g->head->digit == 0) kelmar_error("bad 0 node found in showint", 1);
    if (!no_sign && g->head->digit < 0) {
        std::fputs(spaced_minus && !uglyprint ? "- " : "-", out);
        ++*col;
    }
    if (compact) {
        write_compact(out, g->head, no_sign, col);
    } else {
        write_group(out, magnitude_of(g->head), col);
    }
    write_groups(out, g->head->next, wrap, col);
    special_free(&made);
}

static constexpr std::int32_t odd_float_width = 22;  // columns that a float with a fraction is taken to need

static std::int32_t float_width(double v)
{
    if (v == 0) return 1;
    if (!std::isfinite(v) || v != std::floor(v)) return odd_float_width;
    return static_cast<std::int32_t>(std::floor(std::log(std::fabs(v)) / std::log(10.0))) + 1;
}

// Write v so that reading gives v again. What no literal stands for is written as 0.
static void save_float(std::FILE *out, double v, bool blank_behind_minus)
{
    char text[32];
    if (!std::isfinite(v)) {
        std::printf(" *** Warning. A value that is no finite number is saved as 0.\n");
        v = 0;
    }
    if (v < 0 && blank_behind_minus) {
        std::fputs("- ", out);
        v = -v;
    }
    for (int digits = 15; digits <= 17; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, v);
        if (std::strtod(text, nullptr) == v) break;
    }
    std::fputs(text, out);
}

static void display_float(std::FILE *out, double v, std::int32_t *col, int spaced_minus)
{
    *col += float_width(v);
    if (round_trip && v != 0) {
        save_float(out, v, spaced_minus && !uglyprint);
    } else if (std::isnan(v)) {
        std::fputs("nan", out);
    } else if (v == 0) {
        std::fputc('0', out);  // -0.0 too
    } else if (v < 0 && spaced_minus && !uglyprint) {
        std::fprintf(out, "- %.16g", -v);
    } else {
        std::fprintf(out, "%.16g", v);
    }
}

// Estimated decimals of the word v, from the bits that it needs in the present ring.
static std::int32_t word_width(std::int32_t v)
{
    return v == 0 ? 1 : static_cast<std::int32_t>(std::floor(0.3 * logg2lint(v) + 0.5)) + 1;
}

static void display_word(std::FILE *out, std::int64_t v, std::int32_t *col, int spaced_minus)
{
    if (modularmode && alt_form_display && v > half_modulus && v < modulus) v -= modulus;
    *col += word_width(static_cast<std::int32_t>(v));
    if (spaced_minus && v < 0) {
        std::fputs(uglyprint ? "-" : "- ", out);
        v = -v;
    }
    std::fprintf(out, "%ld", static_cast<long>(v));
}

void display(std::FILE *out, int wrap, int no_sign, const number *n, std::int32_t *col, int spaced_minus)
{
    switch (live_view()) {
    case view_float: display_float(out, n->real, col, spaced_minus); return;
    case view_field:
    case view_modular:
    case view_word: display_word(out, n->word, col, spaced_minus); return;
    case view_small:
    case view_digits: showint(out, n, 1, 0, 0, no_sign, spaced_minus, wrap, col); return;
    }
}

}  // namespace kelmar

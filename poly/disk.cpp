// poly/disk.cpp -- a nested list as a text of whole numbers.
//
// The mark that ends a list is a legal exponent, but only of a first term, since exponents fall, and no list
// is empty: so a first item is never taken as the end. Reading builds whole terms, so that a list that breaks
// off is released as any other; what came to its end is put to the check of the normal form.
#include "poly/disk.h"
#include <cinttypes>
#include <cstring>
#include <stdio_ext.h>
#include <unistd.h>
#include "numbers/fresh_number.h"
#include "poly/variables.h"

namespace kelmar {

static constexpr std::int32_t negzero = INT32_MIN;   // a number follows
static constexpr std::int32_t list_end = INT32_MAX;  // no further term
static constexpr std::int32_t word_follows = 0;
static constexpr std::int32_t double_follows = -1;

// default 0; bytes; where the next polynomial to be taken begins; get_poly_disk; reset: never
static off_t taken_to = 0;

int open_poly_disk()
{
    close_poly_disk();
    kelstore = std::fopen("kelstore", "w+");
    return kelstore != nullptr;
}

void close_poly_disk()
{
    if (kelstore) std::fclose(kelstore);
    kelstore = nullptr;
    taken_to = 0;
}

// Putting ---------------------------------------------------------------------------------------------------

static void put_item(std::int32_t v)
{
    std::fprintf(kelstore, "%" PRId32 " ", v);
}

static void put_double(double real)
{
    std::int32_t halves[2];
    std::memcpy(halves, &real, sizeof halves);
    put_item(double_follows);
    put_item(halves[0]);
    put_item(halves[1]);
}

static void put_number(const number *n)
{
    put_item(negzero);
    if (flotemode) {
        put_double(n->real);
    } else if (!exact_integers()) {
        put_item(word_follows);
        put_item(n->word);
    } else {
        put_item(n->size);
        for (const numnode *node = n->head; node; node = node->next) put_item(node->digit);
    }
}

// Declines (0): an exponent is the mark of a number.
static int put_list(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            put_number(p->num);
            continue;
        }
        if (p->exp == negzero) return 0;
        put_item(p->exp);
        if (!put_list(p->coef)) return 0;
    }
    put_item(list_end);
    return 1;
}

int put_poly_disk(const polynode *p)
{
    if (!kelstore || fseeko(kelstore, 0, SEEK_END) != 0) return 0;
    const off_t start = ftello(kelstore);
    const int complete = put_list(p);
    std::fputc('\n', kelstore);
    if (std::fflush(kelstore) == 0 && !std::ferror(kelstore) && complete) return 1;
    __fpurge(kelstore);
    std::clearerr(kelstore);
    // A store that can't be cut keeps half a polynomial at its end, which is told when it is to be taken.
    const int cut = ftruncate(fileno(kelstore), start);
    static_cast<void>(cut);
    return 0;
}

// Getting ---------------------------------------------------------------------------------------------------

static bool is_blank(int c)
{
    return c == ' ' || c == '\n';
}

// *v = the next whole number of 32 bits. Declines (0) at anything else.
static int get_item(std::int32_t *v)
{
    int c = std::getc(kelstore);
    while (is_blank(c)) c = std::getc(kelstore);
    const bool negative = c == '-';
    if (negative) c = std::getc(kelstore);
    if (c < '0' || c > '9') return 0;
    std::int64_t word = 0;
    for (; c >= '0' && c <= '9'; c = std::getc(kelstore)) {
        word = 10 * word + (c - '0');
        if (word > -std::int64_t{INT32_MIN}) return 0;
    }
    if (negative) word = -word;
    if (!is_blank(c) || word > INT32_MAX) return 0;
    *v = static_cast<std::int32_t>(word);
    return 1;
}

static int get_chain(std::int32_t size, number *n)
{
    while (n->size < size) {
        std::int32_t d;
        if (!get_item(&d) || d <= -digit_base || d >= digit_base) return 0;
        numnode *node = new_digit(d, nullptr);
        if (n->size == 0) {
            n->head = node;
        } else {
            n->tail->next = node;
        }
        n->tail = node;
        ++n->size;
    }
    return chain_is_normal(n, digit_base);
}

static int get_double(number *n)
{
    std::int32_t halves[2];
    if (!get_item(&halves[0]) || !get_item(&halves[1])) return 0;
    std::memcpy(&n->real, halves, sizeof n->real);
    return 1;
}

// n = the next number; its size is 0 at the call. Declines (0) when it is none of the live view.
static int get_number(number *n)
{
    std::int32_t size;
    if (!get_item(&size)) return 0;
    if (flotemode) return size == double_follows && get_double(n);
    if (exact_integers()) return size > 0 && get_chain(size, n);
    return size == word_follows && get_item(&n->word);
}

// Return the number term that follows; null when the read declines.
static polynode *get_constant()
{
    number *n = fresh_number();
    if (get_number(n)) return new_constant(n);
    free_imag(&n);
    return nullptr;
}

static int get_list(polynode **p, std::int32_t levels);

// Return the term of the exponent, whose coefficient follows; null when the read declines.
static polynode *get_term(std::int32_t exp, std::int32_t levels)
{
    polynode *coef = nullptr;
    if (levels > 0 && get_list(&coef, levels)) return new_term(exp, coef);
    free_poly(&coef);
    return nullptr;
}

// *p = the list that follows, with at most `levels` lists on any path; when the read declines (0), what there
// was of it.
static int get_list(polynode **p, std::int32_t levels)
{
    *p = nullptr;
    polynode **end = p;
    for (;;) {
        std::int32_t item;
        if (!get_item(&item)) return 0;
        if (item == list_end && *p) return 1;
        polynode *term = item == negzero ? get_constant() : get_term(item, levels - 1);
        if (!term) return 0;
        *end = term;
        end = &term->next;
    }
}

int get_poly_disk(polynode **p)
{
    *p = nullptr;
    if (!kelstore || fseeko(kelstore, taken_to, SEEK_SET) != 0) return 0;
    polynode *list = nullptr;
    if (!get_list(&list, variable_limit + 1) || !poly_is_normal(list, variable_limit)) {
        free_poly(&list);
        return 0;
    }
    taken_to = ftello(kelstore);
    *p = list;
    return 1;
}

}  // namespace kelmar

// quoly/charpoly_data.cpp -- the interpolation file and its table.
//
// The file has 740 entries in three runs: those of the start, k < r in rows 1 .. 11; the last ones of these
// rows; rows 12 .. 37 whole. The order is walked by one cursor, and whatever is read is put in its place, so
// an entry that is asked for brings those before it. A file that breaks off leaves places empty.
#include "quoly/charpoly_data.h"
#include "numbers/dispatch.h"
#include "numbers/fresh_number.h"
#include "numbers/startup.h"
#include "quoly/quoly.h"
#include "quoly/ring_change.h"
#include "storage/accounting.h"

namespace kelmar {

static constexpr std::int32_t start_rows = 11;  // rows of the triangle that is read at the start
static constexpr std::int32_t start_entries = start_rows * (start_rows + 1) / 2;
static constexpr std::int32_t handle_size = 4;  // nominal bytes of a place of the table

// default 0; entries of the file that are read; load_char_data, get_char_poly; reset: never
static std::int32_t entries_read = 0;

// The values 1 to 998 -------------------------------------------------------------------------------------

void Set_prods_for_char()
{
    for (std::int32_t i = 1; i < denom_count; ++i) {
        quoly_set(i, &denom[i]);
        denom[i]->num->word = i;
        quoly_put_flote(denom[i]);
    }
    size_data_strucs += (denom_count - 1) * (quolysize + numbersize + numnodesize);
    need_to_set_char_poly = 1;
}

// Entries ------------------------------------------------------------------------------------------------

// Return the next number of the file as a constant; null when the read declines.
static polynode *read_constant()
{
    number *n = fresh_number();
    if (direct_number_read(n)) return new_constant(n);
    free_imag(&n);
    return nullptr;
}

// Append the terms of the exponents `exp` .. 0 to the list; zeros of the file make no term.
static int read_terms(std::int32_t exp, polynode **end)
{
    for (; exp >= 0; --exp) {
        polynode *term = read_constant();
        if (!term) return 0;
        if (poly_iszero(term)) {
            free_poly(&term);
            continue;
        }
        if (exp > 0) term = new_term(exp, term);
        *end = term;
        end = &term->next;
    }
    return 1;
}

int direct_poly_read(polynode **p)
{
    *p = nullptr;
    std::int32_t degree;
    if (!read_word(&chdat, 1, INT32_MAX, &degree)) return 0;
    if (read_terms(degree, p) && *p && (*p)->exp == degree) return 1;
    chdat.damaged = 1;
    free_poly(p);
    return 0;
}

int direct_quoly_read(quolynode **q)
{
    *q = nullptr;
    polynode *den = read_constant();
    if (!den) return 0;
    polynode *top = nullptr;
    if (poly_iszero(den) || num_isneg(den->num)) {
        chdat.damaged = 1;
    } else if (direct_poly_read(&top)) {
        poly_to_quoly(&top, q);
        if (num_isone(den->num)) free_poly(&den);
        (*q)->den = den;
        return 1;
    }
    free_poly(&den);
    return 0;
}

// The table ----------------------------------------------------------------------------------------------

// Return the place in the table of the entry of that number in the file; -1 when the table has no such place.
static std::int32_t place_of(std::int32_t entry)
{
    for (std::int32_t row = 1; row <= start_rows; ++row) {
        if (entry < row) return pol_side * row + entry;
        entry -= row;
    }
    if (entry < start_rows) return (pol_side + 1) * (entry + 1);
    entry -= start_rows;
    for (std::int32_t row = start_rows + 1; row < pol_side; ++row) {
        if (entry <= row) return pol_side * row + entry;
        entry -= row + 1;
    }
    return -1;
}

// Read the next entry into its place. Declines (0) when the file has none, or another degree than its row.
static int read_entry()
{
    const std::int32_t place = place_of(entries_read);
    quolynode *q = nullptr;
    if (place < 0 || !direct_quoly_read(&q)) return 0;
    if (q->top->exp != place / pol_side) {
        chdat.damaged = 1;
        free_quoly(&q);
        return 0;
    }
    quoly_put_flote(q);
    pol[place] = q;
    ++entries_read;
    return 1;
}

// Put the plain number 1 at the first place, with all views filled.
static void set_first()
{
    quoly_set(1, &pol[0]);
    pol[0]->num->word = 1;
    pol[0]->num->real = 1;
}

void load_char_data()
{
    for (quolynode *&q : pol) free_quoly(&q);
    entries_read = 0;
    set_first();
    size_data_strucs += std::int64_t{handle_size} * pol_side * pol_side;
    while (entries_read < start_entries && read_entry()) {}
    for (const quolynode *q : pol) size_data_strucs += q ? sizequoly(q) : 0;
}

const quolynode *get_char_poly(std::int32_t row, std::int32_t index)
{
    if (row < 0 || row >= pol_side || index < 0 || index > row) return nullptr;
    quolynode **place = &pol[pol_side * row + index];
    saved_view view;
    enter_digits(&view);
    while (!*place && read_entry()) {}
    leave_view(&view);
    return *place;
}

}  // namespace kelmar

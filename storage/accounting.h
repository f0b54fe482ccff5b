#pragma once
// storage/accounting.h -- what the data takes, what lies idle on the free lists, and what is left.
//
// All figures are made of the nominal record sizes (storage/sizes.h). The measures of idle records walk the
// free lists; the ones with a limit stop early, because a list can hold tens of millions of records.
//
// Accounting looks up at the records that it measures, so its bodies include headers of higher folders;
// nothing else in this folder may. Modules above the numbers register their free lists in record_kinds.

#include <cstdint>
#include <cstdio>
#include "storage/sizes.h"

namespace kelmar {

struct number;
struct quolynode;

// The memory budget -------------------------------------------------------------------------------------

inline constexpr std::int64_t default_memory = std::int64_t{1} << 32;

// default 2^32; bytes that records may take; the start sets it to 4 initial_memory; reset: never
inline std::int64_t totalavailablememory = default_memory;
// default 0; bytes; a quarter of what was there at the start; start and the start-up file; reset: never
inline std::int64_t initial_memory = 0;
// default 0; bytes; a fifth of it; start and the start-up file; reset: never
inline std::int64_t virtual_cut = 0;

// Return the bytes not yet taken by the five stashes: a low-water mark, since slugs do not come back. 0 as
// soon as the running sum reaches totalavailablememory. What the memory triggers compare.
std::int64_t memory_left();

// Return memory_left cut to 32 bits: what is shown.
std::uint32_t memavail();

// totalavailablememory = 2^32 when it is below 10. Nothing calls it.
void find_total_available_memory();

// Storage of values -------------------------------------------------------------------------------------

std::int64_t sizenumber(const number *n);  // in the live view
std::int64_t sizequoly(const quolynode *q);

// Return the bytes of the entries of the gcd stash.
std::int64_t mass_gcd_stash();

// Idle records ------------------------------------------------------------------------------------------

// Rows of the garbage report, in the order in which it prints them.
enum record_row {
    row_digit,
    row_number,
    row_var,
    row_array,
    row_name,
    row_fix,
    row_poly,
    row_quoly,
    row_sparse,
    row_colm,
    row_col,
    row_pt,
    row_form,
    row_cond,
    record_rows
};

struct record_kind {
    const char *format;    // takes the count and `shown`, or the count alone
    std::int32_t shown;    // the size that the row shows
    std::int32_t nominal;  // the size that is multiplied
    std::int32_t always;   // the row is printed for an empty list too
    // Return the records on the free list, but at most limit + 1. Null: the module is not there.
    std::int64_t (*count)(std::int64_t limit);
    // Write the entries of the free list, a line each. Null: not for this kind.
    void (*list)(std::FILE *out);
};

// Modules of higher folders fill in `count`, and `list`, of their rows when the program starts.
extern record_kind record_kinds[record_rows];

// default null; counts the work arrays in being; the array module registers; reset: never
inline std::int64_t (*count_work_arrays)() = nullptr;

// Return the records on a free list linked through Link, but at most limit + 1.
template <class T, T *T::*Link> std::int64_t count_list(const T *record, std::int64_t limit)
{
    std::int64_t count = 0;
    for (; record && count <= limit; record = record->*Link) ++count;
    return count;
}

// Return the bytes on the four main free lists: digits, numbers, polynomials, scalar values. Cost: garbsize
// walks them to the end; a list longer than the limit counts as one record more than the limit.
std::int64_t garbsize();
std::int64_t fast_garbsize();  // limits 60000, 100000, 100000, 30000
std::int64_t med_garbsize();   // limits 1000000, 1000000, 1000000, 100000
std::int64_t big_garbsize();   // limits 1000000, 6000000, 10000000; scalar values are not counted

// Write the report of all free lists. With the letter 'G' the entries of some are listed too.
void garbage(std::FILE *out, char letter);

}  // namespace kelmar

// storage/accounting.cpp -- sums over free lists and stashes.
//
// The rows of the garbage report are one table. The four main lists are the rows that the measures of idle
// memory weigh; a limit below zero leaves a list out.
#include "storage/accounting.h"
#include "numbers/plain_quoly.h"
#include "poly/mass.h"
#include "storage/low_memory.h"

namespace kelmar {

static constexpr std::int64_t no_limit = INT64_MAX - 1;
static constexpr std::int64_t leave_out = -1;
static constexpr std::int64_t work_array_size = 4000000;  // shown bytes of one work array

// The memory budget -------------------------------------------------------------------------------------

std::int64_t memory_left()
{
    const stash *const counted[] = {polystash, quolystash, numstash, imagstash, colmstash};
    std::int64_t used = 0;
    for (const stash *s : counted) {
        if (s) used += static_cast<std::int64_t>(s->slug_size) * s->slugs_used;
        if (used >= totalavailablememory) return 0;
    }
    return totalavailablememory - used;
}

std::uint32_t memavail()
{
    return static_cast<std::uint32_t>(memory_left());
}

void find_total_available_memory()
{
    if (totalavailablememory < 10) totalavailablememory = default_memory;
}

// Storage of values -------------------------------------------------------------------------------------

std::int64_t sizenumber(const number *n)
{
    const std::int64_t digits = exact_integers() ? n->size : 0;
    return numbersize + digits * numnodesize;
}

std::int64_t sizequoly(const quolynode *q)
{
    return quolysize + (q->is_num ? sizenumber(q->num) : sizepoly(q->top) + sizepoly(q->den));
}

std::int64_t mass_gcd_stash()
{
    std::int64_t bytes = 0;
    for (const quolynode *list : gcd_stash) {
        for (; list; list = list->next) bytes += sizequoly(list);
    }
    return bytes;
}

// Idle records ------------------------------------------------------------------------------------------

static std::int64_t count_digits(std::int64_t limit)
{
    return count_list<numnode, &numnode::next>(numhead, limit);
}

static std::int64_t count_numbers(std::int64_t limit)
{
    return count_list<number, &number::link>(imhead, limit);
}

static std::int64_t count_quolys(std::int64_t limit)
{
    return count_list<quolynode, &quolynode::next>(quolygarb, limit);
}

static void list_digits(std::FILE *out)
{
    for (const numnode *node = numhead; node; node = node->next) std::fprintf(out, "%d\n", node->digit);
}

record_kind record_kinds[record_rows] = {
    {"num count: %5d, %d\n", numnodesize, numnodesize, 1, count_digits, list_digits},
    {"im count: %5d, %d\n", numbersize, numbersize, 1, count_numbers, nullptr},
    {"var count: %5d\n", 28, 28, 0, nullptr, nullptr},
    {"array count: %5d, %d\n", 80, 80, 0, nullptr, nullptr},
    {"name count: %5d\n", 40, 40, 0, nullptr, nullptr},
    {"fix count: %5d\n", 16, 16, 0, nullptr, nullptr},
    {"poly count: %5d, %d\n", polynodesize, polynodesize, 1, nullptr, nullptr},
    {"quoly count: %5d, %d\n", quolysize, quolysize, 1, count_quolys, nullptr},
    // on purpose: a frame shows its slots, and is counted with all of its fields
    {"sparse count: %5d, %d\n", 2048, 8197, 0, nullptr, nullptr},
    {"colm count: %5d\n", colmsize, colmsize, 0, nullptr, nullptr},
    {"matrix col count: %5d\n", 16, 16, 0, nullptr, nullptr},
    {"poly pointer count: %5d\n", 64, 64, 0, nullptr, nullptr},
    {"form node count: %5d\n", 12, 12, 0, nullptr, nullptr},
    {"cond expr count: %5d\n", 24, 24, 0, nullptr, nullptr},
};

static std::int64_t count_row(record_row row, std::int64_t limit)
{
    const record_kind *kind = &record_kinds[row];
    return kind->count && limit >= 0 ? kind->count(limit) : 0;
}

// The bytes on the four main lists, each walked to its limit.
static std::int64_t main_lists(std::int64_t digits, std::int64_t numbers, std::int64_t polys,
                               std::int64_t quolys)
{
    return count_row(row_digit, digits) * numnodesize + count_row(row_number, numbers) * numbersize +
           count_row(row_poly, polys) * polynodesize + count_row(row_quoly, quolys) * quolysize;
}

std::int64_t garbsize()
{
    return main_lists(no_limit, no_limit, no_limit, no_limit);
}

std::int64_t fast_garbsize()
{
    return main_lists(60000, 100000, 100000, 30000);
}

std::int64_t med_garbsize()
{
    return main_lists(1000000, 1000000, 1000000, 100000);
}

std::int64_t big_garbsize()
{
    return main_lists(1000000, 6000000, 10000000, leave_out);
}

// Write one row, and with 'G' what stands on the list. Return its bytes.
static std::int64_t report_row(std::FILE *out, record_row row, char letter)
{
    const record_kind *kind = &record_kinds[row];
    const std::int64_t count = count_row(row, no_limit);
    if (count == 0 && !kind->always) return 0;
    std::fprintf(out, kind->format, static_cast<int>(count), kind->shown);
    if (letter == 'G' && kind->list) kind->list(out);
    return count * kind->nominal;
}

void garbage(std::FILE *out, char letter)
{
    std::int64_t total = 0;
    for (int row = 0; row < record_rows; ++row) {
        total += report_row(out, static_cast<record_row>(row), letter);
    }

    const std::int64_t arrays = count_work_arrays ? count_work_arrays() : 0;
    std::fprintf(out, "work arrays: %5d, %d\n", static_cast<int>(arrays), static_cast<int>(work_array_size));
    total += arrays * work_array_size;

    const std::int64_t system = size_data_strucs + mass_gcd_stash();
    std::fprintf(out, "total garbage: %9ld\n", static_cast<long>(total));
    std::fprintf(out, "system data size: %9ld\n", static_cast<long>(system));
    std::fprintf(out, "total size: %9ld\n", static_cast<long>(total + system));
}

}  // namespace kelmar

// matrix/store.cpp -- the paged store of ordinary arrays.
//
// What an array leaves behind is a gap. Gaps are closed all at once, when they have become larger than what
// is in use, or when the end of the store is reached: so deleting many arrays costs no more than moving each
// slot a few times. Slots are moved a page run at a time.
#include "matrix/store.h"
#include <cstring>
#include "numbers/heap.h"
#include "matrix/pins.h"
#include "session/report.h"

namespace kelmar {

// default 0; slots of blocks; take_slots, give_slots; reset: never
static std::int32_t slots_used = 0;

static constexpr std::int32_t small_gaps = 1 << 16;  // gaps in all that are not worth a pass

// Slots -------------------------------------------------------------------------------------------------

static void get_pages(std::int32_t last)
{
    while (numblocks < last >> page_bits) {
        arp[numblocks + 1] = static_cast<quolynode **>(zeroed_block(page_slots * sizeof(quolynode *)));
        ++numblocks;
    }
}

// The slots from s to the end of its page, at most `limit`.
static inline std::int32_t run_length(std::int32_t s, std::int32_t limit)
{
    const std::int32_t rest = page_slots - (s & (page_slots - 1));
    return rest < limit ? rest : limit;
}

void clear_slots(std::int32_t first, std::int32_t last)
{
    for (std::int32_t s = first; s <= last; ++s) retire_value(store_slot(s));
}

void borrow_slots(std::int32_t first, std::int32_t count, quolynode **table)
{
    while (count > 0) {
        const std::int32_t run = run_length(first, count);
        std::memcpy(table, store_slot(first), static_cast<std::size_t>(run) * sizeof *table);
        table += run;
        first += run;
        count -= run;
    }
}

// Compaction --------------------------------------------------------------------------------------------

// Move `count` slots from `from` down to `to`; what they leave behind becomes null.
static void move_down(std::int32_t from, std::int32_t to, std::int32_t count)
{
    while (count > 0) {
        const std::int32_t run = run_length(to, run_length(from, count));
        std::memmove(store_slot(to), store_slot(from), static_cast<std::size_t>(run) * sizeof(quolynode *));
        from += run;
        to += run;
        count -= run;
    }
}

static void null_slots(std::int32_t first, std::int32_t count)
{
    while (count > 0) {
        const std::int32_t run = run_length(first, count);
        std::memset(store_slot(first), 0, static_cast<std::size_t>(run) * sizeof(quolynode *));
        first += run;
        count -= run;
    }
}

static bool is_block(const array *a)
{
    return !a->arr_sparse && a->arr_last >= 0;
}

static void place_block(array *a, std::int32_t first)
{
    const std::int32_t count = static_cast<std::int32_t>(a->arr_size);
    a->arr_first = static_cast<std::uint32_t>(first);
    a->arr_last = first + count - 1;
}

// Move all blocks down to where the gaps below them end.
static void close_gaps()
{
    std::int32_t next = 0;
    for (array *a = oldest_array; a; a = a->younger) {
        if (!is_block(a)) continue;
        const std::int32_t first = static_cast<std::int32_t>(a->arr_first);
        const std::int32_t count = static_cast<std::int32_t>(a->arr_size);
        if (first != next) {
            move_down(first, next, count);
            place_block(a, next);
        }
        next += count;
    }
    null_slots(next, endarr + 1 - next);
    endarr = next - 1;
    for (array *p = array_params; p; p = p->older) {
        const array *origin = is_block(p) ? array_of_stamp(p->arr_time) : nullptr;
        if (origin) place_block(p, static_cast<std::int32_t>(origin->arr_first));
    }
    ++array_moves;
}

int take_slots(std::int32_t count, const char *name, std::int32_t *first)
{
    if (count > last_slot - endarr) close_gaps();
    if (count > last_slot - endarr) {
        error(err_arrays_full, name);
        return 0;
    }
    get_pages(endarr + count);
    *first = endarr + 1;
    endarr += count;
    slots_used += count;
    return 1;
}

// The last slot of the youngest block, but for `gone`.
static std::int32_t last_used_slot(const array *gone)
{
    const array *a = newest_array;
    while (a && (a == gone || !is_block(a))) a = a->older;
    return a ? a->arr_last : -1;
}

void give_slots(std::int32_t first, std::int32_t count, const array *gone)
{
    slots_used -= count;
    ++array_moves;
    if (first + count - 1 == endarr) endarr = last_used_slot(gone);
}

void close_large_gaps()
{
    const std::int32_t gaps = endarr + 1 - slots_used;
    if (gaps > small_gaps && gaps > slots_used) close_gaps();
}

// Audit -------------------------------------------------------------------------------------------------

static bool slots_are_null(std::int32_t first, std::int32_t last)
{
    for (std::int32_t s = first; s <= last; ++s) {
        if (*store_slot(s)) return false;
    }
    return true;
}

static bool ages_are_sound(std::int32_t *named, std::int32_t *end)
{
    const array *before = nullptr;
    std::int32_t next = 0;
    std::int64_t used = 0;
    *named = 0;
    for (const array *a = oldest_array; a; a = a->younger) {
        if (a->older != before || (before && before->arr_time > a->arr_time)) return false;
        if (a->arr_rows < 1 || a->arr_cols < 1) return false;
        if (a->arr_size != std::int64_t{a->arr_rows} * a->arr_cols) return false;
        if (a->arr_sparse) {
            if (a->arr_first != 0 || a->arr_last != -1) return false;
        } else {
            if (static_cast<std::int32_t>(a->arr_first) < next) return false;
            if (!slots_are_null(next, static_cast<std::int32_t>(a->arr_first) - 1)) return false;
            used += a->arr_size;
            next = a->arr_last + 1;
            if (next - std::int64_t{a->arr_first} != a->arr_size) return false;
        }
        if (a->arr_name.text[0]) ++*named;
        before = a;
    }
    *end = next - 1;
    return before == newest_array && used == slots_used;
}

static bool buckets_are_sound(std::int32_t named)
{
    std::int32_t params = 0;
    for (const array *p = array_params; p; p = p->older) {
        ++params;
    }
    for (int bucket = 0; bucket < array_buckets; ++bucket) {
        for (const array *a = arr_store[bucket]; a; a = a->arr_next) {
            if (a->arr_name.index != bucket) return false;
            --(is_array_parameter(a) ? params : named);
        }
    }
    return named == 0 && params == 0;
}

bool store_is_sound()
{
    std::int32_t named, end;
    if (!ages_are_sound(&named, &end) || end != endarr || !buckets_are_sound(named)) return false;
    if (numblocks < endarr >> page_bits) return false;
    return slots_are_null(endarr + 1, (numblocks + 1) * page_slots - 1);
}

}  // namespace kelmar

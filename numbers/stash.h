#pragma once
// numbers/stash.h -- slabs of fixed-size records.
//
// A stash hands out slugs, records of one size, carved from blocks of half a megabyte. Slugs are not returned
// in normal running: each kind of record has a free list in front of its stash, so slugs_used is a high-water
// mark, and the memory triggers read it as that.
//
// slug_size is the nominal size, the one that is shown and multiplied; stride is what a record takes here. A
// block holds 524288 / slug_size slugs whatever its physical size, so all visible figures agree everywhere.
//
// Built with KELMAR_MALLOC_RECORDS, every slug is a malloc of its own and a released record is freed at once,
// so that a sanitizer sees each use after release.

#include <cstddef>
#include <cstdint>

namespace kelmar {

inline constexpr std::int32_t block_data_size = 0x80000;  // nominal bytes of the data area of a block

// The head of a block, two words; the data area follows it.
struct stash_block {
    stash_block *next;
    std::size_t room;  // bytes of the data area
};

struct stash {
    void *free;              // free slugs, linked through their first word
    stash_block *blocks;     // all blocks of this stash
    stash *prev, *next;      // neighbours in the ring of open stashes
    const char *name;        // for messages
    std::int32_t slug_size;  // nominal bytes of a slug, a multiple of 4
    std::int32_t stride;     // bytes from one slug to the next
    std::int32_t num_blocks;
    std::int32_t num_slugs;   // in all blocks
    std::int32_t slugs_used;  // handed out and not returned through free_slug
    char *low, *top;          // what is not yet carved of the newest block
};

extern stash primal_stash;         // the root: its slugs are stash records
extern stash_block *extra_blocks;  // blocks that no stash owns

#ifdef KELMAR_FAIL_ALLOC
// default 0; the so-many-th heap request from now on fails, once; 0: none does; tests; reset: never
inline std::int64_t fail_block_at = 0;
#endif

// The five stashes, opened in this order by open_stashes.
inline stash *polystash = nullptr;
inline stash *quolystash = nullptr;
inline stash *numstash = nullptr;
inline stash *imagstash = nullptr;
inline stash *colmstash = nullptr;

// Open the five stashes. Called once, before anything is allocated.
void open_stashes();

// Return a fresh stash of slugs of `slug_size` nominal bytes (rounded up to a multiple of 4, at least 4) and
// `record_size` real ones, linked behind primal_stash. Faults: the report of get_slug.
stash *open_stash(std::int32_t slug_size, std::size_t record_size, const char *name);

// Put one slug back on the free chain of its stash.
void free_slug(stash *s, void *slug);

// Move all blocks of s to extra_blocks and return its record to primal_stash.
void endof_stash(stash *s);

// Take one block from the heap onto extra_blocks. Declines (0) when the heap has none.
int more_mem();

// Take one more block for s. Declines (0) when there is none, after the report.
int get_block(stash *s);

// Write the heading of the stash table; the rows are print_stash_stats, one a stash.
void stash_stats();
void print_stash_stats(const stash *s);

// Return n words of bookkeeping memory that is never released.
std::int32_t *get_small(std::int32_t n);

// The slow half of get_slug: carves first, out of a new block if need be. When the heap has none: the report,
// mem_error, and again until it has.
void *get_slug_slow(stash *s);

// Free a record that get_slug gave, where every record is a malloc of its own. Elsewhere nothing calls it.
void free_record(stash *s, void *record);

// Return one uninitialised slug of s; null for a null s.
inline void *get_slug(stash *s)
{
#ifdef KELMAR_MALLOC_RECORDS
    return get_slug_slow(s);
#else
    if (__builtin_expect(!s || !s->free, 0)) return get_slug_slow(s);
    void *slug = s->free;
    s->free = *static_cast<void **>(slug);
    ++s->slugs_used;
    return slug;
#endif
}

}  // namespace kelmar

// numbers/stash.cpp -- carving of blocks, and the ring of open stashes.
//
// A block is one heap request: a head of two words, then as many slugs as the nominal sizes give. Slugs go
// out from the top downward. They are carved a few at a time, so that what a session does not use is never
// touched. Blocks differ in physical size, so a block from extra_blocks is taken only where it is large
// enough.
#include "numbers/stash.h"
#include <cstdio>
#include <cstdlib>
#include "numbers/plain_quoly.h"
#include "storage/low_memory.h"
#include "storage/sizes.h"

namespace kelmar {

static constexpr std::int32_t root_size = sizeof(stash);

stash primal_stash = {
    nullptr, nullptr, &primal_stash, &primal_stash, "storage allocator", root_size, root_size, 0,
    0,       0,       nullptr,       nullptr};
stash_block *extra_blocks = nullptr;

// A block that more_mem takes fits every stash whose records are at most twice their nominal size.
static constexpr std::size_t spare_room = 2 * static_cast<std::size_t>(block_data_size);

static constexpr std::int32_t small_piece = 0x20000;  // words that get_small takes from the heap at once

static std::int32_t *small_next = nullptr;  // default null; the unused words of the last piece; get_small
static std::int32_t small_left = 0;         // default 0; how many they are; get_small

// Requests to the heap -----------------------------------------------------------------------------------

// Return `bytes` bytes of the heap, or null.
static void *heap_request(std::size_t bytes)
{
#ifdef KELMAR_FAIL_ALLOC
    if (fail_block_at > 0 && --fail_block_at == 0) return nullptr;
#endif
    return std::malloc(bytes);
}

static void report_exhausted(const stash *s)
{
    std::printf("out of memory while trying to accesss stash %s\n", s->name);
    stash_stats();
}

static stash_block *new_block(std::size_t room)
{
    auto *block = static_cast<stash_block *>(heap_request(sizeof(stash_block) + room));
    if (block) block->room = room;
    return block;
}

// Cut the first block with that much room out of extra_blocks; null when there is none.
static stash_block *cut_extra_block(std::size_t room)
{
    for (stash_block **slot = &extra_blocks; *slot; slot = &(*slot)->next) {
        stash_block *block = *slot;
        if (block->room < room) continue;
        *slot = block->next;
        return block;
    }
    return nullptr;
}

int more_mem()
{
    stash_block *block = new_block(spare_room);
    if (!block) return 0;
    block->next = extra_blocks;
    extra_blocks = block;
    return 1;
}

// Put the slugs of the upper `bytes` bytes of what is not carved yet in front of the free chain, the topmost
// first.
static void carve(stash *s, std::ptrdiff_t bytes)
{
    char *const stop = s->top - s->low > bytes ? s->top - bytes : s->low;
    void *const behind = s->free;
    void **link = &s->free;
    while (s->top > stop) {
        s->top -= s->stride;
        *link = s->top;
        link = reinterpret_cast<void **>(s->top);
    }
    *link = behind;
}

int get_block(stash *s)
{
    const std::int32_t count = block_data_size / s->slug_size;
    const std::size_t room = static_cast<std::size_t>(count) * static_cast<std::size_t>(s->stride);
    stash_block *block = cut_extra_block(room);
    if (!block) block = new_block(room);
    if (!block) {
        report_exhausted(s);
        return 0;
    }
    carve(s, s->top - s->low);  // nothing, unless a block is taken in advance
    s->low = reinterpret_cast<char *>(block + 1);
    s->top = s->low + room;
    block->next = s->blocks;
    s->blocks = block;
    ++s->num_blocks;
    s->num_slugs += count;
    return 1;
}

// Slugs --------------------------------------------------------------------------------------------------

#ifdef KELMAR_MALLOC_RECORDS

void *get_slug_slow(stash *s)
{
    if (!s) return nullptr;
    void *record = heap_request(static_cast<std::size_t>(s->stride));
    while (!record) {
        report_exhausted(s);
        mem_error();
        record = heap_request(static_cast<std::size_t>(s->stride));
    }
    ++s->slugs_used;
    return record;
}

void free_slug(stash *s, void *slug)
{
    free_record(s, slug);
}

#else

void *get_slug_slow(stash *s)
{
    constexpr std::int32_t carved_piece = 0x1000;  // bytes that are carved at once
    if (!s) return nullptr;
    while (!s->free) {
        if (s->top > s->low) {
            carve(s, carved_piece);
        } else if (!get_block(s)) {
            mem_error();
        }
    }
    return get_slug(s);
}

void free_slug(stash *s, void *slug)
{
    *static_cast<void **>(slug) = s->free;
    s->free = slug;
    --s->slugs_used;
}

#endif

void free_record(stash *s, void *record)
{
    std::free(record);
    --s->slugs_used;
}

// Stashes ------------------------------------------------------------------------------------------------

stash *open_stash(std::int32_t slug_size, std::size_t record_size, const char *name)
{
    auto *s = static_cast<stash *>(get_slug(&primal_stash));
    const std::int32_t nominal = slug_size < 4 ? 4 : (slug_size + 3) / 4 * 4;
    const std::int32_t real = static_cast<std::int32_t>(record_size);
    const std::int32_t stride = ((nominal > real ? nominal : real) + 7) / 8 * 8;
    *s = {nullptr, nullptr, &primal_stash, primal_stash.next, name, nominal, stride, 0, 0,
          0,       nullptr, nullptr};
    primal_stash.next->prev = s;
    primal_stash.next = s;
    return s;
}

void endof_stash(stash *s)
{
    while (s->blocks) {
        stash_block *block = s->blocks;
        s->blocks = block->next;
        block->next = extra_blocks;
        extra_blocks = block;
    }
    s->prev->next = s->next;
    s->next->prev = s->prev;
    free_slug(&primal_stash, s);
}

void open_stashes()
{
    constexpr std::size_t word = sizeof(void *);
    constexpr std::size_t term_size = 4 * word;  // four words: exp and isnum, coef, next, and one to spare
    constexpr std::size_t entry_size = 3 * word;
    polystash = open_stash(polynodesize, term_size, "stash of polynodes");
    quolystash = open_stash(quolysize, sizeof(quolynode), "stash of quolynodes");
    numstash = open_stash(numnodesize, sizeof(numnode), "stash of numnodes");
    imagstash = open_stash(numbersize, sizeof(number), "stash of numbers");
    colmstash = open_stash(colmsize, entry_size, "stash of colms");
}

// Reports ------------------------------------------------------------------------------------------------

void stash_stats()
{
    // on purpose: the heading alone. No row of a stash follows it.
    std::printf("STASH NAME: number of blocks, number of slugs, slugs_used, slug_size\n");
    std::fflush(stdout);
}

void print_stash_stats(const stash *s)
{
    std::printf("%s: \t%d, \t%d, \t%d, \t%d\n", s->name, s->num_blocks, s->num_slugs, s->slugs_used,
                s->slug_size);
}

// Bookkeeping words --------------------------------------------------------------------------------------

std::int32_t *get_small(std::int32_t n)
{
    while (n > small_left) {
        const std::int32_t piece = n > small_piece ? n : small_piece;
        small_next = static_cast<std::int32_t *>(heap_request(static_cast<std::size_t>(piece) * 4));
        small_left = small_next ? piece : 0;
        if (!small_next) mem_error();
    }
    std::int32_t *words = small_next;
    small_next += n;
    small_left -= n;
    return words;
}

}  // namespace kelmar

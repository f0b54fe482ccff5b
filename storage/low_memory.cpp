// storage/low_memory.cpp -- freeing the gcd stash when the heap is used up.
//
// Nothing here asks the heap for anything. What is freed goes to the free lists, where the next record of its
// kind finds it.
#include "storage/low_memory.h"
#include <cstdio>
#include <cstdlib>
#include "quoly/quoly.h"
#include "session/report.h"

namespace kelmar {

static void free_entries(quolynode **list)
{
    while (*list) {
        quolynode *entry = *list;
        *list = entry->next;
        free_quoly(&entry);
    }
}

void release_gcd_stash()
{
    if (modularmode && prev_modulus != -1 && prev_modulus != modulus) {
        kelmar_error("prev_modulus = modulus in free_gcd_stash", 1);
    }
    ++gcd_stash_age;
    for (quolynode *&list : gcd_stash) free_entries(&list);
    gcdmass = 0;
    lookupgcd = 0;
    polygcd_stack_depth = 0;
    prev_modulus = -1;
}

// default null; room for what is asked for up to the next safe point; keep_reserve, mem_error
static void *reserve = nullptr;
static constexpr std::size_t reserve_size = std::size_t{4} << 20;  // bytes

void keep_reserve()
{
    if (!reserve) reserve = std::malloc(reserve_size);
}

// Records may be half linked here, or data between two rings, where a level does not stand well: go on with
// the reserve, and push the level at the next safe point. Declines (0) when the reserve is used up.
static int spend_reserve()
{
    if (!reserve) return 0;
    std::free(reserve);
    reserve = nullptr;
    interrupt_flag = 1;
    return 1;
}

void mem_error()
{
    if (interrupts_held || lookupgcd < 1 || polygcd_stack_depth != 0) {
        std::printf("\n*** Warning.  You are out of heap space.  Abort this computation.\n");
        std::fflush(stdout);
        if (spend_reserve()) return;
        push_level_here();
        keep_reserve();
        return;
    }
    std::printf("\n*** Warning.  You are low on heap space.  Will try freeing the gcd stash.\n");
    std::fflush(stdout);
    release_gcd_stash();
}

}  // namespace kelmar

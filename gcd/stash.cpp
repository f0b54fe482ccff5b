// gcd/stash.cpp -- looking gcds up, keeping them, and cutting the stash down.
//
// An entry is made before its gcd is known, and filled when that comes. In between a level may have been
// pushed and the stash cleared, so a pending gcd knows the age of the stash that its entry belongs to: who
// frees an entry makes the stash one older.
#include "gcd/stash.h"
#include "gcd/measure.h"
#include "numbers/mode.h"
#include "poly/mass.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "session/report.h"
#include "storage/accounting.h"

namespace kelmar {

// The ground ring that the entries belong to.
struct stash_ring {
    num_view view;
    std::int32_t modulus, depth;
};
// default digits; of the entries there are; gcdhash; reset: never
static stash_ring filled_in = {view_digits, -1, 0};

static bool half_full()
{
    return gcdmass >= static_cast<std::uint64_t>(initial_memory) / 2;
}

bool stash_is_open()
{
    return lookupgcd > 0 && !half_full();
}

// Chains -------------------------------------------------------------------------------------------------

static void free_chain(quolynode **chain)
{
    while (*chain) {
        quolynode *entry = *chain;
        *chain = entry->next;
        free_quoly(&entry);
    }
}

// In the digit view, whatever ring the entries belong to: there all that a number holds is released.
static void clear_chains()
{
    saved_view saved;
    enter_digits(&saved);
    ++gcd_stash_age;
    for (quolynode *&chain : gcd_stash) free_chain(&chain);
    gcdmass = 0;
    leave_view(&saved);
}

// Entries of another ground ring are no good any more.
static void keep_to_ring()
{
    const stash_ring now = {live_view(), modularmode ? modulus : -1, field_depth};
    if (now.view == filled_in.view && now.modulus == filled_in.modulus && now.depth == filled_in.depth)
        return;
    clear_chains();
    prev_modulus = -1;
    filled_in = now;
}

static std::uint64_t mass_of(const quolynode *entry)
{
    return static_cast<std::uint64_t>(entry->den->exp);
}

void purge_gcd_stash(std::int32_t keep)
{
    ++gcd_stash_age;
    gcdmass = 0;
    for (quolynode *chain : gcd_stash) {
        if (!chain) continue;
        free_chain(&chain->next);
        gcdmass += mass_of(chain);
    }
    const std::uint64_t goal = static_cast<std::uint64_t>(initial_memory) / 3 * 2;
    for (std::int32_t k = 0; k < gcd_stash_lists && gcdmass > goal; ++k) {
        if (k == keep || !gcd_stash[k]) continue;
        const std::uint64_t mass = mass_of(gcd_stash[k]);
        free_chain(&gcd_stash[k]);
        gcdmass -= mass < gcdmass ? mass : gcdmass;
    }
}

// Entries ------------------------------------------------------------------------------------------------

static bool is_entry_of(const quolynode *entry, const polynode *a, const polynode *b)
{
    return poly_equal(entry->top, a) && poly_equal(entry->den->coef, b);
}

static void add_mass(quolynode *entry, std::int64_t mass)
{
    const std::int64_t sum = entry->den->exp + mass;
    entry->den->exp = static_cast<std::int32_t>(sum < INT32_MAX ? sum : INT32_MAX);
    gcdmass += static_cast<std::uint64_t>(mass);
}

static quolynode *new_entry(const polynode *a, const polynode *b)
{
    quolynode *entry = nullptr;
    newquoly(&entry);
    entry->is_num = 0;
    entry->is_rat = 0;
    entry->top = copy_poly(a);
    entry->den = new_term(0, copy_poly(b));
    add_mass(entry, simple_poly_mass(a) + simple_poly_mass(b));
    return entry;
}

void gcdhash(const polynode *a, const polynode *b, quolynode **entry)
{
    keep_to_ring();
    if (b->exp < a->exp) {
        const polynode *other = a;
        a = b;
        b = other;
    }
    const std::int32_t sum = hash_1(a) + hash_1(b);
    const std::int32_t bucket = sum >= gcd_stash_lists ? sum - gcd_stash_lists : sum;
    const bool either_order = a->exp == b->exp;
    for (quolynode *e = gcd_stash[bucket]; e; e = e->next) {
        if (is_entry_of(e, a, b) || (either_order && is_entry_of(e, b, a))) {
            *entry = e;
            return;
        }
    }
    quolynode *fresh = new_entry(a, b);
    fresh->next = gcd_stash[bucket];
    gcd_stash[bucket] = fresh;
    if (half_full() && polygcd_stack_depth == 0) purge_gcd_stash(bucket);
    *entry = fresh;
}

int find_gcd(const polynode *a, const polynode *b, polynode **result, pending_gcd *pending)
{
    quolynode *entry = nullptr;
    *pending = {nullptr, 0};
    gcdhash(a, b, &entry);
    if (entry->den->next) {
        poly_assign(entry->den->next, result);
        return 1;
    }
    ++polygcd_stack_depth;
    *pending = {entry, gcd_stash_age};
    return 0;
}

void keep_gcd(pending_gcd *pending, const polynode *g, const char *report)
{
    quolynode *const entry = pending->entry;
    if (!entry) return;
    pending->entry = nullptr;
    if (pending->age != gcd_stash_age) return;  // the entry is gone, and the depth was set anew
    if (g && !entry->den->next) {
        polynode *copy = copy_poly(g);
        add_mass(entry, simple_poly_mass(copy));
        entry->den->next = copy;
    }
    if (--polygcd_stack_depth < 0) kelmar_error(report, 0);
}

// The whole stash ----------------------------------------------------------------------------------------

void free_gcd_stash()
{
    keep_to_ring();
    if (modularmode && prev_modulus == modulus) return;
    if (modularmode && prev_modulus == -1) {
        prev_modulus = modulus;
        return;
    }
    release_gcd_stash();
}

void pop_gcd_stash()
{
    --lookupgcd;
    if (lookupgcd == 0) free_gcd_stash();
}

void forget_pending_gcds()
{
    ++gcd_stash_age;
    polygcd_stack_depth = 0;
}

void init_gcd_stash()
{
    clear_chains();
    lookupgcd = 0;
    polygcd_stack_depth = 0;
    prev_modulus = -1;
}

}  // namespace kelmar

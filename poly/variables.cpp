// poly/variables.cpp -- the list of variables, its sorted twin, and exchanges of levels.
//
// polynames has the order of levels, polyvar that of strcmp; both hold the same names, and number_polys
// counts them. They change together, here alone.
//
// To exchange two levels each term c x^e of the outer list is turned inside out: its powers of y become the
// outer list, x^e stands below each. The turned terms are added up. Added one by one to a growing sum they
// would walk it again and again, so sums of equally many terms are added, as in a sort by merging: slot k of
// a table holds the sum of 2^k terms.
#include "poly/variables.h"
#include <cstdlib>
#include <cstring>
#include "poly/add.h"
#include "poly/mul.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

static pt *heap_pt()
{
    void *fresh = std::malloc(sizeof(pt));
    while (!fresh) {
        mem_error();
        fresh = std::malloc(sizeof(pt));
    }
    return static_cast<pt *>(fresh);
}

void newpt(pt **r)
{
    pt *fresh = pt_garb;
    if (fresh) {
        pt_garb = fresh->next;
    } else {
        fresh = heap_pt();
    }
    std::memset(fresh, 0, sizeof *fresh);
    fresh->cut = poly_cutoff;
    *r = fresh;
}

void newdummy(const pt *src, pt **r)
{
    newpt(r);
    std::memcpy((*r)->name, src->name, variable_name_room);
    (*r)->index = src->index;
    (*r)->level = src->level;
    (*r)->next = src->next;
}

void free_pt(pt **r)
{
    pt *old = *r;
    if (!old) return;
    *r = nullptr;
    free_poly(&old->relation);
    free_poly(&old->fold_table);
    while (old->numbers) {
        number *n = old->numbers;
        old->numbers = n->link;
        free_imag(&n);
    }
#ifdef KELMAR_MALLOC_RECORDS
    std::free(old);
#else
    old->next = pt_garb;
    pt_garb = old;
#endif
}

void register_poly_records()
{
    record_kinds[row_poly].count = [](std::int64_t limit) {
        return count_list<polynode, &polynode::next>(polygarb, limit);
    };
    record_kinds[row_pt].count = [](std::int64_t limit) { return count_list<pt, &pt::next>(pt_garb, limit); };
}

// The sorted table ----------------------------------------------------------------------------------------

// The first row that is not below the name; number_polys when there is none.
static std::int32_t row_of(const char *name)
{
    std::int32_t row = 0;
    while (row < number_polys && std::strcmp(polyvar[row], name) < 0) ++row;
    return row;
}

bool its_a_polyname(const char *name)
{
    const std::int32_t row = row_of(name);
    return row < number_polys && std::strcmp(polyvar[row], name) == 0;
}

static void insert_row(const char *name)
{
    const std::int32_t row = row_of(name);
    std::memmove(polyvar[row + 1], polyvar[row], static_cast<std::size_t>(number_polys - row) * polyvar_room);
    std::memcpy(polyvar[row], name, polyvar_room);
    ++number_polys;
}

static void remove_row(const char *name)
{
    if (!its_a_polyname(name)) return;
    const std::int32_t row = row_of(name);
    --number_polys;
    std::memmove(polyvar[row], polyvar[row + 1], static_cast<std::size_t>(number_polys - row) * polyvar_room);
}

// The list in level order -----------------------------------------------------------------------------------

int is_poly_name(const char *name, std::int32_t *level)
{
    for (const pt *r = polynames; r; r = r->next) {
        if (std::strcmp(r->name, name) == 0) {
            *level = r->level;
            return 1;
        }
    }
    return 0;
}

static void renumber()
{
    std::int16_t level = 0;
    for (pt *r = polynames; r; r = r->next) r->level = ++level;
}

void insert_poly_name(const char *name, std::int16_t index, int lowest)
{
    pt *fresh = nullptr;
    newpt(&fresh);
    std::strncat(fresh->name, name, polyvar_room - 1);
    fresh->index = index;
    pt **place = &polynames;
    while (lowest && *place) place = &(*place)->next;
    fresh->next = *place;
    *place = fresh;
    renumber();
    insert_row(fresh->name);
}

void delete_poly_name(std::int32_t level)
{
    pt **place = &polynames;
    while (*place && (*place)->level != level) place = &(*place)->next;
    pt *old = *place;
    if (!old) return;
    *place = old->next;
    remove_row(old->name);
    free_pt(&old);
    renumber();
}

void adjust_polyname_ptrs()
{
    old_polynames = polynames;
    using_new_polynames = 1;
    ++dumpitt_level;
    polynames = nullptr;
    pt **end = &polynames;
    const pt *src = old_polynames;
    for (std::int32_t level = 1; level < field_depth && src; ++level, src = src->next) {
        newdummy(src, end);
        (*end)->next = nullptr;
        end = &(*end)->next;
    }
}

void resume_old_polynames()
{
    while (polynames) {
        pt *dummy = polynames;
        polynames = dummy->next;
        free_pt(&dummy);
    }
    polynames = old_polynames;
    old_polynames = nullptr;
    using_new_polynames = 0;
    --dumpitt_level;
}

// Levels of polynomials -----------------------------------------------------------------------------------

void remove_one(polynode **p, std::int32_t level)
{
    if (is_constant(*p)) return;
    if (level > 1) {
        for (polynode *t = *p; t; t = t->next) {
            if (!t->isnum) remove_one(&t->coef, level - 1);
        }
    } else if (is_wrapper(*p)) {
        polynode *wrapper = *p;
        *p = wrapper->coef;
        give_node(wrapper);
    }
}

// Return coef times the power e of the variable of its own list's level.
static polynode *power_times(std::int32_t e, polynode *coef)
{
    return e == 0 && is_constant(coef) ? coef : new_term(e, coef);
}

// Return the term, a node of its own, turned inside out: its powers of the second variable become the outer
// list.
static polynode *turned_term(polynode *term)
{
    const std::int32_t e = term->exp;
    if (term->isnum) return term;
    polynode *inner = term->coef;
    give_node(term);
    if (is_constant(inner)) return new_term(0, power_times(e, inner));
    for (polynode *t = inner; t; t = t->next) {
        if (!t->isnum) {
            t->coef = power_times(e, t->coef);
        } else if (e != 0) {
            t->coef = new_term(e, new_constant(t->num));
            t->isnum = 0;
        }
    }
    return inner;
}

inline constexpr int merge_slots = 32;

void swap_levels_1_2(polynode **p)
{
    if (is_constant(*p)) return;
    polynode *sums[merge_slots] = {};
    int used = 0;
    for (polynode *rest = *p; rest;) {
        polynode *term = rest;
        rest = rest->next;
        term->next = nullptr;
        polynode *sum = turned_term(term);
        int k = 0;
        for (; k < used && sums[k]; ++k) {
            best_poly_add(sums[k], sum, &sum);
            sums[k] = nullptr;
        }
        if (k == used) ++used;
        sums[k] = sum;
    }
    polynode *all = nullptr;
    for (int k = 0; k < used; ++k) {
        if (!sums[k]) continue;
        if (all) {
            best_poly_add(sums[k], all, &all);
        } else {
            all = sums[k];
        }
    }
    *p = all;
}

}  // namespace kelmar

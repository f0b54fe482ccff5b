// poly/ring_change.cpp -- conversions of polynomials, and the brackets around a stretch in another ring.
//
// A temporary conversion walks the links of a list, not its nodes, so that a vanished term is passed by one
// store. What was in a link is recorded once, before its first change. Records are undone in the opposite
// order, so each finds its link as it was when it was made.
#include "poly/ring_change.h"
#include <cstdlib>
#include "numbers/convert.h"
#include "numbers/plain_quoly.h"
#include "poly/variables.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "storage/low_memory.h"

namespace kelmar {

// Fix records ---------------------------------------------------------------------------------------------

static fix_node *heap_fix()
{
    void *fresh = std::malloc(sizeof(fix_node));
    while (!fresh) {
        mem_error();
        fresh = std::malloc(sizeof(fix_node));
    }
    return static_cast<fix_node *>(fresh);
}

void newfix(fix_node **f)
{
    fix_node *fresh = fixgarb;
    if (fresh) {
        fixgarb = fresh->next;
    } else {
        fresh = heap_fix();
    }
    *f = fresh;
}

static void push_fix(fix_node *fresh, polynode *saved, fix_kind kind)
{
    fresh->saved = saved;
    fresh->kind = kind;
    fresh->next = masterfix;
    masterfix = fresh;
}

void push_fix_link(polynode **link, polynode *saved)
{
    fix_node *fresh = nullptr;
    newfix(&fresh);
    fresh->link = link;
    push_fix(fresh, saved, fix_link);
}

void push_fix_value(quolynode *value, polynode *saved, fix_kind kind)
{
    fix_node *fresh = nullptr;
    newfix(&fresh);
    fresh->value = value;
    push_fix(fresh, saved, kind);
}

// Release what was made for the value; the records that follow put back what it had.
static void release_made(quolynode *value)
{
    if (value->is_num) {
        free_imag(&value->num);
    } else {
        free_poly(&value->top);
        free_poly(&value->den);
    }
    value->is_num = 0;
    value->top = value->den = nullptr;
}

static void undo(const fix_node *fix)
{
    switch (static_cast<fix_kind>(fix->kind)) {
    case fix_link: *fix->link = fix->saved; return;
    case fix_top:
        fix->value->is_num = 0;
        fix->value->top = fix->saved;
        fix->value->den = nullptr;
        return;
    case fix_number:
    case fix_quotient: release_made(fix->value); return;
    }
}

// A quotient of two numbers is a fraction again.
static void mark_fraction(quolynode *value)
{
    if (value->is_num || !value->den) return;
    value->is_rat = is_constant(value->top) && is_constant(value->den);
}

static void give_fix(fix_node *fix)
{
#ifdef KELMAR_MALLOC_RECORDS
    std::free(fix);
#else
    fix->next = fixgarb;
    fixgarb = fix;
#endif
}

void restore_from_mod(fix_node **list)
{
    for (const fix_node *fix = *list; fix; fix = fix->next) undo(fix);
    while (*list) {
        fix_node *fix = *list;
        *list = fix->next;
        if (fix->kind != fix_link) mark_fraction(fix->value);
        give_fix(fix);
    }
}

void register_fix_records()
{
    record_kinds[row_fix].count = [](std::int64_t limit) {
        return count_list<fix_node, &fix_node::next>(fixgarb, limit);
    };
}

// Brackets ------------------------------------------------------------------------------------------------

static void open_bracket(ring_bracket *b)
{
    keep_ring(&b->before);
    b->fixes = masterfix;
    b->held = interrupts_held;
    b->outer = innermost_ring;
    b->stash_is_off = 0;
    masterfix = nullptr;
    innermost_ring = b;
}

void enter_modulus(std::int32_t p, ring_bracket *b)
{
    open_bracket(b);
    set_prime_modulus(p);
    flotemode = integerflag = 0;
    modularmode = lintmode = 1;
    if (!danger_ok) interrupts_held = 1;
}

// The outermost bracket has kept the ring of the session. Without one, only a word mode of the evaluator or
// an exact stretch can be live.
void enter_session_ring(ring_bracket *b)
{
    const ring_bracket *outermost = innermost_ring;
    while (outermost && outermost->outer) outermost = outermost->outer;
    open_bracket(b);
    if (outermost) put_ring(&outermost->before);
    integerflag = interrupts_held = 0;
    if (!session_flote || flotemode) return;
    flotemode = lintmode = 1;
    modularmode = 0;
}

void leave_ring(ring_bracket *b)
{
    restore_from_mod(&masterfix);
    put_ring(&b->before);
    masterfix = b->fixes;
    interrupts_held = b->held;
    if (b->stash_is_off) lookupgcd = b->stash_uses;
    innermost_ring = b->outer;
}

void suspend_gcd_stash(ring_bracket *b, std::int32_t uses)
{
    b->stash_is_off = 1;
    b->stash_uses = lookupgcd;
    lookupgcd = uses;
}

void leave_rings_to(const ring_bracket *mark)
{
    while (innermost_ring && innermost_ring != mark) leave_ring(innermost_ring);
}

// For a while ---------------------------------------------------------------------------------------------

// The term at *link has an outer exponent 0, and what stands below it is a number alone: the number takes its
// place, before the terms behind it.
static void lift_number(polynode **link, bool *recorded)
{
    polynode *term = *link;
    polynode *constant = term->coef;
    if (!*recorded) push_fix_link(link, term);
    *link = constant;
    *recorded = term->next != nullptr;
    if (!term->next) return;
    push_fix_link(&constant->next, nullptr);
    constant->next = term->next;
}

// Convert the list at *link. `to` tells the ring.
static void reduce_list(polynode **link, const residue_ring *to)
{
    bool recorded = false;  // *link has a record already
    while (polynode *term = *link) {
        bool vanished;
        if (term->isnum) {
            vanished = fill_residue(term->num, to) == 0;
        } else {
            reduce_list(&term->coef, to);
            vanished = !term->coef;
        }
        if (vanished) {
            if (!recorded) push_fix_link(link, term);
            recorded = true;
            *link = term->next;
            continue;
        }
        const bool lift = !term->isnum && term->exp == 0 && is_constant(term->coef);
        if (lift) {
            lift_number(link, &recorded);
        } else {
            recorded = false;
        }
        link = &(*link)->next;
    }
}

void poly_change_to_mod(polynode **p, int sign)
{
    residue_ring to;
    set_residue_ring(&to, sign);
    reduce_list(p, &to);
}

// For good ------------------------------------------------------------------------------------------------

// Convert the list at *link: to(n) fills the live view of n, and is false where that is 0.
template <class Fill> static void convert_list(polynode **link, const Fill &to)
{
    while (polynode *term = *link) {
        bool vanished;
        if (term->isnum) {
            vanished = !to(term->num);
            special_free(term->num);
            if (vanished) free_imag(&term->num);
        } else {
            convert_list(&term->coef, to);
            vanished = !term->coef;
        }
        if (vanished) {
            *link = term->next;
            give_node(term);
            continue;
        }
        if (!term->isnum && term->exp == 0 && is_constant(term->coef)) {
            *link = term->coef;
            (*link)->next = term->next;
            give_node(term);
        }
        link = &(*link)->next;
    }
}

void poly_change_num(polynode **p)
{
    residue_ring ring;
    set_residue_ring(&ring, 1);
    convert_list(p, [&ring](number *n) { return fill_residue(n, &ring) != 0; });
}

void poly_change_ratio(polynode **p, const number *unit)
{
    convert_list(p, [unit](number *n) {
        n->real = digit_ratio(n, unit);
        return n->real != 0;
    });
}

void poly_change_from_mod(polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            change_from_mod(p->num);
        } else {
            poly_change_from_mod(p->coef);
        }
    }
}

void poly_change_to_flote(polynode *p)
{
    for (; p; p = p->next) {
        if (p->isnum) {
            change_flote(p->num);
        } else {
            poly_change_to_flote(p->coef);
        }
    }
}

// Towers --------------------------------------------------------------------------------------------------

void log_order_field(std::int32_t *result, std::int32_t level)
{
    *result = !finf ? 1 : f256 ? 8 : 16;
    for (const pt *r = polynames; r; r = r->next) {
        if (r->level >= level && r->relation) *result *= r->relation->exp;
    }
}

}  // namespace kelmar

#pragma once
// poly/ring_change.h -- polynomials taken to another ground ring, for good or for a while.
//
// For a while: an exact method works modulo a prime on polynomials that belong to others. poly_change_to_mod
// writes the residue of each number beside its digits and frees nothing. Where a term vanishes a link is laid
// around it, and a fix record on masterfix tells how the link was. restore_from_mod mends all links. So an
// image costs one walk, and a record only where a term vanishes. Such a stretch is one bracket:
//
//     ring_bracket ring;
//     enter_modulus(p, &ring);               // p and what goes with it are set, residues are live
//     poly_change_to_mod(&a, 1);             // a is null when all of it vanished
//     poly_change_to_mod(&b, 1);
//     ...                                    // operands are spared: they hold digits that are not live now
//     leave_ring(&ring);                     // a and b, and the ring, are as they were
//     poly_change_from_mod(g);               // a result that was made there: residues to digits
//
// The brackets stand on a list that unwinding pops: after an error, a panic stop, or an interrupt that gives
// the computation up, operands and ring are as they were, too. A level that an interrupt pushes inside a
// bracket works in the ring of the session, with no fix record in force, and the bracket is in force again
// when it is left. Operands must outlive the bracket; what an evaluator owns does.
//
// For good: poly_change_num drops what vanishes, and the digits.

#include "poly/node.h"

namespace kelmar {

struct quolynode;

// Brackets ------------------------------------------------------------------------------------------------

struct fix_node;

// One stretch in another ring; on the frame of its routine.
struct ring_bracket {
    ground_ring before;   // the ring to come back to
    fix_node *fixes;      // masterfix then
    std::int32_t held;    // interrupts_held then
    ring_bracket *outer;  // the bracket in force then
    // set by suspend_gcd_stash alone
    std::int32_t stash_is_off;
    std::int32_t stash_uses;  // lookupgcd then
};
static_assert(std::is_trivial_v<ring_bracket>);

// default null; the bracket in force; enter_..., leave_ring; reset: unwind
inline ring_bracket *innermost_ring = nullptr;

// Residues modulo the prime p are live until leave_ring. Unless the user has said that he may interrupt
// anywhere, an interrupt waits until then: one stretch is to be short.
void enter_modulus(std::int32_t p, ring_bracket *b);

// The ring of the session is live until leave_ring: for a command level on top of a computation.
void enter_session_ring(ring_bracket *b);

// Undo the conversions made since b was entered, and come back to the ring before. b is the bracket in force.
void leave_ring(ring_bracket *b);

// lookupgcd = uses, below zero, until b is left: known gcds belong to another ring.
void suspend_gcd_stash(ring_bracket *b, std::int32_t uses);

// Leave all brackets inside `mark`, which may be null. For the jumps of an error.
void leave_rings_to(const ring_bracket *mark);

// Fix records ---------------------------------------------------------------------------------------------

enum fix_kind {
    fix_link,      // *link = saved
    fix_top,       // the value is no plain number: top = saved, no denominator
    fix_number,    // the same, and the number that it holds was made for it
    fix_quotient,  // what it holds was made for it; links follow that put top and den back
};

struct fix_node {
    union {
        polynode **link;   // fix_link
        quolynode *value;  // the others
    };
    polynode *saved;
    std::int32_t kind;
    fix_node *next;
};
static_assert(std::is_trivial_v<fix_node>);

// default null; how to undo the conversions of the bracket in force, newest first; restore_from_mod; reset:
// unwind
inline fix_node *masterfix = nullptr;
// default null; free records; newfix, restore_from_mod; reset: never
inline fix_node *fixgarb = nullptr;

// *f = a fresh record. Put it in front of masterfix.
void newfix(fix_node **f);
void push_fix_link(polynode **link, polynode *saved);
void push_fix_value(quolynode *value, polynode *saved, fix_kind kind);

// Undo the conversions of the list, newest first; *list becomes null, its records free ones.
void restore_from_mod(fix_node **list);

// Make the report of free lists count fixgarb. Called once.
void register_fix_records();

// Polynomials ---------------------------------------------------------------------------------------------

// *p modulo `modulus`: the word of each number beside its digits, vanished terms linked out; null when all
// vanished. `sign` as in change_num. *p restored by restore_from_mod(&masterfix), or by leave_ring. Null is
// allowed. Errors: none. Polls: no. Cost: one walk.
void poly_change_to_mod(polynode **p, int sign);

// The same for good: digits and vanished terms are released. *p in place; null when all vanished.
void poly_change_num(polynode **p);

// *p, which holds digits, as doubles for good: each number divided by `unit`, which is none of them, not 0;
// numbers that are too small for a double vanish. *p in place; null when all vanished. unit spared.
void poly_change_ratio(polynode **p, const number *unit);

// p, which holds residues, as digits: residues above modulus / 2 as negative ones with alt_form_display.
// `modulus` is still that of p; words that are no residues are taken as they are when it is -1. In place.
void poly_change_from_mod(polynode *p);

// Fill the double of each number, beside its digits. Null is allowed.
void poly_change_to_flote(polynode *p);

// *result = the logarithm to the base 2 of the order of the tower of finite fields from the variable of
// `level` inward, over the ground field: 8 or 16 in a table field, else 1, times the degrees of the
// relations.
void log_order_field(std::int32_t *result, std::int32_t level);

}  // namespace kelmar

#pragma once
// session/unwind.h -- the jumps of the session, and what is forgotten on the way.
//
// Three points can be jumped to: the restart point, where every panic stop and every error at the top goes;
// the exit point of &q; and the abandon point of the statement loop or function body in which an error pushed
// a level that was then left. All jumps stand in unwind.cpp. A module with something to forget has a row in
// the table there; error does not know the modules.

#include <csetjmp>
#include <cstdint>

namespace kelmar {

inline sigjmp_buf buf9999;  // restart: a panic stop or an error at the top
inline sigjmp_buf buf98;    // exit: &q and the end of the input

struct pending;  // session/func_records.h
struct call_frame;
struct arr_value;
struct open_digits;   // session/literal.h
struct ring_bracket;  // poly/ring_change.h

// Where a statement that cannot go on is abandoned with value 0, and the next one runs.
struct abandon_point {
    sigjmp_buf buf;
    int owned_mark;         // slots announced when the point was set
    int borrowed_mark;      // operands borrowed then
    int round_trip_mark;    // a save was under way then
    pending *pending_mark;  // what was being read, and the call that ran, then
    call_frame *calls_mark;
    int definitions_mark;       // definitions in progress then
    arr_value *values_mark;     // array values announced then
    std::int32_t terms_mark;    // array terms under way then
    std::int32_t wish_mark[3];  // the array that was wished for then
    open_digits *digits_mark;   // whole numbers that were being read then
    ring_bracket *ring_mark;    // the stretch in another ring that was in force then
    std::int32_t modular_mark;  // how often modular mode was switched off for true integers then
    abandon_point *outer;       // the point in force before
};

// default null; the innermost abandon point; statement loops and function bodies; reset: unwind
inline abandon_point *abandon_to = nullptr;

// Make `here` the innermost abandon point; its buf is set by the caller, with sigsetjmp(here->buf, 0).
void set_abandon_point(abandon_point *here);
void drop_abandon_point(abandon_point *here);

// Call the forgetters: those of every error, with status >= 0 also those of an abandoned computation.
void forget_on_error(int status);

// Leave the stretches in other rings that belong to the innermost statement, or to all of them: operands that
// were converted, and the ring, are as they were.
void leave_abandoned_rings(bool for_good);

// Leave all stretches in other rings. Free what evaluators own, and what running products have gathered.
void release_abandoned();

// Do so, and jump to the restart point.
[[noreturn]] void jump_to_restart();

// Jump to the exit point: the session ends.
[[noreturn]] void jump_to_exit();

// Abandon the innermost statement with value 0.
[[noreturn]] void abandon_statement();

}  // namespace kelmar

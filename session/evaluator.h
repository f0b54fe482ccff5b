#pragma once
// session/evaluator.h -- what the evaluators of expressions share: operands, and the state of a statement.
//
// Reading a variable copies nothing. An operand is two slots: p, where the value stands,
// possibly the storage of a variable, which is read-only unless it is assigned to; and n,
// which holds a value that had to be computed.

#include "matrix/sparse.h"
#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

struct operand {
    quolynode **p;  // where the value stands; null: an absent entry of a sparse array, worth 0
    quolynode *n;   // computed value, owned by the evaluator; null while p points elsewhere
    entry_ref at;   // of an entry of an array: which one, so that p is found again when arrays have moved
};

// default null; the value of the statement, and of the one before; the statement loop; reset: unwind
inline quolynode *sysnum = nullptr;
inline quolynode *prevnum = nullptr;

// default 0; the system array was replaced and is to be shown; array statements; reset: statement
inline std::int32_t syst_dump = 0;
// default 0; evaluations q#[m] under way; reset: unwind
inline std::int32_t matrix_eval = 0;
// default 0; unset entries read by this statement, to stop floods of warnings; reset: statement
inline std::int32_t uninit = 0;
// default 0; loop and function exits that wait to be taken; &> &} &]; reset: unwind
inline std::int32_t leave_flag = 0;
inline std::int32_t exit_flag = 0;
inline std::int32_t cycle_flag = 0;
// default 0; a cancellation is under way in an array statement; reset: unwind
inline std::int32_t cancelflag = 0;

// Forget what belongs to one statement: counters and flags above.
void reset_statement();
void evaluator_on_error();
void operands_on_unwind();
void forget_warnings();

// default 0; operands that point into storage while another operand is evaluated; evaluators; reset: unwind
inline std::int32_t borrowed = 0;

// Bracket the evaluation of another operand while *v may point into storage. A variable that is cancelled
// meanwhile keeps its record and value until the last borrower is done.
inline void borrow()
{
    ++borrowed;
}
// default 0; cancelled variables wait for the last borrower; remove_var, free_doomed_vars; reset: never
inline std::int32_t doomed_wait = 0;
void bury_doomed();
inline void give_back()
{
    if (--borrowed == 0 && doomed_wait) bury_doomed();
}

// Make the operand's value a private one in v->n, copying what stands in storage; an absent entry is 0.
void make_private(operand *v);

// Leave modular mode, for something that must be a true integer, and come back to it. Every
// use is such a pair.
void check_modular(std::int32_t *saved);
void restore_modular(const std::int32_t *saved);

}  // namespace kelmar

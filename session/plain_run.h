#pragma once
// session/plain_run.h -- stored expressions of plain numbers, computed in registers.
//
// Most of what an inner loop runs adds, multiplies and compares plain numbers. The functions here walk the
// tokens of such an expression where they are stored, and alter nothing until they have its value. What they
// do not know -- a value that is no plain number, a call, an entry of an array, a power, an unknown name, a
// zero divisor -- makes them decline (0) with nothing done; the evaluators then begin at the same token, with
// all their errors and texts. So a value computed here is the one that those would have computed.
//
// They serve the sessions of floats, in doubles, and there the statements behind Integer, in machine words.

#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Run the statement of values: a sum, or an assignment of one to a variable that has a value. *n replaced
// with its value; the end of the list is then in hand.
int run_plain_statement(name_node *list, quolynode **n);

// *holds = the condition that is one comparison and a statement's whole header; the end is then in hand.
int plain_header(name_node *header, bool *holds);

// *result = the comparison whose first token is in hand; the token behind it is then in hand.
int plain_comparison(name_node **cursor, int *result);

// *n = the sum of terms whose first token is in hand, outside Integer; the token behind it is then in hand.
// *n replaced.
int read_plain_sum(name_node **cursor, quolynode **n);

}  // namespace kelmar

#pragma once
// session/builtin_args.h -- how built-in functions read their arguments.
//
// A handler is called with the name in hand, and leaves the token behind its last argument in hand. Its
// result slot is announced. error may come back: every reader then leaves a value to go on with.

#include "poly/variables.h"
#include "session/evaluator.h"

namespace kelmar {

// Pass the name in hand, which takes no arguments. *n = its value v.
void bare_word(input_stream **stream, std::int32_t v, quolynode **n, name_node **cursor);

// Pass the `(` behind the name in hand; the first token of the argument is then in hand. number: the error to
// raise. False after it.
bool open_argument(input_stream **stream, name_node **cursor, int number);

// Pass `)`. Errors: 1.
void close_argument(input_stream **stream, name_node **cursor);

// Pass a comma. False after error `number`.
bool pass_comma(input_stream **stream, name_node **cursor, int number);

// *n = the value of an expression, private, or with ^ in front that of a factor. *n replaced.
void read_argument_value(input_stream **stream, quolynode **n, name_node **cursor);

// Read `(expr)`, or `(^x)`, behind the name in hand. *n replaced; 0 after error 177. Errors: 177 1.
bool standard_read(input_stream **stream, quolynode **n, name_node **cursor);

// Read `(expr, expr` behind the name in hand. Errors: 177 313. False after them.
bool read_with_comma(input_stream **stream, quolynode **n, quolynode **second, name_node **cursor);

// An argument that is read where it stands: p points into storage, or at n. n is announced by the caller, who
// borrows while p is used.
void get_quoly_ptr(input_stream **stream, operand *v, name_node **cursor);

// The same for an argument that is changed: p is the slot of a variable or entry. Null after error `number`.
quolynode **new_get_quoly_ptr(input_stream **stream, operand *v, name_node **cursor, int number);

// The slot of such an argument now, after others have been read, which may have moved arrays; one of v's own
// when its array has gone.
quolynode **settled_slot(operand *v);

// Such an argument has its new value: a zero does not stay in a sparse array.
void close_target(operand *v);

// A built-in that changes its first argument, with the value behind it. Both are announced, and values are
// borrowed, from begin_change to end_change.
struct change {
    operand target;
    quolynode *value;
};

// *c filled. Behind the first argument, whose slot is returned; null after error 316.
quolynode **begin_change(input_stream **stream, change *c, name_node **cursor);
void end_change(change *c);

// Read a number; its whole part goes to *v. Declines (0) after error `number`, for what is no number or out
// of range.
int read_whole(input_stream **stream, name_node **cursor, std::int32_t *v, int number);

// *level = that of the variable in hand, which stands as itself or as its number. Declines (0) after an
// error: 282 for what is neither, `number` for a level that there is not.
int read_level(input_stream **stream, name_node **cursor, std::int32_t *level, int number);

// The value as a polynomial without denominator; null after error `number`. Borrowed; *room for a number.
polynode *polynomial_of(quolynode *q, poly_room *room, int number);

// True when n is a number that is neither infinite nor nan.
bool is_finite_number(const quolynode *q);

}  // namespace kelmar

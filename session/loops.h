#pragma once
// session/loops.h -- while, for, and the built-ins that sum or multiply over a range.

#include "session/arr_value.h"
#include "session/func_records.h"

namespace kelmar {

inline constexpr std::int32_t counter_limit = 1 << 28;  // a loop counter stays below it in magnitude

// A counted loop. Counter, stop and step are negated when the step is negative, so that one comparison
// serves.
struct for_loop {
    token_rec name;         // the counter, a variable like any other
    quolynode **slot;       // its value
    std::int32_t linked;    // the slot is that of a linked token
    std::uint32_t cancels;  // cancel_count when the slot was looked up
    std::int64_t counter, stop, step;
    std::int32_t sign;  // 1, or -1 when they are negated
    const colm *rest;   // of a loop over positions: those to come
    std::int32_t over_positions;
};

// Read the head of a loop, the counter's name in hand: i = a to b by c, or i := a, b, c, or i from a to b.
// The step is 1 when none is given. The counter gets the start value. Or i = [s], over the stored positions
// of sparse arrays, which stand in *positions, announced and empty; null: that is no range. Errors: 27 28 47
// 49 51 77 118 335 336.
void set_up_for_loop(input_stream **stream, for_loop *loop, name_node **cursor,
                     arr_value *positions = nullptr);

// Count on. The new value is written into the variable in place. Errors: 47.
void advance_loop(for_loop *loop);

inline bool loop_is_over(const for_loop *loop)
{
    return loop->counter > loop->stop;
}

void for_statement(input_stream **stream, const cond_node *cond, quolynode **n);
void while_statement(input_stream **stream, const cond_node *cond, quolynode **n);

// *n = the sum, or the product, of the values of an expression over a range: < head > [expression], or with a
// further range in place of the bracket. The `<` must be in hand. Under Integer the plain sum is one of
// machine integers. Errors: 78 81 103 144 145 274, those of the head.
void sum_mult_up(input_stream **stream, bool product, quolynode **n, name_node **cursor);
void isum_mult_up(input_stream **stream, bool product, std::int32_t *word, name_node **cursor);

}  // namespace kelmar

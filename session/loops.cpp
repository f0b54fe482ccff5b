// session/loops.cpp -- loops.
//
// The counter of a loop is kept as a machine integer and written into the variable's number record, with no
// allocation. The variable is looked up again only when something was cancelled since. A range expression
// replays its body once a round; what is typed at the terminal is first stored, so that there is a list to
// replay.
#include "session/loops.h"
#include "matrix/pins.h"
#include "numbers/mode.h"
#include "numbers/word_mod.h"
#include "poly/variables.h"
#include "quoly/add.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/arr_access.h"
#include "session/conditions.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/func_run.h"
#include "session/int_expr.h"
#include "session/loop_positions.h"
#include "session/report.h"
#include "session/stored_expr.h"
#include "session/trace.h"
#include "session/words.h"

namespace kelmar {

// The counter -------------------------------------------------------------------------------------------

// The slot of the counter's variable, which is made when there is none.
static quolynode **counter_slot(for_loop *loop)
{
    if (loop->slot && (loop->linked || loop->cancels == cancel_count)) return loop->slot;
    var_node *record = find_var(&loop->name);
    if (!record) {
        quolynode *zero = nullptr;
        quoly_set(0, &zero);
        insert_var(&loop->name, &zero, &record);
    }
    loop->slot = &record->value;
    loop->cancels = cancel_count;
    return loop->slot;
}

// The counter is below the limit. Errors: 47.
static bool counter_fits(const for_loop *loop)
{
    if (loop->counter > -counter_limit && loop->counter < counter_limit) return true;
    error(err_counter_too_big, loop->name.text);
    return false;
}

static void write_counter(for_loop *loop)
{
    std::int32_t value = static_cast<std::int32_t>(loop->counter) * loop->sign;
    if (value < 0 && modularmode && !flotemode) value = to_residue(value);
    quolynode **const slot = counter_slot(loop);
    unshare(slot);
    quolynode *const q = *slot;
    if (q && q->is_num) {
        q->den = nullptr;
        if (flotemode) {
            q->num->real = value;
            return;
        }
    }
    quoly_set(value, slot);
}

// The next position; the loop is over behind the last one.
static void next_position(for_loop *loop)
{
    if (!loop->rest) {
        loop->stop = loop->counter - 1;
        return;
    }
    loop->counter = std::int64_t{loop->rest->coord} - 1 + addresser;
    loop->stop = loop->counter;
    loop->rest = loop->rest->next;
    if (counter_fits(loop)) write_counter(loop);
}

void advance_loop(for_loop *loop)
{
    if (__builtin_expect(loop->over_positions, 0)) {
        next_position(loop);
        return;
    }
    loop->counter += loop->step;
    if (counter_fits(loop)) write_counter(loop);
}

// Heads -------------------------------------------------------------------------------------------------

// `[` is in hand: the loop runs over positions.
static void set_up_positions(input_stream **stream, for_loop *loop, name_node **cursor, arr_value *positions)
{
    if (!positions) {
        error(err_range_not_number, token.text);
        return;
    }
    loop->stop = loop->counter - 1;
    if (!read_positions(stream, positions, cursor)) return;
    counter_slot(loop);
    loop->over_positions = 1;
    loop->rest = positions->sparse->row_head[0];
    next_position(loop);
}

// Pass what stands between the counter and its start: := or = or from.
static bool pass_assignment(input_stream **stream, name_node **cursor)
{
    if (token.text[0] == ':') {
        scanner(stream, &token, cursor);
        if (token.text[0] != '=') return false;
    } else if (token.text[0] != '=' && !token_is(&token, "from")) {
        return false;
    }
    scanner(stream, &token, cursor);
    return true;
}

static std::int32_t read_bound(input_stream **stream, name_node **cursor)
{
    std::int32_t saved;
    std::int32_t value;
    check_modular(&saved);
    obtain_int(stream, &value, err_bad_coordinate, cursor);
    restore_modular(&saved);
    return value;
}

// Pass the keyword, or a comma.
static bool pass_keyword(input_stream **stream, const char *word, name_node **cursor)
{
    if (token.text[0] != ',' && !token_is(&token, word)) return false;
    scanner(stream, &token, cursor);
    return true;
}

static void read_stop_and_step(input_stream **stream, for_loop *loop, name_node **cursor)
{
    loop->stop = read_bound(stream, cursor);
    if (pass_keyword(stream, " by", cursor)) loop->step = read_bound(stream, cursor);
    if (loop->step == 0) error(err_bad_loop_stop, token.text);
    if (loop->step > 0) return;
    loop->sign = -1;
    loop->counter = -loop->counter;
    loop->stop = -loop->stop;
    loop->step = -loop->step;
}

void set_up_for_loop(input_stream **stream, for_loop *loop, name_node **cursor, arr_value *positions)
{
    *loop = {token, nullptr, 0, 0, 1, 0, 1, 1, nullptr, 0};
    if (!is_lower(token.text[0]) || its_a_polyname(token.text)) {
        error(err_bad_loop_counter, token.text);
        return;
    }
    if ((*cursor)->linked && (*cursor)->kind == linked_scalar) {
        loop->linked = 1;
        loop->slot = static_cast<quolynode **>((*cursor)->ptr);
    }
    scanner(stream, &token, cursor);
    if (!pass_assignment(stream, cursor)) {
        error(err_need_assign_in_loop, token.text);
        return;
    }
    if (token.text[0] == '[') {
        set_up_positions(stream, loop, cursor, positions);
        return;
    }
    loop->counter = read_bound(stream, cursor);
    if (!counter_fits(loop)) return;
    if (!pass_keyword(stream, " to", cursor)) {
        error(err_bad_loop_stop, token.text);
        return;
    }
    write_counter(loop);
    read_stop_and_step(stream, loop, cursor);
}

// Statements ------------------------------------------------------------------------------------------------

// Run the body for one round. True when the loop is left.
static bool run_round(input_stream **stream, form_node *body, quolynode **n)
{
    poll_interrupt();
    eval_form(stream, body, n);
    if (!leaving()) return false;
    cycle_flag = 0;
    if (exit_flag) return true;
    const bool left = leave_flag != 0;
    leave_flag = 0;
    return left;
}

void for_statement(input_stream **stream, const cond_node *cond, quolynode **n)
{
    for_loop loop;
    arr_value positions;
    name_node *at = cond->header->next;
    begin_list(at);
    open_value(&positions);
    set_up_for_loop(stream, &loop, &at, &positions);
    if (token.text[0] != endlist[0]) {
        error(err_bad_loop_head, token.text);
        loop.stop = loop.counter - 1;
    }
    while (!loop_is_over(&loop)) {
        if (run_round(stream, cond->then_part, n)) break;
        advance_loop(&loop);
    }
    close_value(&positions);
}

void while_statement(input_stream **stream, const cond_node *cond, quolynode **n)
{
    while (header_holds(stream, cond->header)) {
        if (run_round(stream, cond->then_part, n)) return;
        prev_expr = startexpr;
    }
}

// Ranges ------------------------------------------------------------------------------------------------

struct range {
    bool product;
    bool words;        // machine integers are added up, not values
    quolynode *value;  // the sum so far
    std::int32_t word;
};

static void add_up(input_stream **stream, range *r, name_node **cursor);

// Read the body's bracket for one round, and take its value in.
static void take_round(input_stream **stream, range *r, name_node **cursor)
{
    const char close = token.text[0] == '(' ? ')' : ']';
    range round = {r->product, r->words, nullptr, 0};
    own(&round.value);
    if (token.text[0] == '<') {
        add_up(stream, &round, cursor);
    } else {
        scanner(stream, &token, cursor);
        if (r->words) {
            old_iexpre(stream, &round.word, cursor);
        } else {
            old_expre(stream, &round.value, cursor);
        }
        if (token.text[0] != close) {
            error(err_bad_body_end, token.text);
        } else {
            scanner(stream, &token, cursor);
        }
    }
    if (r->words) {
        r->word = r->product ? multiply_words(r->word, round.word) : add_words(r->word, round.word);
    } else if (r->product) {
        fast_quoly_mult(&r->value, round.value);
    } else {
        better_quoly_add(&r->value, round.value);
    }
    disown();
    free_quoly(&round.value);
}

// The range is empty: pass the body in hand without evaluating it.
static void pass_body(input_stream **stream, name_node **cursor)
{
    list_reader r = {stream, cursor, {}, 0, 0};
    stored_expr passed;
    open_stored(&r, token.text[0] == '<' ? obtain_sum : obtain_expression, &passed);
    close_stored(&passed);
}

static bool begins_body()
{
    const char c = token.text[0];
    return c == '[' || c == '(' || c == '<';
}

// Behind the head: `>` and the body, for each value of the counter.
static void run_over(input_stream **stream, range *r, for_loop *loop, name_node **cursor)
{
    if (!expect_and_pass('>', err_need_close_angle, stream, cursor)) return;
    if (!begins_body()) {
        error(err_need_body_bracket, token.text);
        return;
    }
    if (loop_is_over(loop)) {
        pass_body(stream, cursor);
        return;
    }
    name_node *const body = *cursor;
    const token_rec first_of_body = token;
    while (!loop_is_over(loop)) {
        poll_interrupt();
        *cursor = body;
        token = first_of_body;
        take_round(stream, r, cursor);
        advance_loop(loop);
    }
}

// `<` is in hand, in a stored list; r->value is announced.
static void add_up(input_stream **stream, range *r, name_node **cursor)
{
    for_loop loop;
    arr_value positions;
    check_stack();
    if (!r->words) quoly_set(r->product, &r->value);
    r->word = r->product;
    scanner(stream, &token, cursor);
    open_value(&positions);
    set_up_for_loop(stream, &loop, cursor, &positions);
    run_over(stream, r, &loop, cursor);
    close_value(&positions);
}

// From a stream: store the expression first.
static void store_and_add_up(input_stream **stream, range *r, name_node **cursor)
{
    list_reader reader = {stream, cursor, {}, 0, 0};
    stored_expr stored;
    open_stored(&reader, obtain_sum, &stored);
    add_up(stream, r, &stored.at);
    close_stored(&stored);
}

static void run_range(input_stream **stream, range *r, name_node **cursor)
{
    if (token.text[0] != '<') {
        error(err_need_open_angle, token.text);
    } else if (*cursor) {
        add_up(stream, r, cursor);
    } else {
        store_and_add_up(stream, r, cursor);
    }
}

void sum_mult_up(input_stream **stream, bool product, quolynode **n, name_node **cursor)
{
    range r = {product, false, nullptr, 0};
    own(&r.value);
    run_range(stream, &r, cursor);
    if (!r.value) quoly_set(0, &r.value);
    disown();
    free_quoly(n);
    *n = r.value;
}

void isum_mult_up(input_stream **stream, bool product, std::int32_t *word, name_node **cursor)
{
    range r = {product, true, nullptr, 0};
    run_range(stream, &r, cursor);
    *word = r.word;
}

}  // namespace kelmar

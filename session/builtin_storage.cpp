// session/builtin_storage.cpp -- built-ins that change variables in place, show values, or tell of the
// session.
#include "matrix/pins.h"
#include "numbers/number.h"
#include "poly/display.h"
#include "quoly/add.h"
#include "quoly/display.h"
#include "quoly/mul.h"
#include "quoly/owned.h"
#include "session/builtin_args.h"
#include "session/builtin_handlers.h"
#include "session/output.h"
#include "session/report.h"
#include "session/timing.h"

namespace kelmar {

// Two places ------------------------------------------------------------------------------------------------

// Behind the name: `(^x, ^y)`. work runs on the two slots.
static void on_two_slots(input_stream **stream, quolynode **n, name_node **cursor,
                         void (*work)(quolynode **x, quolynode **y))
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    operand first = {}, second = {};
    own(&first.n);
    own(&second.n);
    borrow();
    quolynode **x = new_get_quoly_ptr(stream, &first, cursor, err_not_assignable);
    quolynode **y = nullptr;
    if (x && pass_comma(stream, cursor, err_need_comma)) {
        y = new_get_quoly_ptr(stream, &second, cursor, err_not_assignable);
    }
    if (y) {
        close_argument(stream, cursor);
        x = settled_slot(&first);
        work(x, settled_slot(&second));
        close_target(&first);
        close_target(&second);
    }
    give_back();
    disown();
    disown();
    if (first.n) free_quoly(&first.n);
    if (second.n) free_quoly(&second.n);
}

static void swap_storage(quolynode **x, quolynode **y)
{
    quolynode *kept = *x;
    *x = *y;
    *y = kept;
}

// x takes y's value, y becomes 0.
static void move_storage(quolynode **x, quolynode **y)
{
    if (x == y) return;
    free_quoly(x);
    *x = *y;
    *y = nullptr;
    quoly_set(0, y);
}

void builtin_swap(input_stream **stream, quolynode **n, name_node **cursor)
{
    on_two_slots(stream, n, cursor, swap_storage);
}

void builtin_move(input_stream **stream, quolynode **n, name_node **cursor)
{
    on_two_slots(stream, n, cursor, move_storage);
}

// One place -------------------------------------------------------------------------------------------------

// Behind the name: `(^x, q)`. work runs on the slot of x.
static void on_slot(input_stream **stream, quolynode **n, name_node **cursor,
                    void (*work)(quolynode **x, const quolynode *q))
{
    quoly_set(0, n);
    if (!open_argument(stream, cursor, err_need_open_paren)) return;
    change c;
    if (begin_change(stream, &c, cursor) && pass_comma(stream, cursor, err_need_comma)) {
        read_argument_value(stream, &c.value, cursor);
        close_argument(stream, cursor);
        work(settled_slot(&c.target), c.value);
        close_target(&c.target);
    }
    end_change(&c);
}

void builtin_multo(input_stream **stream, quolynode **n, name_node **cursor)
{
    on_slot(stream, n, cursor, fast_quoly_mult);
}

// Sums with denominators are interrupted: x is not touched before they are done.
static void add_to_storage(quolynode **x, const quolynode *q)
{
    quolynode *sum = nullptr;
    if (((*x)->is_num || !(*x)->den) && (q->is_num || !q->den)) {
        better_quoly_add(x, q);
        return;
    }
    quoly_add(*x, q, &sum);
    retire_value(x);
    *x = sum;
}

void builtin_addto(input_stream **stream, quolynode **n, name_node **cursor)
{
    on_slot(stream, n, cursor, add_to_storage);
}

// Output ----------------------------------------------------------------------------------------------------

// Write the nodes of a part of a value, and make the value 0.
static void dump_part(quolynode **n, bool den)
{
    poly_room room;
    const polynode *p = den ? ((*n)->is_num ? nullptr : (*n)->den) : as_poly(*n, &room);
    if (noisy) {
        if (p) crude_poly_disp(Output, 1, p, 0, polynames);
        std::fputc('\n', Output);
    }
    quoly_set(0, n);
}

void builtin_zz3(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) dump_part(n, false);
}

void builtin_zz4(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (standard_read(stream, n, cursor)) dump_part(n, true);
}

void builtin_show(input_stream **stream, quolynode **n, name_node **cursor)
{
    if (!standard_read(stream, n, cursor)) return;
    const std::int32_t kept = do_line_sup;
    std::int32_t col = 0;
    do_line_sup = 0;
    quoly_display(Output, 1, 1, *n, &col);
    do_line_sup = kept;
    quoly_set(0, n);
}

void builtin_flush(input_stream **stream, quolynode **n, name_node **cursor)
{
    bare_word(stream, 0, n, cursor);
    std::fflush(Output);
}

void builtin_time(input_stream **stream, quolynode **n, name_node **cursor)
{
    bare_word(stream, 0, n, cursor);
    showtime();
}

void builtin_bell(input_stream **stream, quolynode **n, name_node **cursor)
{
    bare_word(stream, 0, n, cursor);
    std::fputc(7, Output);
}

void builtin_true(input_stream **stream, quolynode **n, name_node **cursor)
{
    bare_word(stream, 1, n, cursor);
}

// The records are not lost: the accounting of storage knows the blocks they stand in.
void builtin_wipe(input_stream **stream, quolynode **n, name_node **cursor)
{
    bare_word(stream, 0, n, cursor);
    numhead = nullptr;
    imhead = nullptr;
    polygarb = nullptr;
    quolygarb = nullptr;
}

}  // namespace kelmar

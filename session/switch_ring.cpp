// session/switch_ring.cpp -- the switch of the ground ring: &p , &(p = m) and &(p = _i).
//
// What is refused is told before anything changes. At the terminal &p asks until there is a modulus; in a
// file the modulus stands behind the command.
#include "numbers/dispatch.h"
#include "quoly/display.h"
#include "session/change_prec.h"
#include "session/evaluator.h"
#include "session/expr.h"
#include "session/levels.h"
#include "session/output.h"
#include "session/report.h"
#include "session/switch_values.h"

namespace kelmar {

static bool is_modulus(const quolynode *q, std::int32_t *m)
{
    return num_to_int(q->num, m) && *m >= 2 && *m <= largest_modulus;
}

static void refuse_modulus(const quolynode *q)
{
    std::int32_t col = 0;
    std::fputs(" *** Improper modulus ", Output);
    quoly_display(Output, 0, 0, q, &col);
    std::fputs(". upper limit is 2147483646. Reenter.\n", Output);
}

// Ask until there is a modulus. Errors: 148. Declines (0) after it.
static bool ask_modulus(quolynode **answer, std::int32_t *m)
{
    for (;;) {
        asking a;
        begin_question(&a, " Enter modulus:\n", answer, false);
        const bool is_number_there = (*answer)->is_num;
        if (!is_number_there) error(err_modulus_not_number, token.text);
        end_answer(&a);
        if (!is_number_there) return false;
        if (is_modulus(*answer, m)) return true;
        refuse_modulus(*answer);
    }
}

// The modulus stands behind the command, in a file. One out of range is given as 0.
static bool read_modulus(input_stream **stream, name_node **cursor, quolynode **value, std::int32_t *m)
{
    scanner(stream, &token, cursor);
    old_expre(stream, value, cursor);
    if (!(*value)->is_num) {
        error(err_modulus_not_number, token.text);
        return false;
    }
    if (!is_modulus(*value, m)) *m = 0;
    return true;
}

// A list of names behind &p( tells what is to be converted. All values are, so it is only read.
static void skip_list_of_names(const name_node *const *cursor)
{
    name_node *list = nullptr;
    if (*cursor || !tt_flag || (leftover[0] ? leftover[0] : peek_char(Input)) != '(') return;
    save_input_stream(&list);
    freename(&list);
}

void change_ring(input_stream **stream, quolynode **result, name_node **cursor)
{
    if (levelcount > 1) {
        error(err_not_at_level, token.text);
        return;
    }
    if (modularmode) {
        skip_list_of_names(cursor);
        leave_modular(tt_flag || verbose);
        return;
    }
    if (lintmode) {
        error(err_wrong_ring, token.text);
        return;
    }
    std::int32_t m;
    skip_list_of_names(cursor);
    const bool asks = tt_flag != 0;
    if (asks) std::fputs(" Changing to modular arithmetic.\n", Output);
    if (!(asks ? ask_modulus(result, &m) : read_modulus(stream, cursor, result, &m))) return;
    quoly_set(0, result);  // no value of the old ring is to be converted
    enter_modular(m, asks || verbose, !asks);
}

void assign_ring(const setting *s)
{
    if (lintmode && !modularmode) {
        error(err_wrong_ring, token.text);
    } else if (levelcount > 1) {
        error(err_not_at_level, token.text);
    } else if (s->integers) {
        if (modularmode) {
            leave_modular(s->talk);
        } else {
            std::fputs(" Already in rational mode.\n", Output);
        }
    } else if (s->v < 2 || s->v > largest_modulus) {
        error(err_bad_modulus, token.text);
    } else if (modularmode && modulus == s->v) {
        std::fputs(" Already in that arithmetic mode\n", Output);
    } else if (!modularmode || leave_modular(s->talk)) {
        enter_modular(s->v, s->talk, true);
    }
}

}  // namespace kelmar

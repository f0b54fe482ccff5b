#pragma once
// session/switch_values.h -- switches that hold a number or a text, in both forms.
//
// Behind &x they ask a question at the terminal and read the answer there, whatever the source of
// statements is. In &(x = v) they take a value that was read already, and say so only at the terminal or
// when `verbose` is on.

#include "session/prompt.h"
#include "session/switches.h"

namespace kelmar {

// The whole number that q is or is near to; a float that is near to none is truncated toward zero. Declines
// (0) when q is no number, or none below 2^31 in magnitude.
bool quoly_to_word(const quolynode *q, std::int32_t *v);

// Ask, and read the answer into *answer; end_answer ends it. true_integers: with no modulus.
void begin_question(asking *a, const char *question, quolynode **answer, bool true_integers);

#define KELMAR_FLAG(plain, under, code, global, talk, values, hook, on, off, set_on, set_off, unchanged, what)
#define KELMAR_NUMBER(plain, under, code, global, values, ask, assign, what)                                 \
    void ask(input_stream **stream, quolynode **result, name_node **cursor);                                 \
    void assign(const setting *s);
#define KELMAR_TEXT(plain, under, code, run, take, what)                                                     \
    void run(input_stream **stream, quolynode **result, name_node **cursor);                                 \
    void take(const char *text, input_stream **stream, quolynode **result, name_node **cursor);
#define KELMAR_TAIL(plain, under, code, run, read, what)
#define KELMAR_COMMAND(plain, under, run, what)
#include "session/switches.def"
#undef KELMAR_FLAG
#undef KELMAR_NUMBER
#undef KELMAR_TEXT
#undef KELMAR_TAIL
#undef KELMAR_COMMAND

}  // namespace kelmar

#pragma once
// session/token_list.h -- reading tokens into stored lists.
//
// A definition, and a control statement typed at the terminal, are stored before they run. At the terminal a
// line end inside one of them counts as one ";" and is read with it, whether or not a ";" stands in front of
// it. Behind fifteen ";" in a row with nothing between the definition is given up, which frees a user who is
// lost in one.

#include "session/scanner.h"

namespace kelmar {

inline constexpr int blank_lines_allowed = 15;  // ";" in a row; the last one gives the definition up

// The field kind of a stored name with a capital letter that no built-in has.
inline constexpr std::int32_t no_builtin = -1;

// Where a definition is read from.
struct list_reader {
    input_stream **stream;
    name_node **cursor;
    token_rec ahead;         // a token that was read too far
    std::int32_t has_ahead;  // it is to be delivered first
    std::int32_t control;    // a control statement of the terminal: an empty statement counts as 0
};

// Put the next token in hand.
void next_token(list_reader *r);

// True when nothing but blanks, or a comment, stands before the next line end of the stream. Only blanks are
// read.
bool line_is_over(input_stream *in);

// The ";" in hand is the last thing there is to read.
bool input_is_cut(const list_reader *r);

// A ";" is in hand, at the terminal: count it, and read the line end that follows it. True when there was
// one. Errors: 132.
bool take_line_end(list_reader *r);

// *list = the tokens from the one in hand up to `stop`, a word or "."; `stop` or the ";" that ends the list
// is then in hand. A stop word inside brackets, or inside a block or definition that was opened on the way,
// is none; else, fi and od of no such block end the list in any case. stop "elfi*" means else or fi.
// loop_head: the list gets ":" in front, and the words to and by become keywords where an operand has ended.
// *list filled as it grows. Errors: 8 9 103 132.
void attach(list_reader *r, const char *stop, bool loop_head, name_node **list);

// True when `stop` is in hand.
bool at_stop(const char *stop);

// *list = the range expression that begins with the `<` in hand, up to the bracket that closes its body; the
// token behind is then in hand. Errors: 9 78 81 145 274.
void obtain_sum(list_reader *r, name_node **list);

// *list = the expression that begins with the bracket in hand, up to the bracket that closes it; the token
// behind is then in hand. Errors: 9 81 274.
void obtain_expression(list_reader *r, name_node **list);

// *list = the characters of the comment behind the `{` in hand, its `}` included, without an end marker; the
// token behind is then in hand. Errors: 103.
void read_comment(list_reader *r, name_node **list);

}  // namespace kelmar

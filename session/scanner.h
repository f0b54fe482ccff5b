#pragma once
// session/scanner.h -- a character stream, or a stored token list, as one token at a time.
//
// At the terminal a line end ends the statement: it becomes ";" and stays unread until the prompt step drops
// it. In a file line ends are blanks. The continuation character, anywhere between tokens, throws the rest
// of its line away. At the end of the input the scanner delivers ";" for ever.

#include "session/input.h"
#include "session/report.h"  // error, poll_interrupt
#include "session/token.h"

namespace kelmar {

inline constexpr int ring_cells = 60;  // tokens of the statement that an error can show

// default standard input; the terminal's stream; tests replace it; reset: never
inline input_stream *Input = nullptr;
// default 1; the active source is the terminal; load and load_startup clear it; reset: unwind
inline std::int32_t tt_flag = 1;
// default 10; characters; a longer name is cut in two tokens; nobody; reset: never
inline std::int32_t namelength = 10;
// default empty; the character read past the last token; the scanner; reset: unwind
inline char leftover[2] = "";
// default 0; consecutive empty lines of a definition; the definition reader; reset: each comment line
inline std::int32_t semicount = 0;
// default null; the stored token after the one just delivered; the scanner; reset: unwind
inline name_node *currentchar = nullptr;

// The tokens of the present statement, oldest to newest. finish null: none.
inline name_node *start = nullptr;
inline name_node *finish = nullptr;

// Make the ring. Called once.
void make_ring();
void clear_ring();

// The ring's tokens, kept while the statements of a pushed level pass through it.
struct saved_ring {
    std::int32_t count;
    char text[ring_cells][token_room];
};
void save_ring(saved_ring *kept);
void restore_ring(const saved_ring *kept);

// *tok = the next token. Never fails. Polls: at the start.
void scanner(input_stream **stream, token_rec *tok, name_node **cursor);

// token = the next token: scanner in line, for loops that run stored statements.
inline void next_token(input_stream **stream, name_node **cursor)
{
    const name_node *const here = *cursor;
    if (__builtin_expect(here == nullptr || here->next == nullptr, 0)) {
        scanner(stream, &token, cursor);
        return;
    }
    poll_interrupt();
    name_node *const next = here->next;
    copy_token(&token, next);
    currentchar = next->next;
    *cursor = next;
}

// True when the character c is in hand. False after error `number`.
inline bool expect(char c, int number)
{
    if (token.text[0] == c) return true;
    error(number, token.text);
    return false;
}

// The same; the token behind it is then in hand.
inline bool expect_and_pass(char c, int number, input_stream **stream, name_node **cursor)
{
    if (!expect(c, number)) return false;
    scanner(stream, &token, cursor);
    return true;
}

// *tok = the next raw character, no blanks skipped. A line end is dropped with the rest of its line and
// delivered as CR, *eol_flag = 1. At the end of the input: ";" with *eol_flag = 1.
void dumbscanner(input_stream **stream, token_rec *tok, name_node **cursor, int *eol_flag);

// As scanner; *eol_flag tells whether a line end was passed. For data in which line ends count.
void spec_scanner(input_stream **stream, token_rec *tok, name_node **cursor, int *eol_flag);

// The next significant character of Input; *eol_flag becomes 1 when a line end was passed.
int mygetchar(int *eol_flag);

// *list = the tokens of the terminal up to and including the first ";" outside a function definition, as a
// stored list that ends in endlist; null when there was nothing but the ";".
void save_input_stream(name_node **list);

// The ";" in hand stands for the line end of the terminal, which is unread.
bool is_line_end(const input_stream *in);

// True when the terminal has nothing left to read: the session ends.
bool input_is_over();

}  // namespace kelmar

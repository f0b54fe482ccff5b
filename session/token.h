#pragma once
// session/token.h -- the current token, and the record of a stored one.
//
// A token is an identifier of at most ten characters, or one single character; numbers are
// assembled from digit tokens. Stored statements are chains of name records, and a cursor, the
// address of a pointer to one, makes the scanner deliver them instead of reading a stream. The
// cursor zilch is always null: read the stream.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace kelmar {

inline constexpr int token_room = 12;  // bytes of a token's text, its end mark included

struct alignas(8) token_rec {
    char text[token_room];  // zero-padded, so that equal texts are equal bytes
    std::int16_t index;     // hash bucket of the text, -1 when not hashed yet
};
static_assert(std::is_trivial_v<token_rec>);

// What a stored token is to the walk of plain_walk.h, which tells it once.
enum token_form : std::uint8_t {
    form_untold,
    form_plus,
    form_minus,
    form_literal,  // the first token of a number: value, and ptr the token behind it
    form_decimal,  // the same, written with a point
    form_stop,     // what ends a term
    form_times,    // from here on: a term goes on
    form_divide,   // / | and the backslash
    form_name,     // of a variable; `or` and `and` are none
    form_open,     // (
    form_call,     // the name of a function of the user
    form_general   // what only the evaluators read
};

// One token of a stored list; also a cell of the statement's token ring, and a formal parameter.
struct name_node {
    char text[token_room];
    std::int16_t index;
    token_form form;
    std::uint8_t evaluated;  // the first of a list that holds what only the evaluators read
    name_node *chain;        // linked body: the next record of the same variable
    void *ptr;               // linked body: the slot of the variable, or the base of the array
    name_node *next;         // the next token
    std::int32_t linked;     // 1 when ptr is valid; parameter: it holds an array
    std::int32_t spaced;     // a blank followed in the source; parameter: its array is sparse
    std::int32_t kind;       // linked: what it is, a linked_kind
    std::uint8_t param;      // in a body that is walked: which parameter it is, from 1; 0: none
    std::uint16_t refused;   // definitions there were when a walk from here met a call that is none to walk
    double value;            // of a literal
};
static_assert(std::is_trivial_v<name_node>);

// *t = the text and the index of the stored token, which begin both records, in one move.
inline void copy_token(token_rec *t, const name_node *stored)
{
    static_assert(offsetof(name_node, index) == offsetof(token_rec, index));
    static_assert(offsetof(name_node, chain) == sizeof(token_rec));
    std::memcpy(static_cast<void *>(t), static_cast<const void *>(stored), sizeof *t);
}

// default empty; the token in hand; the scanner; reset: unwind
inline token_rec token;
// default null; free name records; newname, freename; reset: never
inline name_node *name_garb = nullptr;
// always null: the cursor that means "from the stream"
inline name_node *zilch = nullptr;

inline constexpr char endlist[] = "\xC2\xA5";  // the text of the record that ends each stored list

inline bool token_is(const token_rec *t, const char *text)
{
    return std::strcmp(t->text, text) == 0;
}

// What a linked token names; ptr is the slot of a scalar, and an entry_link of the others.
enum linked_kind : std::int32_t {
    linked_scalar = 1,
    linked_entry,  // an entry with a fixed index
    linked_array   // an array: the index is computed
};

// t = the text, cut to the room there is; not hashed.
void set_token(token_rec *t, const char *text);

inline bool is_lower(char c)
{
    return c >= 'a' && c <= 'z';
}
inline bool is_upper(char c)
{
    return c >= 'A' && c <= 'Z';
}
inline bool is_letter(char c)
{
    return is_lower(c) || is_upper(c);
}
inline bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

// *n = a fresh name record, unlinked, its text empty.
void newname(name_node **n);

// Release the whole chain from *n; *n becomes null.
void freename(name_node **n);

// Name records on the free list, but at most limit + 1; their texts, a line each.
std::int64_t count_free_names(std::int64_t limit);
void list_free_names(std::FILE *out);

}  // namespace kelmar

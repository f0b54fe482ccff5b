#pragma once
// session/texts.h -- texts between quotes, and in arrays of characters.

#include "session/scanner.h"

namespace kelmar {

inline constexpr int text_room = 256;  // bytes of a text, its end mark included

enum text_end {
    text_whole,     // the closing quote is in hand
    text_cut,       // the line, or the stored list, ended before
    text_too_long,  // there is no room for the token in hand
};

// Append the characters up to the closing quote to `text`, of text_room bytes and at *length; the opening
// quote is in hand.
text_end read_quoted(input_stream **stream, name_node **cursor, char *text, int *length);

// The same. Declines (0) after an error. Errors: 33 209.
bool read_quoted_text(input_stream **stream, name_node **cursor, char *text, int *length);

// text = the characters of the array whose [ is in hand, at most room - 1 of them; its ] is in hand then.
// Declines (0) after an error. Errors: 24 28.
bool read_array_text(input_stream **stream, name_node **cursor, char *text, int room);

}  // namespace kelmar

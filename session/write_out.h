#pragma once
// session/write_out.h -- the output statement.

#include <cstdio>
#include "quoly/quoly.h"
#include "session/scanner.h"

namespace kelmar {

// Where the items of an output statement go, and how far the line has come.
struct output_place {
    std::FILE *out[2];  // one or two; null: unused
    std::int32_t col;
};

// What stands behind an item: its width, and whether a number is written as a character.
struct item_form {
    std::int32_t width;  // 0: none
    std::int32_t as_char;
};

// Read what stands behind an item, ":8" or ":char"; what is not told stays as it is in *form. Declines (0)
// after an error.
bool read_item_form(input_stream **stream, name_node **cursor, item_form *form);

// Put the n bytes of text to all places.
void put_text(output_place *place, const char *text, std::size_t n);

// Run the statement ! , which is in hand: !x writes one value and ends the line, !(a, b, ..) writes several
// and does not, !; ends the line. !(&o, ..) writes to the output file; !! to the terminal and to that file.
// *result replaced with 0. Errors: 33 105 106 209 261 263 and those of the items.
void write_out(input_stream **stream, quolynode **result, name_node **cursor);

}  // namespace kelmar

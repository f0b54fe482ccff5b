#pragma once
// numbers/startup_read.h -- the reader of the start-up files.
//
// A file is read into one buffer by one request, and the words are taken out of the buffer here: the tables
// hold half a million words, and a session is to prompt at once. A file may be missing, cut short or spoiled
// in any way. The first word that is missing or out of its range marks the file as damaged, from there on
// every read declines and fills with zeros, and so nothing that a table holds can point outside another
// table.

#include <cstdint>
#include "numbers/number.h"

namespace kelmar {

inline constexpr std::int64_t data_file_limit = 1 << 24;  // bytes; the longest file has 1.6 million
inline constexpr std::int32_t digits_limit = 32767;       // digits of the longest number

struct data_file {
    char *text;      // the whole file and eight NULs; null when it was not found
    const char *at;  // the first byte not yet read
    const char *end;
    int damaged;  // a read declined: all later ones do
};

// Read the file `directory` `name` into memory. *file filled. Declines (0) when it can't be found or is no
// plain file; *file is then a damaged file without text, and may be read from like any other.
int open_data_file(const char *directory, const char *name, data_file *file);

// Release the text of *file; reads decline from now on.
void close_data_file(data_file *file);

// *v = the next word, which is to be in low .. high. *v filled: 0 when the read declines.
int read_word(data_file *file, std::int32_t low, std::int32_t high, std::int32_t *v);

// Fill a table of `count` words; with zeros from the word where the read declines.
int read_words(data_file *file, std::int32_t low, std::int32_t high, std::int32_t count, std::int32_t *table);
int read_codes(data_file *file, std::int32_t high, std::int32_t count, std::uint16_t *table);  // 0 .. high

// n = the number whose `count` digits follow, the first of them being `first`. n replaced; the number 0, in
// one digit, when the read declines. Declines: a count out of 1 .. digits_limit, digits not below the base in
// magnitude or of two signs, a head of 0 before other digits.
int read_digits(data_file *file, std::int32_t first, std::int32_t count, std::int32_t base, number *n);

// n = the next number of the form "count digits", in base 2^28. n replaced, as read_digits.
int read_number(data_file *file, number *n);

// Copy the next line, or its first `width` characters, to the zeros of `text`. At most 1023 bytes of the file
// make one line. The line end is not copied. Declines at the end of the file.
int read_line(data_file *file, std::int32_t width, char *text);

// Copy the next run of non-blank characters, or its first `width`, to `text`, and end it by a NUL.
int read_field(data_file *file, std::int32_t width, char *text);

}  // namespace kelmar

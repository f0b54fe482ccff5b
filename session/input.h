#pragma once
// session/input.h -- buffered character input that looks one character ahead.
//
// The terminal and every statement file are read through this record. A waiting interrupt is answered here as
// well, because a session spends most of its life blocked in a read.

#include <cstddef>
#include <cstdint>

namespace kelmar {

struct input_stream {
    int fd;      // -1: the whole text stands in buf
    int at_end;  // the end was seen; it stays seen
    unsigned char *buf;
    std::size_t pos, end;  // unread bytes are buf[pos .. end-1]
};

inline constexpr int end_of_input = -1;

// Read on; the slow half of peek_char. Returns the next character, or end_of_input.
int fill_input(input_stream *in);

// The next character, which stays unread; end_of_input at the end.
inline int peek_char(input_stream *in)
{
    return in->pos < in->end ? in->buf[in->pos] : fill_input(in);
}

// The next character, which is read; end_of_input at the end.
inline int get_char(input_stream *in)
{
    const int c = peek_char(in);
    if (c != end_of_input) ++in->pos;
    return c;
}

// Read through the next line end.
void drop_line(input_stream *in);

// *in = a stream over the open file fd.
void open_input(input_stream *in, int fd);

// *in = a stream over n bytes, which stay the caller's.
void open_text(input_stream *in, const unsigned char *bytes, std::size_t n);

// Close a stream that open_input made, file included.
void close_input(input_stream *in);

}  // namespace kelmar

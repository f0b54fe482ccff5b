// session/texts.cpp -- texts, token by token.
#include "session/texts.h"
#include "session/arr_data.h"
#include "session/report.h"

namespace kelmar {

text_end read_quoted(input_stream **stream, name_node **cursor, char *text, int *length)
{
    text[*length] = 0;
    for (;;) {
        int line_ended;
        dumbscanner(stream, &token, cursor, &line_ended);
        if (line_ended || token_is(&token, endlist)) return text_cut;
        if (token.text[0] == '\'') return text_whole;
        const int more = static_cast<int>(std::strlen(token.text));
        if (*length + more >= text_room) return text_too_long;
        std::memcpy(text + *length, token.text, static_cast<std::size_t>(more) + 1);
        *length += more;
    }
}

bool read_quoted_text(input_stream **stream, name_node **cursor, char *text, int *length)
{
    const text_end end = read_quoted(stream, cursor, text, length);
    if (end == text_cut) error(err_bad_quoted_text, ";");
    if (end == text_too_long) error(err_text_too_long, token.text);
    return end == text_whole;
}

bool read_array_text(input_stream **stream, name_node **cursor, char *text, int room)
{
    scanner(stream, &token, cursor);
    token_rec name = token;
    if (!get_from_array(&name, text, room)) return false;
    scanner(stream, &token, cursor);
    return expect(']', err_need_close_bracket);
}

}  // namespace kelmar

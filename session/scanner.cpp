// session/scanner.cpp -- one token at a time, with one character of look-ahead.
//
// Significant characters are found by one loop, next_significant, that knows the three things a line end can
// mean: the end of a terminal statement, a blank of a file, and the end of a comment. Names are read on from
// there. Every token of a stream goes into the ring of the statement's last sixty, which only errors read.
#include "session/scanner.h"
#include "numbers/heap.h"
#include "session/pset.h"
#include "session/report.h"
#include "numbers/decimal.h"  // continuation: the display breaks lines with the character that joins them

namespace kelmar {

// The ring ----------------------------------------------------------------------------------------------

void make_ring()
{
    name_node *cells = static_cast<name_node *>(heap_record(ring_cells * sizeof(name_node)));
    std::memset(cells, 0, ring_cells * sizeof(name_node));
    for (int i = 0; i < ring_cells; ++i) cells[i].next = &cells[(i + 1) % ring_cells];
    start = cells;
    finish = nullptr;
}

void clear_ring()
{
    finish = nullptr;
}

static inline void append_to_ring(const token_rec *tok)
{
    if (!finish) {
        finish = start;
    } else {
        finish = finish->next;
        if (finish == start) start = start->next;
    }
    std::memcpy(finish->text, tok->text, sizeof finish->text);
}

void save_ring(saved_ring *kept)
{
    kept->count = 0;
    for (const name_node *cell = start; finish; cell = cell->next) {
        std::memcpy(kept->text[kept->count++], cell->text, token_room);
        if (cell == finish) break;
    }
}

void restore_ring(const saved_ring *kept)
{
    finish = nullptr;
    name_node *cell = start;
    for (std::int32_t i = 0; i < kept->count; ++i, cell = cell->next) {
        std::memcpy(cell->text, kept->text[i], token_room);
        finish = cell;
    }
}

// Characters ----------------------------------------------------------------------------------------------

// The next character that is no blank, as the head comment tells. *passed becomes 1 at a line end of a file.
static int next_significant(input_stream *in, int *passed)
{
    for (;;) {
        const int c = peek_char(in);
        if (c == end_of_input) return ';';
        if (c == '\n') {
            *passed = 1;
            if (tt_flag) return ';';  // the line end stays unread: the prompt step drops it
        }
        ++in->pos;
        if (in_set(throwaways, static_cast<char>(c))) continue;
        if (c != static_cast<unsigned char>(continuation)) return c;
        drop_line(in);
        semicount = 0;
    }
}

// The next character of a name; what cannot be one ends it. A line end, and the end of the
// input, stay unread.
static int next_of_name(input_stream *in)
{
    const int c = peek_char(in);
    if (c == end_of_input || c == '\n') return ' ';
    ++in->pos;
    if (c != static_cast<unsigned char>(continuation)) return c;
    drop_line(in);
    semicount = 0;
    return ' ';
}

static inline bool name_goes_on(int c)
{
    return is_letter(static_cast<char>(c)) || is_digit(static_cast<char>(c)) || c == '_';
}

// Tokens ----------------------------------------------------------------------------------------------------

// *tok = the next record of the stored list.
static inline void replay(token_rec *tok, name_node **cursor)
{
    *cursor = (*cursor)->next;
    if (__builtin_expect(*cursor == nullptr, 0)) {  // past the end marker: the list stays over
        set_token(tok, endlist);
        currentchar = nullptr;
        return;
    }
    copy_token(tok, *cursor);
    currentchar = (*cursor)->next;
}

static inline void scan_stream(input_stream *in, token_rec *tok, int *passed)
{
    std::memset(tok->text, 0, sizeof tok->text);
    tok->index = -1;
    int c = static_cast<unsigned char>(leftover[0]);
    if (c == 0 || in_set(throwaways, leftover[0])) c = next_significant(in, passed);
    leftover[0] = 0;
    tok->text[0] = static_cast<char>(c);
    if (is_letter(static_cast<char>(c))) {
        int length = 1;
        c = next_of_name(in);
        while (length < namelength && name_goes_on(c)) {
            tok->text[length++] = static_cast<char>(c);
            c = next_of_name(in);
        }
        if (!in_set(throwaways, static_cast<char>(c))) leftover[0] = static_cast<char>(c);
    }
    append_to_ring(tok);
}

void scanner(input_stream **stream, token_rec *tok, name_node **cursor)
{
    poll_interrupt();
    if (*cursor) {
        replay(tok, cursor);
        return;
    }
    int passed = 0;
    scan_stream(*stream, tok, &passed);
}

void spec_scanner(input_stream **stream, token_rec *tok, name_node **cursor, int *eol_flag)
{
    *eol_flag = 0;
    if (*cursor) {
        replay(tok, cursor);
        return;
    }
    scan_stream(*stream, tok, eol_flag);
}

int mygetchar(int *eol_flag)
{
    return next_significant(Input, eol_flag);
}

void dumbscanner(input_stream **stream, token_rec *tok, name_node **cursor, int *eol_flag)
{
    if (*cursor) {
        replay(tok, cursor);
        *eol_flag = 0;
        return;
    }
    set_token(tok, "");
    *eol_flag = 1;
    int c = static_cast<unsigned char>(leftover[0]);
    leftover[0] = 0;
    if (c == 0) c = peek_char(*stream) == '\n' ? '\n' : get_char(*stream);
    if (c == end_of_input) {
        c = ';';
    } else if (c == '\n') {
        drop_line(*stream);
        c = '\r';
    } else {
        *eol_flag = 0;
        if (c == static_cast<unsigned char>(continuation)) {
            drop_line(*stream);
            c = ' ';
        }
    }
    tok->text[0] = static_cast<char>(c);
    append_to_ring(tok);
}

// Stored input ----------------------------------------------------------------------------------------------

// Append the token to the list whose last record is *tail.
static void store_token(name_node **head, name_node **tail, const token_rec *tok)
{
    name_node *n = nullptr;
    newname(&n);
    std::memcpy(n->text, tok->text, sizeof n->text);
    if (*tail) {
        (*tail)->next = n;
    } else {
        *head = n;
    }
    *tail = n;
}

// True when only blanks stand before the next line end of the terminal.
static bool line_end_pending()
{
    int c = peek_char(Input);
    while (c == ' ' || c == '\t' || c == '\r') {
        ++Input->pos;
        c = peek_char(Input);
    }
    return c == '\n';
}

void save_input_stream(name_node **list)
{
    name_node *head = nullptr;
    name_node *tail = nullptr;
    bool in_definition = false;
    token_rec tok;
    *list = nullptr;
    for (;;) {
        scanner(&Input, &tok, &zilch);
        if (token_is(&tok, "Func") || token_is(&tok, "Function")) in_definition = true;
        if (tok.text[0] == '.' && !is_digit(static_cast<char>(peek_char(Input)))) in_definition = false;
        store_token(&head, &tail, &tok);
        if (tok.text[0] != ';') continue;
        if (!in_definition || input_is_over()) break;
        if (line_end_pending()) ++Input->pos;
    }
    if (head == tail) {
        freename(&head);
        return;
    }
    set_token(&tok, endlist);
    store_token(&head, &tail, &tok);
    *list = head;
}

bool is_line_end(const input_stream *in)
{
    if (token.text[0] != ';' || !tt_flag || leftover[0] || in->pos >= in->end) return false;
    return in->buf[in->pos] == '\n' && (in->pos == 0 || in->buf[in->pos - 1] != ';');
}

bool input_is_over()
{
    return leftover[0] == 0 && peek_char(Input) == end_of_input;
}

}  // namespace kelmar

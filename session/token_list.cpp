// session/token_list.cpp -- reading tokens into stored lists.
//
// A stack of what is open decides: whether a stop word counts, whether a line end ends the statement, is
// dropped (in brackets) or is stored (in a block), and whether "." ends a definition or is a decimal point.
// Words that are keywords only in the head of a loop are told from names by whether an operand has just
// ended.
#include "session/token_list.h"
#include "numbers/decimal.h"  // continuation
#include "session/builtins.h"
#include "session/errors.h"
#include "session/names.h"
#include "session/output.h"
#include "session/report.h"

namespace kelmar {

static constexpr int open_limit = 4096;  // brackets and blocks open at once in one statement

struct open_list {
    list_reader *r;
    name_node **end;  // where the next record goes
    name_node *last;  // the record stored last
    int depth;
    int blocks;             // of what is open: do and if
    bool loop_head;         // outside all brackets stands the head of a loop
    bool operand;           // an operand has just ended
    bool bar;               // an absolute value is open
    bool range_next;        // a `<` would begin the head of a range
    char open[open_limit];  // ( [ < for brackets, d i for blocks, F for definitions
};

// The source ------------------------------------------------------------------------------------------------

void next_token(list_reader *r)
{
    if (r->has_ahead) {
        r->has_ahead = 0;
        token = r->ahead;
        return;
    }
    scanner(r->stream, &token, r->cursor);
}

static inline bool from_stream(const list_reader *r)
{
    return *r->cursor == nullptr;
}

// The next character behind blanks, which are read.
static int next_visible(input_stream *in)
{
    int c = peek_char(in);
    while (c == ' ' || c == '\t' || c == '\r') {
        ++in->pos;
        c = peek_char(in);
    }
    return c;
}

bool line_is_over(input_stream *in)
{
    const int c = next_visible(in);
    return c == '\n' || c == end_of_input || c == static_cast<unsigned char>(continuation);
}

bool input_is_cut(const list_reader *r)
{
    if (token_is(&token, endlist)) return true;
    return token.text[0] == ';' && from_stream(r) && !r->has_ahead && leftover[0] == 0 &&
           peek_char(*r->stream) == end_of_input;
}

bool take_line_end(list_reader *r)
{
    if (!from_stream(r) || !tt_flag || r->has_ahead) return false;
    if (++semicount == 1) last_good_one = last_attached;
    if (semicount >= blank_lines_allowed) {
        semicount = 0;
        error(err_too_many_blank_lines, token.text);
    }
    if (leftover[0] != 0 || next_visible(*r->stream) != '\n') return false;
    ++(*r->stream)->pos;
    return true;
}

// Records ---------------------------------------------------------------------------------------------------

// A blank follows the token in hand.
static bool blank_follows(const list_reader *r)
{
    if (!from_stream(r)) return (*r->cursor)->spaced != 0;
    if (leftover[0] != 0 || r->has_ahead) return false;
    if (is_letter(token.text[0])) return true;  // only a blank leaves nothing over behind a name
    const int c = peek_char(*r->stream);
    return c == ' ' || c == '\t';
}

static void append(open_list *l, const char *text, std::int16_t index, bool spaced)
{
    name_node *n = nullptr;
    newname(&n);
    std::memcpy(n->text, text, std::strlen(text));
    n->index = index;
    n->spaced = spaced;
    *l->end = n;
    l->end = &n->next;
    l->last = n;
}

static void append_token(open_list *l)
{
    std::int16_t index = token.index;
    if (is_lower(token.text[0])) index = hash(token.text, lower_buckets);
    if (is_upper(token.text[0])) index = hash(token.text, upper_buckets);
    append(l, token.text, index, blank_follows(l->r));
    if (is_upper(token.text[0]) && find_built_in(token.text) < 0) l->last->kind = no_builtin;
}

static void begin_list(open_list *l, list_reader *r, name_node **list)
{
    l->r = r;
    l->end = list;
    l->last = nullptr;
    l->depth = l->blocks = 0;
    l->loop_head = l->operand = l->bar = l->range_next = false;
}

static void end_list(open_list *l)
{
    append(l, endlist, 0, false);
}

// Store raw characters up to and including `close`.
static void append_raw(open_list *l, char close, const char *where)
{
    int at_line_end;
    do {
        dumbscanner(l->r->stream, &token, l->r->cursor, &at_line_end);
        if (input_is_cut(l->r)) {
            error(err_end_inside_definition, token.text);
            return;
        }
        if (at_line_end) std::fprintf(Output, " Warning. End of line encountered inside a %s.\n", where);
        append(l, token.text, token.index, false);
    } while (token.text[0] != close);
}

// What is open ----------------------------------------------------------------------------------------------

static inline char innermost(const open_list *l)
{
    return l->depth > 0 ? l->open[l->depth - 1] : 0;
}

static void open_one(open_list *l, char kind)
{
    if (l->depth == open_limit) {
        error(err_too_deep, token.text);
        return;
    }
    l->open[l->depth++] = kind;
    if (kind == 'd' || kind == 'i') ++l->blocks;
}

static void close_one(open_list *l, char kind)
{
    if (innermost(l) != kind) return;
    --l->depth;
    if (kind == 'd' || kind == 'i') --l->blocks;
}

// The head of a range cannot hold the token in hand: it was left open.
static void close_ranges(open_list *l)
{
    while (innermost(l) == '<') --l->depth;
}

static bool begins_range(const token_rec *t)
{
    static constexpr int product_row = 66;
    static constexpr int sum_row = 82;
    const int row = find_built_in(t->text);
    return row == product_row || row == sum_row;
}

// Account for the word just stored.
static void note_word(open_list *l)
{
    l->operand = true;
    if (is_upper(token.text[0])) {
        if (token_is(&token, "Func") || token_is(&token, "Function")) open_one(l, 'F');
        l->range_next = begins_range(&token);
    } else if (token_is(&token, "do")) {
        open_one(l, 'd');
    } else if (token_is(&token, "if")) {
        open_one(l, 'i');
    } else if (token_is(&token, "od")) {
        close_one(l, 'd');
    } else if (token_is(&token, "fi")) {
        close_one(l, 'i');
    }
}

// A bar opens an absolute value where an operand may begin, closes it, or is the sign of the remainder.
static void note_bar(open_list *l)
{
    if (!l->operand) {
        l->bar = true;
    } else if (l->bar) {
        l->bar = false;
    } else {
        l->operand = false;
    }
}

// Account for the mark just stored.
static void note_mark(open_list *l, bool behind_and)
{
    const bool was_operand = l->operand;
    const bool range = l->range_next;
    const char c = token.text[0];
    l->range_next = false;
    l->operand = false;
    switch (c) {
    case '(':
    case '[': open_one(l, c); break;
    case ')':
    case ']':
        if (behind_and) break;
        close_one(l, c == ')' ? '(' : '[');
        l->operand = true;
        break;
    case '<':
        if (range) {
            open_one(l, '<');
        } else {
            l->operand = !was_operand;  // the last value
        }
        break;
    case '>':
        l->range_next = innermost(l) == '<';
        close_one(l, '<');
        break;
    case '!':
    case '"': l->operand = was_operand; break;
    case '|':
        l->operand = was_operand;
        note_bar(l);
        break;
    default: break;
    }
}

// Storing -----------------------------------------------------------------------------------------------

// A ";" stands inside brackets, a block or a definition.
static void store_semicolon(open_list *l)
{
    const char inside = innermost(l);
    const bool again = l->last && l->last->text[0] == ';';
    if (!take_line_end(l->r)) {
        append_token(l);
    } else if (inside != '(' && inside != '[' && !again) {
        append(l, ";", -1, false);
    }
    l->operand = false;
    next_token(l->r);
}

// to and by in the head of a loop, behind an operand, get a leading blank: no name can look like that.
static void mark_keyword(const open_list *l)
{
    const bool head = l->depth == 0 ? l->loop_head : innermost(l) == '<';
    if (!head || !l->operand) return;
    if (token_is(&token, "to")) set_token(&token, " to");
    if (token_is(&token, "by")) set_token(&token, " by");
}

static void store_token(open_list *l)
{
    if (token.text[0] == ';') {
        store_semicolon(l);
        return;
    }
    semicount = 0;
    mark_keyword(l);
    const bool behind_and = l->last && l->last->text[0] == '&';
    append_token(l);
    const char c = token.text[0];
    if (c == '\'') {
        append_raw(l, '\'', "literal");
        l->operand = true;
    } else if (c == '{') {
        append_raw(l, '}', "comment");
    } else if (is_letter(c)) {
        note_word(l);
    } else if (is_digit(c)) {
        l->operand = true;
    } else {
        note_mark(l, behind_and);
    }
    next_token(l->r);
}

// "." is in hand where it would end a definition. It is a decimal point when an operand is missing before it,
// or a digit stands there, and a digit follows. Then it is stored, and the digit is in hand. Otherwise true,
// with the token that was read to see waiting.
static bool ends_definition(open_list *l)
{
    list_reader *r = l->r;
    const bool number = l->last && (is_digit(l->last->text[0]) || !l->operand);
    if (!number) return true;
    if (from_stream(r) && !tt_flag && line_is_over(*r->stream)) return true;  // in a file the line ends it
    const token_rec point = token;
    next_token(r);
    const bool decimal = is_digit(token.text[0]);
    r->ahead = token;
    r->has_ahead = 1;
    token = point;
    if (!decimal) return true;
    append_token(l);
    next_token(r);
    return false;
}

static bool is_closing_word()
{
    return token_is(&token, "od") || token_is(&token, "fi") || token_is(&token, "else");
}

bool at_stop(const char *stop)
{
    if (stop[0] == 'e') return token_is(&token, "else") || token_is(&token, "fi");  // elfi*
    return token_is(&token, stop);
}

// The token in hand ends the list. May store a decimal point on the way.
static bool list_ends(open_list *l, const char *stop)
{
    if (token.text[0] == ';' || token.text[0] == endlist[0] || is_closing_word() || at_stop(stop))
        close_ranges(l);
    if (input_is_cut(l->r)) {
        if (l->depth > 0 || token.text[0] != ';') error(err_end_inside_definition, token.text);
        return true;
    }
    if (is_closing_word() && l->blocks == 0 && innermost(l) != 'F') return true;
    if (token.text[0] == '.' && innermost(l) == 'F') {
        if (!ends_definition(l)) return list_ends(l, stop);
        append_token(l);
        close_one(l, 'F');
        next_token(l->r);
        return list_ends(l, stop);
    }
    if (l->depth > 0) return false;
    if (token.text[0] == ';' || token.text[0] == '{') return true;
    if (!at_stop(stop)) return false;
    return token.text[0] != '.' || ends_definition(l) || list_ends(l, stop);
}

void attach(list_reader *r, const char *stop, bool loop_head, name_node **list)
{
    open_list l;
    begin_list(&l, r, list);
    l.loop_head = loop_head;
    if (loop_head) append(&l, ":", -1, false);
    const name_node *const none = l.last;
    while (!list_ends(&l, stop)) store_token(&l);
    if (l.last == none) error(input_is_cut(r) ? err_end_inside_definition : err_empty_statement, token.text);
    end_list(&l);
    last_attached = loop_head ? (*list)->next : *list;
}

// Ranges ------------------------------------------------------------------------------------------------

static bool is_broken()
{
    return token.text[0] == ';' || token_is(&token, endlist);
}

// Store tokens until what is open is closed again.
static void store_bracketed(open_list *l, int outer)
{
    do {
        const char c = token.text[0];
        const char inside = innermost(l);
        if (is_broken()) {
            error(err_broken_range_body, token.text);
            return;
        }
        if ((c == ')' && inside == '[') || (c == ']' && inside == '(')) {
            error(err_bad_body_end, token.text);
            return;
        }
        if ((c == ')' || c == ']') && inside == '<') {
            error(err_need_close_angle, token.text);
            return;
        }
        store_token(l);
    } while (l->depth > outer);
}

void obtain_expression(list_reader *r, name_node **list)
{
    open_list l;
    begin_list(&l, r, list);
    store_bracketed(&l, 0);
    end_list(&l);
}

void obtain_sum(list_reader *r, name_node **list)
{
    open_list l;
    begin_list(&l, r, list);
    l.range_next = true;
    while (token.text[0] == '<') {
        store_bracketed(&l, 0);
    }
    if (token.text[0] == '[' || token.text[0] == '(') {
        store_bracketed(&l, 0);
    } else {
        error(is_broken() ? err_broken_range_body : err_need_body_bracket, token.text);
    }
    end_list(&l);
}

// Comments ----------------------------------------------------------------------------------------------

void read_comment(list_reader *r, name_node **list)
{
    open_list l;
    begin_list(&l, r, list);
    append_raw(&l, '}', "comment");
    next_token(r);
}

}  // namespace kelmar

// session/list_functions.cpp -- stored tokens back into text.
//
// A body is stored as token lists, so its text is built again: blanks where one was typed behind a word,
// around comparisons, and around + and - outside brackets. Each statement gets a line, indented by the depth
// of its block.
#include "session/list_functions.h"
#include "numbers/decimal.h"
#include "session/func_records.h"
#include "session/loop.h"
#include "session/output.h"
#include "session/pset.h"
#include "session/report.h"

namespace kelmar {

static constexpr int indent_step = 3;  // blanks for each level of nesting

// How a definition is written.
struct listing_form {
    std::FILE *out;
    const char *line_end;  // behind a ";"
};

static void indent(const listing_form *f, int depth)
{
    std::fprintf(f->out, "%*s", depth * indent_step, "");
}

// Tokens ------------------------------------------------------------------------------------------------

static bool ends_operand(const char *text)
{
    const char c = text[0];
    return is_letter(c) || is_digit(c) || c == ')' || c == ']' || c == '.';
}

static bool is_endlist(const name_node *t)
{
    return std::strcmp(t->text, endlist) == 0;
}

// How far the text of a statement has come.
struct text_state {
    const name_node *before;  // the token written last; null: none
    int depth;                // brackets open
    bool quoted;              // between quotes
};

// The tokens make one sign, which no blank may part: := <= <> >=
static bool joined(const char *before, const char *text)
{
    if (text[0] == '=') return before[0] == ':' || before[0] == '<' || before[0] == '>';
    return text[0] == '>' && before[0] == '<';
}

// An operator that stands between blanks.
static bool stands_apart(const text_state *s, const name_node *t)
{
    if (s->quoted || !s->before || t->text[1]) return false;
    const char c = t->text[0];
    if (s->before->text[0] == '&') return false;  // &> is a command
    if (c == '+' || c == '-') return s->depth == 0 && ends_operand(s->before->text);
    if (c == '=' && s->before->text[0] == ':') return true;
    return s->depth == 0 && in_set(cond_set, c);
}

// A blank stands in front of t.
static bool blank_before(const text_state *s, const name_node *t)
{
    const name_node *b = s->before;
    if (!b) return false;
    if (s->quoted || joined(b->text, t->text)) return false;
    return b->spaced || stands_apart(s, t);
}

static void follow(text_state *s, const name_node *t)
{
    const char c = t->text[0];
    if (c == '\'') s->quoted = !s->quoted;
    if (!s->quoted && (c == '(' || c == '[')) ++s->depth;
    if (!s->quoted && (c == ')' || c == ']')) --s->depth;
}

// The token gets a blank behind it, whatever follows: it stands apart, and is no part of a longer sign.
static bool blank_behind(const text_state *s, const name_node *t)
{
    if (t->spaced || s->quoted || t->text[1]) return false;
    if (t->text[0] == ',') return true;
    return stands_apart(s, t) && t->next && !is_endlist(t->next) && !joined(t->text, t->next->text);
}

// Write the tokens from t on, in which a blank stands in front of the keywords to and by.
static void listchars(std::FILE *out, const name_node *t)
{
    text_state s = {nullptr, 0, false};
    bool blank = false;  // the last thing written
    for (; t && !is_endlist(t); t = t->next) {
        const bool keyword = t->text[0] == ' ' && !s.quoted;
        if (!blank && !keyword && blank_before(&s, t)) std::fputc(' ', out);
        std::fputs(t->text + (keyword && blank), out);
        blank = keyword || blank_behind(&s, t);
        if (blank) std::fputc(' ', out);
        follow(&s, t);
        s.before = t;
    }
}

// Statements --------------------------------------------------------------------------------------------

static void write_comments(const listing_form *f, const name_node *heads, int depth)
{
    for (; heads; heads = heads->chain) {
        indent(f, depth);
        std::fputc('{', f->out);
        for (const name_node *t = heads; t; t = t->next) std::fputs(t->text, f->out);
        std::fputc('\n', f->out);
    }
}

static void listrht(const listing_form *f, const form_node *body, int depth);

static void write_block(const listing_form *f, const cond_node *c, int depth)
{
    const bool counted = c->header->text[0] == ':';
    std::fputs(counted ? "for " : c->loop ? "while " : "if ", f->out);
    listchars(f->out, counted ? c->header->next : c->header);
    std::fputs(c->loop ? " do\n" : " then\n", f->out);
    listrht(f, c->then_part, depth + 1);
    indent(f, depth);
    if (c->else_part) {
        std::fputs("else\n", f->out);
        listrht(f, c->else_part, depth + 1);
        indent(f, depth);
    }
    std::fputs(c->loop ? "od" : "fi", f->out);
}

// Write the statements, a line each.
static void listrht(const listing_form *f, const form_node *body, int depth)
{
    check_stack();
    for (; body; body = body->next) {
        write_comments(f, body->comments, depth);
        indent(f, depth);
        if (body->cond->header) {
            write_block(f, body->cond, depth);
        } else {
            listchars(f->out, body->cond->plain);
        }
        if (body->next) {
            std::fputs(f->line_end, f->out);
        } else if (depth > 1) {
            std::fputc('\n', f->out);
        }
    }
}

// Definitions -------------------------------------------------------------------------------------------

static void write_head(std::FILE *out, const func_node *f)
{
    std::fputs(f->text, out);
    if (!f->params) return;
    std::fputc('(', out);
    for (const name_node *p = f->params; p; p = p->next) {
        std::fprintf(out, "%s%s%s", p->kind == 1 ? "^" : "", p->text, p->next ? ", " : "");
    }
    std::fputc(')', out);
}

void listform(std::FILE *out, const func_node *f, bool saved)
{
    char line_end[8] = "; \n";
    if (saved && uglyprint) std::snprintf(line_end, sizeof line_end, "; %c\n", continuation);
    const listing_form form = {out, line_end};
    std::fputs(saved ? "Func " : "Function ", out);
    write_head(out, f);
    std::fputs(" =\n", out);
    listrht(&form, f->body, 1);
    std::fputs(saved ? " .;\n" : " .\n", out);
}

static void write_newer_last(std::FILE *out, const func_node *f, bool saved)
{
    check_stack();
    if (f->next) write_newer_last(out, f->next, saved);
    listform(out, f, saved);
    line_written(out);
}

void list_all_functions(std::FILE *out, bool saved)
{
    for (const func_node *bucket : func_store) {
        if (bucket) write_newer_last(out, bucket, saved);
    }
}

// Lists -------------------------------------------------------------------------------------------------

static void list_older(std::FILE *out, bool saved, const func_node *newest)
{
    for (const func_node *f = newest->next; f; f = f->next) {
        if (std::strcmp(f->text, newest->text) == 0) listform(out, f, saved);
    }
}

// One item, whose first token is in hand; the token behind it is then in hand.
static void list_item(std::FILE *out, bool saved, input_stream **stream, name_node **cursor)
{
    const bool older = token.text[0] == '<';
    if (older) scanner(stream, &token, cursor);
    token_rec name = token;
    const func_node *f = is_upper(name.text[0]) ? find_func(&name) : nullptr;
    if (!is_upper(name.text[0])) {
        std::fprintf(Output, "%s is not a legal function name.\n", name.text);
    } else if (!f) {
        std::fprintf(Output, "%s has not been defined.\n", name.text);
    } else if (older) {
        list_older(out, saved, f);
    } else {
        listform(out, f, saved);
    }
    scanner(stream, &token, cursor);
    if (older && token.text[0] == '>') scanner(stream, &token, cursor);
}

void list_named_functions(std::FILE *out, bool saved, input_stream **stream, name_node **cursor)
{
    list_item(out, saved, stream, cursor);
    while (token.text[0] == ',') {
        scanner(stream, &token, cursor);
        list_item(out, saved, stream, cursor);
    }
}

static void list_names()
{
    for (const func_node *bucket : func_store) {
        for (const func_node *f = bucket; f; f = f->next) {
            write_head(Output, f);
            std::fputc('\n', Output);
        }
    }
}

static bool any_function()
{
    for (const func_node *bucket : func_store) {
        if (bucket) return true;
    }
    return false;
}

void listfuncs(input_stream **stream, name_node **cursor)
{
    if (!any_function()) {
        error(err_no_functions, token.text);
        return;
    }
    if (ends_statement(&token)) {
        list_names();
    } else if (token.text[0] == '*') {
        list_all_functions(Output, false);
        scanner(stream, &token, cursor);
    } else {
        list_named_functions(Output, false, stream, cursor);
    }
}

}  // namespace kelmar

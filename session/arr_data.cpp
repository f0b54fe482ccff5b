// session/arr_data.cpp -- arrays that hold the data of a command.
#include "session/arr_data.h"
#include "matrix/store.h"
#include "numbers/dispatch.h"
#include "poly/mul.h"
#include "poly/variables.h"
#include "session/arr_access.h"
#include "session/report.h"

namespace kelmar {

// The number in entry k of an array of at least that many, or 0.
static std::int32_t whole_entry(const array *a, std::int32_t k)
{
    std::int32_t v = 0;
    const quolynode *q = *store_slot(static_cast<std::int32_t>(a->arr_first) + k);
    if (!q || !q->is_num || !num_to_int(q->num, &v)) {
        error(err_bad_array_content, a->arr_name.text);
        return 0;
    }
    return v;
}

// The ordinary array of that name; null after an error.
static array *plain_array(token_rec *name)
{
    array *a = known_array(name);
    if (!a || !a->arr_sparse) return a;
    error(err_need_plain_array, name->text);
    return nullptr;
}

bool get_from_array(token_rec *name, char *text, int room)
{
    const array *a = plain_array(name);
    text[0] = 0;
    if (!a) return false;
    int count = 0;
    for (; count < a->arr_size && count < room - 1; ++count) {
        const std::int32_t code = whole_entry(a, count);
        if (code <= 0 || code > 255) break;
        text[count] = static_cast<char>(code);
    }
    text[count] = 0;
    return true;
}

// The name in the brackets whose [ is in hand; the token behind ] is in hand then. Null after an error.
static array *read_plain_array(input_stream **stream, name_node **cursor)
{
    scanner(stream, &token, cursor);
    if (!is_lower(token.text[0])) {
        error(err_need_array_bracket, token.text);
        return nullptr;
    }
    token_rec name = token;
    scanner(stream, &token, cursor);
    return expect_and_pass(']', err_need_array_bracket, stream, cursor) ? plain_array(&name) : nullptr;
}

void get_cut_from_array(input_stream **stream, name_node **cursor)
{
    const array *a = read_plain_array(stream, cursor);
    if (!a) return;
    std::int32_t k = 0;
    for (pt *r = polynames; r && k < a->arr_size; r = r->next, ++k) {
        const std::int32_t cut = whole_entry(a, k);
        if (cut > 5) {
            r->cut = cut;
        } else if (k == 0) {
            poly_cutoff = 40;
        }
    }
}

}  // namespace kelmar

// session/int_builtin.cpp -- built-ins on machine integers.
#include "session/int_builtin.h"
#include "numbers/combinat.h"
#include "numbers/mode.h"
#include "session/int_expr.h"
#include "session/report.h"

namespace kelmar {

// Behind a name: `(a, b)`.
static void iread_pair(input_stream **stream, std::int32_t *a, std::int32_t *b, name_node **cursor)
{
    *a = *b = 0;
    scanner(stream, &token, cursor);
    if (!expect_and_pass('(', err_need_open_paren, stream, cursor)) return;
    old_iexpre(stream, a, cursor);
    if (!expect_and_pass(',', err_need_comma, stream, cursor)) return;
    old_iexpre(stream, b, cursor);
    expect_and_pass(')', err_need_close_paren, stream, cursor);
}

static std::int32_t word_binomial(std::int32_t n, std::int32_t k)
{
    if (modularmode) return imod_binom(n, k);
    number coefficient = {};
    lint_binom(n, k, &coefficient);
    return coefficient.word;
}

static std::int32_t word_gcd(std::int32_t a, std::int32_t b)
{
    std::int64_t x = a, y = b;
    while (y != 0) {
        const std::int64_t rest = x % y;
        x = y;
        y = rest;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(x < 0 ? -x : x));
}

int iread_builtin(input_stream **stream, std::int32_t *v, name_node **cursor)
{
    const bool bin = token_is(&token, "Bin");
    if (!bin && !token_is(&token, "GCD")) return 0;
    std::int32_t a, b;
    iread_pair(stream, &a, &b, cursor);
    *v = bin ? word_binomial(a, b) : word_gcd(a, b);
    return 1;
}

}  // namespace kelmar

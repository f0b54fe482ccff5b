// numbers/convert.cpp -- views of a long integer by Horner's rule, from the head down.
//
// The residue is carried in 64 bits: below 2^31 times 2^28 and a digit of either sign fit, so one remainder a
// digit is all, whatever the size of the modulus.
#include "numbers/convert.h"
#include <cstdio>
#include <cstdlib>
#include "numbers/mode.h"
#include "session/report.h"

namespace kelmar {

static constexpr std::int32_t warnings_a_statement = 20;

static std::int32_t residue_of(const numnode *head)
{
    std::int64_t r = 0;
    for (const numnode *node = head; node; node = node->next) {
        r = (r * digit_base + node->digit) % modulus;
    }
    return static_cast<std::int32_t>(r < 0 ? r + modulus : r);
}

static bool may_warn()
{
    return verbose && warn_cnt < warnings_a_statement;
}

static std::int32_t field_code_of(const number *n, int sign)
{
    const std::int32_t last = n->tail->digit;
    if (n->size > 1) {
        if (may_warn()) {
            std::printf(" *** Warning. outsized values encountered. Expect garbage.\n");
            ++warn_cnt;
        }
    } else if (last >= modulus || (last < 0 && sign)) {
        if (may_warn()) {
            std::printf("*** Warning. in going to finite field, outsized value encountered: %d\n", last);
            ++warn_cnt;
        }
    }
    return std::abs(last) % modulus;
}

void change_num(number *n, int give_up, int sign)
{
    n->word = finf ? field_code_of(n, sign) : residue_of(n->head);
    if (give_up) special_free(n);
}

void change_flote(number *n)
{
    double real = n->head->digit;
    for (const numnode *node = n->head->next; node; node = node->next) {
        real = real * static_cast<double>(digit_base) + node->digit;
    }
    n->real = real;
}

}  // namespace kelmar

// numbers/word_mod.cpp -- sums by words out of range, explicit moduli, and inverses.
//
// An inverse of a modulo m is the cofactor of a in the Euclidean algorithm on m and a: each remainder is a
// known multiple of a modulo m, and when the last remainder is 1, that multiple is the inverse.
#include "numbers/word_mod.h"

#include <cstdio>

#include "numbers/primes.h"  // word_node
#include "session/report.h"

namespace kelmar {

// Products -----------------------------------------------------------------------------------------------

// a * b modulo m: in 32 bits when `narrow`, for m < 65535.
static std::int32_t product_mod(std::int32_t a, std::int32_t b, std::int32_t m, bool narrow)
{
    if (narrow) {
        const std::uint32_t p = static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b);
        const std::uint32_t n = static_cast<std::uint32_t>(m);
        return static_cast<std::int32_t>(p >= n ? p % n : p);
    }
    const std::uint64_t p = static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b);
    const std::uint64_t n = static_cast<std::uint64_t>(m);
    return static_cast<std::int32_t>(p >= n ? p % n : p);
}

std::int32_t mod_mult(std::int32_t a, std::int32_t b, std::int32_t m)
{
    return finf ? field_mult(a, b) : product_mod(a, b, m, true);
}

std::int32_t spec_modmult(std::int32_t a, std::int32_t b)
{
    return product_mod(a, b, modulus - 1, smallmodulus != 0);
}

std::int32_t residue_of_count(std::int32_t w)
{
    if (finf) return field_code(w < 0 ? 0 - w : w);
    const std::int32_t r = w % modulus;
    return r < 0 ? r + modulus : r;
}

std::int32_t spec_mod_add(std::int32_t a, std::int32_t b, std::int32_t m)
{
    std::int32_t addend = b;
    if (b < 0) {
        addend = b % m + m;
    } else if (b >= m) {
        addend = b % m;
    }
    std::uint32_t s = static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(addend);
    if (s >= static_cast<std::uint32_t>(m)) s -= static_cast<std::uint32_t>(m);
    return static_cast<std::int32_t>(s);
}

// Inverses -----------------------------------------------------------------------------------------------

// *r = the cofactor of a, 0 .. modulus-1: the inverse when 1 is returned, which is gcd(a, modulus). In a
// table field 0 has gcd 0.
static std::int32_t cofactor_and_gcd(std::int32_t a, std::int32_t *r)
{
    if (finf) {
        const std::int32_t code = field_code(a);
        *r = code == 0 ? 0 : f2t16inv[code];
        return code != 0;
    }
    std::int32_t upper = modulus, lower = a;  // remainders
    std::int64_t u = 0, v = 1;                // upper = u a, lower = v a modulo modulus
    while (lower != 0) {
        const std::int32_t q = upper / lower;
        const std::int32_t rest = upper - q * lower;
        const std::int64_t next = u - q * v;
        upper = lower;
        lower = rest;
        u = v;
        v = next;
    }
    *r = static_cast<std::int32_t>(u < 0 ? u + modulus : u);
    return upper;
}

void mod_inverse(std::int32_t a, std::int32_t *r)
{
    if (a == 0) {
        kelmar_error("bad seca.", 1);
        *r = 0;
        return;
    }
    cofactor_and_gcd(a, r);
}

// The text of residue a, for a message. borrowed until the next call.
static const char *residue_text(std::int32_t a)
{
    static char text[12];
    std::snprintf(text, sizeof text, "%d", a);
    return text;
}

void emod_inverse(std::int32_t a, std::int32_t *r)
{
    if (cofactor_and_gcd(a, r) == 1) return;
    error(err_no_inverse, residue_text(a));
    *r = 0;
}

std::int32_t imod_inverse(std::int32_t a)
{
    std::int32_t r;
    if (cofactor_and_gcd(a, &r) == 1) return r;
    std::printf("bad2: %li\n", static_cast<long>(a));
    error(err_no_inverse, residue_text(a));
    return 0;
}

std::int32_t inverse_prod(const word_node *list)
{
    std::int32_t product = 1;
    for (; list; list = list->next) {
        product = modmult(product, finf ? list->value : spec_mod_add(0, list->value, modulus));
    }
    std::int32_t r;
    mod_inverse(product, &r);
    return r;
}

std::int32_t multi_inverse_prod(const word_node *list, std::int32_t x)
{
    std::int32_t product = 1;
    for (; list; list = list->next) product = modmult(product, mod_sub(x, list->value, modulus));
    std::int32_t r;
    mod_inverse(product, &r);
    return r;
}

}  // namespace kelmar

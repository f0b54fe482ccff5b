#pragma once
// tests/support/flint_polys.h -- polynomials to and from FLINT. Included by the oracle tests alone.

#include <flint/flint.h>
#include <flint/fmpz.h>
#include <flint/fmpz_mpoly.h>
#include <flint/nmod_poly.h>
#include "tests/support/polys.h"

namespace kelmar_test {

// f = p, in the digit view; the first variable of ctx is level 1. No negative exponents.
inline void poly_to_flint(const kelmar::polynode *p, fmpz_mpoly_t f, const fmpz_mpoly_ctx_t ctx)
{
    const std::int32_t vars = static_cast<std::int32_t>(fmpz_mpoly_ctx_nvars(ctx));
    flat_poly terms = flatten(p, vars);
    fmpz_mpoly_zero(f, ctx);
    mpz_t z;
    mpz_init(z);
    fmpz_t c;
    fmpz_init(c);
    std::vector<ulong> exps(static_cast<std::size_t>(vars));
    for (auto &term : terms) {
        for (std::size_t k = 0; k < exps.size(); ++k) exps[k] = static_cast<ulong>(term.first[k]);
        number_to_mpz(term.second, z);
        fmpz_set_mpz(c, z);
        if (!fmpz_is_zero(c)) fmpz_mpoly_push_term_fmpz_ui(f, c, exps.data(), ctx);
    }
    fmpz_mpoly_sort_terms(f, ctx);
    fmpz_clear(c);
    mpz_clear(z);
    free_flat(&terms);
}

// Return f as a nested polynomial in the digit view.
inline kelmar::polynode *poly_from_flint(const fmpz_mpoly_t f, const fmpz_mpoly_ctx_t ctx)
{
    flat_poly terms;
    mpz_t z;
    mpz_init(z);
    fmpz_t c;
    fmpz_init(c);
    std::vector<ulong> exps(static_cast<std::size_t>(fmpz_mpoly_ctx_nvars(ctx)));
    for (slong i = 0; i < fmpz_mpoly_length(f, ctx); ++i) {
        fmpz_mpoly_get_term_exp_ui(exps.data(), f, i, ctx);
        fmpz_mpoly_get_term_coeff_fmpz(c, f, i, ctx);
        fmpz_get_mpz(z, c);
        kelmar::number *n = nullptr;
        kelmar::newimag(&n);
        n->word = 0;
        n->real = 0;
        number_from_mpz(z, n);
        terms.emplace(exponents(exps.begin(), exps.end()), n);
    }
    fmpz_clear(c);
    mpz_clear(z);
    return nest(&terms);
}

// f = p, in the modular view, p in the variable of level 1 alone; f has the modulus already.
inline void poly_to_flint(const kelmar::polynode *p, nmod_poly_t f)
{
    flat_poly terms = flatten(p, 1);
    nmod_poly_zero(f);
    for (auto &term : terms) {
        nmod_poly_set_coeff_ui(f, term.first[0], static_cast<ulong>(term.second->word));
    }
    free_flat(&terms);
}

// Return f as a polynomial in the variable of level 1, in the modular view.
inline kelmar::polynode *poly_from_flint(const nmod_poly_t f)
{
    flat_poly terms;
    for (slong e = 0; e < nmod_poly_length(f); ++e) {
        kelmar::number *n = nullptr;
        kelmar::newimag(&n);
        n->size = 0;
        n->real = 0;
        n->word = static_cast<std::int32_t>(nmod_poly_get_coeff_ui(f, e));
        terms.emplace(exponents{static_cast<std::int32_t>(e)}, n);
    }
    return nest(&terms);
}

}  // namespace kelmar_test

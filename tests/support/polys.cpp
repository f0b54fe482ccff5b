// tests/support/polys.cpp -- random polynomials, the flat form, reference arithmetic, debugging text.
#include "tests/support/polys.h"
#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include "numbers/dispatch.h"
#include "numbers/fresh_number.h"

namespace kelmar_test {

using namespace kelmar;

// Coefficients -------------------------------------------------------------------------------------------

static std::int32_t small_value(test_random *r, std::int32_t size)
{
    const std::int32_t v = 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(size)));
    return r->below(2) == 0 ? v : -v;
}

static std::int32_t random_residue(test_random *r)
{
    const std::uint64_t kind = r->below(8);
    if (kind == 0) return 1;
    if (kind == 1) return modulus - 1;
    return 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus) - 1));
}

static std::int32_t random_word(test_random *r, std::int32_t digits)
{
    if (digits == 1 || r->below(2) == 0) return small_value(r, 99);
    const std::int32_t v = static_cast<std::int32_t>(static_cast<std::uint32_t>(r->engine()));
    return v == 0 ? INT32_MIN : v;
}

static void random_chain(test_random *r, std::int32_t digits, number *n)
{
    mpz_t z;
    mpz_init(z);
    do {
        biased_mpz(r, digits, true, z);
    } while (mpz_sgn(z) == 0);
    number_from_mpz(z, n);
    mpz_clear(z);
}

number *random_coefficient(test_random *r, std::int32_t digits)
{
    number *n = fresh_number();
    switch (live_view()) {
    case view_float: n->real = small_value(r, 99); break;
    case view_field:
    case view_modular: n->word = random_residue(r); break;
    case view_word: n->word = random_word(r, digits); break;
    case view_small: setvalue(small_value(r, 999), n); break;
    case view_digits:
        if (r->below(3) == 0) {
            setvalue(small_value(r, 9), n);
        } else {
            random_chain(r, digits, n);
        }
        break;
    }
    return n;
}

// Flat form ----------------------------------------------------------------------------------------------

void free_flat(flat_poly *terms)
{
    for (auto &term : *terms) free_imag(&term.second);
    terms->clear();
}

static void flatten_below(const polynode *p, exponents *exps, std::size_t level, flat_poly *out)
{
    for (const polynode *t = p; t; t = t->next) {
        (*exps)[level] = t->exp;
        if (t->isnum) {
            number *n = fresh_number();
            num_assign(t->num, n);
            if (!out->emplace(*exps, n).second) ADD_FAILURE() << "a term stands twice";
        } else if (level + 1 == exps->size() && !(t->coef->isnum && !t->coef->next)) {
            ADD_FAILURE() << "more levels than variables";
        } else if (t->coef->isnum && !t->coef->next) {
            number *n = fresh_number();
            num_assign(t->coef->num, n);
            if (!out->emplace(*exps, n).second) ADD_FAILURE() << "a term stands twice";
        } else {
            flatten_below(t->coef, exps, level + 1, out);
        }
    }
    (*exps)[level] = 0;
}

flat_poly flatten(const polynode *p, std::int32_t vars)
{
    flat_poly out;
    exponents exps(static_cast<std::size_t>(vars < 1 ? 1 : vars), 0);
    flatten_below(p, &exps, 0, &out);
    return out;
}

static bool constant_from(const exponents &exps, std::size_t level)
{
    for (std::size_t k = level; k < exps.size(); ++k) {
        if (exps[k] != 0) return false;
    }
    return true;
}

static polynode *test_node(std::int32_t exp, number *num, polynode *coef)
{
    polynode *node = nullptr;
    newpoly(&node);
    node->exp = exp;
    node->next = nullptr;
    node->isnum = num != nullptr;
    if (num) {
        node->num = num;
    } else {
        node->coef = coef;
    }
    return node;
}

using flat_place = flat_poly::iterator;

static polynode *nest_range(flat_place from, flat_place to, std::size_t level)
{
    if (std::next(from) == to && constant_from(from->first, level)) {
        return test_node(0, from->second, nullptr);
    }

    polynode *first = nullptr;
    polynode **end = &first;
    while (from != to) {
        const std::int32_t exp = from->first[level];
        flat_place group = from;
        while (from != to && from->first[level] == exp) ++from;
        polynode *term = nest_range(group, from, level + 1);
        if (exp != 0 || !term->isnum || term->next) term = test_node(exp, nullptr, term);
        *end = term;
        end = &term->next;
    }
    return first;
}

polynode *nest(flat_poly *terms)
{
    for (flat_place t = terms->begin(); t != terms->end();) {
        if (iszero(t->second)) {
            free_imag(&t->second);
            t = terms->erase(t);
        } else {
            ++t;
        }
    }
    polynode *p = nullptr;
    if (terms->empty()) {
        number *zero = fresh_number();
        setvalue(0, zero);
        p = test_node(0, zero, nullptr);
    } else {
        p = nest_range(terms->begin(), terms->end(), 0);
    }
    terms->clear();
    return p;
}

polynode *random_poly(test_random *r, const poly_shape &shape)
{
    flat_poly terms;
    const std::size_t vars = static_cast<std::size_t>(shape.vars < 1 ? 1 : shape.vars);
    std::uint64_t count = 1 + r->below(static_cast<std::uint64_t>(shape.terms));
    const std::uint64_t kind = r->below(16);
    if (kind == 0) count = 0;
    std::vector<bool> missing(vars);
    for (std::size_t k = 0; k < vars; ++k) missing[k] = kind == 1 || kind == 2 || r->below(5) == 0;
    const std::uint64_t range = static_cast<std::uint64_t>(shape.degree - shape.low) + 1;
    for (; count > 0; --count) {
        exponents exps(vars, 0);
        for (std::size_t k = 0; k < vars; ++k) {
            if (missing[k] || r->below(4) == 0) continue;
            exps[k] = shape.low + static_cast<std::int32_t>(r->below(range));
        }
        if (terms.count(exps) == 0) terms.emplace(exps, random_coefficient(r, shape.digits));
    }
    return nest(&terms);
}

// Reference arithmetic -----------------------------------------------------------------------------------

// Add n to the coefficient at exps; n is taken.
static void add_flat(flat_poly *terms, const exponents &exps, number *n)
{
    const auto [place, fresh] = terms->emplace(exps, n);
    if (fresh) return;
    num_add(place->second, n, place->second);
    free_imag(&n);
}

static polynode *combine(const polynode *a, const polynode *b, std::int32_t vars, bool minus)
{
    flat_poly terms = flatten(a, vars);
    flat_poly other = flatten(b, vars);
    for (auto &term : other) {
        if (minus) in_place_neg(term.second);
        add_flat(&terms, term.first, term.second);
    }
    return nest(&terms);
}

polynode *reference_sum(const polynode *a, const polynode *b, std::int32_t vars)
{
    return combine(a, b, vars, false);
}

polynode *reference_difference(const polynode *a, const polynode *b, std::int32_t vars)
{
    return combine(a, b, vars, true);
}

polynode *reference_product(const polynode *a, const polynode *b, std::int32_t vars)
{
    flat_poly left = flatten(a, vars), right = flatten(b, vars), terms;
    for (auto &s : left) {
        for (auto &t : right) {
            exponents exps = s.first;
            for (std::size_t k = 0; k < exps.size(); ++k) exps[k] += t.first[k];
            number *n = fresh_number();
            num_mul(s.second, t.second, n);
            add_flat(&terms, exps, n);
        }
    }
    free_flat(&left);
    free_flat(&right);
    return nest(&terms);
}

// Text ---------------------------------------------------------------------------------------------------

static std::string chain_text(const number *n)
{
    if (n->size < 1) return "no chain";
    mpz_t z;
    mpz_init(z);
    number_to_mpz(n, z);
    char *decimal = mpz_get_str(nullptr, 10, z);
    const std::string text = decimal;
    std::free(decimal);
    mpz_clear(z);
    return text;
}

std::string number_text(const number *n)
{
    char text[40];
    switch (live_view()) {
    case view_float: std::snprintf(text, sizeof text, "%.17g", n->real); return text;
    case view_field:
    case view_modular:
    case view_word: return std::to_string(n->word);
    case view_small: return std::to_string(n->head->digit);
    case view_digits: return chain_text(n);
    }
    return "";
}

static void write_list(const polynode *p, std::string *out)
{
    *out += '{';
    for (const polynode *t = p; t; t = t->next) {
        if (t != p) *out += ", ";
        if (t->isnum) {
            if (t->exp != 0) *out += std::to_string(t->exp);
            *out += '#' + number_text(t->num);
        } else {
            *out += std::to_string(t->exp);
            write_list(t->coef, out);
        }
    }
    *out += '}';
}

std::string poly_text(const polynode *p)
{
    if (!p) return "null";
    std::string out;
    write_list(p, &out);
    return out;
}

static polynode *read_list(const char **text)
{
    polynode *first = nullptr;
    polynode **end = &first;
    ++*text;  // the opening brace
    while (**text != '}') {
        char *stop = nullptr;
        const std::int32_t exp = static_cast<std::int32_t>(std::strtol(*text, &stop, 10));
        *text = stop;
        polynode *term = nullptr;
        if (**text == '#') {
            number *n = fresh_number();
            const double v = std::strtod(*text + 1, &stop);
            if (live_view() == view_float) {
                n->real = v;
            } else {
                setvalue(static_cast<std::int32_t>(v), n);
            }
            *text = stop;
            term = test_node(exp, n, nullptr);
        } else {
            term = test_node(exp, nullptr, read_list(text));
        }
        *end = term;
        end = &term->next;
        while (**text == ',' || **text == ' ') ++*text;
    }
    ++*text;
    return first;
}

polynode *poly_of_text(const char *text)
{
    return read_list(&text);
}

// The audit ----------------------------------------------------------------------------------------------

poly_audit::poly_audit() : polynodes(live_polynodes())
{
}

void poly_audit::expect_unchanged(const char *where) const
{
    numbers.expect_unchanged(where);
    EXPECT_EQ(live_polynodes(), polynodes) << "polynomial nodes are out: " << where;
}

poly_operand::~poly_operand()
{
    free_poly(&p);
}

}  // namespace kelmar_test

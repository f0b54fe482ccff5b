// Polynomials taken to another ground ring and back: values against GMP, structure byte for byte, and
// brackets that are left by errors, panic stops and interrupts.
#include "poly/ring_change.h"
#include <gtest/gtest.h>
#include <sstream>
#include "numbers/convert.h"
#include "numbers/dispatch.h"
#include "poly/variables.h"
#include "session/errors.h"
#include "session/report.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/ring_brackets.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(200, 3000);

constexpr std::int32_t moduli[] = {2,     3,     7,          101,        256,       65521,
                                   65535, 65536, 2147483629, 2147483646, 1000000007};

// Addresses, exponents, links and digits of all records of p: what must be as it was.
void write_records(const polynode *p, std::ostringstream *out)
{
    for (; p; p = p->next) {
        *out << p << ' ' << p->exp << ' ' << p->isnum << ' ' << p->next << ' ';
        if (!p->isnum) {
            *out << p->coef << '(';
            write_records(p->coef, out);
            *out << ')';
            continue;
        }
        *out << p->num << ' ' << p->num->head << ' ' << p->num->tail << ' ' << p->num->size << ':';
        for (const numnode *d = p->num->head; d; d = d->next) *out << d->digit << ',';
    }
}

std::string records_of(const polynode *p)
{
    std::ostringstream out;
    write_records(p, &out);
    return out.str();
}

poly_shape some_shape(test_random *r)
{
    poly_shape shape;
    shape.vars = 1 + static_cast<std::int32_t>(r->below(4));
    shape.terms = 1 + static_cast<std::int32_t>(r->below(12));
    shape.degree = 1 + static_cast<std::int32_t>(r->below(4));
    shape.digits = 1 + static_cast<std::int32_t>(r->below(3));
    return shape;
}

// Draw a polynomial of which most numbers are multiples of m.
polynode *often_vanishing(test_random *r, const poly_shape &shape, std::int32_t m)
{
    polynode *p = random_poly(r, shape);
    flat_poly terms = flatten(p, shape.vars);
    free_poly(&p);
    for (auto &term : terms) {
        if (r->below(4) == 0) continue;
        number *factor = nullptr;
        newimag(&factor);
        factor->size = 0;
        special_set(m, factor);
        num_mul(term.second, factor, term.second);
        free_imag(&factor);
    }
    return nest(&terms);
}

// The residues of the flat form of p, read off its digits by GMP.
std::map<exponents, std::int32_t> residues_of(const polynode *p, std::int32_t vars, std::int32_t m)
{
    std::map<exponents, std::int32_t> residues;
    flat_poly terms = flatten(p, vars);
    mpz_t z;
    mpz_init(z);
    for (auto &term : terms) {
        number_to_mpz(term.second, z);
        const std::int32_t v = static_cast<std::int32_t>(mpz_fdiv_ui(z, static_cast<unsigned long>(m)));
        if (v != 0) residues[term.first] = v;
    }
    mpz_clear(z);
    free_flat(&terms);
    return residues;
}

std::map<exponents, std::int32_t> words_of(const polynode *p, std::int32_t vars)
{
    std::map<exponents, std::int32_t> words;
    if (!p) return words;
    flat_poly terms = flatten(p, vars);
    for (auto &term : terms) words[term.first] = term.second->word;
    free_flat(&terms);
    return words;
}

std::string ring_text()
{
    std::ostringstream out;
    for (std::int32_t *flag : view_flag) out << *flag << ' ';
    out << two28_mod << ' ' << interrupts_held << ' ' << innermost_ring << ' ' << masterfix;
    return out.str();
}

}  // namespace

TEST(PolyChangeToMod, GivesTheResiduesAndComesBackByteForByte)
{
    test_random r;
    in_view digits(view_digits);
    const poly_audit audit;
    for (int round = 0; round < rounds; ++round) {
        const std::int32_t m = moduli[r.below(std::size(moduli))];
        const poly_shape shape = some_shape(&r);
        poly_operand p(r.below(2) ? random_poly(&r, shape) : often_vanishing(&r, shape, m));
        const auto wanted = residues_of(p.p, shape.vars, m);
        const std::string before = records_of(p.p), ring = ring_text();
        ring_bracket b;
        enter_any_modulus(m, &b);
        EXPECT_EQ(live_view(), view_modular);
        poly_change_to_mod(&p.p, 1);
        EXPECT_TRUE(!p.p || poly_is_normal(p.p, shape.vars));
        EXPECT_EQ(words_of(p.p, shape.vars), wanted);
        leave_ring(&b);
        ASSERT_EQ(records_of(p.p), before);
        ASSERT_EQ(ring_text(), ring);
    }
    audit.expect_unchanged("conversions and back");
}

TEST(PolyChangeToMod, NegativeExponentsBehindANumberStay)
{
    in_view digits(view_digits);
    laurent = 1;
    poly_operand p(poly_of_text("{2{#14}, 0{1{#7}, #3, -1{#7}}, -1{#2}, -2{#7}, -3{#5}}"));
    const std::string before = records_of(p.p);
    ring_bracket b;
    enter_modulus(7, &b);
    poly_change_to_mod(&p.p, 1);
    EXPECT_EQ(poly_text(p.p), "{#3, -1{#2}, -3{#5}}");
    leave_ring(&b);
    laurent = 0;
    EXPECT_EQ(records_of(p.p), before);
}

TEST(PolyChangeToMod, AllTermsMayVanish)
{
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{2{1{#7}}, 1{#14}, #21}"));
    const std::string before = records_of(p.p);
    ring_bracket b;
    enter_modulus(7, &b);
    poly_change_to_mod(&p.p, 1);
    EXPECT_EQ(p.p, nullptr);
    leave_ring(&b);
    EXPECT_EQ(records_of(p.p), before);
}

TEST(PolyChangeToMod, OneRecordPerVanishedRunOfTerms)
{
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{9{#1}, 8{#7}, 7{#7}, 6{#7}, 5{#1}, 4{#1}, 3{#7}, #1}"));
    ring_bracket b;
    enter_modulus(7, &b);
    poly_change_to_mod(&p.p, 1);
    int inner = 0, count = 0;
    for (const fix_node *f = masterfix; f; f = f->next) {
        ++count;
        if (f->saved && f->saved->exp == 0) ++inner;  // a coefficient that vanished below its term
    }
    EXPECT_EQ(count - inner, 2);
    EXPECT_EQ(inner, 4);
    leave_ring(&b);
}

TEST(PolyChangeToMod, OfNothingIsNothing)
{
    in_view digits(view_digits);
    ring_bracket b;
    polynode *none = nullptr;
    enter_modulus(7, &b);
    poly_change_to_mod(&none, 1);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(masterfix, nullptr);
    leave_ring(&b);
}

TEST(PolyChangeNum, DropsWhatVanishesAndTheDigits)
{
    test_random r;
    const poly_audit audit;
    for (int round = 0; round < rounds; ++round) {
        const std::int32_t m = moduli[r.below(std::size(moduli))];
        in_view digits(view_digits);
        const poly_shape shape = some_shape(&r);
        poly_operand p(r.below(2) ? random_poly(&r, shape) : often_vanishing(&r, shape, m));
        const auto wanted = residues_of(p.p, shape.vars, m);
        in_view residues(view_modular, m);
        set_modulus(m);
        poly_change_num(&p.p);
        EXPECT_TRUE(!p.p || poly_is_normal(p.p, shape.vars));
        EXPECT_EQ(words_of(p.p, shape.vars), wanted);
    }
    audit.expect_unchanged("conversions for good");
}

TEST(PolyChangeFromMod, TakesLargeResiduesAsNegativeOrNot)
{
    in_view residues(view_modular, 7);
    const auto back = [](std::int32_t form) {
        poly_operand p(poly_of_text("{2{#6}, 1{#3}, #4}"));
        alt_form_display = form;
        poly_change_from_mod(p.p);
        alt_form_display = 1;
        in_view digits(view_digits);
        const std::string text = poly_text(p.p);
        free_poly(&p.p);
        return text;
    };
    EXPECT_EQ(back(1), "{2{#-1}, 1{#3}, #-3}");
    EXPECT_EQ(back(0), "{2{#6}, 1{#3}, #4}");
}

TEST(PolyChangeFromMod, LargeWordsGetTwoDigits)
{
    in_view residues(view_modular, 2147483629);
    poly_operand p(poly_of_text("{#2147483628}"));
    p.p->num->word = 1073741814;
    poly_change_from_mod(p.p);
    expect_digits(p.p->num, {3, 1073741814 - 3 * digit_base});
    p.p->num->word = 1073741815;
    poly_change_from_mod(p.p);
    expect_digits(p.p->num, {-3, -(1073741814 - 3 * digit_base)});
    in_view digits(view_digits);
    free_poly(&p.p);
}

TEST(PolyChangeRatio, DividesInDoublesAlsoBeyondTheirRange)
{
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{2{#6}, 1{#1}, #3}"));
    number unit;
    unit.size = 0;
    mpz_t z;
    mpz_init(z);
    mpz_ui_pow_ui(z, 10, 400);
    number_from_mpz(z, &unit);
    mpz_mul_ui(z, z, 5);
    special_free(p.p->next->coef->num);
    number_from_mpz(z, p.p->next->coef->num);
    mpz_clear(z);
    poly_change_ratio(&p.p, &unit);
    special_free(&unit);
    in_view doubles(view_float);
    EXPECT_EQ(poly_text(p.p), "{1{#5}}");
    free_poly(&p.p);
}

TEST(LogOrderField, MultipliesTheDegreesOfTheRelations)
{
    prepare_session_once();
    in_view digits(view_digits);
    std::int32_t log = 0;
    insert_poly_name("y", 0, 0);
    insert_poly_name("x", 0, 0);
    polynames->next->relation = poly_of_text("{3{#1}, #1}");
    log_order_field(&log, 1);
    EXPECT_EQ(log, 3);
    set_table_field(256);
    log_order_field(&log, 1);
    EXPECT_EQ(log, 24);
    set_table_field(65536);
    log_order_field(&log, 3);
    EXPECT_EQ(log, 16);
    finf = f2t16 = 0;
    delete_poly_name(1);
    delete_poly_name(1);
}

// Brackets ------------------------------------------------------------------------------------------------

TEST(RingBracket, SetsTheModulusAndWhatGoesWithIt)
{
    in_view digits(view_digits);
    for (const std::int32_t m : {65521, 65535, 65536, 65537, 2147483646, 2147483629, 2, 3}) {
        ring_bracket b;
        enter_any_modulus(m, &b);
        EXPECT_EQ(modulus, m);
        EXPECT_EQ(half_modulus, m / 2);
        EXPECT_EQ(smallmodulus, m < 65535);
        EXPECT_EQ(two28_mod, digit_base % m);
        EXPECT_EQ(mod_is_prime, m == 65521 || m == 65537 || m == 2147483629 || m < 4);
        EXPECT_EQ(finf, 0);
        leave_ring(&b);
    }
}

TEST(RingBracket, NestsInAFloatingSession)
{
    in_view floats(view_float);
    const std::string ring = ring_text();
    ring_bracket exact, residues;
    enter_exact(&exact);
    EXPECT_EQ(live_view(), view_digits);
    const std::string between = ring_text();
    enter_modulus(5, &residues);
    EXPECT_EQ(live_view(), view_modular);
    leave_ring(&residues);
    EXPECT_EQ(ring_text(), between);
    leave_ring(&exact);
    EXPECT_EQ(ring_text(), ring);
    EXPECT_EQ(flotemode && lintmode, 1);
}

TEST(RingBracket, IsLeftByAnError)
{
    prepare_session_once();
    in_view digits(view_digits);
    const poly_audit audit;
    poly_operand p(poly_of_text("{2{1{#7}, #3}, 1{#14}, 0{1{#7}, #2}}"));
    const std::string before = records_of(p.p), ring = ring_text();
    ring_bracket outer, inner;
    EXPECT_EQ(caught_error([&] {
                  enter_modulus(7, &outer);
                  poly_change_to_mod(&p.p, 1);
                  enter_modulus(11, &inner);
                  error(err_no_inverse, "0");
              }),
              err_no_inverse);
    EXPECT_EQ(records_of(p.p), before);
    EXPECT_EQ(ring_text(), ring);
    free_poly(&p.p);
    audit.expect_unchanged("an error in a bracket");
}

namespace {

// Interrupt a stretch of residues modulo 7, and answer it by the statements. Returns what is written.
std::string interrupted_stretch(poly_operand *p, const char *answers, bool *came_back)
{
    input_stream text;
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *const shown = Output;
    input_stream *const input = Input;
    open_text(&text, reinterpret_cast<const unsigned char *>(answers), std::strlen(answers));
    Input = &text;
    ring_bracket b;
    *came_back = false;
    caught_error([&] {
        Output = open_memstream(&bytes, &size);
        enter_modulus(7, &b);
        poly_change_to_mod(&p->p, 1);
        const std::string inside = records_of(p->p);
        interrupt_flag = 1;
        poll_interrupt();
        EXPECT_EQ(live_view(), view_modular);
        EXPECT_EQ(modulus, 7);
        EXPECT_EQ(records_of(p->p), inside);
        *came_back = true;
        leave_ring(&b);
    });
    if (bytes || size) std::fflush(nullptr);
    std::string told;
    if (bytes) told.assign(bytes, size);
    Output = shown;
    Input = input;
    return told;
}

constexpr const char *delicate = "You have interrupted at a delicate time. Kelmar had switched";

}  // namespace

TEST(RingBracket, ALevelInsideWorksInTheRingOfTheSession)
{
    prepare_session_once();
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{2{1{#7}, #3}, 1{#14}, 0{1{#7}, #2}}"));
    const std::string before = records_of(p.p), ring = ring_text();
    bool came_back;
    danger_ok = 1;
    const std::string told = interrupted_stretch(&p, "\n2^70\n&_p\n", &came_back);
    danger_ok = 0;
    EXPECT_TRUE(came_back);
    EXPECT_NE(told.find("1180591620717411303424"), std::string::npos) << told;
    EXPECT_NE(told.find(delicate), std::string::npos) << told;
    EXPECT_EQ(records_of(p.p), before);
    EXPECT_EQ(ring_text(), ring);
}

TEST(RingBracket, APanicStopInALevelInsideRestoresAll)
{
    prepare_session_once();
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{2{1{#7}, #3}, 1{#14}, 0{1{#7}, #2}}"));
    const std::string before = records_of(p.p), ring = ring_text();
    bool came_back;
    danger_ok = 1;
    interrupted_stretch(&p, "\n&@\n", &came_back);
    danger_ok = 0;
    EXPECT_FALSE(came_back);
    EXPECT_EQ(records_of(p.p), before);
    EXPECT_EQ(ring_text(), ring);
}

TEST(RingBracket, InterruptsWaitUnlessTheUserAllowsThem)
{
    prepare_session_once();
    in_view digits(view_digits);
    poly_operand p(poly_of_text("{1{#8}, #14}"));
    const std::string before = records_of(p.p);
    bool came_back;
    const std::string told = interrupted_stretch(&p, "\n&@\n", &came_back);
    EXPECT_TRUE(came_back);
    EXPECT_EQ(told, "");
    EXPECT_EQ(interrupt_flag, 1);
    interrupt_flag = 0;
    EXPECT_EQ(records_of(p.p), before);
}

TEST(RingBracket, ALevelInAnExactStretchOfAFloatingSessionHasFloats)
{
    prepare_session_once();
    in_view floats(view_float);
    session_flote = 1;
    poly_operand p;
    const std::string ring = ring_text();
    ring_bracket b;
    enter_exact(&b);
    p.p = poly_of_text("{1{#8}, #14}");
    const std::string before = records_of(p.p);
    bool came_back;
    danger_ok = 1;
    const std::string told = interrupted_stretch(&p, "\n1/4\n&_p\n", &came_back);
    danger_ok = 0;
    EXPECT_TRUE(came_back);
    EXPECT_NE(told.find("0.25"), std::string::npos) << told;
    EXPECT_EQ(records_of(p.p), before);
    free_poly(&p.p);
    leave_ring(&b);
    EXPECT_EQ(ring_text(), ring);
    session_flote = 0;
}

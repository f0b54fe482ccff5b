// The ground ring of a session and all that is stored: round trips of random data.
#include "session/change_prec.h"
#include <gtest/gtest.h>
#include "numbers/random.h"
#include "poly/div_karat.h"
#include "poly/mul.h"
#include "poly/variables.h"
#include "quoly/charpoly_data.h"
#include "quoly/owned.h"
#include "quoly/ring_change.h"
#include "session/errors.h"
#include "session/evaluator.h"
#include "session/names.h"
#include "session/levels.h"
#include "session/report.h"
#include "session/stored_values.h"
#include "tests/support/by_build.h"
#include "tests/support/quolys.h"
#include "tests/support/session_text.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(20, 200);

// An exact session, in the digit view.
struct exact_statements {
    exact_statements()
    {
        prepare_session_once();
        exact_session = 1;
        flotemode = lintmode = modularmode = 0;
    }
    ~exact_statements()
    {
        if (modularmode) leave_modular(false);
        exact_session = 0;
        alt_form_display = 1;
    }
};

std::string number_text_between(test_random *r, std::int64_t bound)
{
    const std::int64_t v = static_cast<std::int64_t>(r->below(static_cast<std::uint64_t>(2 * bound + 1))) -
                           bound;
    return v < 0 ? "(" + std::to_string(v) + ")" : std::to_string(v);
}

// A polynomial in x and y with numbers up to the bound.
std::string polynomial_text(test_random *r, std::int64_t bound)
{
    std::string text = number_text_between(r, bound);
    for (std::uint64_t k = r->below(6); k > 0; --k) {
        text += " + " + number_text_between(r, bound) + "*x^" + std::to_string(r->below(4)) + "*y^" +
                std::to_string(r->below(3));
    }
    return text;
}

}  // namespace

TEST(ChangePrec, SmallValuesComeBackFromEveryModulus)
{
    const exact_statements session;
    test_random r;
    std::string values, show;
    for (int k = 0; k < rounds; ++k) {
        values += "v" + std::to_string(k) + " := " + polynomial_text(&r, 1) + ":\n";
        show += "v" + std::to_string(k) + "\n";
    }
    session_text("&(J = y)\n&(J = x)\n" + values);
    const std::string before = session_text(show);
    for (const char *m : {"17", "101", "65521", "65535", "2147483629", "2147483646"}) {
        session_text("&(p = " + std::string(m) + ")\n&(p = _i)\n");
        ASSERT_EQ(session_text(show), before) << "modulo " << m;
    }
    session_text("&(p = 17)\n&(p = 101)\n&p\n");
    EXPECT_EQ(session_text(show), before);
    session_text("&(J = -x)\n&(J = -y)\n");
}

TEST(ChangePrec, LargeValuesComeBackSymmetric)
{
    const exact_statements session;
    test_random r;
    for (int k = 0; k < rounds; ++k) {
        const std::string v = number_text_between(&r, 1000000000000);
        const std::string m = std::to_string(2 + r.below(2147483600));
        session_text("a := " + v + ":\n&(p = " + m + ")\n&(p = _i)\nb := a:\na := " + v + ":\n");
        if (m == "256" || m == "65536") continue;
        EXPECT_EQ(last_value("(a - b) | " + m), "0") << v << " modulo " << m;
        const std::int64_t back = std::stoll(last_value("b"));
        EXPECT_LE(back, std::stoll(m) / 2);
        EXPECT_GE(back, -(std::stoll(m) / 2));
    }
}

TEST(ChangePrec, RunningValuesFollow)
{
    const exact_statements session;
    quolynode *one = nullptr, *same = nullptr;
    quoly_set(-1, &one);
    own(&one);
    own(&one);
    own(&same);
    enter_modular(101, false, false);
    EXPECT_EQ(one->num->word, 100);
    EXPECT_EQ(same, nullptr);
    leave_modular(false);
    disown();
    disown();
    disown();
    expect_digits(one->num, {-1});
    free_quoly(&one);
}

TEST(ChangePrec, SetsWhatGoesWithTheRing)
{
    const exact_statements session;
    insert_poly_name("x", 0, 0);
    reset_cutoffs(20);
    pt *const x = polynames;
    x->cut = 33;
    insert_poly_name("y", 0, 0);
    enter_modular(97, false, false);
    EXPECT_EQ(poly_cutoff, 40);
    EXPECT_EQ(polynames->cut, 40);
    EXPECT_EQ(x->cut, 33);
    EXPECT_EQ(div_poly_cutoff, 25);
    EXPECT_EQ(limit_char_arrays, 97);
    EXPECT_EQ(was_in_rat, 0);
    EXPECT_EQ(two28_mod, digit_base % 97);
    EXPECT_EQ(rand_denom_n.word, 1);
    leave_modular(false);
    EXPECT_EQ(div_poly_cutoff, 6);
    EXPECT_EQ(limit_char_arrays, 998);
    EXPECT_EQ(was_in_rat, 1);
    EXPECT_EQ(modulus, -1);
    expect_digits(&rand_denom_n, {1});
    delete_poly_name(1);
    delete_poly_name(1);
    reset_cutoffs(20);
}

TEST(ChangePrec, IsRefusedAfterARelationChanged)
{
    const exact_statements session;
    enter_modular(7, false, false);
    changed_in_modmode = 1;
    EXPECT_EQ(caught_error([] { leave_modular(false); }), err_ring_already_changed);
    EXPECT_EQ(live_view(), view_modular);
    changed_in_modmode = 0;
}

TEST(ChangePrec, IsRefusedInAFloatingSession)
{
    prepare_session_once();
    in_view floats(view_float);
    EXPECT_EQ(error_in_view([] { enter_modular(7, false, false); }), err_wrong_ring);
    EXPECT_EQ(live_view(), view_float);
}

TEST(ChangePrec, BadModuliAreErrors)
{
    const exact_statements session;
    for (const std::int32_t m : {0, 1, -1, 2147483647}) {
        EXPECT_EQ(caught_error([m] { enter_modular(m, false, false); }), err_bad_modulus);
        EXPECT_EQ(live_view(), view_digits);
    }
}

TEST(ChangePrec, NothingLeaksInManyChanges)
{
    const exact_statements session;
    session_text("&(J = x)\na := (x + 1)^5/(3*x^2 + 7):\nb := 22/7:\nc := 2^200:\n");
    const auto change = [] { session_text("&(p = 101)\n&(p = 256)\n&(p = 2147483629)\n&(p = _i)\n"); };
    change();
    const poly_audit audit;
    for (int k = 0; k < rounds; ++k) change();
    audit.expect_unchanged("ring changes");
    session_text("&(J = -x)\n");
}

TEST(StoredValues, EachIsMetOnce)
{
    const exact_statements session;
    static int met;
    met = 0;
    const auto count = [] {
        met = 0;
        for_each_stored([](quolynode **) { ++met; });
        return met;
    };
    const int before = count();
    quolynode *values[3] = {};
    for (quolynode *&q : values) quoly_set(5, &q);
    for (int k = 0; k < 3000; ++k) own(&values[k % 3]);
    EXPECT_EQ(count(), before + 3);
    for (int k = 0; k < 3000; ++k) disown();
    for (quolynode *&q : values) free_quoly(&q);
}

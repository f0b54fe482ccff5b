// Roots of the order of the characteristic.
#include "quoly/pth_root.h"
#include <gtest/gtest.h>
#include "poly/power.h"
#include "session/errnums.h"
#include "tests/support/mul_operands.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

TEST(PthRoot, UndoesThePower)
{
    test_random r;
    for (std::int32_t p : {2, 3, 7, 101}) {
        in_view live(view_modular, p);
        mod_is_prime = 1;
        for (int k = 0; k < 60; ++k) {
            poly_shape shape;
            shape.vars = 3;
            poly_operand root(random_poly(&r, shape)), power;
            poly_assign(root.p, &power.p);
            compute_power(&power.p, p, nilpol);
            ASSERT_EQ(pth_root(&power.p), 1);
            ASSERT_EQ(poly_text(power.p), poly_text(root.p)) << "seed " << r.seed;
        }
    }
}

TEST(PthRoot, DeclinesAndLeavesWhatIsNoPower)
{
    in_view live(view_modular, 7);
    mod_is_prime = 1;
    poly_operand p(poly_of_text("{14{1{#1}}, #1}"));
    EXPECT_EQ(pth_root(&p.p), 0);
    EXPECT_EQ(poly_text(p.p), "{14{1{#1}}, #1}");
    mod_is_prime = 0;
    poly_operand q(poly_of_text("{14{7{#1}}, #1}"));
    EXPECT_EQ(pth_root(&q.p), 0);
}

TEST(QuolyPthRoot, NumbersAreTheirOwnRootsAndOthersAnError)
{
    in_view live(view_modular, 7);
    mod_is_prime = 1;
    value_operand n("{#3}"), p("{7{#3}}"), q("{6{#3}}");
    quoly_pth_root(&n.q);
    EXPECT_EQ(value_text(n.q), "{#3}");
    quoly_pth_root(&p.q);
    EXPECT_EQ(value_text(p.q), "{1{#3}}");
    EXPECT_EQ(error_in_view([&] { quoly_pth_root(&q.q); }), err_no_pth_root);
    EXPECT_EQ(value_text(q.q), "{6{#3}}");
}

}  // namespace

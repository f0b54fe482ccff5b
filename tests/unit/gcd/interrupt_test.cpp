// Gcds, contents and decompositions that are interrupted at any moment write to no operand and lose nothing.
#include <csignal>
#include <sys/time.h>
#include "gcd/content.h"
#include "gcd/emgcd.h"
#include "gcd/extended.h"
#include "gcd/float_gcd.h"
#include "gcd/onevar_gcd.h"
#include "gcd/polygcd.h"
#include "gcd/square_free.h"
#include "poly/mul_work.h"
#include "poly/onevar.h"
#include "session/report.h"
#include "tests/support/divisions.h"
#include "tests/support/fields.h"
#include "tests/support/reports.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

void on_alarm(int)
{
    interrupt_flag = 1;
}

void set_alarm(int microseconds)
{
    itimerval t = {};
    t.it_value.tv_usec = microseconds;
    setitimer(ITIMER_REAL, &t, nullptr);
}

// Interrupt f after 1, 2, .. microseconds, ever longer, until it comes back.
template <class F> void expect_harmless_interrupts(const char *what, polynode *a, polynode *b, F f)
{
    const std::string texts = poly_text(a) + poly_text(b);
    std::signal(SIGALRM, on_alarm);
    bool came_back = false;
    int left = 0;
    for (int delay = 1; !came_back && delay < 900000; delay += 1 + delay / 3) {
        const poly_audit audit;
        interrupt_flag = delay == 1;
        if (delay > 1) set_alarm(delay);
        report_of([&] {
            f();
            came_back = true;
        });
        set_alarm(0);
        interrupt_flag = 0;
        left += !came_back;
        EXPECT_EQ(poly_text(a) + poly_text(b), texts) << what;
        release_work();
        audit.expect_unchanged(what);
    }
    EXPECT_TRUE(came_back) << what;
    EXPECT_GT(left, 0) << what;
    std::signal(SIGALRM, SIG_DFL);
}

polynode *random_words(test_random *r, std::int32_t degree)
{
    std::vector<std::int32_t> x(static_cast<std::size_t>(degree) + 1);
    for (std::int32_t &c : x)
        c = 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(modulus) - 1));
    polynode *p = nullptr;
    array_to_poly(x.data(), degree, &p);
    return p;
}

polynode *result, *second, *third;  // outlive the frame that is left

void release_results()
{
    free_poly(&result);
    free_poly(&second);
    free_poly(&third);
}

TEST(GcdInterrupt, InOneVariable)
{
    test_random r;
    six_in_force names;
    const in_field live(101);
    const poly_operand a(random_words(&r, 120)), b(random_words(&r, 110));
    expect_harmless_interrupts("emgcd_poly", a.p, b.p, [&] {
        emgcd_poly(a.p, b.p, &result, nilpol, 1);
        release_results();
    });
    expect_harmless_interrupts("egcd_polys", a.p, b.p, [&] {
        egcd_polys(a.p, b.p, &result, &second, &third, names.names(), 0);
        release_results();
    });
}

TEST(GcdInterrupt, OverDoubles)
{
    test_random r;
    in_view live(view_float);
    const poly_shape shape = {1, 60, 80, 0, 1};
    const poly_operand a(random_divisor(&r, shape)), b(random_divisor(&r, shape));
    expect_harmless_interrupts("fl_basic_poly_gcd", a.p, b.p, [&] {
        fl_basic_poly_gcd(a.p, b.p, &result, 1, nilpol);
        release_results();
    });
}

TEST(GcdInterrupt, InSeveralVariables)
{
    six_in_force names;
    in_view live(view_digits);
    // ((y + 1) x + y^2)^2 (z y + 2) and a sum with the same content
    const poly_operand f(poly_of_text("{1{1{#1}, #1}, {2{#1}}}")), c(poly_of_text("{{1{1{#1}}, #2}}"));
    const poly_operand square(reference_product(f.p, f.p, 3)), a(reference_product(square.p, c.p, 3));
    const poly_operand b(reference_product(f.p, c.p, 3));
    expect_harmless_interrupts("dual_content", a.p, b.p, [&] {
        clear_gcd_counters();
        dual_content(a.p, b.p, &result, names.names(), 0, 1, 1, 1);
        release_results();
    });
    expect_harmless_interrupts("general_content", a.p, b.p, [&] {
        std::int32_t found = 1;
        clear_gcd_counters();
        general_content(a.p, 2, &result, names.names(), &found, 1);
        release_results();
    });
    expect_harmless_interrupts("total_sq_free", a.p, b.p, [&] {
        std::int32_t count = 0;
        clear_gcd_counters();
        second = nullptr;
        polynode *copy = copy_poly(a.p);
        total_sq_free(&copy, &result, &count, 1, names.names());
        release_results();
    });
}

}  // namespace

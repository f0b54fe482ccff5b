// The list of variables and its sorted twin, temporary rings, and exchanges of levels.
#include "poly/variables.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>
#include "poly/mul.h"
#include "session/report.h"
#include "storage/accounting.h"
#include "tests/support/by_build.h"
#include "tests/support/polys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(500, 5000);

// No variables before a test, and none after it.
struct Variables : testing::Test {
    void TearDown() override
    {
        while (polynames) delete_poly_name(1);
        EXPECT_EQ(number_polys, 0);
        laurent = 0;
        field_depth = 0;
        poly_cutoff = 20;
    }
};

std::vector<std::string> level_order()
{
    std::vector<std::string> names;
    std::int16_t level = 0;
    for (const pt *r = polynames; r; r = r->next) {
        EXPECT_EQ(r->level, ++level) << "the level is the place in the list";
        names.push_back(r->name);
    }
    return names;
}

using names = std::vector<std::string>;

void expect_table_sorted()
{
    names sorted = level_order();
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(static_cast<std::size_t>(number_polys), sorted.size());
    for (std::size_t row = 0; row < sorted.size(); ++row) EXPECT_EQ(polyvar[row], sorted[row]);
}

// The table -----------------------------------------------------------------------------------------------

TEST_F(Variables, TheNewestIsLevelOne)
{
    insert_poly_name("x", 4, 0);
    insert_poly_name("y", 5, 0);
    insert_poly_name("z", 6, 0);
    EXPECT_EQ(level_order(), (names{"z", "y", "x"}));
    EXPECT_EQ(polynames->index, 6);
    expect_table_sorted();
}

TEST_F(Variables, OneAdjoinedLowestIsInnermost)
{
    insert_poly_name("x", 1, 1);
    insert_poly_name("y", 1, 0);
    insert_poly_name("w", 1, 1);
    EXPECT_EQ(level_order(), (names{"y", "x", "w"}));
    expect_table_sorted();
}

TEST_F(Variables, AreFoundByBothTables)
{
    for (const char *name : {"m", "b", "z", "a", "ab"}) insert_poly_name(name, 0, 0);
    std::int32_t level = 77;
    EXPECT_EQ(is_poly_name("ab", &level), 1);
    EXPECT_EQ(level, 1);
    EXPECT_EQ(is_poly_name("m", &level), 1);
    EXPECT_EQ(level, 5);
    level = 77;
    for (const char *name : {"aa", "", "zz", "abc", "B", "mm"}) {
        EXPECT_FALSE(its_a_polyname(name)) << name;
        EXPECT_EQ(is_poly_name(name, &level), 0) << name;
    }
    EXPECT_EQ(level, 77);
    for (const char *name : {"m", "b", "z", "a", "ab"}) EXPECT_TRUE(its_a_polyname(name)) << name;
}

TEST_F(Variables, NamesHaveUpToTenLetters)
{
    insert_poly_name("abcdefghij", 0, 0);
    EXPECT_TRUE(its_a_polyname("abcdefghij"));
    EXPECT_FALSE(its_a_polyname("abcdefghi"));
    EXPECT_STREQ(polynames->name, "abcdefghij");
}

TEST_F(Variables, DeletingRenumbersAndKeepsTheTable)
{
    for (const char *name : {"x", "y", "z", "t"}) insert_poly_name(name, 0, 0);
    delete_poly_name(2);
    EXPECT_EQ(level_order(), (names{"t", "y", "x"}));
    EXPECT_FALSE(its_a_polyname("z"));
    expect_table_sorted();
    delete_poly_name(3);
    EXPECT_EQ(level_order(), (names{"t", "y"}));
    delete_poly_name(9);
    EXPECT_EQ(number_polys, 2) << "there is no such level";
    delete_poly_name(1);
    delete_poly_name(1);
    EXPECT_EQ(polynames, nullptr);
}

TEST_F(Variables, AHundredAndFiftyFitAndAreFound)
{
    char name[16];
    for (int k = 0; k < variable_limit; ++k) {
        std::snprintf(name, sizeof name, "v%d", (k * 77) % variable_limit);
        insert_poly_name(name, 0, k % 3 == 0);
    }
    EXPECT_EQ(number_polys, variable_limit);
    expect_table_sorted();
    for (int k = 0; k < variable_limit; ++k) {
        std::snprintf(name, sizeof name, "v%d", k);
        std::int32_t level = 0;
        EXPECT_TRUE(its_a_polyname(name));
        EXPECT_EQ(is_poly_name(name, &level), 1);
    }
    while (number_polys > 0) {
        delete_poly_name((number_polys + 1) / 2);
        expect_table_sorted();
    }
}

// Records ---------------------------------------------------------------------------------------------------

TEST_F(Variables, AFreshRecordTakesTheCutoffAndHasNoRelation)
{
    poly_cutoff = 33;
    pt *r = nullptr;
    newpt(&r);
    EXPECT_EQ(r->cut, 33);
    EXPECT_EQ(r->relation, nullptr);
    EXPECT_EQ(r->fold_table, nullptr);
    EXPECT_EQ(r->numbers, nullptr);
    free_pt(&r);
    EXPECT_EQ(r, nullptr);
    free_pt(&r);
}

TEST_F(Variables, ARecordReleasesWhatItHolds)
{
    in_view live(view_digits);
    poly_audit audit;
    pt *r = nullptr;
    newpt(&r);
    r->relation = poly_of_text("{2{#1}, #1}");
    r->fold_table = poly_of_text("{2{1{#1}}}");
    for (int k = 0; k < 3; ++k) {
        number *n = nullptr;
        newimag(&n);
        n->size = 0;
        setvalue(5, n);
        n->link = r->numbers;
        r->numbers = n;
    }
    free_pt(&r);
    audit.expect_unchanged("free_pt");
}

TEST_F(Variables, ADummyTakesNameLevelAndNext)
{
    insert_poly_name("x", 7, 0);
    insert_poly_name("y", 8, 0);
    pt *r = nullptr;
    newdummy(polynames, &r);
    EXPECT_STREQ(r->name, "y");
    EXPECT_EQ(r->index, 8);
    EXPECT_EQ(r->level, 1);
    EXPECT_EQ(r->next, polynames->next);
    free_pt(&r);
}

TEST_F(Variables, FreeListsAreReported)
{
    register_poly_records();
    prime_polygarb(3);
    EXPECT_GE(record_kinds[row_poly].count(1000000), 3);
    EXPECT_EQ(record_kinds[row_poly].count(1), 2) << "at most one more than the limit";
#ifndef KELMAR_MALLOC_RECORDS
    const std::int64_t before = record_kinds[row_pt].count(1000);
    pt *r = nullptr, *s = nullptr;
    newpt(&r);
    newpt(&s);
    free_pt(&r);
    free_pt(&s);
    EXPECT_EQ(record_kinds[row_pt].count(1000), before < 2 ? 2 : before);
#endif
}

// Temporary rings -------------------------------------------------------------------------------------

TEST_F(Variables, ATemporaryRingHasTheLevelsAboveTheField)
{
    for (const char *name : {"t", "x", "y", "z"}) insert_poly_name(name, 0, 0);
    polynames->cut = 99;
    pt *const kept = polynames;
    field_depth = 3;
    const std::int32_t depth = dumpitt_level;
    adjust_polyname_ptrs();
    EXPECT_EQ(dumpitt_level, depth + 1);
    EXPECT_EQ(using_new_polynames, 1);
    EXPECT_EQ(old_polynames, kept);
    EXPECT_EQ(level_order(), (names{"z", "y"}));
    EXPECT_NE(polynames, kept);
    resume_old_polynames();
    EXPECT_EQ(polynames, kept);
    EXPECT_EQ(old_polynames, nullptr);
    EXPECT_EQ(using_new_polynames, 0);
    EXPECT_EQ(level_order(), (names{"z", "y", "x", "t"}));
    EXPECT_EQ(polynames->cut, 99);
    EXPECT_EQ(dumpitt_level, depth);
}

TEST_F(Variables, ATemporaryRingMayBeEmpty)
{
    insert_poly_name("x", 0, 0);
    for (std::int32_t depth : {0, 1}) {
        field_depth = depth;
        adjust_polyname_ptrs();
        EXPECT_EQ(polynames, nullptr);
        resume_old_polynames();
        EXPECT_EQ(level_order(), (names{"x"}));
    }
}

// Taking a level away ---------------------------------------------------------------------------------

TEST_F(Variables, RemovingAnAbsentLevelUndoesItsWrappers)
{
    in_view live(view_float);
    const struct {
        const char *text;
        std::int32_t level;
        const char *expected;
    } rows[] = {{"{#5}", 1, "{#5}"},
                {"{0{1{#1}, #2}}", 1, "{1{#1}, #2}"},
                {"{1{#1}, #2}", 2, "{1{#1}, #2}"},
                {"{2{0{1{#1}}}, 1{#4}, 0{0{3{#1}, #1}}}", 2, "{2{1{#1}}, 1{#4}, 0{3{#1}, #1}}"},
                {"{2{1{0{1{#1}}}}, #4}", 3, "{2{1{1{#1}}}, #4}"}};
    for (const auto &row : rows) {
        poly_operand p(poly_of_text(row.text));
        remove_one(&p.p, row.level);
        EXPECT_EQ(poly_text(p.p), row.expected) << row.text;
        EXPECT_TRUE(poly_is_normal(p.p, 4));
    }
}

// The polynomial with level k taken away, or its levels 1 and 2 exchanged, by the flat form.
polynode *reshaped(const polynode *p, std::int32_t vars, std::size_t taken)
{
    flat_poly terms = flatten(p, vars), out;
    for (auto &t : terms) {
        exponents exps = t.first;
        if (taken > 0) {
            exps.erase(exps.begin() + static_cast<std::ptrdiff_t>(taken) - 1);
        } else {
            std::swap(exps[0], exps[1]);
        }
        out.emplace(exps, t.second);
    }
    return nest(&out);
}

TEST_F(Variables, RemovingAgreesWithTheFlatForm)
{
    in_view live(view_modular);
    test_random r;
    poly_audit audit;
    for (int k = 0; k < rounds; ++k) {
        laurent = k % 2;
        const std::size_t level = 1 + r.below(4);
        poly_operand p(random_poly(&r, {4, 10, 3, laurent ? -3 : 0, 1}));
        flat_poly terms = flatten(p.p, 4), without;
        for (auto &t : terms) {
            exponents exps = t.first;
            exps[level - 1] = 0;
            if (!without.emplace(exps, t.second).second) free_imag(&t.second);
        }
        free_poly(&p.p);
        p.p = nest(&without);
        poly_operand expected(reshaped(p.p, 4, level));
        remove_one(&p.p, static_cast<std::int32_t>(level));
        ASSERT_EQ(poly_text(p.p), poly_text(expected.p));
    }
    audit.expect_unchanged("remove_one");
}

// Exchanging levels -----------------------------------------------------------------------------------

TEST_F(Variables, SwapTurnsTermsInsideOut)
{
    in_view live(view_float);
    const struct {
        const char *text, *expected;
    } rows[] = {{"{#5}", "{#5}"},
                {"{1{#1}}", "{0{1{#1}}}"},
                {"{0{1{#1}}}", "{1{#1}}"},
                {"{2{#3}, #4}", "{0{2{#3}, #4}}"},
                {"{1{1{#1}, #2}, 0{1{#7}, #8}}", "{1{1{#1}, #7}, 0{1{#2}, #8}}"},
                {"{0{0{1{#1}}}}", "{0{0{1{#1}}}}"},
                {"{1{0{1{#1}}}}", "{0{1{1{#1}}}}"},
                {"{2{1{1{#1}, #2}}, 0{0{1{#6}}}}", "{1{2{1{#1}, #2}}, 0{0{1{#6}}}}"}};
    for (const auto &row : rows) {
        poly_operand p(poly_of_text(row.text));
        ASSERT_TRUE(poly_is_normal(p.p, 3)) << row.text;
        swap_levels_1_2(&p.p);
        EXPECT_EQ(poly_text(p.p), row.expected) << row.text;
    }
}

TEST_F(Variables, SwapAgreesWithTheFlatFormAndUndoesItself)
{
    for (num_view v : {view_float, view_modular, view_digits}) {
        in_view live(v);
        test_random r;
        poly_audit audit;
        for (int k = 0; k < rounds; ++k) {
            laurent = k % 2;
            const std::int32_t vars = 2 + static_cast<std::int32_t>(r.below(3));
            poly_operand p(random_poly(&r, {vars, 40, 4, laurent ? -4 : 0, 2}));
            const std::string text = poly_text(p.p);
            poly_operand expected(reshaped(p.p, vars, 0));
            swap_levels_1_2(&p.p);
            ASSERT_EQ(poly_text(p.p), poly_text(expected.p)) << text;
            ASSERT_TRUE(poly_is_normal(p.p, vars));
            swap_levels_1_2(&p.p);
            ASSERT_EQ(poly_text(p.p), text);
        }
        audit.expect_unchanged("swap_levels_1_2");
    }
}

TEST_F(Variables, SwapOfALongListStaysFast)
{
    in_view live(view_modular);
    poly_audit audit;
    poly_operand p;
    polynode **end = &p.p;
    const std::int32_t n = 200000;
    for (std::int32_t e = n; e > 0; --e) {  // x^e y^(n - e + 1)
        polynode *inner = poly_of_text("{1{#1}}");
        inner->exp = n - e + 1;
        *end = new_term(e, inner);
        end = &(*end)->next;
    }
    swap_levels_1_2(&p.p);
    EXPECT_TRUE(poly_is_normal(p.p, 2));
    std::int32_t e = n;
    for (const polynode *t = p.p; t; t = t->next, --e) {
        ASSERT_EQ(t->exp, e);
        ASSERT_EQ(t->coef->exp, n - e + 1);
    }
    EXPECT_EQ(e, 0);
    free_poly(&p.p);
    audit.expect_unchanged("a long list");
}

}  // namespace

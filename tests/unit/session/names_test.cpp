// tests/unit/session/names_test.cpp -- hashes, buckets, shadowing, deletion.
#include "session/names.h"
#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include "session/evaluator.h"
#include "session/func_records.h"
#include "tests/support/catch_error.h"
#include "session/errnums.h"

using namespace kelmar;

namespace {

token_rec named(const std::string &text)
{
    token_rec t;
    set_token(&t, text.c_str());
    return t;
}

class Names : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!numstash) open_stashes();
        flotemode = lintmode = 1;
    }

    static var_node *put(const std::string &name, int value)
    {
        token_rec t = named(name);
        quolynode *q = nullptr;
        var_node *v = nullptr;
        quoly_set(value, &q);
        insert_var(&t, &q, &v);
        EXPECT_EQ(q, nullptr);
        return v;
    }
};

}  // namespace

TEST_F(Names, HashIsHornerWith123)
{
    EXPECT_EQ(hash("a", lower_buckets), 97);
    EXPECT_EQ(hash("ab", lower_buckets), (97 * 123 + 98) % 151);
    EXPECT_EQ(hash("F", upper_buckets), 70);
    EXPECT_EQ(hash("Fg", upper_buckets), (70 * 123 + 103) % 71);
    EXPECT_EQ(hash("", lower_buckets), 0);
}

TEST_F(Names, HashReadsBytesAsUnsigned)
{
    EXPECT_EQ(hash("\xFF", lower_buckets), 255 % 151);
}

TEST_F(Names, InsertedNameIsFoundAndItsHashIsKept)
{
    var_node *v = put("abc", 7);
    token_rec t = named("abc");
    EXPECT_EQ(find_var(&t), v);
    EXPECT_EQ(t.index, hash("abc", lower_buckets));
    EXPECT_EQ(sca_store[t.index], v);
    EXPECT_EQ(remove_var(&t), 1);
    EXPECT_EQ(find_var(&t), nullptr);
    EXPECT_EQ(remove_var(&t), 0);
}

TEST_F(Names, SecondInsertReplacesTheValueInTheSameRecord)
{
    var_node *v = put("abc", 7);
    EXPECT_EQ(put("abc", 8), v);
    EXPECT_EQ(v->value->num->real, 8.0);
    token_rec t = named("abc");
    remove_var(&t);
}

TEST_F(Names, ParameterShadowsAndTheGlobalReturns)
{
    var_node *global = put("abc", 7);
    token_rec t = named("abc");
    var_node *const mark = params_top;
    quolynode *nine = nullptr;
    quoly_set(9, &nine);
    var_node *parameter = push_param(&t, &nine, nullptr);
    EXPECT_EQ(find_var(&t), parameter);
    pop_params(mark);
    EXPECT_EQ(find_var(&t), global);
    EXPECT_EQ(global->value->num->real, 7.0);
    remove_var(&t);
}

TEST_F(Names, ReferenceParameterGivesItsValueBackAtTheEndOfTheCall)
{
    var_node *global = put("abc", 7);
    token_rec t = named("b");
    var_node *const mark = params_top;
    quolynode *nine = nullptr;
    quoly_set(9, &nine);
    push_param(&t, &nine, &global->value);
    EXPECT_EQ(global->value->num->real, 7.0);
    pop_params(mark);
    EXPECT_EQ(global->value->num->real, 9.0);
    token_rec u = named("abc");
    remove_var(&u);
}

TEST_F(Names, FreedNameReusesItsRecord)
{
    put("abc", 7);
    token_rec t = named("abc");
    remove_var(&t);
    const std::int64_t before = count_free_vars(1000000);
    put("abd", 7);
    EXPECT_EQ(count_free_vars(1000000), before - 1);
    token_rec u = named("abd");
    remove_var(&u);
}

TEST_F(Names, TenThousandNamesAreAllFound)
{
    for (int i = 0; i < 10000; ++i) put("v" + std::to_string(i), i);
    for (int i = 0; i < 10000; ++i) {
        token_rec t = named("v" + std::to_string(i));
        var_node *v = find_var(&t);
        ASSERT_NE(v, nullptr);
        EXPECT_EQ(v->value->num->real, i);
    }
    const std::int64_t before = count_free_vars(1000000);
    for (int i = 0; i < 10000; ++i) {
        token_rec t = named("v" + std::to_string(i));
        EXPECT_EQ(remove_var(&t), 1);
    }
    EXPECT_EQ(count_free_vars(1000000), before + 10000);
}

TEST_F(Names, AmongManyTheNewestOfANameIsFound)
{
    constexpr int count = 9000;
    var_node *const mark = params_top;
    for (int i = 0; i < count; ++i) put("w" + std::to_string(i), i);
    for (int round = 1; round <= 2; ++round) {
        for (int i = 0; i < count; i += 7) {
            token_rec t = named("w" + std::to_string(i));
            quolynode *q = nullptr;
            quoly_set(-round, &q);
            var_node *const v = push_param(&t, &q, nullptr);
            ASSERT_EQ(find_var(&t), v);
        }
    }
    for (int i = 0; i < count; ++i) {
        token_rec t = named("w" + std::to_string(i));
        ASSERT_EQ(find_var(&t)->value->num->real, i % 7 == 0 ? -2 : i);
        if (i % 21 != 0) continue;
        ASSERT_EQ(remove_var(&t), 1);
        ASSERT_EQ(find_var(&t)->value->num->real, -1);
    }
    pop_params(mark);
    for (int i = 0; i < count; ++i) {
        token_rec t = named("w" + std::to_string(i));
        ASSERT_EQ(find_var(&t)->value->num->real, i);
        ASSERT_EQ(remove_var(&t), 1);
        ASSERT_EQ(find_var(&t), nullptr);
    }
}

TEST_F(Names, CancelledVariableLivesUntilItsBorrowersAreDone)
{
    var_node *v = put("abc", 7);
    token_rec t = named("abc");
    quolynode **slot = &v->value;
    borrow();
    EXPECT_EQ(remove_var(&t), 1);
    EXPECT_EQ(find_var(&t), nullptr);
    EXPECT_EQ((*slot)->num->real, 7.0);
    const std::int64_t before = count_free_vars(1000000);
    give_back();
    EXPECT_EQ(count_free_vars(1000000), before + 1);
}

TEST_F(Names, UnknownNameForReferenceIsError19)
{
    EXPECT_EQ(kelmar_test::caught_error([] {
                  token_rec t = named("nothing");
                  quolynode *n = nullptr;
                  quolynode **p = nullptr;
                  spec_retrieve(&t, &n, &p);
              }),
              err_undefined);
}

TEST_F(Names, KeepNewestFunctionRemovesOlderOnes)
{
    func_node *older;
    func_node *other;
    func_node *newer;
    token_rec t = named("Fn");
    newfunc(&older);
    newfunc(&other);
    newfunc(&newer);
    std::strcpy(older->text, "Fn");
    std::strcpy(other->text, "Gn");
    std::strcpy(newer->text, "Fn");
    const int bucket = hash("Fn", upper_buckets);
    newer->next = other;
    other->next = older;
    older->next = nullptr;
    func_store[bucket] = newer;
    EXPECT_EQ(find_func(&t), newer);
    EXPECT_EQ(keep_newest_function(&t), 1);
    EXPECT_EQ(other->next, nullptr);
    EXPECT_EQ(remove_function(&t), 1);
    EXPECT_EQ(find_func(&t), nullptr);
    EXPECT_EQ(keep_newest_function(&t), 0);
    func_store[bucket] = nullptr;
}

TEST_F(Names, FreeNamesAreListedByTheirTexts)
{
    name_node second = {}, first = {};
    std::strcpy(first.text, "early");
    std::strcpy(second.text, "late");
    first.next = &second;
    name_node *const kept = name_garb;
    char *bytes = nullptr;
    std::size_t size = 0;
    std::FILE *const out = open_memstream(&bytes, &size);
    name_garb = &first;
    list_free_names(out);
    name_garb = kept;
    std::fclose(out);
    EXPECT_EQ(std::string(bytes, size), "early\nlate\n");
    std::free(bytes);
}

// A variable gets a relation: every entry of every array is reduced once, whoever shares its storage.
#include "matrix/array_vars.h"
#include <gtest/gtest.h>
#include <cmath>
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "tests/support/quolys.h"
#include "tests/support/views.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

int reduced = 0;

// What a relation does to numbers here: they are taken modulo 3.
void modulo_three(quolynode **value)
{
    ++reduced;
    (*value)->num->real = std::fmod((*value)->num->real, 3);
}

void vanish(quolynode **value)
{
    free_quoly(value);
}

array_name name_of(char c)
{
    array_name n = {};
    n.text[0] = c;
    n.index = static_cast<std::int16_t>(c);
    return n;
}

class ArrayVars : public ::testing::Test {
protected:
    in_view live{view_float};
    array *dense = nullptr, *sparse = nullptr;
    static void SetUpTestSuite()
    {
        if (!numstash) open_stashes();
    }
    void SetUp() override
    {
        const array_name d = name_of('d'), s = name_of('s');
        insertarr(&d, 2, 2, 0, &dense);
        sparse_create(&s, 2049, 4, 0, true, &sparse);
        for (std::int32_t k = 0; k < 3; ++k) {
            quoly_set(k + 2, store_slot(static_cast<std::int32_t>(dense->arr_first) + k));
            quoly_set(k + 2, sparse_zero_set(head_of_row(sparse->arr_sparse, k == 2 ? 2049 : 1), k + 1));
        }
        reduced = 0;
    }
    void TearDown() override
    {
        while (newest_array) removearray(newest_array);
        EXPECT_TRUE(store_is_sound());
    }
};

TEST_F(ArrayVars, ReductionsTakeZerosOutOfSparseArraysOnly)
{
    dense_update(modulo_three);
    sparse_update(modulo_three);
    EXPECT_EQ(reduced, 6);
    const std::int32_t first = static_cast<std::int32_t>(dense->arr_first);
    EXPECT_EQ((*store_slot(first))->num->real, 2);
    ASSERT_NE(*store_slot(first + 1), nullptr);
    EXPECT_EQ((*store_slot(first + 1))->num->real, 0);
    EXPECT_EQ((*store_slot(first + 2))->num->real, 1);
    EXPECT_EQ(*store_slot(first + 3), nullptr);
    EXPECT_TRUE(sparse_is_sound(sparse->arr_sparse, 2049, 4));
    EXPECT_EQ(sparse_entries(sparse->arr_sparse, 2049), 2);
    EXPECT_EQ(spar_retrieve(sparse->arr_sparse, 1, 1)->num->real, 2);
    EXPECT_EQ(spar_retrieve(sparse->arr_sparse, 2049, 3)->num->real, 1);
}

TEST_F(ArrayVars, WhatAReductionLeavesNullIsZero)
{
    dense_update(vanish);
    sparse_update(vanish);
    for (std::int32_t k = 0; k < 3; ++k) {
        const quolynode *q = *store_slot(static_cast<std::int32_t>(dense->arr_first) + k);
        ASSERT_NE(q, nullptr);
        EXPECT_EQ(q->num->real, 0);
    }
    EXPECT_EQ(sparse_entries(sparse->arr_sparse, 2049), 0);
}

TEST_F(ArrayVars, AChainThatParametersShareIsReducedOnce)
{
    const array_name p = name_of('p');
    array *first = nullptr, *second = nullptr;
    push_array_param(&p, sparse, &first);
    push_array_param(&p, sparse, &second);
    sparse_update(modulo_three);
    EXPECT_EQ(reduced, 3);
    EXPECT_EQ(first->arr_sparse, sparse->arr_sparse);
    sparse_update(modulo_three);
    EXPECT_EQ(reduced, 5);
    pop_array_params(nullptr);
}

}  // namespace

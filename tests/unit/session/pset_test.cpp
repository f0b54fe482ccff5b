// tests/unit/session/pset_test.cpp -- bit sets over character codes.
#include "session/pset.h"
#include <gtest/gtest.h>

using namespace kelmar;

TEST(PSet, WordsLieInReverseOrder)
{
    PSet s;
    PSet_Init(s, pset_words);
    PSet_Set(s, pset_words, 0);
    EXPECT_EQ(s[15], 1);
    PSet_Set(s, pset_words, 255);
    EXPECT_EQ(s[0], 0x8000);
}

TEST(PSet, TestFindsMembersOnly)
{
    PSet s;
    PSet_Init(s, pset_words);
    PSet_SetRange(s, pset_words, 'a', 'f');
    for (int c = 0; c < 256; ++c) EXPECT_EQ(PSet_Test(s, pset_words, c), c >= 'a' && c <= 'f') << c;
}

TEST(PSet, TestOfACharacterBeyondTheSetIsFalse)
{
    PSet s;
    PSet_Init(s, pset_words);
    PSet_SetRange(s, pset_words, 0, 255);
    EXPECT_FALSE(PSet_Test(s, pset_words, 256));
    EXPECT_FALSE(PSet_Test(s, 4, 64));
}

TEST(PSet, UnionIntersectionDifferenceAgreeWithMembership)
{
    PSet a;
    PSet b;
    PSet r;
    PSet_Init(a, pset_words);
    PSet_Init(b, pset_words);
    PSet_SetRange(a, pset_words, 10, 100);
    PSet_SetRange(b, pset_words, 60, 200);
    EXPECT_EQ(PSet_Union(r, a, b, pset_words), r);
    for (int c = 0; c < 256; ++c) EXPECT_EQ(PSet_Test(r, pset_words, c), c >= 10 && c <= 200);
    PSet_Intersection(r, a, b, pset_words);
    for (int c = 0; c < 256; ++c) EXPECT_EQ(PSet_Test(r, pset_words, c), c >= 60 && c <= 100);
    PSet_Difference(a, a, b, pset_words);  // the result may be an operand
    for (int c = 0; c < 256; ++c) EXPECT_EQ(PSet_Test(a, pset_words, c), c >= 10 && c < 60);
}

TEST(PSet, SubsetAndEquality)
{
    init_psets();
    EXPECT_TRUE(PSet_Subset(iterm_set, term_set, pset_words));
    EXPECT_FALSE(PSet_Subset2(term_set, iterm_set));
    EXPECT_TRUE(PSet_Eq(term_set, term_set, pset_words));
    EXPECT_FALSE(PSet_Eq(term_set, iterm_set, pset_words));
}

TEST(PSet, ComparisonSetHoldsTheThreeSingleBytes)
{
    init_psets();
    for (int c = 0; c < 256; ++c) {
        const bool member = c == '>' || c == '<' || c == '=' || c == 0xB3 || c == 0xB2 || c == 0xAD;
        EXPECT_EQ(PSet_Test(cond_set, pset_words, c), member) << c;
    }
}

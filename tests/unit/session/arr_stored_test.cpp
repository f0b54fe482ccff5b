// What happens to all arrays at once reaches every place where arrays stand.
#include "session/arr_stored.h"
#include <cmath>
#include "tests/support/session_text.h"

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

}  // namespace

TEST(ArraysStored, ARelationReachesTheSystemArray)
{
    session_text("@[**]\n[(4, 5, 7)]\n");
    reduced = 0;
    arrays_on_relation(modulo_three);
    EXPECT_EQ(reduced, 3);
    EXPECT_EQ(last_value("<[1] + 10*<[2] + 100*<[3]"), "121");
}

TEST(ArraysStored, ARelationReachesASparseSystemArray)
{
    session_text("@[**]\nArray s[9, 9] Sparse\ns[2, 2] := 5\n[s]\n@[s]\n");
    reduced = 0;
    arrays_on_relation(modulo_three);
    EXPECT_EQ(reduced, 1);
    EXPECT_EQ(last_value("<[2, 2]"), "2");
}

TEST(ArraysStored, ARelationReachesOrdinaryAndSparseArrays)
{
    session_text("@[**]\n[(0)]\n[a] := [(4, 5)]\nArray s[9, 9] Sparse\ns[2, 2] := 8\n");
    reduced = 0;
    arrays_on_relation(modulo_three);
    EXPECT_EQ(reduced, 4);
    EXPECT_EQ(last_value("a[1] + 10*a[2] + 100*s[2, 2]"), "221");
    session_text("@[a]\n@[s]\n");
}

// Array statements that are run again, and leave behind what they left before, take no records for good.
#include "session/arr_statement.h"
#include <string>
#include "matrix/sparse.h"
#include "numbers/mode.h"
#include "tests/support/polys.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::int64_t sparse_nodes_out()
{
    std::int64_t out = colmstash->slugs_used;
    for (const colm *node = colm_garb; node; node = node->next) --out;
    return out;
}

// The first time makes names, variables, and the value < of the last statement.
void expect_no_records_taken(const std::string &statements)
{
    session_text(statements);
    const std::string text = session_text(statements);
    const poly_audit records;
    const std::int64_t nodes = sparse_nodes_out();
    EXPECT_EQ(session_text(statements), text) << statements;
    records.expect_unchanged(statements.c_str());
    EXPECT_EQ(sparse_nodes_out(), nodes) << statements;
}

}  // namespace

TEST(ArrayRecords, LiteralsAndTheSystemArray)
{
    expect_no_records_taken("[(1, 2, 3)]\n[(4, 5)]\n[[1, 2][3, 4]]\n");
    expect_no_records_taken("[<i = 1, 5> <j = 1, 3> [i*j]]\n[(1)]\n<[1]\n<[1]\n");
    expect_no_records_taken("Array s[3, 3] Sparse\ns[2, 2] := 5\n[s]\n[(1, 2)]\n[s]\n[s]\n@[s]\n");
    expect_no_records_taken("Array q[4], s[3, 3] Sparse\n[q] := 7\n[s] := 0\n[s]\n@[q]\n@[s]\n");
}

TEST(ArrayRecords, AssignmentsAndSections)
{
    expect_no_records_taken("[a] := [[1, 2][3, 4]]\n[a] := [a]\n[a] := [a] + 1\n[a[1, ]] := [a[2, ]]\n"
                            "[a[1~2, 2]] := 7\n[b] := [a[ , 1]]\n[a] := [(1, 2)]\n@[a]\n@[b]\n");
    expect_no_records_taken("Array s[3, 3] Sparse\ns[1, 2] := 5\ns[3, 3] := 6\n[s] := [s] + [s]\n"
                            "[s[1, ]]\n[t] := [s]\n[s] := 0\n[s] := [t] * 2\n@[s]\n@[t]\n");
    expect_no_records_taken("[m] := [[1, 2][3, 4]]\nDiag[m] := 7\nDiag[m] := [(5, 6)]\n[d] := Diag [m]\n"
                            "Sparse[m]\nDiag[m] := [(8, 9)]\nDiag[m] := 0\n@[m]\n@[d]\n");
    expect_no_records_taken("%[1] := [[1, 2][3, 4]]\n[%1] := [%1] * [%1]\n%[1][2, 1] := 9\n%[2] := [%1]\n"
                            "[%2] + [%1]\n%[1][1, 1] + %[2][2, 2]\n");
    expect_no_records_taken("[a] := [(1, 2)]\nRename[a] := '[c]'\n[c]\n@[c]\n");
}

TEST(ArrayRecords, Entries)
{
    expect_no_records_taken("[a] := [(1, 2, 3)]\na[2] := 5\na[2] :+ 3\na[1] :-\na[3] := a[1] + a[2]\n"
                            "Swap(a[1], a[2])\nMove(a[1], a[3])\nAddto(a[2], 4)\n1 + *a[2]\n@[a]\n");
    expect_no_records_taken("Array s[3, 3] Sparse\ns[2, 2] := 5\ns[2, 2] :- 5\ns[1, 1] :+\ns[1, 1] := 0\n"
                            "s[3, 1] := s[2, 2] + 4\ns[2, 3] := 8\nSwap(s[2, 3], s[3, 1])\n"
                            "Addto(s[2, 3], 4)\nMulto(s[2, 3], 0)\ns[1, 3] + s[3, 1]\n@[s]\n");
    expect_no_records_taken("Array a[4], s[3] Sparse\na[2] + 1\ns[2] + 1\na[9]\ns[9]\nnowhere[1]\n@[a]\n"
                            "@[s]\n");
}

TEST(ArrayRecords, Operators)
{
    expect_no_records_taken("[a] := [[1, 2][3, 4]]\n[a] * [a] - [a] + 1\n[a] / 2\n[a] \\ 2\n[a] | 2\n"
                            "[a] _ [a]\n0 _ [(1, 2)]\n[a] * 0.5 * 2\nTrans [a]\n[a] / [(1, 2, 3)]\n"
                            "[a] + [(1, 2, 3)]\n@[a]\n");
    expect_no_records_taken("Array s[3, 3] Sparse\ns[1, 2] := 5\ns[2, 1] := 6\ns[3, 3] := 1\n"
                            "[s] * [s] - [s]\n[s] * 2 + 1\n[s] / 2\nTrans [s]\n[s] - [s]\n[s] * 0\n"
                            "[s] + [(1, 2)]\n@[s]\n");
    expect_no_records_taken("&(J = x)\n[p] := [[x, 1][1, 1/x]]\n[p] * [p]\n[p] - x\n(x^2 + x + 1)#[p]\n"
                            "x^3#[[1, 2][3, 4]]\n(2x^2 - 1)#[[0, 1][1, 0]]\nSparse[p]\n[p] * [p] + [p]\n"
                            "(x^2 + x)#[p]\n[p] / x\n@[p]\n&(J = -x)\n");
}

TEST(ArrayRecords, Builtins)
{
    expect_no_records_taken("[a] := [[1, 2][3, 4][5, 6]]\nSumup[a]\nTrace[a]\nDeg[a]\nCols[a]\n"
                            "Iszero[a]\nLocate([a], 4)\nReverse[a]\nSwitchrow([a], 1, 2)\n"
                            "Switchcol([a], 1, 2)\nScale([a], 1/2)\nAltmult([a], [[1, 2][3, 4]]) + 1\n"
                            "Scale(*[a], 2)\n@[a]\n");
    expect_no_records_taken("Array s[3, 2] Sparse\ns[1, 2] := 5\ns[3, 1] := 6\nReverse([s])\nSTrans[s]\n"
                            "Scale(*[s], 0)\nLocate([s], 6)\nSumup[s]\nIszero([s] - [s])\n@[s]\n");
    expect_no_records_taken("&(J = x)\n[c] := [(1, 2, 0, 3)]\nTopoly[c]\nArray u[5] Sparse, w[5] Sparse\n"
                            "u[1] := x\nu[3] := x^2\nw[2] := x^2\nw[5] := 7\nUnion([u], [w])\n"
                            "Merge([u], [w])\nIntersect([u], [w])\n@[c]\n@[u]\n@[w]\n&(J = -x)\n");
}

TEST(ArrayRecords, Functions)
{
    expect_no_records_taken("Func F(p) = p[1] := p[1] + 1; Deg[p].\n[a] := [(1, 2)]\nF([a])\nF([a] + 1)\n"
                            "F(5)\nF([(1, 2)])\n@F\n@[a]\n");
    expect_no_records_taken("Func Gone(n) = @[a]; n.\n[a] := [(1, 2, 3)]\na[2] := Gone(7)\n"
                            "[a] := [(1, 2)]\n[b] := [a] * Gone(2)\n[a] := [(1, 2)]\na[1] + Gone(1)\n"
                            "@[b]\n@Gone\n");
    expect_no_records_taken("Func New(n) = [a] := [(n, n, n)]; n.\n[a] := [(1, 2)]\n[a] + New(1)\n"
                            "a[New(2)] := 4\n[a[1~New(2)]]\n[a] * New(3)\n@[a]\n@New\n");
}

TEST(ArrayRecords, Errors)
{
    expect_no_records_taken("[a] := [(1, 2)]\n[a] + nowhere\n[b] := [a] * [(1, 2, 3)] + nowhere\n"
                            "[a] := [(1, none)]\n[a[1~3]]\n[a[1]] := [(1, 2, 3)]\n"
                            "[<i = 1, 5> [1/(3 - i)]]\n[a] / 0\n[a] + [(3, 4)\n[(1, 2) [3\n@[a]\n");
    expect_no_records_taken("Array s[2, 2] Sparse\ns[1, 1] := 2\n[s] + nowhere\n[s] := [s] * nowhere\n"
                            "[s] / 0\n[s[3, ]]\ns[1, 1] := [s]\n@[s]\n");
}

TEST(ArrayRecords, InExactArithmetic)
{
    session_flote = flotemode = lintmode = 0;
    expect_no_records_taken("&(J = x)\n[a] := [[1/3, 10^30][x/7, 1/(x + 1)]]\n[a] * [a] + 1/2\n[a] / 3\n"
                            "(x^2 + 1/2)#[a]\n[a] - [a]\nTrace[a]\nSparse[a]\n[a] * [a] - [a] / 5\n"
                            "a[1, 1] :+ 1/7\nAddto(a[1, 2], 10^40)\n@[a]\n&(J = -x)\n");
    session_flote = flotemode = lintmode = 1;
}

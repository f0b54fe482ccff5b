#pragma once
// tests/hostile/level_cases.h -- statements that wait below a level, what the level does, and what must hold.

#include <gtest/gtest.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include "matrix/pins.h"
#include "matrix/store.h"
#include "numbers/mode.h"
#include "numbers/stash.h"
#include "poly/node.h"
#include "quoly/owned.h"
#include "session/levels.h"
#include "session/stored_values.h"
#include "tests/support/session_text.h"

namespace kelmar_test {

using namespace kelmar;

// What is interrupted --------------------------------------------------------------------------------------

struct waiting_case {
    const char *name;
    const char *statement;
};

// Every session begins so.
inline const char *const clean =
    "&@\n@[**]\n&(l = 0)\n@a\n@b\n@c\n@d\n@e\n@g\n@h\n@i\n@j\n@k\n@s\n@t\n@w\n@z\n@<F>\n@F\n@G\n@H\n@P\n"
    "&(J = -x)\n&(J = -y)\n&(J = -u)\n&(e = 0)\n&(R = '@')\n&(S = '@')\n";
inline const char *const store =
    "&(J = x)\n&(J = y)\na := (1 + x + 2*y)^4*(x - y):\nb := (3 - x*y + y)^3*(1 + x + 2*y):\n"
    "c := (x + 2*y)^2/(x*y - 1):\nd := 5:\nk := 0:\ns := 0:\n"
    "[m] := [[1, x, 3][4, 5 - x, 6][7, 8, x^2]]:\n[k] := [[1, 2, 3][4, 5, 6][7, 8, 9]]:\n[r] := [(3, 2, "
    "1)]:\n"
    "Array t[9, 9] Sparse:\nt[1, 2] := x:\nt[2, 1] := 5:\nt[2, 7] := y:\nt[9, 9] := 1:\nArray n[3, 3]:\nn[1, "
    "2] := x:\n"
    "Func F(n) = s := 0; for i = 1 to n do s := s + i; k := s*a od; s .\n"
    "Func G(^p, q) = p := p*q; for i = 1 to 3 do p := p + i od; p .\n"
    "Func H(p, n) = for i = 1 to n do p[i, i] := i*p[1, 1]; [p] := [p]*[p] od; p[1, 2] .\n"
    "Func L(n) = Compile(s, r[2]); for i = 1 to n do s := s + i*r[2]; r[2] := s od; s .\n"
    "Func I(n) = Integer; j := 0; while j < n do j := j + 1; r[1] := j od; j .\n"
    "Func P(n) = if n < 2 then Return(1) else Return(n*P(n - 1) + a) fi .\n";

inline const waiting_case waiting_cases[] = {
    {"sum", "a + b*c - c"},
    {"product", "a*b"},
    {"assigned_product", "a := a*b"},
    {"increment", "d :+ 3*d"},
    {"power", "a^3"},
    {"quotient", "a/b"},
    {"remainder", "a|b"},
    {"whole_quotient", "a\\b"},
    {"gcd", "GCD(a, b)"},
    {"fractions", "c*c + 1/c"},
    {"hand_over", "g := *a*b"},
    {"evaluation", "a#(x = b, y = 3)"},
    {"evaluation_of_a_fraction", "c#(2, b)"},
    {"derivative", "Deriv(a*b, x, 2)"},
    {"content", "Content(a*(y + 1), x)"},
    {"square_free", "Sqfree(b*b, [h])"},
    {"last_value", "a; < * b + <"},
    {"for_loop", "for i = 1 to 6 do s := s + i*a; a := a + 1 od"},
    {"while_loop", "while k < 6 do k := k + 1; s := s + k; a := a*1 od"},
    {"if", "for i = 1 to 3 do if i > 1 and a <> b then s := s + 1 else s := s - a fi od"},
    {"call", "F(5) + a*F(3)"},
    {"reference", "G(a, b) + a"},
    {"reference_to_an_entry", "G(m[1, 1], b) + m[1, 1]"},
    {"array_parameter", "H([m], 2) + H([k], 2)"},
    {"linked_body", "L(6) + L(4)"},
    {"integers", "I(9)"},
    {"recursion", "P(5)"},
    {"sum_of_terms", "Sigma< i = 1, 6 > [i*a + Prod< j = 1, 2 > [j*b]]"},
    {"array_product", "[w] := [m]*[k]*[m]"},
    {"array_that_becomes_its_product", "[m] := [m]*[k]"},
    {"array_sum", "[m] := [m] + 3*[k] - [n]"},
    {"sparse_product", "[t] := [t]*[t]"},
    {"sparse_sum", "[w] := [t] + 2*[t] - [t]"},
    {"sparse_and_dense", "[w] := [t[1~3, 1~3]]*1; [t]"},
    {"entries_by_entries", "[w] := [m]/[k]"},
    {"section", "[m[1~2, 1~2]] := [k[2~3, 2~3]]*a"},
    {"diagonal", "Diag[m] := [(a, b, c)]*2"},
    {"literal", "[w] := [[a, b, c][1, F(2), 3]]"},
    {"angle_literal", "[w] := [<i = 1, 4> <j = 1, 3> [a*i + j]]"},
    {"sparse_literal", "Array w[5, 5] Sparse; [w] := [[1, 2, a, 4, b][3, 1, F(2)]]"},
    {"transposed", "[w] := Trans[m]*[m]"},
    {"entry", "m[1, F(1)] := m[F(1), 2]*a + t[2, 1]"},
    {"entry_of_a_sparse_array", "t[F(1), 3] := t[2, 7]*a"},
    {"entry_increment", "r[F(1)] :+ d*2"},
    {"system_array", "[m]*[k]; [<]*2; <[2, 2] + a"},
    {"array_at_values", "a#[k]"},
    {"joined", "[w] := [k]_[m]"},
    {"sumup", "Sumup[m] + Trace[m]"},
    {"displayed_array", "[m]; ![t]; !([k]:7)"},
    {"written_out", "!(a, b, ' text ', [m], d)"},
    {"listing", "&v; &f*; &(F = 1)"},
    {"switched_rows", "Switchrow([m], 1, 3); Switchcol([t], 1, 2); Reverse[r]; Scale([m], a)"},
    {"located", "Locate([t], y) + Iszero[n]"},
    {"declared", "Array w[4, 4], z[3, 3] Sparse, h[7]; Array m[2, 2]; m[1, 1] := a"},
    {"made_sparse", "Sparse[m]; [m]*[m]"},
    {"renamed", "Rename[m] := '[w]'; [w]"},
    {"swapped", "Swap(a, b); Move(c, d); Multo(a, b); Addto(a, b); Setcoef(a, 1, b)"},
    {"array_of_arrays", "%[1] := [m]; %[2] := [k]; [%1]*[%2]"},
    {"saved", "&(S = 'levels_saved')"},
    {"saved_by_name", "&(S = 'levels_named'); &S a, b, [m], [t], F"},
    {"loaded", "&(R = 'levels_stored')"},
    {"loaded_twice", "&(R = 'levels_stored'); &r"},
    {"definition", "Func Q(n) = for i = 1 to n do a := a*i od; a ."},
    {"cancelled", "@(a, b, [m], F)"},
    {"fast_reader", "&_n [(3x^2 + x)y^2 + 7]*a + &_n [x y]/[x + 1]"},
    {"errors", "&(e = 1); nowhere + 1; x/0; F(1; 2); 3"},
    {"variable", "&(J = u); a*u + b; &(J = -u)"},
    {"negative_exponents", "&(l = 1); a/x^2; &(l = 0)"},
    {"pushed_level", "a + &_P; b*c; &_p; 5"},
    {"factorials", "20! + Bin(30, 7)"},
    {"merged", "[w] := Merge([r], [r]); Max([r]) + Topoly[r]"},
};

// What the level does -----------------------------------------------------------------------------------

inline const char *const hostile[] = {
    // other values for every name
    "a := 5\nb := 6\nc := 7\nd := 1/3\nk := 2\ns := a\nm[1, 1] := 0\nm[2, 2] := a\nt[2, 1] := 0\nt[2, 7] := "
    "x + 1\n"
    "t[5, 5] := 9\n[m] := [[1, 1, 1][1, 1, 1][1, 1, 1]]\n[k] := [[2, 2, 2][2, 2, 2][2, 2, 2]]\n[r] := 0\n"
    "[t] := 2*[t]\nw := (x + 1)^20*(x - 2)^9\nw := (x - y)^9\n",
    // values that change in place, or are handed over
    "a :+ 1\nb :- 2\nd :+ 7\ng := *a + *b*2\nc := *c\nm[1, 1] :+ 1\nr[1] :- 3\nMulto(a, b)\nAddto(b, "
    "3)\nSwap(a, b)\nMove(a, c)\n"
    "Setcoef(b, 1, x + 1)\nAddcoef(b, 1, 2)\nSwap(a, b)\nScale([m], 3)\nScale([t], 1/2)\nSwitchrow([m], 1, "
    "2)\n"
    "Switchcol([t], 1, 2)\nReverse[r]\nReverse[t]\nSTrans[t]\nDiag[m] := 1\nDiag[t] := 0\n[m[1~2, 1~2]] := "
    "4\nw := (x + 1)^20\n",
    // nothing is left
    "@(a, b, c, d)\n@k\n@s\n@i\n@j\n@[**]\n@F\n@G\n@H\n@L\n@I\n@P\nw := (x + 1)^20\nArray w[3, 3], z[9]\n[w] "
    ":= 3\n[z] := 4\n",
    // other shapes, kinds and names
    "Array m[2, 2]\nArray k[2, 9] Sparse\nArray t[3, 3]\n[r] := [[1, 2][3, 4]]\nSparse[n]\nRename[r] := "
    "'[w]'\n[m] := [(1)]\n"
    "Rename[m] := '[k]'\n%[1] := [w]\n[t] := [[1, 2][3, 4]]\nSparse[t]\n@[t]\nArray t[2, 2] "
    "Sparse\n@[w]\nArray r[1]\nr[1] := x\n",
    // other functions, and names as counters and parameters
    "Func F(n) = 7 .\nFunc G(^p, q) = p := q .\nFunc H(p, n) = 1 .\nG(a, b)\nG(m[1, 1], 2)\nfor a = 1 to 3 "
    "do b := a od\n"
    "for i = 1 to 2 do s := i od\nF(3)\n@<F>\n@<G>\nFunc Z(a, b) = a := b; for k = 1 to 3 do a := a + k od; "
    "a .\nZ(1, 2)\nH([m], 3)\n",
    "Func L(n) = Compile(s, a); s := n; a := n; s .\nL(2)\nL(3)\n",
    // files
    "&(S = 'levels_other')\n&(S = '@')\n&(R = 'levels_stored')\n&r\n&(R = '@')\n&(R = 'levels_stored')\n&S "
    "a, [m]\n&(S = '@')\n",
    "&(R = '@')\n&(R = 'levels_short')\n&(S = 'levels_other'); \n",
    // the display, listings, the array [<] and the last value
    "[m]*2\n[<] + [<]\n<[1, 1]\n< + 1\n![t]\n!(a, b, [m])\n&v\n&f*\n&g\n&_G\n&G\n&j\na#(x = 2)\n[<]\n",
    // variables and negative exponents
    "&(J = u)\na*u\n&(J = -u)\nb\n",
    "&(J = -x)\n",
    "&(J = -y)\n&(J = y)\n",
    "&(l = 1)\na/x\nc\n&(l = 0)\nc\n",
    "&(J = u)\n&(l = 1)\n&(P = u^2 + 1)\n",
    // the ground ring, and settings
    "&(p = 101)\n",
    "&(a = 0)\nm[0, 0]\n&(a = 1)\n&(# = 6)\n&(# = 40)\n&Z\n&Z\n&(t = 1)\n&(t = 0)\n&(N = 0)\n&(N = "
    "1)\n&_l\n&_l\n",
    // errors, and levels on top
    "x/0\nnowhere\n&_P\na := 1\n&_p\nb\n",
    "&(e = 1)\n2 + )\na := 3\n&_p\n&(e = 0)\n",
    "2 + )\n",
    "&@\n",
};

inline constexpr int kinds = sizeof hostile / sizeof *hostile;

// Leaves the level, and those that errors have pushed on top of it; what is too much is never read.
inline const char *const leave_levels = "&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n&_p\n";

inline const char *const short_file = "a := a + 1;\nb := 7;\n[m] := 3*[m];\nx/0;\n";

// Sessions -----------------------------------------------------------------------------------------------

// Records in use.
inline std::int64_t records()
{
    std::int64_t n = live_polynodes() + owned_count;
    for (const stash *s = primal_stash.next; s != &primal_stash; s = s->next) n += s->slugs_used;
    return n;
}

inline std::int32_t malformed = 0;

inline void check_form(quolynode **slot)
{
    if (!(*slot)->is_num && !(*slot)->top) ++malformed;
}

// The session is in order.
inline std::string disorder(const std::string &text)
{
    std::ostringstream wrong;
    if (text.find("Kelmar error") != std::string::npos) wrong << " an internal fault;";
    if (text.size() < 6 || text.substr(text.size() - 6) != "\n bye\n") wrong << " no farewell;";
    if (!store_is_sound()) wrong << " the store is unsound;";
    malformed = 0;
    for_each_stored(check_form);
    if (malformed) wrong << " malformed values;";
    if (owned_count) wrong << " values are owned;";
    if (values_pinned > 0) wrong << " values are pinned;";
    if (levelcount != 1) wrong << " a level is left over;";
    return wrong.str().empty()
               ? ""
               : wrong.str() + "\n" + text.substr(text.size() > 3000 ? text.size() - 3000 : 0);
}

class directory {
public:
    directory() : before(std::filesystem::current_path())
    {
        char name[] = "/tmp/kelmar-levels.XXXXXX";
        path = mkdtemp(name);
        std::filesystem::current_path(path);
        std::ofstream("levels_short") << short_file;
    }
    ~directory()
    {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(path);
    }

private:
    std::filesystem::path before, path;
};

inline const char *const shown =
    "\n&@\n&(l = 0)\na\nb\nc\n[m]\n[k]\n[t]\n[r]\n&(S = 'levels_end')\n&(S = '@')\n&v\n"
    "&(R = 'levels_end')\n6*7\n";

// How much of it runs -----------------------------------------------------------------------------------

inline constexpr std::int64_t all_levels = 8;

// At so many places of a statement.
inline std::int64_t levels()
{
    const char *const wanted = std::getenv("KELMAR_LEVELS");
    return wanted ? std::atoll(wanted) : all_levels;
}

// Answers of that index are given to the statement: all, or where few levels are wanted a quarter of them, or
// in a run by hand those of the environment.
inline bool is_wanted(int index, const char *statement, int exact)
{
    const char *const only = std::getenv("KELMAR_ANSWERS");
    if (only) return std::atoi(only) == index;
    return levels() >= all_levels || (index + std::strlen(statement) + exact) % 4 == 0;
}

// It calls the function whose body is linked.
inline bool keeps_links(const std::string &statement)
{
    return statement.find("L(") != std::string::npos;
}

inline void PrintTo(const waiting_case &c, std::ostream *out)
{
    *out << c.statement;
}

}  // namespace kelmar_test

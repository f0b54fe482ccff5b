// Random array statements against a model: dense arrays as vectors, sparse ones as maps.
#include "session/arr_assign.h"
#include <gtest/gtest.h>
#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <vector>
#include "matrix/sparse.h"
#include "matrix/sparse_tests.h"
#include "matrix/store.h"
#include "matrix/work_arrays.h"
#include "session/arr_access.h"
#include "session/arr_target.h"
#include "session/arr_value.h"
#include "tests/support/by_build.h"
#include "tests/support/long_numbers.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int rounds = by_build(8000, 100000);
constexpr int names = 6;         // a .. f
constexpr double largest = 1e6;  // entries are brought down when they exceed it

struct matrix {
    int rows = 0, cols = 0;  // 0: there is no such array
    bool sparse = false;
    std::vector<double> entries;                  // dense, column-major
    std::map<std::pair<int, int>, double> cells;  // sparse, without zeros

    double at(int i, int j) const
    {
        if (!sparse) return entries[static_cast<std::size_t>(i + j * rows)];
        const auto cell = cells.find({i, j});
        return cell == cells.end() ? 0 : cell->second;
    }
    void put(int i, int j, double v)
    {
        if (!sparse) {
            entries[static_cast<std::size_t>(i + j * rows)] = v;
        } else if (v == 0) {
            cells.erase({i, j});
        } else {
            cells[{i, j}] = v;
        }
    }
};

matrix made(int rows, int cols, bool sparse)
{
    matrix m;
    m.rows = rows;
    m.cols = cols;
    m.sparse = sparse;
    if (!sparse) m.entries.assign(static_cast<std::size_t>(rows * cols), 0);
    return m;
}

constexpr int slots = 3;  // of the array of arrays

struct world {
    test_random r;
    matrix array[names];
    matrix slot[slots];
    std::string text;
    int said = 0;

    int below(int n)
    {
        return static_cast<int>(r.below(static_cast<std::uint64_t>(n)));
    }
    std::string name(int k)
    {
        return std::string(1, static_cast<char>('a' + k));
    }
    void say(const std::string &s)
    {
        text += s + ":\n";
        ++said;
    }
    // The result of an assignment: a sparse target stays sparse, and so does a sparse value, but where a
    // dense target has the same shape.
    void assign(int k, const matrix &v)
    {
        matrix &t = array[k];
        const bool same = t.rows == v.rows && t.cols == v.cols;
        const bool sparse = t.rows ? (same ? t.sparse : t.sparse || v.sparse) : v.sparse;
        matrix next = made(v.rows, v.cols, sparse);
        for (int i = 0; i < v.rows; ++i) {
            for (int j = 0; j < v.cols; ++j) next.put(i, j, v.at(i, j));
        }
        t = next;
    }
    int existing()
    {
        for (int tries = 0; tries < 20; ++tries) {
            const int k = below(names);
            if (array[k].rows) return k;
        }
        return -1;
    }
    std::string whole(int k)
    {
        return "[" + name(k) + "]";
    }
};

std::string number(double v)
{
    return std::to_string(static_cast<long>(v));
}

// Statements ----------------------------------------------------------------------------------------------

void declare(world *w)
{
    const int k = w->below(names);
    if (w->array[k].rows) return;
    const int rows = 1 + w->below(5), cols = 1 + w->below(5);
    const bool sparse = w->below(2);
    w->say("Array " + w->name(k) + "[" + number(rows) + "," + number(cols) + "]" + (sparse ? " Sparse" : ""));
    w->array[k] = made(rows, cols, sparse);
}

void literal(world *w)
{
    const int k = w->below(names);
    if (w->array[k].sparse) return;  // there a literal is sparse data
    matrix m = made(1 + w->below(4), 1 + w->below(4), false);
    std::string s = w->whole(k) + " := [";
    for (int i = 0; i < m.rows; ++i) {
        s += "[";
        for (int j = 0; j < m.cols; ++j) {
            m.put(i, j, w->below(19) - 9);
            s += (j ? "," : "") + number(m.at(i, j));
        }
        s += "]";
    }
    w->say(s + "]");
    w->assign(k, m);
}

void entry(world *w)
{
    const int k = w->existing();
    if (k < 0) return;
    matrix &m = w->array[k];
    const int i = w->below(m.rows), j = w->below(m.cols), v = w->below(7) - 3;
    std::string place = w->name(k) + "[" + number(i + 1) + "," + number(j + 1) + "]";
    if (w->below(2)) place = w->name(k) + "[" + number(i + j * m.rows + 1) + "]";
    if (w->below(3) == 0) {
        w->say(place + " := " + place + " + " + number(v));
        m.put(i, j, m.at(i, j) + v);
    } else {
        w->say(place + " := " + number(v));
        m.put(i, j, v);
    }
}

void scalar(world *w)
{
    const int k = w->existing();
    if (k < 0) return;
    const int v = w->below(4) - 1;
    w->say(w->whole(k) + " := " + number(v));
    matrix &m = w->array[k];
    for (int i = 0; i < m.rows; ++i) {
        for (int j = 0; j < m.cols; ++j) m.put(i, j, v);
    }
}

void section(world *w)
{
    const int k = w->existing();
    if (k < 0 || w->array[k].sparse) return;
    matrix &m = w->array[k];
    const int r1 = w->below(m.rows), r2 = r1 + w->below(m.rows - r1);
    const int c1 = w->below(m.cols), c2 = c1 + w->below(m.cols - c1);
    const std::string part = "[" + w->name(k) + "[" + number(r1 + 1) + "~" + number(r2 + 1) + "," +
                             number(c1 + 1) + "~" + number(c2 + 1) + "]]";
    const int v = w->below(9);
    w->say(part + " := " + part + " + " + number(v));
    for (int i = r1; i <= r2; ++i) {
        for (int j = c1; j <= c2; ++j) m.put(i, j, m.at(i, j) + v);
    }
}

void transpose(world *w)
{
    const int k = w->below(names), from = w->existing();
    if (from < 0) return;
    const matrix &m = w->array[from];
    matrix t = made(m.cols, m.rows, m.sparse);
    for (int i = 0; i < m.rows; ++i) {
        for (int j = 0; j < m.cols; ++j) t.put(j, i, m.at(i, j));
    }
    w->say(w->whole(k) + " := Trans " + w->whole(from));
    w->assign(k, t);
}

void scale(world *w)
{
    const int k = w->below(names), from = w->existing();
    if (from < 0) return;
    const int v = w->below(5) - 2;
    matrix t = w->array[from];
    for (int i = 0; i < t.rows; ++i) {
        for (int j = 0; j < t.cols; ++j) t.put(i, j, t.at(i, j) * v);
    }
    w->say(w->whole(k) + " := " + w->whole(from) + " * " + (v < 0 ? "(" + number(v) + ")" : number(v)));
    w->assign(k, t);
}

void add(world *w)
{
    const int k = w->below(names), x = w->existing(), y = w->existing();
    if (x < 0 || y < 0) return;
    const matrix &a = w->array[x], &b = w->array[y];
    if (a.rows != b.rows || a.cols != b.cols) return;
    const bool minus = w->below(2);
    matrix t = made(a.rows, a.cols, a.sparse && b.sparse);
    for (int i = 0; i < t.rows; ++i) {
        for (int j = 0; j < t.cols; ++j) t.put(i, j, a.at(i, j) + (minus ? -b.at(i, j) : b.at(i, j)));
    }
    w->say(w->whole(k) + " := " + w->whole(x) + (minus ? " - " : " + ") + w->whole(y));
    w->assign(k, t);
}

void multiply(world *w)
{
    const int k = w->below(names), x = w->existing(), y = w->existing();
    if (x < 0 || y < 0) return;
    const matrix &a = w->array[x], &b = w->array[y];
    if (a.cols != b.rows) return;
    matrix t = made(a.rows, b.cols, a.sparse && b.sparse);
    for (int i = 0; i < t.rows; ++i) {
        for (int j = 0; j < t.cols; ++j) {
            double sum = 0;
            for (int l = 0; l < a.cols; ++l) sum += a.at(i, l) * b.at(l, j);
            t.put(i, j, sum);
        }
    }
    w->say(w->whole(k) + " := " + w->whole(x) + " * " + w->whole(y));
    w->assign(k, t);
}

void join(world *w)
{
    const int k = w->below(names), x = w->existing(), y = w->existing();
    if (x < 0 || y < 0) return;
    const matrix &a = w->array[x], &b = w->array[y];
    if (a.sparse || b.sparse || a.rows != b.rows || a.cols == 1 || a.cols + b.cols > 9) return;
    matrix t = made(a.rows, a.cols + b.cols, false);
    for (int i = 0; i < t.rows; ++i) {
        for (int j = 0; j < t.cols; ++j) t.put(i, j, j < a.cols ? a.at(i, j) : b.at(i, j - a.cols));
    }
    w->say(w->whole(k) + " := " + w->whole(x) + " _ " + w->whole(y));
    w->assign(k, t);
}

void diagonal(world *w)
{
    const int k = w->existing();
    if (k < 0) return;
    matrix &m = w->array[k];
    const int v = w->below(5);
    w->say("Diag[" + w->name(k) + "] := " + number(v));
    for (int i = 0; i < m.rows && i < m.cols; ++i) m.put(i, i, v);
}

void cancel(world *w)
{
    const int k = w->existing();
    if (k < 0) return;
    w->say("@" + w->whole(k));
    w->array[k] = matrix();
}

void become_sparse(world *w)
{
    const int k = w->existing();
    if (k < 0) return;
    matrix &m = w->array[k];
    matrix t = made(m.rows, m.cols, true);
    for (int i = 0; i < m.rows; ++i) {
        for (int j = 0; j < m.cols; ++j) t.put(i, j, m.at(i, j));
    }
    w->say("Sparse" + w->whole(k));
    m = t;
}

// What f(i, j) gives, in the shape of m.
template <class F> matrix mapped(const matrix &m, bool sparse, F f)
{
    matrix t = made(m.rows, m.cols, sparse);
    for (int i = 0; i < m.rows; ++i) {
        for (int j = 0; j < m.cols; ++j) t.put(i, j, f(i, j));
    }
    return t;
}

void comprehend(world *w)
{
    const int k = w->below(names), a = w->below(7) - 3, b = w->below(5) - 2;
    const bool two = w->below(3);
    matrix m = made(1 + w->below(5), two ? 1 + w->below(5) : 1, false);
    std::string s = w->whole(k) + " := [<i = 1, " + number(m.rows) + ">";
    if (two) s += " <j = 1, " + number(m.cols) + ">";
    w->say(s + " [(i - 2)*(" + number(a) + (two ? ") + j*(" + number(b) + ")]]" : ")]]"));
    m = mapped(m, false, [=](int i, int j) { return (i - 1) * a + (two ? (j + 1) * b : 0); });
    // under a sparse target the entries are sparse data; they are the same
    w->assign(k, m);
}

void sparse_data(world *w)
{
    const int k = w->existing();
    if (k < 0 || !w->array[k].sparse) return;
    matrix m = made(w->array[k].rows, w->array[k].cols, true);
    std::string s = w->whole(k) + " := [";
    for (int rows = w->below(4); rows > 0; --rows) {
        const int i = w->below(m.rows);
        s += "[" + number(i + 1);
        for (int n = w->below(4); n > 0; --n) {
            const int j = w->below(m.cols), v = w->below(5) - 2;
            m.put(i, j, v);
            s += ", " + number(j + 1) + ", " + number(v);
        }
        s += w->below(2) && rows > 1 ? "], " : "]";
    }
    w->say(s + "]");
    w->assign(k, m);
}

void add_scalar(world *w)
{
    const int k = w->below(names), from = w->existing(), v = w->below(5);
    if (from < 0) return;
    const matrix &m = w->array[from];
    const bool front = w->below(2);
    w->say(w->whole(k) +
           " := " + (front ? number(v) + " - " + w->whole(from) : w->whole(from) + " + " + number(v)));
    w->assign(k, mapped(m, false, [&](int i, int j) { return front ? v - m.at(i, j) : m.at(i, j) + v; }));
}

void change_signs(world *w)
{
    const int k = w->below(names), from = w->existing();
    if (from < 0) return;
    const matrix &m = w->array[from];
    const bool negate = w->below(2);
    w->say(w->whole(k) + " := " + (negate ? "-" + w->whole(from) : "|" + w->whole(from) + "|"));
    w->assign(
        k, mapped(m, m.sparse, [&](int i, int j) { return negate ? -m.at(i, j) : std::fabs(m.at(i, j)); }));
}

void entrywise(world *w)
{
    const int k = w->below(names), x = w->existing(), y = w->existing();
    if (x < 0 || y < 0) return;
    const matrix &a = w->array[x], &b = w->array[y];
    if (a.sparse || b.sparse || a.rows != b.rows || a.cols != b.cols || a.rows == a.cols) return;
    w->say(w->whole(k) + " := " + w->whole(x) + " * " + w->whole(y));
    w->assign(k, mapped(a, false, [&](int i, int j) { return a.at(i, j) * b.at(i, j); }));
}

void by_pairs(world *w)
{
    const int k = w->below(names), x = w->existing(), y = w->existing();
    if (x < 0 || y < 0) return;
    const matrix &a = w->array[x], &b = w->array[y];
    if (a.sparse || b.sparse || a.cols != b.rows) return;
    w->say(w->whole(k) + " := Altmult(" + w->whole(x) + ", " + w->whole(y) + ")");
    w->assign(k, mapped(made(a.rows, b.cols, false), false, [&](int i, int j) {
                  double sum = 0;
                  for (int l = 0; l < a.cols; ++l) sum += a.at(i, l) * b.at(l, j);
                  return sum;
              }));
}

void take_diagonal(world *w)
{
    const int k = w->below(names), from = w->existing();
    if (from < 0) return;
    const matrix &m = w->array[from];
    w->say(w->whole(k) + " := Diag" + w->whole(from));
    w->assign(k, mapped(made(m.rows < m.cols ? m.rows : m.cols, 1, false), false,
                        [&](int i, int) { return m.at(i, i); }));
}

void take_section(world *w)
{
    const int k = w->below(names), from = w->existing();
    if (from < 0 || w->array[from].sparse) return;
    const matrix &m = w->array[from];
    const int r1 = w->below(m.rows), r2 = r1 + w->below(m.rows - r1);
    const int c1 = w->below(m.cols), c2 = c1 + w->below(m.cols - c1);
    w->say(w->whole(k) + " := [" + w->name(from) + "[" + number(r1 + 1) + "~" + number(r2 + 1) + ", " +
           number(c1 + 1) + "~" + number(c2 + 1) + "]]");
    w->assign(k, mapped(made(r2 - r1 + 1, c2 - c1 + 1, false), false,
                        [&](int i, int j) { return m.at(r1 + i, c1 + j); }));
}

// A slot takes an array of its own shape and kind, or is empty.
void fill_slot(world *w)
{
    const int n = w->below(slots), from = w->existing();
    if (from < 0) return;
    const matrix &m = w->array[from];
    matrix &t = w->slot[n];
    if (t.rows && (t.rows != m.rows || t.cols != m.cols)) return;
    w->say("%[" + number(n + 1) + "] := " + w->whole(from));
    t = mapped(m, t.rows ? t.sparse : m.sparse, [&](int i, int j) { return m.at(i, j); });
}

void read_slot(world *w)
{
    const int k = w->below(names), n = w->below(slots);
    matrix &t = w->slot[n];
    if (!t.rows) return;
    const int i = w->below(t.rows), j = w->below(t.cols), v = w->below(9) - 4;
    if (w->below(2)) {
        w->say("%[" + number(n + 1) + "][" + number(i + 1) + ", " + number(j + 1) + "] := " + number(v));
        t.put(i, j, v);
    } else {
        w->say(w->whole(k) + " := [%" + number(n + 1) + "]");
        w->assign(k, t);
    }
}

// The value of an expression stands in [<], and is taken from there.
void system_array(world *w)
{
    const int k = w->below(names), from = w->existing(), v = 1 + w->below(3);
    if (from < 0) return;
    const matrix &m = w->array[from];
    w->say(w->whole(from) + " * " + number(v));
    w->say(w->whole(k) + " := [<]");
    w->assign(k, mapped(m, m.sparse, [&](int i, int j) { return m.at(i, j) * v; }));
}

// A sum over all, into an entry; a loop over a column; a function that changes its parameter.
void statements_of_entries(world *w)
{
    const int k = w->existing(), v = w->below(5) - 2;
    if (k < 0) return;
    matrix &m = w->array[k];
    const int kind = w->below(3), j = w->below(m.cols);
    if (kind == 0) {
        double sum = 0;
        for (int i = 0; i < m.rows; ++i) {
            for (int c = 0; c < m.cols; ++c) sum += m.at(i, c);
        }
        w->say(w->name(k) + "[1, " + number(j + 1) + "] := Sumup" + w->whole(k));
        m.put(0, j, sum);
    } else if (kind == 1) {
        const std::string place = w->name(k) + "[i, " + number(j + 1) + "]";
        w->say("for i = 1 to " + number(m.rows) + " do " + place + " := " + place + " + i od");
        for (int i = 0; i < m.rows; ++i) m.put(i, j, m.at(i, j) + i + 1);
    } else {
        w->say("Put(" + w->whole(k) + ", " + number(j + 1) + ", " + number(v) + ")");
        m.put(0, j, v);
        for (int i = 0; i < m.rows; ++i) {
            for (int c = 0; c < m.cols; ++c) m.put(i, c, 2 * m.at(i, c));
        }
    }
}

typedef void (*statement)(world *);
const statement statements[] = {declare,
                                literal,
                                literal,
                                entry,
                                entry,
                                entry,
                                entry,
                                scalar,
                                section,
                                section,
                                transpose,
                                scale,
                                add,
                                multiply,
                                multiply,
                                join,
                                diagonal,
                                cancel,
                                become_sparse,
                                comprehend,
                                sparse_data,
                                add_scalar,
                                change_signs,
                                entrywise,
                                by_pairs,
                                take_diagonal,
                                take_section,
                                fill_slot,
                                read_slot,
                                system_array,
                                statements_of_entries};

// Entries that have grown are zeroed, so that every sum stays exact.
void keep_small(world *w)
{
    for (int k = 0; k < names; ++k) {
        matrix &m = w->array[k];
        bool grown = false;
        for (int i = 0; i < m.rows; ++i) {
            for (int j = 0; j < m.cols; ++j) grown = grown || std::fabs(m.at(i, j)) > largest;
        }
        if (!grown) continue;
        w->say(w->whole(k) + " := 0");
        for (int i = 0; i < m.rows; ++i) {
            for (int j = 0; j < m.cols; ++j) m.put(i, j, 0);
        }
    }
}

// Comparison ------------------------------------------------------------------------------------------------

double stored(array *a, int i, int j)
{
    entry_place place;
    if (!new_array_quoly_ptr(a, i, j, true, 0, "a", &place)) return NAN;
    return place.slot && *place.slot ? (*place.slot)->num->real : 0;
}

void compare_one(array *a, const matrix &m, const std::string &text)
{
    ASSERT_EQ(a != nullptr, m.rows != 0) << text;
    if (!a) return;
    ASSERT_EQ(a->arr_rows, m.rows) << text;
    ASSERT_EQ(a->arr_cols, m.cols) << text;
    ASSERT_EQ(a->arr_sparse != nullptr, m.sparse) << text;
    if (a->arr_sparse) {
        ASSERT_TRUE(sparse_is_sound(a->arr_sparse, m.rows, m.cols)) << text;
        ASSERT_EQ(sparse_entries(a->arr_sparse, m.rows), static_cast<std::int64_t>(m.cells.size())) << text;
    }
    for (int i = 0; i < m.rows; ++i) {
        for (int j = 0; j < m.cols; ++j) ASSERT_EQ(stored(a, i, j), m.at(i, j)) << text;
    }
}

void compare(world *w)
{
    ASSERT_TRUE(store_is_sound());
    ASSERT_EQ(newest_value, nullptr);
    ASSERT_EQ(first_available, 1);
    for (int k = 0; k < names; ++k) {
        token_rec name = {};
        name.text[0] = static_cast<char>('a' + k);
        name.index = -1;
        ASSERT_NO_FATAL_FAILURE(
            compare_one(find_array_named(&name), w->array[k], w->name(k) + "\n" + w->text));
    }
    for (int n = 0; n < slots; ++n) {
        ASSERT_NO_FATAL_FAILURE(
            compare_one(array_in_slot(n), w->slot[n], "%" + number(n + 1) + "\n" + w->text));
    }
}

TEST(ArrayStatements, RandomOnesAgreeWithTheModel)
{
    world w;
    SCOPED_TRACE("seed " + std::to_string(w.r.seed));
    session_text("@[**];\nFunc Put(p, j, v) = p[1, j] := v; [p] := [p]*2 .\n");
    while (w.said < rounds) {
        w.text.clear();
        statements[w.below(static_cast<int>(sizeof statements / sizeof *statements))](&w);
        keep_small(&w);
        if (w.text.empty()) continue;
        const std::string shown = session_text(w.text);
        ASSERT_EQ(shown.find("***"), std::string::npos) << w.text << shown;
        ASSERT_NO_FATAL_FAILURE(compare(&w));
    }
    session_text("@[**];\n");
    for (int n = 0; n < slots; ++n) {
        if (array_in_slot(n)) remove_nameless(array_in_slot(n));
        if (arrstash) arrstash[n] = nullptr;
    }
    EXPECT_EQ(endarr, -1);
    EXPECT_TRUE(store_is_sound());
}

// Values that a failing statement holds are given back.
TEST(ArrayStatements, FailingOnesLoseNothing)
{
    session_text("@[**];\n[a] := [[1,2][3,4]];\nArray s[2,2] Sparse;\ns[1,2] := 5;\n[a] * 1;\n");
    const std::string bad =
        "[a] + ([a]*2 + [a] _ (1/0));\n[a] * 2 + [(1,2)];\n[a] := [(1,2,nowhere)];\n[a] * 3 * nowhere;\n"
        "[s] * 2 + ([s] * 3 + nowhere);\n[[1,2][3,nowhere]];\n[<i = 1,5> <j = 1,5> [i/(j-4)]];\n"
        "[a] := [s] * [s] * nowhere;\nAltmult([a] * 2, [s]);\n[a[1~2,1~5]];\n[s] := [[1,1,4,2,nowhere]];\n";
    session_text(bad);
    const std::int64_t quolys = live_quolys();
    for (int k = 0; k < 20; ++k) session_text(bad);
    EXPECT_EQ(live_quolys(), quolys);
    EXPECT_EQ(first_available, 1);
    EXPECT_EQ(newest_value, nullptr);
    EXPECT_TRUE(store_is_sound());
    session_text("@[**];\n");
}

}  // namespace

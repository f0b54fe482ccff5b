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
#include "session/arr_value.h"
#include "tests/support/long_numbers.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

#ifdef KELMAR_MALLOC_RECORDS
constexpr int rounds = 8000;
#else
constexpr int rounds = 100000;
#endif
constexpr int batch = 20;        // statements between two comparisons
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

struct world {
    test_random r;
    matrix array[names];
    std::string text;

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

typedef void (*statement)(world *);
const statement statements[] = {declare,  literal, literal,  entry,     entry,        entry, entry,
                                scalar,   section, section,  transpose, scale,        add,   multiply,
                                multiply, join,    diagonal, cancel,    become_sparse};

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

void compare(world *w)
{
    ASSERT_TRUE(store_is_sound());
    ASSERT_EQ(newest_value, nullptr);
    ASSERT_EQ(first_available, 1);
    for (int k = 0; k < names; ++k) {
        token_rec name = {};
        name.text[0] = static_cast<char>('a' + k);
        name.index = -1;
        array *a = find_array_named(&name);
        const matrix &m = w->array[k];
        ASSERT_EQ(a != nullptr, m.rows != 0) << w->text;
        if (!a) continue;
        ASSERT_EQ(a->arr_rows, m.rows) << w->text;
        ASSERT_EQ(a->arr_cols, m.cols) << w->text;
        ASSERT_EQ(a->arr_sparse != nullptr, m.sparse) << name.text << "\n" << w->text;
        if (a->arr_sparse) {
            ASSERT_TRUE(sparse_is_sound(a->arr_sparse, m.rows, m.cols)) << w->text;
            ASSERT_EQ(sparse_entries(a->arr_sparse, m.rows), static_cast<std::int64_t>(m.cells.size()));
        }
        for (int i = 0; i < m.rows; ++i) {
            for (int j = 0; j < m.cols; ++j)
                ASSERT_EQ(stored(a, i, j), m.at(i, j)) << name.text << "\n" << w->text;
        }
    }
}

TEST(ArrayStatements, RandomOnesAgreeWithTheModel)
{
    world w;
    SCOPED_TRACE("seed " + std::to_string(w.r.seed));
    session_text("@[**];\n");
    for (int round = 0; round < rounds; round += batch) {
        w.text.clear();
        for (int k = 0; k < batch; ++k) {
            statements[w.below(static_cast<int>(sizeof statements / sizeof *statements))](&w);
            keep_small(&w);
        }
        const std::string shown = session_text(w.text);
        ASSERT_EQ(shown.find("***"), std::string::npos) << w.text << shown;
        ASSERT_NO_FATAL_FAILURE(compare(&w));
    }
    session_text("@[**];\n");
    EXPECT_EQ(endarr, -1);
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

// tests/unit/session/builtin_arrays_test.cpp -- built-ins of arrays, loops over positions, against a model.
#include "session/array_args.h"
#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>
#include "tests/support/session_text.h"

using namespace kelmar_test;

namespace {

// A matrix of small whole numbers, most of them 0, with the statements that make it.
struct model {
    int rows, cols;
    std::vector<int> entry;  // column by column

    int &at(int row, int col)
    {
        return entry[static_cast<std::size_t>(row + col * rows)];
    }

    std::string literal(const std::string &name) const
    {
        std::string text = "[" + name + "] := [";
        for (int row = 0; row < rows; ++row) {
            for (int col = 0; col < cols; ++col) {
                const int k = entry[static_cast<std::size_t>(row + col * rows)];
                text += (col ? ", " : "[") + std::to_string(k);
            }
            text += "]";
        }
        return text + "]:\n";
    }
};

struct maker {
    std::mt19937 random;

    int below(int n)
    {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    }

    model matrix()
    {
        model m = {1 + below(6), 1 + below(6), {}};
        for (int k = 0; k < m.rows * m.cols; ++k) m.entry.push_back(below(2) ? 0 : below(9) - 4);
        return m;
    }
};

// Every entry of the array as a digit string that the model can make too.
std::string shown(const std::string &name)
{
    return "for c = 1 to Cols[" + name + "] do for r = 1 to Deg[" + name + "]/Cols[" + name + "] do !(" +
           name + "[r, c], ' ') od od\n";
}

std::string shown(const model &m)
{
    std::string text;
    for (int k : m.entry) text += std::to_string(k) + " ";
    return text;
}

// What the session writes for the array after the statements, in the ordinary and the sparse kind.
void check_both_kinds(model before, const std::string &statement, const std::string &sparse_statement,
                      const model &dense_after, const model &sparse_after)
{
    const std::string dense = session_text(before.literal("m") + statement + ":\n" + shown("m") + "@[m]\n");
    EXPECT_NE(dense.find(shown(dense_after)), std::string::npos) << statement << dense << shown(dense_after);
    const std::string sparse = session_text(before.literal("m") + "Sparse[m]:\n" + sparse_statement + ":\n" +
                                            shown("m") + "@[m]\n");
    EXPECT_NE(sparse.find(shown(sparse_after)), std::string::npos)
        << sparse_statement << sparse << shown(sparse_after);
}

TEST(BuiltInsOfArrays, SwitchRowsAndColumns)
{
    maker g{std::mt19937(1)};
    for (int round = 0; round < 100; ++round) {
        model m = g.matrix();
        const model before = m;
        const int i = g.below(m.rows), j = g.below(m.rows);
        for (int col = 0; col < m.cols; ++col) std::swap(m.at(i, col), m.at(j, col));
        const std::string text = "Switchrow([m], " + std::to_string(i + 1) + ", " + std::to_string(j + 1) +
                                 ")";
        check_both_kinds(before, text, text, m, m);

        model n = before;
        const int c = g.below(m.cols), d = g.below(m.cols);
        for (int row = 0; row < n.rows; ++row) std::swap(n.at(row, c), n.at(row, d));
        const std::string by_columns = "Switchcol([m], " + std::to_string(c + 1) + ", " +
                                       std::to_string(d + 1) + ")";
        check_both_kinds(before, by_columns, by_columns, n, n);
    }
}

TEST(BuiltInsOfArrays, ReverseEntriesOrRows)
{
    maker g{std::mt19937(2)};
    for (int round = 0; round < 100; ++round) {
        const model m = g.matrix();
        model entries = m, rows = m;
        std::reverse(entries.entry.begin(), entries.entry.end());
        for (int col = 0; col < m.cols; ++col) {
            const auto first = rows.entry.begin() + col * m.rows;
            std::reverse(first, first + m.rows);
        }
        check_both_kinds(m, "Reverse[m]", "Reverse[m]", entries, rows);
    }
}

TEST(BuiltInsOfArrays, ScaleAndTranspose)
{
    maker g{std::mt19937(3)};
    for (int round = 0; round < 100; ++round) {
        const model m = g.matrix();
        model scaled = m;
        const int q = g.below(5) - 2;
        for (int &k : scaled.entry) k *= q;
        const std::string text = "Scale([m], " + std::to_string(q) + ")";
        check_both_kinds(m, text, text, scaled, scaled);

        model turned = {m.cols, m.rows, std::vector<int>(m.entry.size())};
        for (int row = 0; row < m.rows; ++row) {
            for (int col = 0; col < m.cols; ++col) {
                turned.at(col, row) = m.entry[static_cast<std::size_t>(row + col * m.rows)];
            }
        }
        check_both_kinds(m, "[m] := Trans[m]", "STrans[m]", turned, turned);
    }
}

TEST(BuiltInsOfArrays, LocateTheFirstPlace)
{
    maker g{std::mt19937(4)};
    for (int round = 0; round < 200; ++round) {
        const model m = g.matrix();
        const int q = g.below(9) - 4;
        const auto found = std::find(m.entry.begin(), m.entry.end(), q);
        const std::string place = found == m.entry.end() ? "0" : std::to_string(found - m.entry.begin() + 1);
        const std::string question = "Locate([m], " + std::to_string(q) + ")";
        EXPECT_EQ(last_value(m.literal("m") + question), place) << m.literal("m") << q;
        EXPECT_EQ(last_value(m.literal("m") + "Sparse[m]:\n" + question), place) << m.literal("m") << q;
        session_text("@[m]\n");
    }
}

TEST(BuiltInsOfArrays, TopolyEvaluatesAsItsCoefficients)
{
    maker g{std::mt19937(5)};
    session_text("&(J = x)\n");
    for (int round = 0; round < 100; ++round) {
        model m = g.matrix();
        m.rows *= m.cols;
        m.cols = 1;
        double at_two = 0;
        for (std::size_t k = m.entry.size(); k-- > 0;) at_two = 2 * at_two + m.entry[k];
        const std::string value = std::to_string(static_cast<long>(at_two));
        EXPECT_EQ(last_value(m.literal("m") + "Topoly([m])#2"), value) << m.literal("m");
        EXPECT_EQ(last_value(m.literal("m") + "Sparse[m]:\nTopoly([m])#2"), value) << m.literal("m");
        session_text("@[m]\n");
    }
    session_text("&(J = -x)\n");
}

// A sparse column whose elements rise, with gaps between them.
std::string list_text(const std::string &name, const std::multiset<int> &elements, maker *g)
{
    std::string text = "Array " + name + "[100] Sparse:\n";
    int row = 1;
    for (int k : elements) {
        row += g->below(3);
        text += name + "[" + std::to_string(row++) + "] := " + std::to_string(k) + ":\n";
    }
    return text;
}

TEST(BuiltInsOfArrays, SetsAreMergedInOrder)
{
    maker g{std::mt19937(6)};
    for (int round = 0; round < 100; ++round) {
        std::multiset<int> a, b;
        for (int k = g.below(12); k > 0; --k) a.insert(1 + g.below(15));
        for (int k = g.below(12); k > 0; --k) b.insert(1 + g.below(15));
        const std::set<int> sa(a.begin(), a.end()), sb(b.begin(), b.end());
        std::vector<int> merged, together, common;
        std::merge(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(merged));
        std::set_union(sa.begin(), sa.end(), sb.begin(), sb.end(), std::back_inserter(together));
        std::set_intersection(sa.begin(), sa.end(), sb.begin(), sb.end(), std::back_inserter(common));
        const std::pair<const char *, const std::vector<int> *> cases[] = {
            {"Merge", &merged}, {"Union", &together}, {"Intersect", &common}};
        for (const auto &one : cases) {
            const model expected = {static_cast<int>(one.second->size()), 1, *one.second};
            const std::string text = session_text(list_text("a", a, &g) + list_text("b", b, &g) + one.first +
                                                  "([a], [b]):\n[c] := [<]:\n" + shown("c") + "@[**]\n");
            EXPECT_NE(text.find(">" + (expected.rows ? shown(expected) : "0 ")), std::string::npos)
                << one.first << text << shown(expected);
        }
    }
}

TEST(LoopsOverPositions, VisitEachColumnOnceInOrder)
{
    maker g{std::mt19937(7)};
    for (int round = 0; round < 200; ++round) {
        model m = g.matrix();
        std::set<int> columns, of_two;
        const int r1 = g.below(m.rows), r2 = g.below(m.rows);
        for (int row = 0; row < m.rows; ++row) {
            for (int col = 0; col < m.cols; ++col) {
                if (!m.at(row, col)) continue;
                columns.insert(col + 1);
                if (row == r1 || row == r2) of_two.insert(col + 1);
            }
        }
        std::string all, some;
        for (int k : columns) all += std::to_string(k) + ",";
        for (int k : of_two) some += std::to_string(k) + ",";
        const std::string rows = std::to_string(r1 + 1) + ", " + std::to_string(r2 + 1);
        const std::string text = session_text(m.literal("m") + "Sparse[m]:\nfor i = [m] do !(i, ',') od\n" +
                                              "for i = [m] " + rows + " do !(i, ',') od\n@[m]\n");
        EXPECT_NE(text.find(">" + all + "\n"), std::string::npos) << m.literal("m") << text << all;
        EXPECT_NE(text.rfind(">" + some + "\n"), std::string::npos) << m.literal("m") << text << some;
    }
}

}  // namespace

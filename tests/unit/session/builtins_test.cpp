// The table of built-in functions.
#include "session/builtins.h"
#include <gtest/gtest.h>
#include <set>
#include <string>
#include "numbers/startup.h"
#include "tests/support/data_files.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct table_row {
    int index;
    const char *second, *name, *arguments, *result, *errors, *example;
};

const table_row rows[] = {
#define KELMAR_BUILTIN(index, second, name, handler, ...) {index, second, name, __VA_ARGS__},
#include "session/builtins.def"
#undef KELMAR_BUILTIN
};

TEST(BuiltinTable, RowsStandAtTheirPlacesWithDistinctShortNames)
{
    std::set<std::string> names;
    ASSERT_EQ(std::size(rows), std::size_t{builtin_limit});
    for (int k = 0; k < builtin_limit; ++k) {
        EXPECT_EQ(rows[k].index, k);
        EXPECT_LE(std::string(rows[k].name).size(), 10u);
        EXPECT_TRUE(names.insert(rows[k].name).second) << rows[k].name;
    }
}

TEST(BuiltinTable, ExactlySixteenRowsAreAliases)
{
    const std::set<int> aliases = {1, 4, 5, 7, 9, 12, 14, 40, 66, 68, 70, 79, 82, 89, 101, 103};
    for (const table_row &row : rows) {
        const std::string second = row.second;
        EXPECT_EQ(second, aliases.count(row.index) ? "*" + std::to_string(row.index) : row.name);
    }
}

}  // namespace

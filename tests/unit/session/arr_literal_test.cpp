// Arrays written out that are longer than an array may be.
#include <gtest/gtest.h>
#include "matrix/limits.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

std::string list_of(std::int32_t entries)
{
    std::string text = "[a] := [(1";
    for (std::int32_t k = 1; k < entries; ++k) text += ",1";
    return "@[**]\n" + text + ")]\nDeg[a]\n";
}

TEST(ArrayLiteral, OfAsManyEntriesAsThereMayBe)
{
    const std::string shown = session_text(list_of(literal_limit));
    EXPECT_NE(shown.find("\n999999\n"), std::string::npos);
}

TEST(ArrayLiteral, OfOneEntryMoreIsAnErrorAndTheSessionGoesOn)
{
    const std::string shown = session_text(list_of(literal_limit + 1) + "1 + 1\n");
    EXPECT_NE(shown.find("This list is too long."), std::string::npos);
    EXPECT_NE(shown.find("\n2\n"), std::string::npos);
}

}  // namespace

// The evaluators of scalar expressions by themselves: where each starts, and which token it leaves in hand.
#include "session/expr.h"
#include "matrix/array_vars.h"
#include "quoly/owned.h"
#include "session/arr_statement.h"
#include "session/builtin_args.h"
#include "session/factor.h"
#include "tests/support/quolys.h"
#include "tests/support/session_text.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

struct Evaluators : testing::Test {
    std::string kept;
    input_stream text = {};

    static void SetUpTestSuite()
    {
        prepare_session_once();
    }

    // The first token is in hand.
    void read(const std::string &statement)
    {
        kept = statement + "\n";
        open_text(&text, reinterpret_cast<const unsigned char *>(kept.data()), kept.size());
        Input = &text;
        tt_flag = 1;
        leftover[0] = 0;
        clear_ring();
        scanner(&Input, &token, &zilch);
    }

    void TearDown() override
    {
        session_text("@(v)\n@[a]\n@[b]\n");
    }
};

using reader = void (*)(input_stream **, quolynode **, name_node **);

}  // namespace

TEST_F(Evaluators, ATermATermOfWhichTheFirstFactorIsThereAndAFactorThatIs)
{
    session_text("v := 3\n");
    const struct {
        reader read_on;
        const char *first, *text, *value, *behind;
    } cases[] = {
        {old_term, "{#0}", "2*v^2 + 5", "{#18}", "+"},    {old_term, "{#7}", "v - 5", "{#3}", "-"},
        {half_term, "{#5}", "* 4/2 + 1", "{#10}", "+"},   {half_term, "{#5}", "+ 1", "{#5}", "+"},
        {half_fact, "{#5}", "^2*3", "{#25}", "*"},        {half_fact, "{#5}", "*3", "{#5}", "*"},
        {half_expre, "{#5}", "* 4/2 + 1;", "{#11}", ";"}, {old_expre, "{#0}", "2*v^2 + 5;", "{#23}", ";"},
        {old_fact, "{#0}", "-v^2*2", "{#-9}", "*"},
    };
    for (const auto &c : cases) {
        value_operand v(c.first);
        read(c.text);
        own(&v.q);
        c.read_on(&Input, &v.q, &zilch);
        disown();
        EXPECT_EQ(value_text(v.q), c.value) << c.text;
        EXPECT_STREQ(token.text, c.behind) << c.text;
    }
}

TEST_F(Evaluators, AnArgumentIsReadWhereItStandsOnlyBehindItsSign)
{
    session_text("v := 3\n");
    operand v = {};
    own(&v.n);
    read("^v)");
    get_quoly_ptr(&Input, &v, &zilch);
    EXPECT_EQ(v.n, nullptr);
    ASSERT_TRUE(v.p && *v.p);
    EXPECT_EQ(value_text(*v.p), "{#3}");
    read("v + 1)");
    get_quoly_ptr(&Input, &v, &zilch);
    EXPECT_EQ(v.p, &v.n);
    EXPECT_EQ(value_text(v.n), "{#4}");
    EXPECT_STREQ(token.text, ")");
    free_quoly(&v.n);
    v = {};
    read("^(v + 2))");
    get_quoly_ptr(&Input, &v, &zilch);
    EXPECT_EQ(v.p, &v.n);
    EXPECT_EQ(value_text(v.n), "{#5}");
    disown();
    free_quoly(&v.n);
}

TEST_F(Evaluators, TheSlotOfAnEntryIsNullWhereASparseArrayHasNone)
{
    session_text("@[**]\n[a] := [(4, 5, 7)]\nArray b[3, 3] Sparse\nb[2, 2] := 8\n");
    token_rec name = {};
    quolynode **slot = nullptr;
    set_token(&name, "a");
    read("[2] + 1");
    new_arretrieve(&Input, &name, &slot, &zilch);
    ASSERT_TRUE(slot && *slot);
    EXPECT_EQ(value_text(*slot), "{#5}");
    EXPECT_STREQ(token.text, "+");
    set_token(&name, "b");
    read("[2, 2];");
    new_arretrieve(&Input, &name, &slot, &zilch);
    ASSERT_TRUE(slot && *slot);
    EXPECT_EQ(value_text(*slot), "{#8}");
    read("[1, 2];");
    new_arretrieve(&Input, &name, &slot, &zilch);
    EXPECT_EQ(slot, nullptr);
}

TEST_F(Evaluators, TheNextSignificantCharacterTellsOfALineEnd)
{
    session_text("1\n");
    int passed = 0;
    read("a  b");
    EXPECT_EQ(mygetchar(&passed), 'b');
    EXPECT_EQ(passed, 0);
    EXPECT_EQ(mygetchar(&passed), ';');  // of the terminal it stays unread
    EXPECT_EQ(passed, 1);
    EXPECT_EQ(mygetchar(&passed), ';');
    passed = 0;
    read("+ ; \n\n c");
    tt_flag = 0;
    EXPECT_EQ(mygetchar(&passed), ';');
    EXPECT_EQ(passed, 0);
    EXPECT_EQ(mygetchar(&passed), 'c');
    EXPECT_EQ(passed, 1);
    tt_flag = 1;
}

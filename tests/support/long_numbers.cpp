// tests/support/long_numbers.cpp -- conversion to and from GMP, biased random operands, the record audit.
//
// Random digits are drawn so that carries run: a digit is often 0, 1 or 2^28 - 1, and digits come in runs of
// one kind. A value near a power of the base is drawn now and then. The stashes are opened before any test.
#include "tests/support/long_numbers.h"
#include <gtest/gtest.h>
#include <cstdio>
#include <cstdlib>
#include "numbers/plain_quoly.h"

namespace kelmar_test {

using namespace kelmar;

// The stashes --------------------------------------------------------------------------------------------

struct stashes_open : testing::Environment {
    void SetUp() override
    {
        if (!numstash) open_stashes();
    }
};

static testing::Environment *const opened = testing::AddGlobalTestEnvironment(new stashes_open);

// Conversion ---------------------------------------------------------------------------------------------

void number_from_mpz(const mpz_t z, number *n)
{
    const int sign = mpz_sgn(z);
    std::size_t count = 1;
    std::uint32_t one[1] = {0};
    std::uint32_t *digits = one;
    if (sign != 0) {
        digits = static_cast<std::uint32_t *>(mpz_export(nullptr, &count, 1, 4, 0, 4, z));
    }
    numnode *head = nullptr, *tail = nullptr;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t digit = static_cast<std::int32_t>(digits[i]);
        numnode *node = new_digit(sign < 0 ? -digit : digit, nullptr);
        if (tail) {
            tail->next = node;
        } else {
            head = node;
        }
        tail = node;
    }
    n->head = head;
    n->tail = tail;
    n->size = static_cast<std::int32_t>(count);
    if (sign != 0) {
        void (*release)(void *, std::size_t);
        mp_get_memory_functions(nullptr, nullptr, &release);
        release(digits, count * 4);
    }
}

// Digits of both signs, and digits past the base, are taken at their value: chain_is_normal judges the form.
void number_to_mpz(const number *n, mpz_t z)
{
    bool one_sign = true;
    const int sign = n->head->digit < 0 ? -1 : 1;
    std::uint32_t *digits = static_cast<std::uint32_t *>(std::malloc(4 * static_cast<std::size_t>(n->size)));
    std::int32_t i = 0;
    for (const numnode *node = n->head; i < n->size; node = node->next, ++i) {
        const std::int32_t magnitude = sign * node->digit;
        if (magnitude < 0 || magnitude >= digit_base) one_sign = false;
        digits[i] = static_cast<std::uint32_t>(magnitude);
    }
    if (one_sign) {
        mpz_import(z, static_cast<std::size_t>(n->size), 1, 4, 0, 4, digits);
    } else {
        mpz_set_ui(z, 0);
        for (i = 0; i < n->size; ++i) {
            mpz_mul_2exp(z, z, digit_bits);
            const std::int32_t digit = static_cast<std::int32_t>(digits[i]);
            if (digit < 0) {
                mpz_sub_ui(z, z, static_cast<unsigned long>(-static_cast<long>(digit)));
            } else {
                mpz_add_ui(z, z, static_cast<unsigned long>(digit));
            }
        }
    }
    if (sign < 0) mpz_neg(z, z);
    std::free(digits);
}

void number_from_text(const char *decimal, number *n)
{
    mpz_t z;
    if (mpz_init_set_str(z, decimal, 10) != 0) ADD_FAILURE() << "not a number: " << decimal;
    number_from_mpz(z, n);
    mpz_clear(z);
}

// Random operands ----------------------------------------------------------------------------------------

// Names the seed when a test has failed, so that the run can be repeated.
struct seed_printer : testing::EmptyTestEventListener {
    std::uint64_t seed = 0;
    void OnTestEnd(const testing::TestInfo &info) override
    {
        if (info.result()->Failed() && seed != 0) {
            std::printf("KELMAR_SEED=%llu\n", static_cast<unsigned long long>(seed));
        }
        seed = 0;
    }
};

static seed_printer *printer()
{
    static seed_printer *made = nullptr;
    if (!made) {
        made = new seed_printer;
        testing::UnitTest::GetInstance()->listeners().Append(made);
    }
    return made;
}

test_random::test_random()
{
    const char *given = std::getenv("KELMAR_SEED");
    seed = given ? std::strtoull(given, nullptr, 10) : std::random_device{}();
    engine.seed(seed);
    printer()->seed = seed;
}

std::uint64_t test_random::below(std::uint64_t n)
{
    return engine() % n;
}

// One digit of the kind that a run draws.
static std::uint64_t digit_of_kind(test_random *r, std::uint64_t kind)
{
    switch (kind) {
    case 0: return 0;
    case 1: return static_cast<std::uint64_t>(digit_mask);
    case 2: return r->below(2);
    case 3: return static_cast<std::uint64_t>(digit_mask) - r->below(2);
    case 4: return std::uint64_t{1} << r->below(digit_bits);
    default: return r->below(static_cast<std::uint64_t>(digit_base));
    }
}

void biased_mpz(test_random *r, std::int32_t digits, bool negative, mpz_t z)
{
    std::int32_t size = digits;
    if (r->below(2) == 0) size = 1 + static_cast<std::int32_t>(r->below(static_cast<std::uint64_t>(digits)));
    mpz_set_ui(z, 0);
    if (r->below(16) == 0) {  // a power of the base, one less, or one more when that has no more digits
        mpz_set_ui(z, 1);
        mpz_mul_2exp(z, z, static_cast<mp_bitcnt_t>(digit_bits) * static_cast<mp_bitcnt_t>(size - 1));
        const std::uint64_t off = r->below(3);
        if (off == 1) mpz_sub_ui(z, z, 1);
        if (off == 2 && size > 1) mpz_add_ui(z, z, 1);
    } else {
        std::uint32_t few[64];
        std::uint32_t *all = few;
        if (size > 64) all = static_cast<std::uint32_t *>(std::malloc(4 * static_cast<std::size_t>(size)));
        for (std::int32_t i = 0; i < size;) {
            const std::uint64_t kind = r->below(8);
            std::uint64_t run = 1 + r->below(r->below(4) == 0 ? 20 : 3);
            for (; run > 0 && i < size; --run) all[i++] = static_cast<std::uint32_t>(digit_of_kind(r, kind));
        }
        mpz_import(z, static_cast<std::size_t>(size), 1, 4, 0, 4, all);
        if (all != few) std::free(all);
    }
    if (negative && r->below(2) == 0) mpz_neg(z, z);
}

// Operands ------------------------------------------------------------------------------------------------

long_operand::long_operand()
{
    n.size = 0;
    mpz_init(z);
}

long_operand::~long_operand()
{
    special_free(&n);
    mpz_clear(z);
}

void long_operand::draw(test_random *r, std::int32_t digits)
{
    biased_mpz(r, digits, true, z);
    load();
}

void long_operand::load()
{
    special_free(&n);
    number_from_mpz(z, &n);
}

number chain_of(std::initializer_list<std::int32_t> digits)
{
    number n;
    n.size = 0;
    n.head = n.tail = nullptr;
    for (std::int32_t digit : digits) {
        numnode *node = new_digit(digit, nullptr);
        if (n.tail) {
            n.tail->next = node;
        } else {
            n.head = node;
        }
        n.tail = node;
        ++n.size;
    }
    return n;
}

void expect_digits(const number *n, std::initializer_list<std::int32_t> digits)
{
    ASSERT_EQ(static_cast<std::size_t>(n->size), digits.size());
    EXPECT_TRUE(chain_is_normal(n, digit_base));
    const numnode *node = n->head;
    for (std::int32_t digit : digits) {
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->digit, digit);
        node = node->next;
    }
    EXPECT_EQ(node, nullptr);
}

bool holds_value(const number *n, const mpz_t z, std::int32_t base)
{
    if (!chain_is_normal(n, base)) return false;
    mpz_t found;
    mpz_init(found);
    if (base == digit_base) {
        number_to_mpz(n, found);
    } else {
        for (const numnode *node = n->head; node; node = node->next) {
            mpz_mul_si(found, found, base);
            if (node->digit < 0) {
                mpz_sub_ui(found, found, static_cast<unsigned long>(-node->digit));
            } else {
                mpz_add_ui(found, found, static_cast<unsigned long>(node->digit));
            }
        }
    }
    const bool same = mpz_cmp(found, z) == 0;
    mpz_clear(found);
    return same;
}

// The audit ----------------------------------------------------------------------------------------------

record_audit::record_audit() : numnodes(live_numnodes()), numbers(live_numbers()), quolys(live_quolys())
{
}

void record_audit::expect_unchanged(const char *where) const
{
    EXPECT_EQ(live_numnodes(), numnodes) << "digits are out: " << where;
    EXPECT_EQ(live_numbers(), numbers) << "numbers are out: " << where;
    EXPECT_EQ(live_quolys(), quolys) << "scalar values are out: " << where;
}

}  // namespace kelmar_test

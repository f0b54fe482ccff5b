// The start-up tables: their contents, and what is left of them when files are missing or spoiled.
#include "numbers/startup.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>
#include "numbers/compare.h"
#include "numbers/fields.h"
#include "numbers/radix.h"
#include "numbers/random.h"
#include "storage/sizes.h"
#include "tests/support/by_build.h"
#include "tests/support/data_files.h"
#include "tests/support/long_numbers.h"

using namespace kelmar;
using namespace kelmar_test;

namespace {

constexpr int last_row = builtin_limit - 1;  // of the table of built-ins

void load_all()
{
    EXPECT_EQ(output_of([] { initialize(data_directory.c_str()); }), "");
}

// The CRC-32 of zip files, over the low `bytes` bytes of each word, least significant first.
template <class T> std::uint32_t crc_of(const T *words, int count, int bytes)
{
    std::uint32_t crc = 0xffffffff;
    for (int k = 0; k < count; ++k) {
        for (int b = 0; b < bytes; ++b) {
            crc ^= static_cast<std::uint32_t>(words[k]) >> (8 * b) & 0xff;
            for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xedb88320 : 0);
        }
    }
    return ~crc;
}

std::vector<std::int32_t> words_of(const number *table, int count)
{
    std::vector<std::int32_t> words;
    for (int k = 0; k < count; ++k) words.push_back(table[k].word);
    return words;
}

// The number is z in its digits, and these are a normal chain.
void expect_digits(const number *n, const mpz_t z, const std::string &what)
{
    ASSERT_TRUE(chain_is_normal(n, digit_base)) << what;
    mpz_t found;
    mpz_init(found);
    number_to_mpz(n, found);
    EXPECT_EQ(mpz_cmp(found, z), 0) << what;
    mpz_clear(found);
}

}  // namespace

// Contents -----------------------------------------------------------------------------------------------

TEST(Startup, PrimesHaveTheRecordedChecksums)
{
    load_all();
    EXPECT_EQ(crc_of(small_prime, small_prime_count, 2), 0x0cdcebacu);
    EXPECT_EQ(crc_of(med_prime, med_prime_count, 4), 0x3efa4715u);
    EXPECT_EQ(crc_of(big_prime, big_prime_count, 4), 0xe2625b5eu);
    EXPECT_EQ(crc_of(lrgpme, lrgpme_count, 4), 0x611e8ff0u);
    EXPECT_EQ(crc_of(words_of(prime, prime_count).data(), prime_count, 4), 0x406f3f3au);
    EXPECT_EQ(crc_of(invs_prod, invs_prod_count, 4), 0x61c76f85u);
    EXPECT_EQ(lrgpme[1000], 2147462123);
    EXPECT_EQ(global_list[0], 19);
    EXPECT_EQ(global_list[global_list_count - 1], 929);
}

TEST(Startup, FieldsHaveTheRecordedChecksums)
{
    load_all();
    EXPECT_EQ(crc_of(f256prod, 65536, 2), 0x532bcfe7u);
    EXPECT_EQ(crc_of(f256inv + 1, 255, 2), 0x497c8790u);
    EXPECT_EQ(crc_of(f256sqr, 256, 2), 0xa222bb3au);
    EXPECT_EQ(crc_of(f2t16exp, 65536, 2), 0x06c1dfe1u);
    EXPECT_EQ(crc_of(f2t16inv + 1, 65535, 2), 0x5f513916u);
    EXPECT_EQ(crc_of(f2t16log + 1, 65535, 2), 0x1fd68baau);
    EXPECT_EQ(crc_of(f2t16sqr, 65536, 2), 0x11cbe454u);
}

TEST(Startup, PrimesOfTheListHaveEveryView)
{
    load_all();
    for (int i = 0; i < prime_count; ++i) {
        EXPECT_TRUE(is_longint(&prime[i], prime[i].word));
        EXPECT_EQ(prime[i].real, prime[i].word);
    }
    EXPECT_EQ(prime[0].word, 3001);
    EXPECT_EQ(prime[4].word, 19997);
    EXPECT_EQ(prime[5].word, 42359);
    EXPECT_EQ(prime[prime_count - 1].word, 48869);
}

TEST(Startup, ProductsOfPrimesFollowTheList)
{
    load_all();
    mpz_t product;
    mpz_init_set_ui(product, 1);
    std::vector<std::int32_t> digits;
    for (int i = 0; i < num_prod_count; ++i) {
        mpz_mul_ui(product, product, static_cast<unsigned>(prime[i + first_run_prime].word));
        expect_digits(&num_prod[i], product, "num_prod " + std::to_string(i));
        for (const numnode *node = num_prod[i].head; node; node = node->next) digits.push_back(node->digit);
    }
    mpz_clear(product);
    EXPECT_EQ(num_prod[num_prod_count - 1].size, 332);
    EXPECT_EQ(digits.size(), 99399u);
    EXPECT_EQ(crc_of(digits.data(), static_cast<int>(digits.size()), 4), 0x4390753bu);
}

TEST(Startup, FirstInvsProdIsTheInverseOfPrime5ModuloPrime6)
{
    load_all();
    EXPECT_EQ(invs_prod[0], 33293);
    EXPECT_EQ(std::int64_t{invs_prod[0]} * prime[5].word % prime[6].word, 1);
}

TEST(Startup, EveryInvsProdInvertsItsProduct)
{
    load_all();
    for (int j = 0; j < invs_prod_count; ++j) {
        mpz_t z;
        mpz_init(z);
        number_to_mpz(&num_prod[j], z);
        mpz_mul_ui(z, z, static_cast<unsigned>(invs_prod[j]));
        EXPECT_EQ(mpz_fdiv_ui(z, static_cast<unsigned>(prime[j + 6].word)), 1u) << j;
        mpz_clear(z);
    }
}

TEST(Startup, PowersOfTheBaseStandInDecimalGroups)
{
    load_all();
    for (int k = 1; k <= 130; ++k) {
        ASSERT_TRUE(chain_is_normal(&two_28[k - 1], decimal_base)) << k;
        mpz_t power, value;
        mpz_init(power);
        mpz_init(value);
        mpz_setbit(power, static_cast<mp_bitcnt_t>(28 * k));
        for (const numnode *node = two_28[k - 1].head; node; node = node->next) {
            mpz_mul_ui(value, value, decimal_base);
            mpz_add_ui(value, value, static_cast<unsigned>(node->digit));
        }
        EXPECT_EQ(mpz_cmp(power, value), 0) << k;
        mpz_clear(power);
        mpz_clear(value);
    }
}

TEST(Startup, FactorialsHaveDigitsAndDoubles)
{
    load_all();
    for (int i = 0; i < fact_count; ++i) {
        EXPECT_EQ(factnum[i], 10 * i);
        mpz_t z;
        mpz_init(z);
        mpz_fac_ui(z, static_cast<unsigned>(factnum[i]));
        expect_digits(&facts[i], z, "facts " + std::to_string(i));
        if (factnum[i] <= 170) {
            EXPECT_NEAR(facts[i].real / mpz_get_d(z), 1.0, 1e-14) << i;
        } else {
            EXPECT_TRUE(std::isinf(facts[i].real)) << i;
        }
        mpz_clear(z);
    }
    EXPECT_EQ(facts[0].word, 1);
    EXPECT_EQ(facts[0].real, 1.0);
    EXPECT_EQ(facts[1].word, 3628800);
    EXPECT_EQ(facts[1].real, 3628800.0);
}

TEST(Startup, BinomialsHaveDigitsAndDoublesAndTheFirst80Words)
{
    load_all();
    int at = 0;
    for (unsigned n = 3; n <= 150; n += 3) {
        for (unsigned k = 1; k <= n / 2; ++k, ++at) {
            mpz_t z;
            mpz_init(z);
            mpz_bin_uiui(z, n, k);
            expect_digits(&binom[at], z, "binomial " + std::to_string(n) + " " + std::to_string(k));
            EXPECT_NEAR(binom[at].real / mpz_get_d(z), 1.0, 1e-14);
            EXPECT_EQ(binom[at].word, at < binom_words ? static_cast<std::int32_t>(mpz_get_si(z)) : 0);
            mpz_clear(z);
        }
    }
    EXPECT_EQ(at, binom_count);
    EXPECT_EQ(binom[79].word, 155117520);
    EXPECT_EQ(binom[90].size, 1);
    EXPECT_EQ(binom[91].size, 2);
}

TEST(Startup, MessagesAreRecordsOf66Bytes)
{
    load_all();
    std::string text = bytes_of(data_directory + "Qerrs");
    for (int n = 1; n <= message_count; ++n) {
        const std::size_t end = text.find('\n');
        EXPECT_EQ(std::string(erp + (n - 1) * message_stride), text.substr(0, end)) << n;
        EXPECT_EQ(std::strlen(erp + (n - 1) * message_stride), 65u) << n;
        text.erase(0, end + 1);
    }
}

TEST(Startup, BuiltinsStandAtTheirPlaces)
{
    load_all();
    static const char *const rows[][2] = {
#define KELMAR_BUILTIN(index, second, name, ...) {name, second},
#include "session/builtins.def"
#undef KELMAR_BUILTIN
    };
    ASSERT_EQ(std::size(rows), std::size_t{builtin_limit});
    EXPECT_EQ(numbuiltins, last_row);
    for (int k = 0; k < builtin_limit; ++k) {
        EXPECT_STREQ(builtin[k].name, rows[k][0]);
        EXPECT_STREQ(builtin[k].second, rows[k][1]);
    }
    EXPECT_STREQ(builtin[42].name, "MSmith");
    EXPECT_STREQ(builtin[1].second, "*1");
}

TEST(Startup, OtherRowsHaveTheirNameTwiceAnd16HaveAStarAndANumber)
{
    load_all();
    int starred = 0;
    for (int k = 0; k <= numbuiltins; ++k) {
        const bool alias = builtin[k].second[0] == '*';
        starred += alias;
        if (!alias) {
            EXPECT_STREQ(builtin[k].second, builtin[k].name) << k;
        } else {
            EXPECT_GT(std::atoi(builtin[k].second + 1), 0) << k;
        }
    }
    EXPECT_EQ(starred, 16);
}

TEST(Startup, BuiltinOrderRisesByName)
{
    load_all();
    std::vector<bool> seen(builtin_limit, false);
    for (int k = 0; k <= numbuiltins; ++k) {
        ASSERT_FALSE(seen[static_cast<std::size_t>(builtin_order[k])]);
        seen[static_cast<std::size_t>(builtin_order[k])] = true;
        if (k > 0) {
            EXPECT_LT(std::strcmp(builtin[builtin_order[k - 1]].name, builtin[builtin_order[k]].name), 0);
        }
    }
}

TEST(Startup, InterpolationDataAreReadFromTheirBeginning)
{
    load_all();
    number n;
    n.size = 0;
    std::int32_t degree;
    EXPECT_EQ(direct_number_read(&n), 1);  // of 2 - x: denominator, degree, coefficients
    EXPECT_TRUE(is_longint(&n, 1));
    EXPECT_EQ(read_word(&chdat, 0, 37, &degree), 1);
    EXPECT_EQ(degree, 1);
    EXPECT_EQ(direct_number_read(&n), 1);
    EXPECT_TRUE(is_longint(&n, -1));
    EXPECT_EQ(direct_number_read(&n), 1);
    EXPECT_TRUE(is_longint(&n, 2));
    special_free(&n);
}

TEST(Startup, EveryInterpolationEntryIsReadToTheEndOfTheFile)
{
    load_all();
    number n;
    n.size = 0;
    for (int entry = 0; entry < 740; ++entry) {
        std::int32_t degree;
        ASSERT_EQ(direct_number_read(&n), 1) << entry;
        ASSERT_EQ(read_word(&chdat, 1, 37, &degree), 1) << entry;
        for (int e = 0; e <= degree; ++e) ASSERT_EQ(direct_number_read(&n), 1) << entry;
    }
    EXPECT_EQ(direct_number_read(&n), 0);
    EXPECT_TRUE(is_longint(&n, 0));
    special_free(&n);
}

TEST(Startup, ConstantsHoldInEveryView)
{
    const struct {
        const number *n;
        double value;
    } constants[] = {{&number_0, 0},   {&number_1, 1},     {&number_2, 2},   {&number_m1, -1},
                     {&number_10, 10}, {&num_2_14, 16384}, {&tens_base, 1e8}};
    for (const auto &c : constants) {
        EXPECT_EQ(c.n->real, c.value);
        EXPECT_EQ(c.n->word, c.value);
        EXPECT_TRUE(is_longint(c.n, static_cast<std::int32_t>(c.value)));
        EXPECT_TRUE(chain_is_normal(c.n, digit_base));
    }
    EXPECT_TRUE(chain_is_normal(&two_tensbase, digit_base));
    EXPECT_EQ(two_tensbase.real, 1e16);
    EXPECT_EQ(std::int64_t{two_tensbase.head->digit} * digit_base + two_tensbase.tail->digit,
              10000000000000000);
    EXPECT_EQ(static_cast<std::uint32_t>(two_tensbase.word), 10000000000000000u % (std::uint64_t{1} << 32));
    load_all();
    EXPECT_TRUE(is_longint(&rand_denom_n, 1));
    EXPECT_EQ(rand_denom_n.word, 1);
    EXPECT_EQ(rand_denom_n.real, 1.0);
}

TEST(Startup, SmallTablesFollowTheirRules)
{
    std::int64_t power = 1;
    for (std::int32_t p : pow_10) {
        EXPECT_EQ(p, power);
        power *= 10;
    }
    for (int i = 0; i < 32; ++i) EXPECT_EQ(ones[i], static_cast<std::int32_t>((std::int64_t{1} << i) - 1));
    EXPECT_EQ(small_arr[0], 100000);
    EXPECT_EQ(small_arr[12], 1);
    EXPECT_EQ(base_2_list[1], 3);
    EXPECT_EQ(base_3_list[6], 2);
    EXPECT_EQ(base_7_list[20], 26);
}

TEST(Startup, TheStartLeavesTheDigitViewAndCountsItsTables)
{
    size_data_strucs = 0;
    load_all();
    EXPECT_EQ(live_view(), view_digits);
    // at least the fields and the products, in nominal bytes
    EXPECT_GT(size_data_strucs, 131072 + 4 * 131072 + 99399 * numnodesize);
    EXPECT_LT(size_data_strucs, 3000000);
}

TEST(Startup, NumheadIsPrimed)
{
    load_all();
    std::int32_t free_nodes = 0;
    for (const numnode *node = numhead; node; node = node->next) ++free_nodes;
#ifdef KELMAR_MALLOC_RECORDS
    EXPECT_EQ(free_nodes, 0);
#else
    EXPECT_GE(free_nodes, 5001);
#endif
}

// Missing and spoiled files --------------------------------------------------------------------------------

namespace {

// Whatever was read, no entry points outside a table, every chain is one, every name ends.
void expect_safe_tables()
{
    for (int k = 0; k < 65536; ++k) {
        if (f256prod[k] > 255) FAIL() << "f256prod " << k;
    }
    for (int k = 0; k < 256; ++k) {
        if (f256inv[k] > 255 || f256sqr[k] > 255) FAIL() << "f256 " << k;
    }
    for (const number &n : two_28) {
        if (!chain_is_normal(&n, decimal_base)) FAIL() << "two_28";
    }
    const auto normal = [](const number &n) { return chain_is_normal(&n, digit_base); };
    EXPECT_TRUE(std::all_of(facts, facts + fact_count, normal));
    EXPECT_TRUE(std::all_of(binom, binom + binom_count, normal));
    EXPECT_TRUE(std::all_of(prime, prime + prime_count, normal));
    EXPECT_TRUE(std::all_of(num_prod, num_prod + num_prod_count, normal));
    for (const number &p : prime) EXPECT_TRUE(p.word >= 0 && p.word < 65536);
    for (int j = 0; j < invs_prod_count; ++j) EXPECT_TRUE(invs_prod[j] >= 0 && invs_prod[j] < 65536);
    EXPECT_TRUE(numbuiltins >= -1 && numbuiltins < builtin_limit);
    for (const builtin_row &row : builtin) {
        EXPECT_LE(strnlen(row.name, 11), 10u);
        EXPECT_LE(strnlen(row.second, 11), 10u);
    }
    for (int n = 0; n < message_count; ++n) EXPECT_LE(strnlen(erp + n * message_stride, 66), 65u);
}

// The report of a start in which `name` holds `bytes` and all other files are missing.
std::string start_with(const char *name, const std::string &bytes)
{
    scratch_directory directory;
    write_bytes(directory.path + name, bytes);
    std::string report = output_of([&] { initialize(directory.path.c_str()); });
    expect_safe_tables();
    return report;
}

bool tells(const std::string &report, const std::string &text)
{
    return report.find("*** Kelmar error. " + text) != std::string::npos;
}

bool tells_missing(const std::string &report, const std::string &name)
{
    return tells(report, "can't find " + name);
}

// The place of the k-th byte that is not blank, from `at` on.
std::size_t visible_from(const std::string &bytes, std::size_t at)
{
    while (std::isspace(static_cast<unsigned char>(bytes[at % bytes.size()]))) ++at;
    return at % bytes.size();
}

constexpr int flips_a_file = by_build(6, 30);

}  // namespace

TEST(StartupDamage, EveryMissingFileIsReportedAndItsTablesAreZero)
{
    scratch_directory directory;
    const std::string report = output_of([&] { initialize(directory.path.c_str()); });
    EXPECT_EQ(report, "*** Kelmar error. can't find chdat.\n*** Kelmar error. can't find Qerrs\n"
                      "*** Kelmar error. can't find pow228.\n*** Kelmar error. can't find pprods\n"
                      "*** Kelmar error. can't find primelist\n*** Kelmar error. can't find bprimes\n"
                      "*** Kelmar error. can't find f256d\n*** Kelmar error. can't find f2t16d\n"
                      "*** Kelmar error. can't find lrgpmes\n");
    expect_safe_tables();
    EXPECT_EQ(numbuiltins, -1);
    EXPECT_STREQ(builtin[0].name, "b");
    EXPECT_EQ(erp[0], '\0');
    EXPECT_EQ(prime[4].word, 19997);
    EXPECT_TRUE(is_longint(&prime[5], 0));
    EXPECT_TRUE(is_longint(&num_prod[598], 0));
    EXPECT_TRUE(is_longint(&binom[0], 0));
    EXPECT_EQ(lrgpme[1999] | big_prime[0] | med_prime[7] | small_prime[0] | invs_prod[3], 0);
    EXPECT_EQ(f2t16exp[1] | f2t16log[2] | f2t16inv[3] | f2t16sqr[65535] | f256prod[65535], 0);
    number n;
    n.size = 0;
    EXPECT_EQ(direct_number_read(&n), 0);
    EXPECT_TRUE(is_longint(&n, 0));
    special_free(&n);
}

TEST(StartupDamage, AFileThatIsADirectoryIsMissing)
{
    scratch_directory directory;
    for (const char *name : data_file_names) std::filesystem::create_directory(directory.path + name);
    const std::string report = output_of([&] { initialize(directory.path.c_str()); });
    for (const char *name : data_file_names) EXPECT_TRUE(tells_missing(report, name)) << name;
    expect_safe_tables();
}

TEST(StartupDamage, AMissingDirectoryIsNineMissingFiles)
{
    const std::string report = output_of([] { initialize("/nowhere/at/all/"); });
    for (const char *name : data_file_names) EXPECT_TRUE(tells_missing(report, name)) << name;
}

TEST(StartupDamage, AFileCutShortIsNamed)
{
    static const char *const tells_cut[][2] = {
        {"Qerrs", "number builtins is wrong."},        {"pow228", "pow228 file is damaged."},
        {"pprods", "error in pprods, last num_prod."}, {"primelist", "primelist file is damaged, medium."},
        {"bprimes", "bprimes file is damaged."},       {"f256d", "f256d file is damaged 3."},
        {"f2t16d", "f2t16d file is damaged 4."},       {"lrgpmes", "lrgpmes file is damaged."}};
    for (const auto &row : tells_cut) {
        const std::string bytes = bytes_of(data_directory + row[0]);
        for (std::size_t part = 0; part < 20; ++part) {
            const std::string report = start_with(row[0], bytes.substr(0, bytes.size() * part / 20));
            EXPECT_TRUE(tells(report, row[1])) << row[0] << " cut at " << part << "/20\n" << report;
            EXPECT_FALSE(tells_missing(report, row[0])) << row[0];
        }
    }
}

TEST(StartupDamage, InterpolationDataCutShortAreTakenUpToTheCut)
{
    const std::string bytes = bytes_of(data_directory + "chdat");
    for (std::size_t part = 0; part < 20; ++part) {
        const std::string report = start_with("chdat", bytes.substr(0, bytes.size() * part / 20));
        EXPECT_FALSE(tells_missing(report, "chdat"));
        record_audit audit;
        number n;
        n.size = 0;
        int reads = 0;
        while (direct_number_read(&n)) ++reads;
        EXPECT_TRUE(is_longint(&n, 0));
        special_free(&n);
        audit.expect_unchanged("chdat cut short");
        if (part > 0) {
            EXPECT_GT(reads, 0);
        }
    }
}

TEST(StartupDamage, EachCheckOfF2t16dNamesItsTable)
{
    const std::string bytes = bytes_of(data_directory + "f2t16d");
    std::size_t at = 0;
    const char *const parts[] = {"2.", "3.", "4."};
    for (int table = 0; table < 3; ++table) {
        for (int words = table == 0 ? 65536 : 65535; words > 0; --words)
            at = bytes.find_first_of(" \n", at + 1);
        const std::string report = start_with("f2t16d", bytes.substr(0, at));
        for (int later = 0; later < 3; ++later) {
            EXPECT_EQ(tells(report, std::string("f2t16d file is damaged ") + parts[later]), later >= table)
                << table << "\n"
                << report;
        }
        EXPECT_FALSE(tells(report, "f2t16d file is damaged 1."));
    }
}

TEST(StartupDamage, AnotherLastPrimeIsPrintedBesideTheRightOne)
{
    std::string bytes = bytes_of(data_directory + "pprods");
    bytes.replace(bytes.find("48869"), 5, "48868");
    const std::string report = start_with("pprods", bytes);
    EXPECT_TRUE(tells(report, "error in pprods, last prime.\n48868   48869\n")) << report;
    EXPECT_FALSE(tells(report, "error in pprods, last num_prod.")) << report;
}

TEST(StartupDamage, FlippedBytesNeverLeaveATable)
{
    test_random random;
    SCOPED_TRACE("seed " + std::to_string(random.seed));
    for (const char *name : data_file_names) {
        const std::string bytes = bytes_of(data_directory + name);
        for (int flip = 0; flip < flips_a_file; ++flip) {
            std::string spoiled = bytes;
            const int count = flip % 3 == 0 ? 1 : 20;
            for (int k = 0; k < count; ++k) {
                const std::size_t at = visible_from(bytes,
                                                    static_cast<std::size_t>(random.below(bytes.size())));
                spoiled[at] = static_cast<char>(random.below(2) ? random.below(256) : '0' + random.below(10));
            }
            start_with(name, spoiled);
        }
    }
}

TEST(StartupDamage, ANonNumericByteStopsItsFileWithAReport)
{
    for (const char *name : {"pow228", "pprods", "primelist", "bprimes", "f256d", "f2t16d", "lrgpmes"}) {
        std::string bytes = bytes_of(data_directory + name);
        bytes[visible_from(bytes, bytes.size() / 2)] = 'x';
        const std::string report = start_with(name, bytes);
        EXPECT_TRUE(tells(report, name) || tells(report, std::string("error in ") + name)) << name << report;
    }
}

TEST(StartupDamage, RandomBytesAreSurvived)
{
    test_random random;
    SCOPED_TRACE("seed " + std::to_string(random.seed));
    for (const char *name : data_file_names) {
        for (int size : {1, 2, 100, 30000}) {
            std::string bytes;
            for (int k = 0; k < size; ++k) bytes += static_cast<char>(random.below(256));
            start_with(name, bytes);
            for (char &c : bytes) c = "0123456789 - \n"[random.below(14)];
            start_with(name, bytes);
        }
    }
}

TEST(StartupDamage, HugeDigitCountsAndCodesAreSurvived)
{
    EXPECT_TRUE(tells(start_with("pow228", "99999999 1 1 1"), "pow228 file is damaged."));
    EXPECT_TRUE(tells(start_with("pow228", "-8 1 1 1"), "pow228 file is damaged."));
    EXPECT_TRUE(tells(start_with("f256d", "256 1 1"), "f256d file is damaged 1."));
    EXPECT_TRUE(tells(start_with("f2t16d", "1 65536 1"), "f2t16d file is damaged 1."));
    EXPECT_TRUE(tells(start_with("f2t16d", "-1 -1"), "f2t16d file is damaged 1.5."));
    EXPECT_TRUE(tells(start_with("primelist", "70000"), "primelist file is damaged, small."));
}

TEST(StartupDamage, AFileOfMoreThanItsTablesIsTaken)
{
    const std::string bytes = bytes_of(data_directory + "bprimes");
    const std::string report = start_with("bprimes", bytes + " and more");
    EXPECT_FALSE(tells(report, "bprimes file is damaged."));
    EXPECT_EQ(big_prime[1515], 65521);
}

TEST(StartupDamage, AHugeFileIsTakenByItsTables)
{
    scratch_directory directory;
    write_bytes(directory.path + "lrgpmes", bytes_of(data_directory + "lrgpmes"));
    std::filesystem::resize_file(directory.path + "lrgpmes", std::uintmax_t{1} << 34);
    const std::string report = output_of([&] { initialize(directory.path.c_str()); });
    EXPECT_FALSE(tells(report, "lrgpmes file is damaged."));
    EXPECT_EQ(lrgpme[1999], 2147483629);
}

TEST(StartupDamage, ReloadingReleasesEveryOldNumber)
{
    load_all();
    const std::int64_t nodes = live_numnodes();
    scratch_directory empty;
    output_of([&] { initialize(empty.path.c_str()); });
    EXPECT_LT(live_numnodes(), nodes - 99000);
    load_all();
    EXPECT_EQ(live_numnodes(), nodes);
}

// The count of built-ins
// --------------------------------------------------------------------------------------

namespace {

// The file of messages and names.
struct qerrs_text {
    std::string bytes = bytes_of(data_directory + "Qerrs"), count = std::to_string(last_row);
    std::size_t at = bytes.find("\n" + count + "\n") + 1;  // of the index of its last name

    std::string counting(const std::string &other) const
    {
        return std::string(bytes).replace(at, count.size(), other);
    }
};

// The file with another count of names, and as many rows as that, at most those of the table.
std::string qerrs_with_count(int count)
{
    const qerrs_text file;
    std::size_t end = file.at + file.count.size() + 1;
    for (int row = 0; row <= count && row < builtin_limit; ++row) end = file.bytes.find('\n', end) + 1;
    return file.bytes.substr(0, file.at) + std::to_string(count) +
           file.bytes.substr(file.at + file.count.size(), end - file.at - file.count.size());
}

}  // namespace

TEST(StartupBuiltins, ACountOf53OrOneBeyondTheTableIsReported)
{
    EXPECT_TRUE(tells(start_with("Qerrs", qerrs_with_count(53)), "number builtins is wrong."));
    EXPECT_EQ(numbuiltins, 53);
    EXPECT_TRUE(tells(start_with("Qerrs", qerrs_with_count(builtin_limit)), "number builtins is wrong."));
    EXPECT_EQ(numbuiltins, last_row);
}

TEST(StartupBuiltins, ACountOf54OrThatOfTheTableIsTaken)
{
    EXPECT_FALSE(tells(start_with("Qerrs", qerrs_with_count(54)), "number builtins is wrong."));
    EXPECT_EQ(numbuiltins, 54);
    EXPECT_FALSE(tells(start_with("Qerrs", qerrs_with_count(last_row)), "number builtins is wrong."));
    EXPECT_EQ(numbuiltins, last_row);
}

TEST(StartupBuiltins, CountsFarOffAreReported)
{
    for (const char *count : {"-1", "-2147483648", "2147483647", "99999999999", "x"}) {
        EXPECT_TRUE(tells(start_with("Qerrs", qerrs_text().counting(count)), "number builtins is wrong."))
            << count;
    }
}

TEST(StartupBuiltins, SlotsBeyondTheCountHoldB)
{
    start_with("Qerrs", qerrs_with_count(54));
    EXPECT_STREQ(builtin[54].name, "Normalize");
    for (int k = 55; k < builtin_limit; ++k) {
        EXPECT_STREQ(builtin[k].name, "b");
        EXPECT_STREQ(builtin[k].second, "");
    }
    for (int k = 0; k <= numbuiltins; ++k) EXPECT_LE(builtin_order[k], 54);
}

TEST(StartupBuiltins, NamesAreCutTo10Characters)
{
    std::string bytes = bytes_of(data_directory + "Qerrs");
    bytes.replace(bytes.find("\nArray Array\n") + 1, 11, "Abcdefghijklm Nopqrstuvwxyz");
    start_with("Qerrs", bytes);
    EXPECT_STREQ(builtin[0].name, "Abcdefghij");
    EXPECT_STREQ(builtin[0].second, "Nopqrstuvw");
    EXPECT_STREQ(builtin[1].name, "Bin");
}

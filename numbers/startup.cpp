// numbers/startup.cpp -- the tables of the number layer, file by file.
//
// One row of start_files says what a file is called and which routine takes its words; that routine clears
// its tables, reads on without looking whether a read declined (declined reads give zeros), and then tests
// the last entries, which are wrong in a file that was cut short. A file that is missing goes the same way,
// as a file where every read declines, but for the report. What follows from the tables is made when all
// files are read.
#include "numbers/startup.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include "numbers/convert.h"
#include "numbers/decimal.h"
#include "numbers/fields.h"
#include "numbers/radix.h"
#include "numbers/random.h"
#include "session/report.h"
#include "storage/sizes.h"

namespace kelmar {

static constexpr std::int32_t primed_numnodes = 5001;
static constexpr std::int32_t two_28_count = 130;
static constexpr std::int32_t prime_limit = 65535;  // a product of two table primes fits 32 bits

// Report `text` when the file was found and the test of an entry failed.
static void test_entry(const data_file *file, bool right, const char *text)
{
    if (file->text && !right) kelmar_error(text, 0);
}

static void account_words(std::int64_t count, std::int64_t bytes_each)
{
    size_data_strucs += count * bytes_each;
}

static void account_numbers(const number *table, std::int32_t count)
{
    size_data_strucs += std::int64_t{count} * numbersize;
    for (std::int32_t k = 0; k < count; ++k) size_data_strucs += std::int64_t{table[k].size} * numnodesize;
}

// Messages and names -------------------------------------------------------------------------------------

static void load_names(data_file *file)
{
    std::int32_t last;
    read_word(file, INT32_MIN, INT32_MAX, &last);
    bool right = last >= 54 && last < builtin_limit;
    if (last >= builtin_limit) last = builtin_limit - 1;
    numbuiltins = -1;
    for (std::int32_t k = 0; k < builtin_limit; ++k) {
        builtin_row *row = &builtin[k];
        const bool wanted = !file->damaged && k <= last;
        if (wanted && read_field(file, builtin_width, row->name) &&
            read_field(file, builtin_width, row->second)) {
            numbuiltins = k;
            continue;
        }
        if (wanted) right = false;
        *row = {"b", ""};
    }
    test_entry(file, right, "number builtins is wrong.");
}

static void load_qerrs(data_file *file)
{
    std::memset(erp, 0, sizeof erp);
    for (std::int32_t n = 0; n < message_count; ++n) read_line(file, message_width, erp + n * message_stride);
    load_names(file);
    account_words(message_count, message_stride);
    account_words(builtin_limit, sizeof(builtin_row));
}

static int compare_names(const void *a, const void *b)
{
    return std::strcmp(builtin[*static_cast<const std::int16_t *>(a)].name,
                       builtin[*static_cast<const std::int16_t *>(b)].name);
}

static void sort_names()
{
    for (std::int16_t k = 0; k < builtin_limit; ++k) builtin_order[k] = k;
    std::qsort(builtin_order, static_cast<std::size_t>(numbuiltins + 1), sizeof builtin_order[0],
               compare_names);
}

// Powers, factorials, binomials --------------------------------------------------------------------------

// The powers of 2^28 in groups of eight decimal digits, each behind the count of its decimal digits.
static void load_powers(data_file *file)
{
    for (std::int32_t k = 0; k < two_28_count; ++k) {
        std::int32_t decimals, first;
        read_word(file, 1, 8 * digits_limit, &decimals);
        read_word(file, 0, decimal_base - 1, &first);
        read_digits(file, first, (decimals + 7) / 8, decimal_base, &two_28[k]);
    }
    account_numbers(two_28, two_28_count);
}

static void load_factorials(data_file *file)
{
    read_words(file, 0, INT32_MAX, fact_count, factnum);
    for (std::int32_t k = 0; k < fact_count; ++k) {
        read_number(file, &facts[k]);
        facts[k].word = facts[k].size == 1 ? facts[k].head->digit : 0;
        change_flote(&facts[k]);
    }
    account_words(fact_count, 4);
    account_numbers(facts, fact_count);
}

// One row of binomials. Numbers have `width` digits, 1 at the start of a row; a negative word makes it grow.
static void load_binomial_row(data_file *file, std::int32_t count, number *row)
{
    std::int32_t width = 1;
    for (std::int32_t k = 0; k < count; ++k) {
        std::int32_t first;
        read_word(file, -1, digit_base - 1, &first);
        if (first < 0) {
            ++width;
            read_word(file, 0, digit_base - 1, &first);
        }
        read_digits(file, first, width, digit_base, &row[k]);
        change_flote(&row[k]);
    }
}

static void load_binomials(data_file *file)
{
    std::int32_t at = 0;
    for (std::int32_t n = 3; n <= 150; n += 3) {
        load_binomial_row(file, n / 2, binom + at);
        at += n / 2;
    }
    for (std::int32_t k = 0; k < binom_words; ++k) read_word(file, 1, INT32_MAX, &binom[k].word);
    account_numbers(binom, binom_count);
}

static void load_pow228(data_file *file)
{
    load_powers(file);
    load_factorials(file);
    load_binomials(file);
    test_entry(file, !file->damaged, "pow228 file is damaged.");
}

// Primes -------------------------------------------------------------------------------------------------

// *n = v in every view.
static void set_all_views(std::int32_t v, number *n)
{
    special_set(v, n);
    n->word = v;
    n->real = v;
}

static void load_prime_numbers(data_file *file)
{
    static constexpr std::int32_t fixed[first_run_prime] = {3001, 16087, 16273, 16339, 19997};
    for (std::int32_t i = 0; i < prime_count; ++i) {
        std::int32_t p;
        if (i < first_run_prime) {
            p = fixed[i];
        } else {
            read_word(file, 2, prime_limit, &p);
        }
        set_all_views(p, &prime[i]);
    }
    account_numbers(prime, prime_count);
}

static void load_pprods(data_file *file)
{
    load_prime_numbers(file);
    const std::int32_t last = prime[prime_count - 1].word;
    if (file->text && last != 48869) {
        std::printf("*** Kelmar error. error in pprods, last prime.\n%d %c %d\n", last, ' ', 48869);
    }
    for (std::int32_t i = 0; i < num_prod_count; ++i) read_number(file, &num_prod[i]);
    if (file->text && num_prod[num_prod_count - 1].size != 332) {
        std::printf("*** Kelmar error. error in pprods, last num_prod.\n");
    }
    account_numbers(num_prod, num_prod_count);
}

static void load_primelist(data_file *file)
{
    for (std::int32_t k = 0; k < small_prime_count; ++k) {
        std::int32_t p;
        read_word(file, 2, INT16_MAX, &p);
        small_prime[k] = static_cast<std::int16_t>(p);
    }
    read_words(file, 2, INT32_MAX, med_prime_count, med_prime);
    test_entry(file, med_prime[med_prime_count - 1] == 42349, "primelist file is damaged, medium.");
    test_entry(file, small_prime[small_prime_count - 1] != 0, "primelist file is damaged, small.");
    account_words(small_prime_count, 2);
    account_words(med_prime_count, 4);
}

static void load_bprimes(data_file *file)
{
    read_words(file, 2, INT32_MAX, big_prime_count, big_prime);
    test_entry(file, big_prime[big_prime_count - 1] == 65521, "bprimes file is damaged.");
    account_words(big_prime_count, 4);
}

static void load_lrgpmes(data_file *file)
{
    read_words(file, 2, INT32_MAX, lrgpme_count, lrgpme);
    test_entry(file, lrgpme[lrgpme_count - 1] == 2147483629, "lrgpmes file is damaged.");
    account_words(lrgpme_count, 4);
}

// The inverse of a modulo m by Euclid's algorithm, 0 when there is none; 0 <= a < m.
static std::int32_t inverse_modulo(std::int32_t a, std::int32_t m)
{
    std::int32_t r = m, s = a, x = 0, y = 1;  // y a = s, x a = r modulo m
    while (s > 0) {
        const std::int32_t q = r / s;
        const std::int32_t rest = r - q * s, next = x - q * y;
        r = s, s = rest;
        x = y, y = next;
    }
    if (r != 1) return 0;
    return x < 0 ? x + m : x;
}

// x modulo p, with quick = 2^32 / p rounded down: the quotient that is taken is at most one too small.
static inline std::uint32_t quick_remainder(std::uint32_t x, std::uint32_t p, std::uint32_t quick)
{
    const std::uint32_t quotient = static_cast<std::uint32_t>(std::uint64_t{x} * quick >> 32);
    const std::uint32_t rest = x - quotient * p;
    return rest >= p ? rest - p : rest;
}

// The products are carried for all j at once, so that the remainders do not wait for each other. Where a
// damaged file left no prime the product is of no use.
static void make_invs_prod()
{
    std::uint32_t product[invs_prod_count];
    std::uint32_t p[num_prod_count], quick[num_prod_count];
    for (std::int32_t i = 0; i < num_prod_count; ++i) {
        p[i] = static_cast<std::uint32_t>(prime[i + first_run_prime].word);
        quick[i] = p[i] > 1 ? static_cast<std::uint32_t>((std::uint64_t{1} << 32) / p[i]) : 0;
    }
    for (std::int32_t j = 0; j < invs_prod_count; ++j) product[j] = 1;
    for (std::int32_t i = 0; i < invs_prod_count; ++i) {
        for (std::int32_t j = i; j < invs_prod_count; ++j) {
            product[j] = quick_remainder(product[j] * p[i], p[j + 1], quick[j + 1]);
        }
    }
    for (std::int32_t j = 0; j < invs_prod_count; ++j) {
        const bool usable = p[j + 1] != 0;
        invs_prod[j] = usable ? inverse_modulo(static_cast<std::int32_t>(product[j]),
                                               static_cast<std::int32_t>(p[j + 1]))
                              : 0;
    }
    account_words(invs_prod_count, 4);
}

// Fields -------------------------------------------------------------------------------------------------

// Only the entries (i, j) with i <= j are in the file.
static void load_f256_products(data_file *file)
{
    for (std::int32_t i = 0; i < 256; ++i) read_codes(file, 255, 256 - i, f256prod + i * 256 + i);
    for (std::int32_t i = 0; i < 256; ++i) {
        for (std::int32_t j = 0; j < i; ++j) f256prod[i * 256 + j] = f256prod[j * 256 + i];
    }
}

static void load_f256d(data_file *file)
{
    read_codes(file, 255, 255, f256inv + 1);
    test_entry(file, f256inv[255] == 28, "f256d file is damaged 1.");
    load_f256_products(file);
    test_entry(file, f256prod[255 * 256 + 255] == 19, "f256d file is damaged 2.");
    read_codes(file, 255, 256, f256sqr);
    test_entry(file, f256sqr[255] == 78, "f256d file is damaged 3.");
    account_words(256 * 256 + 256 + 256, 2);
}

static void load_f2t16d(data_file *file)
{
    read_codes(file, 65535, 65536, f2t16exp);
    test_entry(file, f2t16exp[65535] == 1, "f2t16d file is damaged 1.");
    test_entry(file, f2t16exp[64507] == 14, "f2t16d file is damaged 1.5.");
    read_codes(file, 65535, 65535, f2t16inv + 1);
    test_entry(file, f2t16inv[65535] == 3602, "f2t16d file is damaged 2.");
    read_codes(file, 65535, 65535, f2t16log + 1);
    test_entry(file, f2t16log[65535] == 483, "f2t16d file is damaged 3.");
    read_codes(file, 65535, 65536, f2t16sqr);
    test_entry(file, static_cast<std::int16_t>(f2t16sqr[65535]) == -23828, "f2t16d file is damaged 4.");
    account_words(std::int64_t{4} * 65536, 2);
}

// All files ----------------------------------------------------------------------------------------------

// The interpolation file is read when it is wanted: keep it.
static void keep_chdat(data_file *file)
{
    close_data_file(&chdat);
    chdat = *file;
    *file = {nullptr, nullptr, nullptr, 1};
}

int direct_number_read(number *n)
{
    return read_number(&chdat, n);
}

struct start_file {
    const char *name;
    const char *missing;
    std::int32_t attempts;
    void (*load)(data_file *file);
};

static const start_file start_files[] = {
    {"chdat", "can't find chdat.", 25, keep_chdat},
    {"Qerrs", "can't find Qerrs", 1, load_qerrs},
    {"pow228", "can't find pow228.", 1, load_pow228},
    {"pprods", "can't find pprods", 1, load_pprods},
    {"primelist", "can't find primelist", 1, load_primelist},
    {"bprimes", "can't find bprimes", 1, load_bprimes},
    {"f256d", "can't find f256d", 1, load_f256d},
    {"f2t16d", "can't find f2t16d", 1, load_f2t16d},
    {"lrgpmes", "can't find lrgpmes", 1, load_lrgpmes},
};

void subinitialize(const char *directory)
{
    for (const start_file &row : start_files) {
        data_file file;
        std::int32_t tries = 0;
        while (++tries <= row.attempts && !open_data_file(directory, row.name, &file)) {}
        if (!file.text) kelmar_error(row.missing, 0);
        row.load(&file);
        close_data_file(&file);
    }
}

// Put nodes on numhead, so that the first numbers of a session find them there.
static void prime_numhead()
{
#ifndef KELMAR_MALLOC_RECORDS
    for (std::int32_t k = 0; k < primed_numnodes; ++k) {
        auto *node = static_cast<numnode *>(get_slug(numstash));
        node->next = numhead;
        numhead = node;
    }
#endif
    account_words(primed_numnodes, numnodesize);
}

void initialize(const char *directory)
{
    subinitialize(directory);
    sort_names();
    make_invs_prod();
    std::memcpy(global_list, small_prime + 7, sizeof global_list);
    account_words(global_list_count, 2);
    set_all_views(1, &rand_denom_n);
    calc_disp();
    account_numbers(&disp_cons, 1);
    prime_numhead();
}

}  // namespace kelmar

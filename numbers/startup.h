#pragma once
// numbers/startup.h -- the tables of the number layer, and the loader that fills them at the start.
//
// All are plain arrays, since inner loops index them, and zero until they are loaded: a file that can't be
// found leaves its tables zero, its numbers the number 0, and whoever divides by an entry tests it. Nothing
// writes them after the start. Constants need no loading. The tables of the binary fields stand in
// numbers/fields.h, two_28 in numbers/radix.h; they are filled here too.

#include <cstdint>
#include "numbers/number.h"
#include "numbers/startup_read.h"

namespace kelmar {

// Loading ------------------------------------------------------------------------------------------------

// Read the nine files of `directory`, which ends in "/". What can't be found, or is damaged, is reported and
// left out. Called by initialize.
void subinitialize(const char *directory);

// Fill all tables of the number layer from the files of `directory`, and put 5001 digit nodes on numhead.
// Called once, in the digit view, with the stashes open. Faults: the reports of files, none of which stops
// the start.
void initialize(const char *directory);

// n = the next number of the interpolation file. n replaced; 0 when the read declines (0).
int direct_number_read(number *n);

// default: no file; interpolation data, kept in memory and read on demand; its readers; reset: never
inline data_file chdat = {nullptr, nullptr, nullptr, 1};

// Messages and names of built-ins ------------------------------------------------------------------------

inline constexpr std::int32_t message_count = 377;
inline constexpr std::int32_t message_width = 65;
inline constexpr std::int32_t message_stride = message_width + 1;
inline constexpr std::int32_t builtin_limit = 110;  // rows of the table of built-ins
inline constexpr std::int32_t builtin_width = 10;   // characters of a name

inline char erp[message_count * message_stride];  // message n at (n - 1) * message_stride, ended by zeros

struct builtin_row {
    char name[builtin_width + 1];
    char second[builtin_width + 1];  // "*NN" for names the factor reader handles, else the name
};

inline builtin_row builtin[builtin_limit];         // by index; "b" and "" beyond numbuiltins
inline std::int32_t numbuiltins = -1;              // the last index in use; -1 when there are no names
inline std::int16_t builtin_order[builtin_limit];  // indices 0 .. numbuiltins, by strcmp of the names

// Primes -------------------------------------------------------------------------------------------------

inline constexpr std::int32_t small_prime_count = 1229;
inline constexpr std::int32_t med_prime_count = 2466;
inline constexpr std::int32_t big_prime_count = 1516;
inline constexpr std::int32_t lrgpme_count = 2000;
inline constexpr std::int32_t prime_count = 604;
inline constexpr std::int32_t first_run_prime = 5;  // prime[5] on are consecutive; those before are not
inline constexpr std::int32_t num_prod_count = prime_count - first_run_prime;
inline constexpr std::int32_t invs_prod_count = num_prod_count - 1;
inline constexpr std::int32_t global_list_count = 151;

inline std::int16_t small_prime[small_prime_count];  // 2 .. 9973
inline std::int32_t med_prime[med_prime_count];      // 17021 .. 42349
inline number prime[prime_count];                    // 3001, 16087, 16273, 16339, 19997, then 42359 .. 48869
inline std::int32_t big_prime[big_prime_count];      // 48871 .. 65521
inline std::int32_t lrgpme[lrgpme_count];            // 2147440637 .. 2147483629, the largest legal moduli
inline number num_prod[num_prod_count];              // prime[5] * .. * prime[i + 5]
inline std::int32_t invs_prod[invs_prod_count];      // 1 / (prime[5] * .. * prime[j + 5]) modulo prime[j + 6]
inline std::int16_t global_list[global_list_count];  // small_prime from index 7: points for random evaluation

// Factorials and binomials -------------------------------------------------------------------------------

inline constexpr std::int32_t fact_count = 22;
inline constexpr std::int32_t binom_count = 1900;
inline constexpr std::int32_t binom_words = 80;  // entries that have a word: rows up to n = 30

inline std::int32_t factnum[fact_count];  // rising arguments, 0 first
inline number facts[fact_count];          // their factorials: digits and doubles; words for the first two
inline number binom[binom_count];         // rows n = 3, 6, .., 150, k = 1 .. n / 2: digits and doubles

// Small tables -------------------------------------------------------------------------------------------

inline constexpr std::int32_t pow_10[9] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
inline constexpr std::int32_t small_arr[13] = {100000, 100, 80, 60, 44, 28, 20, 15, 15, 15, 11, 5, 1};

// 2^i - 1
inline constexpr std::int32_t ones[32] = {
    0x0,      0x1,       0x3,       0x7,       0xf,       0x1f,       0x3f,       0x7f,
    0xff,     0x1ff,     0x3ff,     0x7ff,     0xfff,     0x1fff,     0x3fff,     0x7fff,
    0xffff,   0x1ffff,   0x3ffff,   0x7ffff,   0xfffff,   0x1fffff,   0x3fffff,   0x7fffff,
    0xffffff, 0x1ffffff, 0x3ffffff, 0x7ffffff, 0xfffffff, 0x1fffffff, 0x3fffffff, 0x7fffffff};

// Evaluation points modulo 2, over the integers, modulo other primes. The first word is 0: positions count
// from 1.
inline constexpr std::int16_t base_2_list[4] = {0, 3, 1, 2};
inline constexpr std::int16_t base_3_list[7] = {0, 4, 1, 3, 8, 5, 2};
inline constexpr std::int16_t base_7_list[21] = {0,  8,  1,  7,  16, 9,  2,  14, 3,  10, 22,
                                                 23, 17, 24, 32, 40, 31, 39, 48, 41, 26};

// Constants: every view is filled, so they hold in every mode. ----------------------------------------------

inline constexpr std::int64_t two_tensbase_value = 10000000000000000;  // its word is the value modulo 2^32

inline numnode digit_of_0 = {0, nullptr};
inline numnode digit_of_1 = {1, nullptr};
inline numnode digit_of_2 = {2, nullptr};
inline numnode digit_of_m1 = {-1, nullptr};
inline numnode digit_of_10 = {10, nullptr};
inline numnode digit_of_2_14 = {16384, nullptr};
inline numnode digit_of_tens_base = {decimal_base, nullptr};
inline numnode low_of_two_tensbase = {static_cast<std::int32_t>(two_tensbase_value & digit_mask), nullptr};
inline numnode high_of_two_tensbase = {static_cast<std::int32_t>(two_tensbase_value >> digit_bits),
                                       &low_of_two_tensbase};

inline number number_0 = {&digit_of_0, &digit_of_0, 0, 0.0, nullptr, 1};
inline number number_1 = {&digit_of_1, &digit_of_1, 1, 1.0, nullptr, 1};
inline number number_2 = {&digit_of_2, &digit_of_2, 2, 2.0, nullptr, 1};
inline number number_m1 = {&digit_of_m1, &digit_of_m1, -1, -1.0, nullptr, 1};
inline number number_10 = {&digit_of_10, &digit_of_10, 10, 10.0, nullptr, 1};
inline number num_2_14 = {&digit_of_2_14, &digit_of_2_14, 16384, 16384.0, nullptr, 1};
inline number tens_base = {&digit_of_tens_base, &digit_of_tens_base, decimal_base, 1e8, nullptr, 1};
inline number two_tensbase = {&high_of_two_tensbase,
                              &low_of_two_tensbase,
                              static_cast<std::int32_t>(two_tensbase_value & 0xffffffff),
                              1e16,
                              nullptr,
                              2};

}  // namespace kelmar

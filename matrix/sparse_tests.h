#pragma once
// matrix/sparse_tests.h -- questions about the entries of matrices. All spare their operands.

#include "matrix/sparse.h"

namespace kelmar {

void sparse_iszero(const sparse_frame *frames, std::int32_t rows, std::int32_t *flag);  // clears, never sets
int sparse_allnumbs(const sparse_frame *frames, std::int32_t rows);

// *allnums = 1, cleared at the first entry that is no plain number; 0 when an entry has a denominator.
int sparse_allpolys(const sparse_frame *frames, std::int32_t rows, std::int32_t *allnums);

std::int32_t sparse_polydepth(const sparse_frame *frames, std::int32_t rows);  // smallest poly_depth
int sparse_one_var_polys(const sparse_frame *frames, std::int32_t rows);
int sparse_negexponents(const sparse_frame *frames, std::int32_t rows);
int negexponents(quolynode *const *table, std::int32_t n);
int anynegs(const polynode *p);

std::int32_t row_mass(const colm *head);        // sum of masses; heavy_row when it leaves the words
std::int32_t quick_row_mass(const colm *head);  // integer-data mode: entries above 0

std::int64_t sparse_entries(const sparse_frame *frames, std::int32_t rows);  // how many there are

// Rows rise strictly, columns are in 1 .. cols, no value is null or zero. For tests and debug builds.
bool sparse_is_sound(const sparse_frame *frames, std::int32_t rows, std::int32_t cols);

}  // namespace kelmar

#pragma once
// matrix/sparse_ops.h -- operations on whole sparse matrices.
//
// The row count is always the caller's. Ownership of a chain passes as a flag beside the pointer: a view
// shares its values with another chain, and is given back with free_sparse_frame.

#include "matrix/sparse.h"

namespace kelmar {

// Chains ------------------------------------------------------------------------------------------------

void sparse_init(sparse_frame **frames, std::int32_t rows);  // *frames filled: an empty chain

// owned 0: only clear the pointer; else free values, nodes and frames. null is allowed.
void free_sparse(sparse_frame **frames, std::int32_t rows, int owned);
void free_sparse_data(sparse_frame *frames, std::int32_t rows);    // values and nodes; the frames stay, empty
void free_sparse_frame(sparse_frame **frames, std::int32_t rows);  // nodes and frames: for views

// Free what `to` holds, and move the lists of `from` into it; from is left empty.
void put_back_sparse(sparse_frame *from, sparse_frame *to, std::int32_t rows);

// *to = a copy in new frames, negated with neg. one_var_: by one_var_poly_assign, for entries known to be
// polynomials in one variable, or numbers. special_: in integer-data mode. *to filled.
void copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows, int neg);
void one_var_copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows);
void special_copy_sparse(const sparse_frame *from, sparse_frame **to, std::int32_t rows);

// Into integer-data mode in place, and back. Faults: "0 value in move_data_outof_quoly."; that entry goes.
void move_data_into_quoly(sparse_frame *frames, std::int32_t rows);
void move_data_outof_quoly(sparse_frame *frames, std::int32_t rows);

// Filling -----------------------------------------------------------------------------------------------

// Empty the array and refill it from a dense table in column-major order; with steal the values are taken
// over and the table is left null. Null entries are zeros.
void standard_to_sparse(array *a, quolynode **data, std::int32_t cols, bool steal);

// Empty the array and fill every position with a copy of q, unless that is zero.
void sparse_set_scalar(array *a, std::int32_t cols, const quolynode *q);

// *frames = the identity of n rows. With owned its old content is freed. *frames replaced.
void spar_identi(sparse_frame **frames, std::int32_t n, int owned);

// Arithmetic --------------------------------------------------------------------------------------------

// Negate, in place if owned, else through a copy; *owned = 1.
void sparse_makeneg(sparse_frame **frames, std::int32_t rows, int *owned);

// *a = a + b, or a - b with !plus, in a new chain. Owned operands are consumed, *b becomes null. Polls.
void add_sparses(sparse_frame **a, sparse_frame **b, int owna, int ownb, std::int32_t rows, bool plus);

// dense = dense + sparse, or - with !plus, at (row - 1) + (col - 1) * rows; null slots are zeros. Nodes are
// freed when owned, and *frames becomes null.
void add_one_sparse(quolynode **dense, std::int32_t rows, int owned, sparse_frame **frames, bool plus);

void sparse_sum(const sparse_frame *frames, std::int32_t rows, quolynode **q);    // *q replaced
void sparse_trace(const sparse_frame *frames, std::int32_t rows, quolynode **q);  // *q replaced
void add_to_diag(const quolynode *q, sparse_frame *frames, std::int32_t n);       // zero entries go

// Call f on each value; entries that it leaves null or zero go.
void change_entries(sparse_frame *frames, std::int32_t rows, void (*f)(quolynode **val));

// Dense tables --------------------------------------------------------------------------------------------

// The identity: table holds n columns, `stride` slots apart. Old values are replaced; null is allowed.
void identi(quolynode **table, std::int32_t n, std::int32_t stride);
void uppertri(quolynode **table, std::int32_t n);  // the same with stride n

}  // namespace kelmar

#pragma once
// session/arr_value.h -- array values in flight.
//
// A value is a scalar (rows 0), a dense table in a work array, or a chain of sparse frames. Owned, its
// entries belong to the expression; else it stands for a stored array, or a section of one, by reference, and
// costs nothing until an operation reads it. The operation that writes first makes the copy.
//
// Every value is announced from open_value to close_value, so that an error releases what it holds. Work
// arrays are exchanged when they are not given back in order.

#include "matrix/sparse.h"
#include "quoly/quoly.h"

namespace kelmar {

struct arr_value {
    quolynode *n;             // the value of a scalar, owned
    std::int32_t rows, cols;  // 0, 0: a scalar
    std::int32_t onedim;      // the array that it stands for has one coordinate
    std::int32_t owned;       // 0: by reference
    std::int32_t work;        // number of its work array; 0: none
    quolynode **entries;      // the table in that work array, column-major
    std::int32_t filled;      // owned: so many entries are there, the others are rubbish
    sparse_frame *sparse;     // owned: the chain; null: dense
    const array *source;      // by reference: the array; the system array is &syst
    std::int64_t stamp;       // of the source: an array that went meanwhile is error 28
    std::int32_t row0, col0;  // by reference: where the section begins, from 0
    std::int32_t is_sparse;   // it is sparse, owned or not
    arr_value *outer;         // the value announced before
};
static_assert(std::is_trivial_v<arr_value>);

// default null; the value announced last; reset: unwind
inline arr_value *newest_value = nullptr;

void open_value(arr_value *v);   // *v filled: the scalar null, announced
void close_value(arr_value *v);  // releases what v still holds; it is the one announced last

// Close all values announced since newest_value was `mark`.
void release_values(arr_value *mark);

// Release what v holds; it is a scalar without value then.
void empty_value(arr_value *v);

// *to = *from, which becomes empty. What *to held is released.
void move_value(arr_value *from, arr_value *to);

inline bool is_array(const arr_value *v)
{
    return v->rows > 0;
}

inline bool is_square(const arr_value *v)
{
    return v->rows == v->cols;
}

inline std::int32_t entry_count(const arr_value *v)
{
    return v->rows * v->cols;  // of dense ones: it fits
}

// v stands for the array, or for the section of it that begins at row0, col0 (from 0).
void refer_to_array(arr_value *v, const array *a);
void refer_to_section(arr_value *v, const array *a, std::int32_t row0, std::int32_t col0, std::int32_t rows,
                      std::int32_t cols);

// v = an owned dense array of that shape with no entry filled yet. Declines (0) after an error. Errors: 43
// 88.
int begin_dense(arr_value *v, std::int32_t rows, std::int32_t cols);

// Put the next entry of an array begun so; *q is taken over.
inline void put_entry(arr_value *v, quolynode **q)
{
    v->entries[v->filled++] = *q;
    *q = nullptr;
}

// v = an owned sparse array without entries.
void begin_sparse(arr_value *v, std::int32_t rows, std::int32_t cols);

// Put the addresses of the entries of a dense value into its table; null: unset. Nothing to do for an owned
// one. Declines (0) after an error. Errors: 88.
int gather(arr_value *v);

// The entries of a sparse value; of a reference to an array that is gone, an empty chain.
sparse_frame *chain_of(arr_value *v);

// Make v an owned value: the entries of a reference are copied, unset ones stay unset. Declines (0) after an
// error. Errors: 88.
int make_owned_value(arr_value *v);

// The sparse value v as an owned dense one. Errors: 43 88. Declines (0) after them.
int densify(arr_value *v);

}  // namespace kelmar

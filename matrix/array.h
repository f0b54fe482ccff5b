#pragma once
// matrix/array.h -- the records of arrays, and the tables in which they stand.
//
// An ordinary array is a run of slots of the store (matrix/store.h) in column-major order; a sparse one is a
// chain of frames (matrix/sparse.h). arr_sparse alone tells which. A record stands in a bucket by its name,
// newest first, and all arrays but parameters stand in one list by age: what lies above another in the store
// is younger.

#include "numbers/long_mul.h"
#include "matrix/limits.h"
#include "quoly/quoly.h"

namespace kelmar {

struct sparse_frame;

struct array_name {
    char text[array_name_room];  // zero-padded
    std::int16_t index;          // hash of the text, for array_buckets
};

struct array {
    array_name arr_name;
    std::uint32_t arr_first;   // first slot of an ordinary array; 0 for a sparse one
    std::int32_t arr_last;     // last slot; -1 for a sparse one
    std::int64_t arr_size;     // rows times columns
    std::int32_t arr_rows;     // at least 1
    std::int32_t arr_cols;     // at least 1
    sparse_frame *arr_sparse;  // the first frame; null for an ordinary array
    std::int32_t arr_onedim;   // declared with one coordinate: it has one column
    std::int64_t arr_time;     // stamp; a parameter has the negated stamp of its array
    array *arr_next;           // in the bucket; free list
    array *arr_origin;         // of a parameter: the array that was passed
    array *older, *younger;    // by age; of a parameter: older is the parameter bound before it
};
static_assert(std::is_trivial_v<array>);

inline array *arr_store[array_buckets];
// default null; free records; newarray, give_array; reset: never
inline array *arr_garb = nullptr;
// default null; all arrays that are no parameters, by age; link_array, release; reset: never
inline array *oldest_array = nullptr;
inline array *newest_array = nullptr;
// default null; array parameters of active calls, newest first; push_array_param; reset: unwind
inline array *array_params = nullptr;
// default 0; stamp of the newest array; 64 bits, since each array expression takes one; link_array,
// fill_syst_array; reset: never
inline std::int64_t array_time = 0;

// default 0; counts the events that can make the address of an entry stale; reset: never
inline std::uint32_t array_moves = 0;

// Records -----------------------------------------------------------------------------------------------

// *a filled: a record with the size 0 and no storage, in no list.
void newarray(array **a);

// Link a fresh array at the head of its bucket and at the young end, with a stamp of its own. Nameless ones,
// whose text is empty, stand in no bucket.
void link_array(array *a);

// Declare an ordinary array. *a filled; null after an error. Errors: 27 for rows or columns below 1, 43, 26.
void insertarr(const array_name *name, std::int32_t rows, std::int32_t cols, std::int32_t onedim, array **a);

// Declare a sparse array; with init it gets empty frames, else the caller fills arr_sparse in. quick_: around
// the frames it is given. *a filled; null after an error. Errors: 27.
void sparse_create(const array_name *name, std::int32_t rows, std::int32_t cols, std::int32_t onedim,
                   bool init, array **a);
void quick_sparse_create(sparse_frame *frames, const array_name *name, std::int32_t rows, std::int32_t cols,
                         std::int32_t onedim, array **a);

// The newest array of the name, or null.
array *find_array(const array_name *name);

// The array of that stamp, or null; a parameter's stamp gives the array it stands for. Cost: a walk over all.
array *array_of_stamp(std::int64_t stamp);

inline bool is_array_parameter(const array *a)
{
    return a->arr_time < 0;
}

// It is a parameter whose array was cancelled while the function runs.
inline bool is_lost_parameter(const array *a)
{
    return a->arr_rows == 0;
}

// Removal -----------------------------------------------------------------------------------------------

// Delete the array, its storage too. Errors: 138 for a parameter, which stays: declines (0). 139, or 342 for
// a sparse one, when parameters refer to it: it is gone, and they have no rows any more.
int removearray(array *a);

// Delete an array that stands in no bucket, such as one of the array of arrays. Errors: none.
void remove_nameless(array *a);

// Turn an ordinary array into a sparse one in place; an unset entry becomes a zero. Errors: 138 for a
// parameter; 342 when parameters refer to it: they follow, with a warning each. Polls: no.
void make_sparse(array *a);

// Parameters --------------------------------------------------------------------------------------------

// Bind a parameter of that name to the array: a record that shares its storage. *p filled.
void push_array_param(const array_name *name, array *target, array **p);

// Release the parameters bound since array_params was `mark`, newest first; frames that were replaced go back
// to the origin.
void pop_array_params(array *mark);

// The array has got another shape, or other frames: the records that share its storage follow.
void share_shape(const array *a);

// Give the array another name: it moves to the head of the other bucket. Errors: 140 for a parameter.
void rename_array(array *a, const array_name *name);

// Make the report of free lists count the records of this folder. Called once.
void register_array_records();

}  // namespace kelmar

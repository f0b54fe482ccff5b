// matrix/array.cpp -- making and deleting arrays.
#include "matrix/array.h"
#include <cstdlib>
#include <cstring>
#include "numbers/heap.h"
#include "matrix/pins.h"
#include "matrix/sparse.h"
#include "matrix/sparse_ops.h"
#include "matrix/store.h"
#include "matrix/work_arrays.h"
#include "session/report.h"
#include "storage/accounting.h"

namespace kelmar {

// Records -----------------------------------------------------------------------------------------------

void newarray(array **a)
{
    array *fresh = arr_garb;
    if (fresh) {
        arr_garb = fresh->arr_next;
    } else {
        fresh = static_cast<array *>(zeroed_block(sizeof(array)));
    }
    *fresh = {};
    fresh->arr_last = -1;
    *a = fresh;
}

static void give_array(array *a)
{
    a->arr_time = 0;
    a->arr_next = arr_garb;
    arr_garb = a;
}

static inline bool same_name(const array_name *a, const array_name *b)
{
    return std::memcmp(a->text, b->text, array_name_room) == 0;
}

array *find_array(const array_name *name)
{
    for (array *a = arr_store[name->index]; a; a = a->arr_next) {
        if (same_name(&a->arr_name, name)) return a;
    }
    return nullptr;
}

array *array_of_stamp(std::int64_t stamp)
{
    if (stamp < 0) stamp = -stamp;
    for (array *a = newest_array; a; a = a->older) {
        if (a->arr_time == stamp) return a;
    }
    return nullptr;
}

static void link_bucket(array *a)
{
    if (!a->arr_name.text[0]) return;
    array **bucket = &arr_store[a->arr_name.index];
    a->arr_next = *bucket;
    *bucket = a;
}

static void unlink_bucket(array *a)
{
    if (!a->arr_name.text[0]) return;
    array **link = &arr_store[a->arr_name.index];
    while (*link != a) link = &(*link)->arr_next;
    *link = a->arr_next;
}

void link_array(array *a)
{
    a->arr_time = ++array_time;
    a->older = newest_array;
    a->younger = nullptr;
    (newest_array ? newest_array->younger : oldest_array) = a;
    newest_array = a;
    link_bucket(a);
}

static void unlink_age(array *a)
{
    (a->older ? a->older->younger : oldest_array) = a->younger;
    (a->younger ? a->younger->older : newest_array) = a->older;
}

// A record of that shape, not linked in.
static array *shaped_array(const array_name *name, std::int32_t rows, std::int32_t cols, std::int32_t onedim)
{
    array *a = nullptr;
    newarray(&a);
    a->arr_name = *name;
    a->arr_rows = rows;
    a->arr_cols = cols;
    a->arr_size = std::int64_t{rows} * cols;
    a->arr_onedim = onedim;
    return a;
}

void insertarr(const array_name *name, std::int32_t rows, std::int32_t cols, std::int32_t onedim, array **a)
{
    std::int32_t first;
    *a = nullptr;
    if (rows < 1 || cols < 1) {
        error(err_bad_index, name->text);
    } else if (oversize(rows, cols)) {
        error(err_array_too_big, name->text);
    } else if (take_slots(rows * cols, name->text, &first)) {
        *a = shaped_array(name, rows, cols, onedim);
        (*a)->arr_first = static_cast<std::uint32_t>(first);
        (*a)->arr_last = first + rows * cols - 1;
        link_array(*a);
    }
}

void sparse_create(const array_name *name, std::int32_t rows, std::int32_t cols, std::int32_t onedim,
                   bool init, array **a)
{
    sparse_frame *frames = nullptr;
    *a = nullptr;
    if (rows < 1 || cols < 1) {
        error(err_bad_index, name->text);
        return;
    }
    if (init) sparse_init(&frames, rows);
    quick_sparse_create(frames, name, rows, cols, onedim, a);
}

void quick_sparse_create(sparse_frame *frames, const array_name *name, std::int32_t rows, std::int32_t cols,
                         std::int32_t onedim, array **a)
{
    *a = shaped_array(name, rows, cols, onedim);
    (*a)->arr_sparse = frames;
    link_array(*a);
}

// Removal -----------------------------------------------------------------------------------------------

// Free the values; frames stay.
static void free_entries(array *a)
{
    if (a->arr_sparse) {
        free_sparse_data(a->arr_sparse, a->arr_rows);
    } else if (a->arr_last >= 0) {
        clear_slots(static_cast<std::int32_t>(a->arr_first), a->arr_last);
    }
}

// Release the storage and the record of an array that is in no bucket.
static void release_array(array *a)
{
    const bool ordinary = !a->arr_sparse && a->arr_last >= 0;
    free_entries(a);
    free_sparse_frame(&a->arr_sparse, a->arr_rows);
    if (ordinary) {
        give_slots(static_cast<std::int32_t>(a->arr_first), static_cast<std::int32_t>(a->arr_size), a);
    }
    unlink_age(a);
    give_array(a);
    ++array_moves;
    if (ordinary) close_large_gaps();
}

// The parameters that stand for an array which goes have no entries any more. Returns one of them, or null.
static const array *empty_parameters_of(const array *a)
{
    const array *any = nullptr;
    for (array *p = array_params; p; p = p->older) {
        if (p->arr_time != -a->arr_time) continue;
        any = p;
        p->arr_sparse = nullptr;
        p->arr_first = 0;
        p->arr_last = -1;
        p->arr_rows = p->arr_cols = 0;
        p->arr_size = 0;
    }
    return any;
}

int removearray(array *a)
{
    if (is_array_parameter(a)) {
        error(err_not_sparse_parameter, a->arr_name.text);
        return 0;
    }
    const int wrong = a->arr_sparse ? err_sparse_parameter : err_dangling_array;
    const array *const dangling = empty_parameters_of(a);
    unlink_bucket(a);
    remove_nameless(a);
    if (dangling) error(wrong, dangling->arr_name.text);
    return 1;
}

void remove_nameless(array *a)
{
    release_array(a);
}

// Conversion --------------------------------------------------------------------------------------------

// Move the value of a slot behind *tail as column col, unless it is unset or zero.
static void move_entry(quolynode **slot, std::int32_t col, colm ***tail)
{
    if (!*slot) return;
    if (quoly_iszero(*slot)) {
        retire_value(slot);
        return;
    }
    colm *node = newcolm(col, *slot);
    *slot = nullptr;
    **tail = node;
    *tail = &node->next;
}

static void move_entries(const array *a, sparse_frame *frames)
{
    const std::int32_t first = static_cast<std::int32_t>(a->arr_first);
    for (std::int32_t row = 0; row < a->arr_rows; ++row) {
        if (row > 0 && row % frame_rows == 0) frames = frames->frame_next;
        colm **tail = &frames->row_head[row % frame_rows];
        for (std::int32_t col = 0; col < a->arr_cols; ++col) {
            move_entry(store_slot(first + row + col * a->arr_rows), col + 1, &tail);
        }
    }
}

static bool parameters_follow(const array *a)
{
    bool any = false;
    for (array *p = array_params; p; p = p->older) {
        if (p->arr_time != -a->arr_time) continue;
        warning(err_sparse_parameter, p->arr_name.text);
        p->arr_sparse = a->arr_sparse;
        p->arr_first = 0;
        p->arr_last = -1;
        any = true;
    }
    return any;
}

void make_sparse(array *a)
{
    if (a->arr_sparse) return;
    if (is_array_parameter(a)) {
        error(err_not_sparse_parameter, a->arr_name.text);
        return;
    }
    sparse_frame *frames = nullptr;
    const std::int32_t first = static_cast<std::int32_t>(a->arr_first);
    sparse_init(&frames, a->arr_rows);
    move_entries(a, frames);
    give_slots(first, static_cast<std::int32_t>(a->arr_size), a);
    a->arr_sparse = frames;
    a->arr_first = 0;
    a->arr_last = -1;
    close_large_gaps();
    if (parameters_follow(a)) error(err_sparse_parameter, a->arr_name.text);
}

// Parameters --------------------------------------------------------------------------------------------

// The shape, and the place of the entries.
static void copy_shape(const array *from, array *to)
{
    to->arr_first = from->arr_first;
    to->arr_last = from->arr_last;
    to->arr_size = from->arr_size;
    to->arr_rows = from->arr_rows;
    to->arr_cols = from->arr_cols;
    to->arr_onedim = from->arr_onedim;
    to->arr_sparse = from->arr_sparse;
}

void push_array_param(const array_name *name, array *target, array **p)
{
    newarray(p);
    array *param = *p;
    param->arr_name = *name;
    copy_shape(target, param);
    param->arr_origin = target;
    param->arr_time = target->arr_time < 0 ? target->arr_time : -target->arr_time;
    param->older = array_params;
    array_params = param;
    link_bucket(param);
}

void pop_array_params(array *mark)
{
    while (array_params != mark) {
        array *p = array_params;
        array_params = p->older;
        unlink_bucket(p);
        if (p->arr_sparse) p->arr_origin->arr_sparse = p->arr_sparse;
        give_array(p);
    }
}

static void follow_shape(const array *from, array *to)
{
    if (from != to && std::abs(from->arr_time) == std::abs(to->arr_time)) copy_shape(from, to);
}

void share_shape(const array *a)
{
    if (!array_params) return;
    if (array *origin = array_of_stamp(a->arr_time)) follow_shape(a, origin);
    for (array *p = array_params; p; p = p->older) follow_shape(a, p);
}

void rename_array(array *a, const array_name *name)
{
    if (is_array_parameter(a)) {
        error(err_rename_parameter, a->arr_name.text);
        return;
    }
    unlink_bucket(a);
    a->arr_name = *name;
    link_bucket(a);
}

// Accounting --------------------------------------------------------------------------------------------

static std::int64_t count_arrays(std::int64_t limit)
{
    return count_list<array, &array::arr_next>(arr_garb, limit);
}

static std::int64_t count_frames(std::int64_t limit)
{
    return count_list<sparse_frame, &sparse_frame::frame_next>(spargarb, limit);
}

static std::int64_t count_colms(std::int64_t limit)
{
    return count_list<colm, &colm::next>(colm_garb, limit);
}

void register_array_records()
{
    record_kinds[row_array].count = count_arrays;
    record_kinds[row_sparse].count = count_frames;
    record_kinds[row_colm].count = count_colms;
    count_work_arrays = work_arrays_in_being;
}

}  // namespace kelmar

// matrix/sparse_tests.cpp -- questions about the entries of matrices.
//
// Each is a walk over all rows that ends as soon as the answer is known.
#include "matrix/sparse_tests.h"
#include "numbers/compare.h"
#include "poly/measure.h"
#include "poly/variables.h"
#include "quoly/mass.h"

namespace kelmar {

static row_walk walk_of(const sparse_frame *frames, std::int32_t rows)
{
    return {const_cast<sparse_frame *>(frames), 0, rows};
}

void sparse_iszero(const sparse_frame *frames, std::int32_t rows, std::int32_t *flag)
{
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        if (!*head) continue;
        *flag = 0;
        return;
    }
}

int sparse_allnumbs(const sparse_frame *frames, std::int32_t rows)
{
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            if (!node->val->is_num) return 0;
        }
    }
    return 1;
}

int sparse_allpolys(const sparse_frame *frames, std::int32_t rows, std::int32_t *allnums)
{
    *allnums = 1;
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            if (node->val->is_num) continue;
            *allnums = 0;
            if (node->val->den) return 0;
        }
    }
    return 1;
}

std::int32_t sparse_polydepth(const sparse_frame *frames, std::int32_t rows)
{
    std::int32_t least = constant_depth;
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            if (node->val->is_num) continue;
            const std::int32_t depth = poly_depth(node->val->top);
            if (depth < least) least = depth;
        }
    }
    return least;
}

// p lies in one variable: below its wrappers every coefficient is a number. *level = that of the variable.
static bool is_univariate(const polynode *p, std::int32_t *level)
{
    *level = 1;
    for (; is_wrapper(p); p = p->coef) ++*level;
    for (; p; p = p->next) {
        if (!p->isnum && !is_constant(p->coef)) return false;
    }
    return true;
}

int sparse_one_var_polys(const sparse_frame *frames, std::int32_t rows)
{
    std::int32_t common = 0;
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            std::int32_t level;
            if (node->val->is_num) continue;
            if (node->val->den || !is_univariate(node->val->top, &level)) return 0;
            if (common && level != common) return 0;
            common = level;
        }
    }
    return 1;
}

int anynegs(const polynode *p)
{
    for (; p; p = p->next) {
        if (p->exp < 0) return 1;
        if (!p->isnum && anynegs(p->coef)) return 1;
    }
    return 0;
}

int sparse_negexponents(const sparse_frame *frames, std::int32_t rows)
{
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) {
            if (!node->val->is_num && anynegs(node->val->top)) return 1;
        }
    }
    return 0;
}

int negexponents(quolynode *const *table, std::int32_t n)
{
    for (std::int32_t k = 0; k < n; ++k) {
        if (table[k] && !table[k]->is_num && anynegs(table[k]->top)) return 1;
    }
    return 0;
}

std::int32_t row_mass(const colm *head)
{
    std::int64_t sum = 0;
    for (; head; head = head->next) {
        sum += quoly_mass(head->val);
        if (sum > INT32_MAX) return heavy_row;
    }
    return static_cast<std::int32_t>(sum);
}

std::int32_t quick_row_mass(const colm *head)
{
    std::int32_t count = 0;
    for (; head; head = head->next) count += head->word > 0;
    return count;
}

std::int64_t sparse_entries(const sparse_frame *frames, std::int32_t rows)
{
    std::int64_t count = 0;
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        for (const colm *node = *head; node; node = node->next) ++count;
    }
    return count;
}

bool sparse_is_sound(const sparse_frame *frames, std::int32_t rows, std::int32_t cols)
{
    row_walk w = walk_of(frames, rows);
    while (colm **head = next_row(&w)) {
        std::int32_t before = 0;
        for (const colm *node = *head; node; node = node->next) {
            if (node->coord <= before || node->coord > cols) return false;
            if (!node->val || quoly_iszero(node->val)) return false;
            before = node->coord;
        }
    }
    return w.row == rows && !w.frame->frame_next;
}

}  // namespace kelmar

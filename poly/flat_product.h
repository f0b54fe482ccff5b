#pragma once
// poly/flat_product.h -- the product of two polynomials as flat arrays, for one ring of coefficients.
//
// The operands are written out as flat arrays; few gaps between their terms make a product by transforms,
// many one by stretches. What comes out is read back into a nested list.

#include <algorithm>
#include "poly/flat_dense.h"
#include "poly/flat_stretch.h"

namespace kelmar {

// Gather p, in the room `k`, with `extra` more entries. Declines (0) when the heap has no room.
template <class R>
int gather(flat_job<R> *job, int k, const polynode *p, const flat_shape *shape, const flat_packing *packing,
           flat_terms<R> *to)
{
    const std::size_t n = static_cast<std::size_t>(shape->terms) + 1;
    auto *room = static_cast<std::uint64_t *>(
        get_room(job->work, k, n * (sizeof(std::uint64_t) + sizeof(typename R::coef))));
    if (!room) return 0;
    to->key = room;
    to->coef = reinterpret_cast<typename R::coef *>(room + n);
    to->count = 0;
    flat_operand o;
    set_operand(packing, shape, &o);
    gather_terms(job->ring, &o, p, 0, 0, to);
    return 1;
}

template <class R> int prepare_rows(flat_job<R> *job)
{
    const std::size_t n = static_cast<std::size_t>(job->rows.count);
    job->cursor = static_cast<std::int64_t *>(
        get_room(job->work, room_cursors, 2 * n * sizeof(std::int64_t)));
    if (!job->cursor) return 0;
    job->kept_cursor = job->cursor + n;
    std::fill(job->cursor, job->cursor + n, 0);
    for (std::int64_t j = 0; j < job->inner.count; ++j) ++job->inner.key[j];
    job->inner.key[job->inner.count] = 0;
    return 1;
}

template <class R>
int sum_up(flat_job<R> *job, const polynode *a, const polynode *b, const flat_shape *sa, const flat_shape *sb,
           const flat_packing *packing)
{
    if (sb->terms < sa->terms) {
        std::swap(a, b);
        std::swap(sa, sb);
    }
    if (!gather(job, room_rows, a, sa, packing, &job->rows)) return 0;
    if (!gather(job, room_inner, b, sb, packing, &job->inner)) return 0;
    if (dense_flat_product(job->ring, job->work, &job->rows, &job->inner, &job->out)) return 1;
    return prepare_rows(job) && run_stretches(job, packing->span);
}

template <class R>
[[gnu::noinline]] int flat_product(R ring, const polynode *a, const polynode *b, const flat_shape *sa,
                                   const flat_shape *sb, const flat_packing *packing, polynode **c)
{
    flat_job<R> job = {};
    job.ring = ring;
    job.work = open_work(__builtin_frame_address(0));
    const int done = sum_up(&job, a, b, sa, sb, packing);
    if (done) {
        polynode **const result = &job.work->parts[0];
        flat_reader<R> reader = {ring, packing, &job.out, 0};
        build_list(&reader, 0, 0, result);
        if (!*result) poly_set(0, result);
        *c = *result;
        *result = nullptr;
    }
    close_work(job.work);
    return done;
}

}  // namespace kelmar

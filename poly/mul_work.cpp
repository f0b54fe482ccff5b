// poly/mul_work.cpp -- the records of running products.
//
// Running records are a stack, newest first, and frames fall from the older to the newer. Idle records wait
// on a list with their arrays, so that a small product asks the heap for nothing.
#include "poly/mul_work.h"
#include <cstdlib>
#include "storage/low_memory.h"

namespace kelmar {

static product_work *running = nullptr;  // default null; newest first; open_work, close_work
static product_work *idle = nullptr;     // default null; with their rooms; open_work, close_work
static std::size_t idle_bytes = 0;       // default 0; in the rooms of all records; get_room, release_room

// free_poly for a list that is being built: a coefficient may be null.
static void free_partial(polynode **p)
{
    for (polynode *t = *p, *next = nullptr; t; t = next) {
        next = t->next;
        if (t->isnum) {
            free_imag(&t->num);
        } else {
            free_partial(&t->coef);
        }
        give_node(t);
    }
    *p = nullptr;
}

static void give_loan(polynode **p)
{
    for (polynode *t = *p, *next = nullptr; t; t = next) {
        next = t->next;
        give_node(t);
    }
    *p = nullptr;
}

static void release_room(work_room *room)
{
    std::free(room->start);
    idle_bytes -= room->bytes;
    *room = {nullptr, 0};
}

void release_left_works(void *frame)
{
    while (running && running->frame <= static_cast<char *>(frame)) close_work(running);
}

product_work *open_work(void *frame)
{
    release_left_works(frame);
    while (!idle) {
        idle = static_cast<product_work *>(std::calloc(1, sizeof(product_work)));
        if (!idle) mem_error();
    }
    product_work *work = idle;
    idle = work->below;
    work->below = running;
    work->frame = static_cast<char *>(frame);
    running = work;
    return work;
}

void close_work(product_work *work)
{
    for (polynode *&part : work->parts) {
        if (part) free_partial(&part);
    }
    for (polynode *&loan : work->loans) {
        if (loan) give_loan(&loan);
    }
    if (idle_bytes > kept_room) {
        for (work_room &room : work->rooms) release_room(&room);
    }
    running = work->below;
    work->below = idle;
    idle = work;
}

polynode *result_of_work(product_work *work)
{
    polynode *result = work->parts[0];
    work->parts[0] = nullptr;
    close_work(work);
    return result;
}

void *get_room(product_work *work, int k, std::size_t bytes)
{
    work_room *room = &work->rooms[k];
    if (bytes <= room->bytes) return room->start;
    void *grown = std::realloc(room->start, bytes);
    if (!grown) return nullptr;
    idle_bytes += bytes - room->bytes;
    *room = {grown, bytes};
    return grown;
}

void release_work()
{
    while (running) close_work(running);
    while (idle) {
        product_work *next = idle->below;
        for (work_room &room : idle->rooms) release_room(&room);
        std::free(idle);
        idle = next;
    }
}

}  // namespace kelmar

#pragma once
// poly/mul_work.h -- what a running product holds: partial results and scratch arrays.
//
// A product can be left by a jump: an interrupt that it answers may end the statement, and so may an error
// further down. What it held must not be lost with its frame. So partial results and arrays stand in
// records apart from the stack, each marked with the frame of its product. The stack grows downward: when a
// product starts, a record whose frame is not above the new one belongs to a product that was left, and is
// released.

#include <cstddef>
#include "poly/node.h"

namespace kelmar {

inline constexpr int work_parts = 34;  // a partial sum for each power of two below 2^32, and two more
inline constexpr int work_rooms = 8;
inline constexpr int work_loans = 4;

struct work_room {
    void *start;
    std::size_t bytes;
};

struct product_work {
    product_work *below;          // the work of the product that runs this one; of an idle record, the next
    char *frame;                  // of the product
    polynode *parts[work_parts];  // partial results; a coefficient that is not made yet is null
    polynode *loans[work_loans];  // lists of nodes alone: what hangs below belongs to others
    work_room rooms[work_rooms];  // scratch arrays; kept from product to product while they are small
};
static_assert(std::is_trivial_v<product_work>);

// Return a record for the product whose frame is `frame`: __builtin_frame_address(0), in a function that is
// not inlined and opens one record. All parts and loans are null.
product_work *open_work(void *frame);

// Release the records of products that were left from a frame not above `frame`. A product that starts does
// it.
void release_left_works(void *frame);

// Release what is left in the newest record, and the record.
void close_work(product_work *work);

// Return part 0, which is the caller's from now on, and close the work.
polynode *result_of_work(product_work *work);

// Return room `k` of the record with at least `bytes` bytes; its content is kept up to its old size. Declines
// (null) when the heap has none.
void *get_room(product_work *work, int k, std::size_t bytes);

// Release all records, those of running products too. For a jump to the restart point, where none runs on.
void release_work();

// Bytes of scratch arrays that idle records keep at most.
inline constexpr std::size_t kept_room = std::size_t{1} << 24;

}  // namespace kelmar

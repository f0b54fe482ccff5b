#pragma once
// matrix/kept_room.h -- flat arrays that are kept from product to product.

#include <cstdlib>

namespace kelmar {

// Nothing polls while the content of such an array counts.
struct kept_room {
    void *start;
    std::size_t bytes;
};

// The array, of `bytes` bytes at least, old content gone. Declines (null): memory is short.
inline void *get_room(kept_room *room, std::size_t bytes)
{
    if (room->bytes < bytes) {
        std::free(room->start);
        room->start = std::malloc(bytes);
        room->bytes = room->start ? bytes : 0;
    }
    return room->start;
}

}  // namespace kelmar

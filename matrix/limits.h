#pragma once
// matrix/limits.h -- the sizes of the array store.

#include <cstdint>

namespace kelmar {

inline constexpr int array_buckets = 151;               // as the scalars have
inline constexpr int page_slots = 1024;                 // slots of a page of the store
inline constexpr int page_bits = 10;                    // its binary logarithm
inline constexpr int store_pages = 5000;                // pages there are at most
inline constexpr std::int32_t last_slot = 5119999;      // the last slot of the last page
inline constexpr std::int32_t array_entries = 1000000;  // of an ordinary array, and of a work array
inline constexpr std::int32_t literal_limit = 999999;   // entries of an array that is written out
inline constexpr int work_array_count = 20;             // work arrays there are at most
inline constexpr std::int32_t arrstash_slots = 400000;  // arrays in the array of arrays
inline constexpr int frame_rows = 2048;                 // row heads of a sparse frame
inline constexpr std::int32_t heavy_row = 0xffffff;     // the mass of a row whose sum leaves the words
inline constexpr int array_name_room = 12;              // bytes of a name, as a token has

static_assert(page_slots == 1 << page_bits && store_pages * page_slots == last_slot + 1);

}  // namespace kelmar

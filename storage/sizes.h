#pragma once
// storage/sizes.h -- the nominal record sizes of the storage budget.
//
// Every figure that a report prints or a memory trigger compares is made of these numbers, so that a session
// reads the same on every machine. What a record really takes is sizeof, and only the stashes use that.

#include <cstdint>

namespace kelmar {

inline constexpr std::int32_t numnodesize = 8;    // bytes of one digit
inline constexpr std::int32_t numbersize = 32;    // bytes of one number
inline constexpr std::int32_t polynodesize = 16;  // bytes of one polynomial term
inline constexpr std::int32_t quolysize = 20;     // bytes of one scalar value
inline constexpr std::int32_t colmsize = 12;      // bytes of one sparse row entry

// default 0; bytes of start-up tables; the start-up code adds, the memory report reads; reset: never
inline std::int64_t size_data_strucs = 0;

}  // namespace kelmar

#pragma once
// session/progress.h -- what progress lines keep; dumpitt and decr_dumpitt are in session/report.h.

#include <cstdint>

namespace kelmar {

inline constexpr std::int32_t progress_limit =
    1000;  // rounds of a loop; in loops with more nothing is written

// default 1; rounds of the loops around the present step, from the second level on; dumpitt; reset: unwind
inline std::int64_t suppressor = 1;
// default 0; columns of the progress line that are used; dumpitt; reset: unwind
inline std::int32_t dumpitt_length = 0;

// Write two blanks a level.
void doblanks(std::int32_t level);

// Forget the steps of a computation that was given up.
void progress_on_unwind();

}  // namespace kelmar

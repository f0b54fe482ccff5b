#pragma once
// session/plain_calls.h -- calls of functions inside a walk over stored tokens.
//
// A function whose statements are sums of plain numbers, and ifs with such conditions, can be walked as its
// call is: its parameters are numbers on a frame, and nothing is stored. Whatever else it has, and an
// error on the way, makes the walk decline, and the evaluators do the call. As a walk that declines late
// has worked in vain, what may be spent in vain is limited: a long one is earned by others that had a
// result, or by calls of the evaluators.

#include <cstdint>
#include "session/names.h"

namespace kelmar {

// default 0; calls entered by the present walk, above the bit that a call was refused; reset: begin_walk
inline std::int64_t calls_walked = 0;
inline constexpr std::int64_t call_refused = 1;
inline constexpr std::int64_t one_call = 2;

inline void begin_walk()
{
    calls_walked = 0;
}

// Charge the calls of the walk that began at the token, or credit them when it had a result; do then what the
// end of a call does.
void settle_calls(name_node *begin, bool done);

// The walk from that token is over; done: it had a result. Returns done.
inline bool end_walk(name_node *begin, bool done)
{
    if (__builtin_expect(calls_walked != 0, 0)) settle_calls(begin, done);
    return done;
}

// A walk from the token would meet a call that is for the evaluators.
inline bool is_refused(const name_node *begin)
{
    return begin->refused == definitions;
}

}  // namespace kelmar

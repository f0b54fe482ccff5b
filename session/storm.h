#pragma once
// session/storm.h -- a build for tests in which interrupts never stop.

#include <cstdint>

namespace kelmar {

// default 0; polls so far; storm_poll; reset: never
inline std::int64_t storm_polls = 0;
// default -1; the poll at which the statement is given up; with 0, or one that is past, none is, and no level
// is pushed either; tests; reset: never
inline std::int64_t storm_stop_at = -1;
// default 0; above 0: polls from one such stop to the next; fuzz targets; reset: never
inline std::int64_t storm_stop_every = 0;

// default null; what a level answers that is pushed at storm_stop_at, instead of giving the statement up;
// tests; reset: never
inline const char *storm_answers = nullptr;

// Now and then push a command level here and leave it at once, unseen. Nothing that a session
// shows may change.
void storm_poll();

// The level was not left, but given up with all that is below it.
void storm_on_unwind();

}  // namespace kelmar

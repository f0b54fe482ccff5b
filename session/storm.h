#pragma once
// session/storm.h -- a build for tests in which interrupts never stop.

namespace kelmar {

// Now and then push a command level here and leave it at once, unseen. Nothing that a session
// shows may change.
void storm_poll();

}  // namespace kelmar

#pragma once
// session/listing.h -- what exists: variables.

namespace kelmar {

// Write every variable as an assignment, then the arrays.
void listvars();

}  // namespace kelmar

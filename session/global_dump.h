#pragma once
// session/global_dump.h -- the list of all settings.

#include <cstdio>

namespace kelmar {

// Write the settings of the session, one a line: the command &g.
void global_dump();

// The same to a file.
void eglobal_dump(std::FILE *out);

}  // namespace kelmar

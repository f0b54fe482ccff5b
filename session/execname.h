#pragma once
// session/execname.h -- where the running program stands, and with it its data.

#include <cstddef>

namespace kelmar {

inline constexpr std::size_t path_room = 4096;

// Write the absolute path of the executable into buffer, of path_room bytes. 0: found directly; 1 or 2: made
// from the working directory, 2 when it could be canonicalised; -1: not found, the buffer empty.
int GetExecName(const char *argv0, char *buffer);

// Copy the first element of a colon-separated list into buffer; return what follows it, null at the end.
const char *getPathElement(const char *path, char *buffer);

// The file mode of a path, 0 when there is no such file.
unsigned get_file_mode(const char *path);

// Write the data directory, ending in "/", into buffer: BACKWARD/ beside the executable, one
// symbolic link of which is followed.
void find_data_directory(const char *argv0, char *buffer);

}  // namespace kelmar

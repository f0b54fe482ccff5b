// session/execname.cpp -- where the running program stands.
//
// A name with a slash is a path already; a bare name is looked for along PATH, as the shell found it.
#include "session/execname.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmar {

unsigned get_file_mode(const char *path)
{
    struct stat s;
    return stat(path, &s) == 0 ? s.st_mode : 0;
}

const char *getPathElement(const char *path, char *buffer)
{
    const char *colon = std::strchr(path, ':');
    std::size_t length = colon ? static_cast<std::size_t>(colon - path) : std::strlen(path);
    if (length >= path_room) length = path_room - 1;
    std::memcpy(buffer, path, length);
    buffer[length] = 0;
    return colon ? colon + 1 : nullptr;
}

static bool is_program(const char *path)
{
    return S_ISREG(get_file_mode(path)) && access(path, X_OK) == 0;
}

// directory/name into buffer. False when it does not fit.
static bool join_path(const char *directory, const char *name, char *buffer)
{
    const int length = std::snprintf(buffer, path_room, "%s/%s", directory, name);
    return length >= 0 && static_cast<std::size_t>(length) < path_room;
}

// Make a path that is relative to the working directory absolute.
static int from_working_directory(const char *relative, char *buffer)
{
    char here[path_room];
    char joined[path_room];
    if (!getcwd(here, sizeof here) || !join_path(here, relative, joined) || !is_program(joined)) return -1;
    std::memcpy(buffer, joined, path_room);
    char *canonical = realpath(joined, nullptr);
    if (!canonical) return 1;
    const bool fits = std::strlen(canonical) < path_room;
    // on purpose: only the directories are canonicalised; a link of the last component is the
    // caller's to follow
    struct stat s;
    if (fits && lstat(joined, &s) == 0 && !S_ISLNK(s.st_mode)) std::strcpy(buffer, canonical);
    std::free(canonical);
    return fits ? 2 : 1;
}

static int search_path(const char *name, char *buffer)
{
    char element[path_room];
    for (const char *rest = std::getenv("PATH"); rest;) {
        rest = getPathElement(rest, element);
        if (element[0] == 0) std::strcpy(element, ".");
        if (!join_path(element, name, buffer) || !is_program(buffer)) continue;
        return element[0] == '/' ? 0 : from_working_directory(buffer, buffer);
    }
    return -1;
}

int GetExecName(const char *argv0, char *buffer)
{
    int found = -1;
    buffer[0] = 0;
    if (!argv0 || !argv0[0]) return -1;
    if (argv0[0] == '/') {
        if (is_program(argv0) && std::strlen(argv0) < path_room) {
            std::strcpy(buffer, argv0);
            found = 0;
        }
    } else if (std::strchr(argv0, '/')) {
        found = from_working_directory(argv0, buffer);
    } else {
        found = search_path(argv0, buffer);
    }
    if (found < 0) buffer[0] = 0;
    return found;
}

// Replace the path by the target of the symbolic link that it is; a relative target replaces
// the last component.
static void follow_link(char *path)
{
    char target[1024];
    const ssize_t length = readlink(path, target, sizeof target - 1);
    if (length <= 0) return;
    target[length] = 0;
    char *last = std::strrchr(path, '/');
    char *put = target[0] == '/' || !last ? path : last + 1;
    if (static_cast<std::size_t>(put - path) + static_cast<std::size_t>(length) < path_room)
        std::strcpy(put, target);
}

void find_data_directory(const char *argv0, char *buffer)
{
    static const char below[] = "BACKWARD/";
    GetExecName(argv0, buffer);
    follow_link(buffer);
    char *last = std::strrchr(buffer, '/');
    if (!last) std::strcpy(buffer, "./");
    char *end = last ? last + 1 : buffer + 2;
    if (static_cast<std::size_t>(end - buffer) + sizeof below > path_room) end = buffer;
    std::strcpy(end, below);
}

}  // namespace kelmar

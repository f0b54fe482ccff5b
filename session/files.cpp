// session/files.cpp -- opening and closing statement files.
#include "session/files.h"
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include "numbers/heap.h"
#include "session/errors.h"
#include "session/output.h"
#include "session/prompt.h"
#include "session/report.h"
#include "session/texts.h"

namespace kelmar {

static constexpr int place_lines = 3;      // of the file that a report shows
static constexpr int place_columns = 255;  // of each of them

// Names -------------------------------------------------------------------------------------------------

// The opening quote is in hand.
static bool read_quoted_name(char *name)
{
    int length = 0;
    const text_end end = read_quoted(&Input, &zilch, name, &length);
    if (end == text_cut) error(err_bad_quoted_text, ";");
    if (end == text_too_long) std::fputs("*** Warning. Name is too long.\n", Output);
    return end == text_whole;
}

// The first token of the answer is in hand.
static bool read_answered_name(const char *cancelled, char *name)
{
    name[0] = 0;
    if (token.text[0] == '\'') return read_quoted_name(name);
    if (token.text[0] == '[') return read_array_text(&Input, &zilch, name, text_room);
    if (token.text[0] == '@') {
        std::fputs(cancelled, Output);
        return false;
    }
    if (token.text[0] != ';') std::strcpy(name, token.text);
    return true;
}

bool ask_file_name(const char *question, const char *cancelled, char *name)
{
    asking a;
    std::fputs(question, Output);
    begin_answer(&a);
    await_answer();
    scanner(&Input, &token, &zilch);
    const bool good = read_answered_name(cancelled, name);
    end_answer(&a);
    if (!good) set_token(&token, ";");
    return good;
}

bool check_file_name(const char *name, const char *other)
{
    if (name[0] && std::strcmp(name, other) != 0) return true;
    error(name[0] ? err_same_file : err_empty_file_name, name[0] ? name : token.text);
    return false;
}

// Reading -----------------------------------------------------------------------------------------------

// default null; the newest of the openings whose records are in use; reset: unwind
static open_file *newest_opening = nullptr;

// Release the record of a file that is closed and that nobody reads.
static void release_if_done(open_file *file)
{
    if (file == inpuf || file->loads > 0) return;
    if (file->older) file->older->newer = file->newer;
    (file->newer ? file->newer->older : newest_opening) = file->older;
    std::free(file);
}

bool open_input_file(const char *name)
{
    struct stat kind;
    const int fd = open(name, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    if (fstat(fd, &kind) != 0 || S_ISDIR(kind.st_mode)) {
        close(fd);
        return false;
    }
    open_file *file = static_cast<open_file *>(heap_record(sizeof(open_file)));
    *file = {{-1, 1, nullptr, 0, 0}, 0, 0, nullptr, newest_opening};
    if (newest_opening) newest_opening->newer = file;
    newest_opening = file;
    open_input(&file->in, fd);
    inpuf = file;
    std::snprintf(input_file_name, file_name_room, "%s", name);
    return true;
}

void close_input_file()
{
    if (!inpuf) return;
    open_file *file = inpuf;
    close_input(&file->in);
    inpuf = nullptr;
    input_file_name[0] = 0;
    release_if_done(file);
}

// Go to that place of the file. A pipe has none, and is read on.
static void seek_input(input_stream *in, off_t place)
{
    if (lseek(in->fd, place, SEEK_SET) < 0) return;
    in->pos = in->end = 0;
    in->at_end = 0;
}

void rewind_input_file(open_file *file)
{
    seek_input(&file->in, 0);
    file->ended = 0;
}

void enter_file(open_file *file)
{
    ++file->loads;
}

void leave_file(open_file *file)
{
    --file->loads;
    release_if_done(file);
}

static void write_file_line(input_stream *in)
{
    for (int length = 0; length < place_columns; ++length) {
        const int c = get_char(in);
        if (c == end_of_input) return;
        std::fputc(c, Output);
        if (c == '\n') return;
    }
}

void show_file_place()
{
    input_stream *in = &inpuf->in;
    const off_t unread = static_cast<off_t>(in->end - in->pos);
    const off_t place = lseek(in->fd, 0, SEEK_CUR) - unread;
    for (int line = 0; line < place_lines; ++line) write_file_line(in);
    if (place >= 0) {
        seek_input(in, place);
        drop_line(in);
    }
}

// Writing -----------------------------------------------------------------------------------------------

// A save under way: where it is written, and the file whose place it takes. Empty when there is none.
static char save_path[PATH_MAX + 8] = "";
static char target_path[PATH_MAX] = "";

static void report_unwritable(const char *name)
{
    std::fprintf(Output, " *** Warning. %s: can't be written (%s).\n", name, std::strerror(errno));
}

// What an existing file is replaced by keeps its rights. True when the name may be replaced at all:
// a terminal or a pipe is written itself.
static bool may_be_replaced(const char *name, mode_t *rights)
{
    struct stat old;
    *rights = 0;
    if (stat(name, &old) != 0) return true;
    *rights = old.st_mode & 0777;
    return S_ISREG(old.st_mode) && access(name, W_OK) == 0;
}

// Open the file beside `name`.
static bool open_aside(const char *name, mode_t rights)
{
    if (!realpath(name, target_path)) std::snprintf(target_path, sizeof target_path, "%s", name);
    std::snprintf(save_path, sizeof save_path, "%s.XXXXXX", target_path);
    const int fd = mkstemp(save_path);
    if (fd < 0) return false;
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, rights ? rights : 0666 & ~mask);
    outpuf = fdopen(fd, "w");
    if (!outpuf) close(fd);
    return outpuf != nullptr;
}

bool open_output_file(const char *name)
{
    mode_t rights;
    close_output_file();
    save_path[0] = 0;
    const bool aside = may_be_replaced(name, &rights) && open_aside(name, rights);
    if (!aside) {
        save_path[0] = 0;
        outpuf = std::fopen(name, "w");
    }
    if (!outpuf) {
        report_unwritable(name);
        return false;
    }
    std::snprintf(output_file_name, file_name_room, "%s", name);
    return true;
}

// Give up the file being written.
static void drop_output_file()
{
    std::fclose(outpuf);
    outpuf = nullptr;
    output_file_name[0] = 0;
    if (save_path[0]) unlink(save_path);
    save_path[0] = 0;
}

void commit_output()
{
    const bool written = std::fflush(outpuf) == 0 && !std::ferror(outpuf);
    if (written && (!save_path[0] || rename(save_path, target_path) == 0)) {
        save_path[0] = 0;
        return;
    }
    report_unwritable(output_file_name);
    if (save_path[0]) std::fputs(" The file that stood there is as it was.\n", Output);
    drop_output_file();
}

void flush_output_file()
{
    if (std::fflush(outpuf) == 0 && !std::ferror(outpuf)) return;
    report_unwritable(output_file_name);
    drop_output_file();
}

void close_output_file()
{
    if (!outpuf) return;
    flush_output_file();
    if (outpuf) drop_output_file();
}

void files_on_unwind()
{
    if (outpuf && save_path[0]) drop_output_file();
    for (open_file *file = newest_opening; file;) {
        open_file *older = file->older;
        file->loads = 0;
        release_if_done(file);
        file = older;
    }
}

}  // namespace kelmar

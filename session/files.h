#pragma once
// session/files.h -- the statement file that is read, and the file that is written.
//
// There is one of each at a time. A running load reads an opening of a file, not the file that is open at the
// moment: a statement in the file may close it, or open another one, and whoever still reads the old opening
// finds it at its end.
//
// A save goes to a file beside the one that it replaces, and takes its name when all is written: a save
// that fails, or is given up, leaves the old file as it was.

#include <cstdint>
#include <cstdio>
#include "session/texts.h"

namespace kelmar {

inline constexpr int file_name_room = text_room;  // bytes of a name

// One opening of a statement file.
struct open_file {
    input_stream in;
    std::int32_t loads;  // running loads that read it
    std::int32_t ended;  // reading ran to its end: the next &r begins again
    open_file *newer, *older;
};

// default null; the file being read; open_input_file, close_input_file; reset: never
inline open_file *inpuf = nullptr;
inline char input_file_name[file_name_room] = "";
// default 0; an error closes the file being read; the switch &b
inline std::int32_t close_inpuf = 0;
// default 0; reading of a file has been stopped by &x; load
inline std::int32_t done_load = 0;

// default null; the file being written; open_output_file, close_output_file; reset: never
inline std::FILE *outpuf = nullptr;
inline char output_file_name[file_name_room] = "";

// Names -------------------------------------------------------------------------------------------------

// name = the answer to the question, of file_name_room bytes. Declines (0): the answer was @, or an error
// came back; `cancelled` is written and the token in hand is ";". Errors: 28 33.
bool ask_file_name(const char *question, const char *cancelled, char *name);

// The name may be opened: it is neither empty nor `other`, that of the file open the other way. Declines (0)
// after error 149 or 248.
bool check_file_name(const char *name, const char *other);

// Reading -----------------------------------------------------------------------------------------------

// Open the file of that name for reading. Declines (0): there is none.
bool open_input_file(const char *name);

// Close the file being read, if there is one.
void close_input_file();

// Read the file from its beginning again.
void rewind_input_file(open_file *file);

// A load begins, or has ended, to read the file.
void enter_file(open_file *file);
void leave_file(open_file *file);

// Write the rest of the line being read and the two lines behind it. Reading goes on behind that line.
void show_file_place();

// Writing -----------------------------------------------------------------------------------------------

// Open a file for writing; commit_output gives it its name. Declines (0), with a report: it cannot be
// written.
bool open_output_file(const char *name);

// All of a save is written: put it in the place of the old file. What comes later is appended.
void commit_output();

// What was appended goes to the file. Writes a report when it cannot.
void flush_output_file();

void close_output_file();

// The computation is given up: no load reads any file, and a save that was not complete is removed.
void files_on_unwind();

}  // namespace kelmar

#pragma once
// session/errors.h -- what error reports, besides what report.h declares for everybody.

#include <cstdint>
#include "session/token.h"

namespace kelmar {

struct input_stream;

// Write message n and a line end. Message 17 has the list of legal letters in front.
void out_err_mess(int n);

// Forget the statement and all levels, without a report: what abandons a session that a test has ended.
void abandon_session();

// Do so, and go on at the restart point.
[[noreturn]] void restart_session();

// default null; what a function definition has accepted so far, for the report that cancels it; the definer
inline name_node *last_good_one = nullptr;
inline name_node *last_attached = nullptr;
inline std::int32_t func_def_count = 0;
inline token_rec current_func;

// default 0; the number of the last error reported; error; reset: never
inline int last_error = 0;

}  // namespace kelmar

#pragma once
// session/trace.h -- where a statement stood: active functions, and the stored statement that was running.

#include "session/names.h"

namespace kelmar {

inline constexpr int trace_frames = 500;  // active functions that a trace can name

// A ring of frames. A call moves lastf forward, a return back; a deeper recursion loses the oldest names.
struct trace_frame {
    trace_frame *prev;
    func_node *function;
    trace_frame *next;
};

inline trace_frame *first = nullptr;
inline trace_frame *lastf = nullptr;
// default null; the stored statement that runs, and the one before it; evaluate; reset: unwind
inline name_node *startexpr = nullptr;
inline name_node *prev_expr = nullptr;

// Make the ring of frames. Called once.
void make_trace();

// f goes away. A frame may still name it where a deep recursion lost its oldest names to later calls.
void forget_in_trace(const func_node *f);

// Write the names of the active functions, newest first. With `release` their parameters are released and
// their frames popped.
void write_function_trace(int release);

// Write the stored statement in which a function was interrupted.
void write_interrupted_statement();

}  // namespace kelmar

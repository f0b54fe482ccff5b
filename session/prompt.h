#pragma once
// session/prompt.h -- prompts, and the characters that they swallow.
//
// A prompt step drops as many characters of the input as the prompt has: the first is the line end that ended
// the statement just run. on purpose: whatever character stands there goes, also behind a ";" within a line.

#include <cstdint>
#include "session/token.h"

namespace kelmar {

inline constexpr int prompt_room = 12;

// default ">", 1; what asks for a statement, and its length; &M
inline char prompt[prompt_room] = ">";
inline std::int32_t promptsize = 1;

// Ask for the next statement: write the prompt, at a pushed level behind its number, and drop characters.
void next_prompt();

// Ask for the first statement after the start or a panic stop.
void restart_prompt();

// Write level and prompt of a question, and drop the pending character.
void do_prompts();

// The question is written: show it, and wait for an answer. At the end of the input the session ends.
void await_answer();

// What stands aside while an answer is read from the terminal.
struct asking {
    std::int32_t at_terminal;
    char pending[2];
    token_rec tok;
};

// Ask: do_prompts, and from now on the terminal is the source. Each use is a pair with end_answer, which
// brings back the source, its leftover when it is a file, and the token; between them await_answer is called
// before anything is read.
void begin_answer(asking *a);
void end_answer(const asking *a);

}  // namespace kelmar

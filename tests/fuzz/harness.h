#pragma once
// tests/fuzz/harness.h -- sessions for libFuzzer, each of which begins with nothing stored.

#include <cstddef>
#include <cstdint>

namespace kelmar_fuzz {

// Make the process ready; exact: its sessions are exact ones.
void prepare(int exact);

// Keep the fuzzer's input in history/, with some hundred before it: a finding may take more than one of them.
void note_input(const std::uint8_t *bytes, std::size_t n);

// Run a session on the bytes, in a process that has no values and no settings of an earlier one. A session
// gives a statement up after some ten thousand polls, so that loops without an end are no findings; whatever
// runs long without polling is one.
void run(const std::uint8_t *bytes, std::size_t n);

// Write the bytes to the file. Declines (0) when that fails.
bool write_file(const char *name, const std::uint8_t *bytes, std::size_t n);

}  // namespace kelmar_fuzz

#pragma once
// session/listing.h -- what exists: variables and their values.

#include <cstdio>
#include "session/names.h"

namespace kelmar {

// Write every variable as an assignment, then the arrays. names_only: without the values.
void listvars(bool names_only);

// In front of the value stands the command that reads polynomials: it is not written in a form which the
// evaluator reads, or reads fast.
bool needs_reader(const quolynode *q);

// Write the variable as a statement that brings it back.
void save_scalar(std::FILE *out, const var_node *v);

// Write all variables so, those of a bucket from the oldest on; not the parameters of active calls.
void save_scalars(std::FILE *out);

}  // namespace kelmar

#pragma once
// session/errnums.h -- the names of the error numbers, made of the rows of errors.def.

namespace kelmar {

enum error_number {
#define KELMAR_ERROR(number, name, state, text) name = (number),
#include "session/errors.def"
#undef KELMAR_ERROR
};

}  // namespace kelmar

#pragma once
// poly/disk.h -- polynomials put aside on the file `kelstore` of the working directory, and taken back in
// order.
//
// A polynomial is a text of whole numbers. A list is its terms and then 2147483647; a term is its exponent
// and its coefficient, a list; a number is -2147483648 and then
//     its size and its digits      digits are live
//     0 and the word               words are live
//     -1 and the two halves of it  doubles are live
// What was put aside is taken back in the same ring. The file may be spoiled in any way: what is taken back
// is in normal form, or nothing is.

#include <cstdint>
#include <cstdio>
#include "poly/node.h"

namespace kelmar {

// default null; the store; open_poly_disk, close_poly_disk; reset: never
inline std::FILE *kelstore = nullptr;

// Make kelstore, empty. Declines (0) when the file can't be made.
int open_poly_disk();

// Give kelstore up. The file stays.
void close_poly_disk();

// Put p at the end of kelstore. p spared. Declines (0), with the store as it was: it is not open, the disk is
// full, or an exponent is -2147483648.
int put_poly_disk(const polynode *p);

// *p = the next polynomial of kelstore, the oldest that was not yet taken. *p filled. Declines (0) with *p
// null when there is none, or when it is damaged or of another ring; the next call tries the same again.
int get_poly_disk(polynode **p);

}  // namespace kelmar

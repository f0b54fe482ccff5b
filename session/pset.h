#pragma once
// session/pset.h -- bit sets over character codes.
//
// A set is 16 words of 16 bits. Word 15 - (c >> 4) holds character c, bit c & 15: the words lie in reverse
// order, and the word count travels with each call.

#include <cstdint>

namespace kelmar {

inline constexpr int pset_words = 16;
typedef std::uint16_t PSet[pset_words];

void PSet_Init(std::uint16_t *set, int n);
void PSet_Set(std::uint16_t *set, int n, int c);
void PSet_SetRange(std::uint16_t *set, int n, int from, int to);
bool PSet_Eq(const std::uint16_t *a, const std::uint16_t *b, int n);
bool PSet_Subset(const std::uint16_t *a, const std::uint16_t *b, int n);  // a is contained in b
bool PSet_Subset2(const std::uint16_t *a, const std::uint16_t *b);        // the same on 16 words

// r = a - b, a & b, a | b. Return r, which may be an operand.
std::uint16_t *PSet_Difference(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n);
std::uint16_t *PSet_Intersection(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n);
std::uint16_t *PSet_Union(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n);

// c is in the set of n words; 0 when c >> 4 exceeds n.
inline bool PSet_Test(const std::uint16_t *set, int n, int c)
{
    const int word = c >> 4;
    return word < n && ((set[n - 1 - word] >> (c & 15)) & 1) != 0;
}

// The sets that the scanner and the parsers test. Filled once by init_psets.
inline PSet throwaways;     // blank, tab, line end, return: they separate tokens
inline PSet term_set;       // * / \ | ( : a term goes on
inline PSet iterm_set;      // * / \ | : an integer term goes on
inline PSet arr_term_ops;   // * / | \ _ : an array term goes on
inline PSet cond_set;       // > < = and the bytes B3, B2, AD: a comparison
inline PSet short_set;      // = > : listings write no blank before these
inline PSet poly_cond_set;  // = and AD: comparisons of values that are no numbers
inline PSet continset;      // " and backquote

void init_psets();

inline bool in_set(const std::uint16_t *set, char c)
{
    return PSet_Test(set, pset_words, static_cast<unsigned char>(c));
}

}  // namespace kelmar

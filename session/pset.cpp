// session/pset.cpp -- bit sets over character codes.
//
// Plain loops over 16 words. The reverse order of the words is kept because it is part of the type's
// definition, not because anything gains by it.
#include "session/pset.h"

namespace kelmar {

void PSet_Init(std::uint16_t *set, int n)
{
    for (int i = 0; i < n; ++i) set[i] = 0;
}

void PSet_Set(std::uint16_t *set, int n, int c)
{
    if ((c >> 4) >= n) return;
    std::uint16_t *word = &set[n - 1 - (c >> 4)];
    *word = static_cast<std::uint16_t>(*word | (1u << (c & 15)));
}

void PSet_SetRange(std::uint16_t *set, int n, int from, int to)
{
    for (int c = from; c <= to; ++c) PSet_Set(set, n, c);
}

bool PSet_Eq(const std::uint16_t *a, const std::uint16_t *b, int n)
{
    for (int i = 0; i < n; ++i) {
        if (a[i] != b[i]) return false;
    }
    return true;
}

bool PSet_Subset(const std::uint16_t *a, const std::uint16_t *b, int n)
{
    for (int i = 0; i < n; ++i) {
        if ((a[i] & ~b[i]) != 0) return false;
    }
    return true;
}

bool PSet_Subset2(const std::uint16_t *a, const std::uint16_t *b)
{
    return PSet_Subset(a, b, pset_words);
}

std::uint16_t *PSet_Difference(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n)
{
    for (int i = 0; i < n; ++i) r[i] = static_cast<std::uint16_t>(a[i] & ~b[i]);
    return r;
}

std::uint16_t *PSet_Intersection(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n)
{
    for (int i = 0; i < n; ++i) r[i] = static_cast<std::uint16_t>(a[i] & b[i]);
    return r;
}

std::uint16_t *PSet_Union(std::uint16_t *r, const std::uint16_t *a, const std::uint16_t *b, int n)
{
    for (int i = 0; i < n; ++i) r[i] = static_cast<std::uint16_t>(a[i] | b[i]);
    return r;
}

static void fill_set(std::uint16_t *set, const char *members)
{
    PSet_Init(set, pset_words);
    for (; *members; ++members) PSet_Set(set, pset_words, static_cast<unsigned char>(*members));
}

void init_psets()
{
    fill_set(throwaways, " \t\n\r");
    fill_set(term_set, "*/\\|(");
    fill_set(iterm_set, "*/\\|");
    fill_set(arr_term_ops, "*/|\\_");
    fill_set(cond_set, "><=\xB3\xB2\xAD");
    fill_set(short_set, "=>");
    fill_set(poly_cond_set, "=\xAD");
    fill_set(continset, "\"`");
}

}  // namespace kelmar

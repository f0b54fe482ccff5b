#pragma once
// poly/flat_rings.h -- coefficients of flat arrays: what stands for a number of the live view, and its
// products.
//
// A ring names the type of a coefficient and the type in which products are summed up, and carries what the
// arithmetic needs, so that the inner loops read no mode flag. settled() turns a sum into its final form,
// store_sum() into a number; sum_of_integer() is the sum that a transform tells as an integer.

#include "numbers/word_mod.h"
#include "poly/node.h"

namespace kelmar {

inline int bits_of(std::uint64_t v)
{
    return v == 0 ? 0 : 64 - __builtin_clzll(v);
}

// A sum is zero in its final form.
template <class S> inline bool is_zero_sum(const S &s)
{
    return s == S{0};
}

// Doubles -------------------------------------------------------------------------------------------------

struct real_ring {
    using coef = double;
    using sum = double;
};
inline double load_coef(real_ring, const number *n)
{
    return n->real;
}
inline void add_product(real_ring, double *s, double c, double d)
{
    *s += c * d;
}
inline void add_sum(real_ring, double *s, double t)
{
    *s += t;
}
inline double settled(real_ring, double s)
{
    return s;
}
inline void store_sum(real_ring, double s, number *n)
{
    n->real = s;
}
inline double sum_of_integer(real_ring, __int128 v)
{
    return static_cast<double>(static_cast<std::int64_t>(v));
}

// Residues. As long as a product is below 2^32, sums of them are reduced once, at the end. -----------------

struct small_residues {
    using coef = std::uint32_t;
    using sum = std::uint64_t;
    std::uint32_t m;
};
inline std::uint32_t load_coef(small_residues, const number *n)
{
    return static_cast<std::uint32_t>(n->word);
}
inline void add_product(small_residues, std::uint64_t *s, std::uint32_t c, std::uint32_t d)
{
    *s += static_cast<std::uint64_t>(c) * d;
}
inline void add_sum(small_residues, std::uint64_t *s, std::uint64_t t)
{
    *s += t;
}
inline std::uint64_t settled(small_residues r, std::uint64_t s)
{
    return s % r.m;
}
inline void store_sum(small_residues, std::uint64_t s, number *n)
{
    n->word = static_cast<std::int32_t>(s);
}
inline std::uint64_t sum_of_integer(small_residues, __int128 v)
{
    return static_cast<std::uint64_t>(v);
}

// Above that, sums are kept below m^2 < 2^62.
struct wide_residues {
    using coef = std::uint32_t;
    using sum = std::uint64_t;
    std::uint32_t m;
    std::uint64_t square;  // of m
};
inline std::uint32_t load_coef(wide_residues, const number *n)
{
    return static_cast<std::uint32_t>(n->word);
}
inline void add_sum(wide_residues r, std::uint64_t *s, std::uint64_t t)
{
    const std::uint64_t v = *s + t;
    *s = v >= r.square ? v - r.square : v;
}
inline void add_product(wide_residues r, std::uint64_t *s, std::uint32_t c, std::uint32_t d)
{
    add_sum(r, s, static_cast<std::uint64_t>(c) * d);
}
inline std::uint64_t settled(wide_residues r, std::uint64_t s)
{
    return s % r.m;
}
inline void store_sum(wide_residues, std::uint64_t s, number *n)
{
    n->word = static_cast<std::int32_t>(s);
}
inline std::uint64_t sum_of_integer(wide_residues r, __int128 v)
{
    const double_limb u = static_cast<double_limb>(v);  // below 2^94: two steps of 64 bits by 32
    const std::uint64_t high = static_cast<std::uint64_t>(u >> 32) % r.m;
    return (high << 32 | static_cast<std::uint32_t>(u)) % r.m;
}

// Elements of a table field ---------------------------------------------------------------------------------

struct field_ring {
    using coef = std::int32_t;
    using sum = std::int32_t;
};
inline std::int32_t load_coef(field_ring, const number *n)
{
    return n->word;
}
inline void add_product(field_ring, std::int32_t *s, std::int32_t c, std::int32_t d)
{
    *s ^= field_mult(c, d);
}
inline void add_sum(field_ring, std::int32_t *s, std::int32_t t)
{
    *s ^= t;
}
inline std::int32_t settled(field_ring, std::int32_t s)
{
    return s;
}
inline void store_sum(field_ring, std::int32_t s, number *n)
{
    n->word = s;
}
inline std::int32_t sum_of_integer(field_ring, __int128 v)
{
    return static_cast<std::int32_t>(v);
}

// Words that wrap -------------------------------------------------------------------------------------------

struct word_ring {
    using coef = std::uint32_t;
    using sum = std::uint32_t;
};
inline std::uint32_t load_coef(word_ring, const number *n)
{
    return static_cast<std::uint32_t>(n->word);
}
inline void add_product(word_ring, std::uint32_t *s, std::uint32_t c, std::uint32_t d)
{
    *s += c * d;
}
inline void add_sum(word_ring, std::uint32_t *s, std::uint32_t t)
{
    *s += t;
}
inline std::uint32_t settled(word_ring, std::uint32_t s)
{
    return s;
}
inline void store_sum(word_ring, std::uint32_t s, number *n)
{
    n->word = static_cast<std::int32_t>(s);
}
inline std::uint32_t sum_of_integer(word_ring, __int128 v)
{
    return static_cast<std::uint32_t>(v);
}

}  // namespace kelmar

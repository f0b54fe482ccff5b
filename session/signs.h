#pragma once
// session/signs.h -- signs of comparisons, as one character each, and what they say of two words or doubles.

namespace kelmar {

inline constexpr char less_equal = '\xB2';
inline constexpr char greater_equal = '\xB3';
inline constexpr char not_equal = '\xAD';

// The sign that two characters make; 0: the first stands alone.
inline char fused_sign(char first, char second)
{
    if (first == '<' && second == '=') return less_equal;
    if (first == '<' && second == '>') return not_equal;
    if (first == '>' && second == '=') return greater_equal;
    return 0;
}

template <class T> inline int compare_words(T a, T b, char sign)
{
    switch (sign) {
    case '<': return a < b;
    case '>': return a > b;
    case '=': return a == b;
    case less_equal: return a <= b;
    case greater_equal: return a >= b;
    default: return a != b;
    }
}

}  // namespace kelmar

#pragma once
// tests/support/settings.h -- globals that have another value for the length of a block.

#include <cstdint>
#include "poly/variables.h"

namespace kelmar_test {

// A word that tests change, put back at the end of the block.
struct kept_word {
    std::int32_t *word;
    std::int32_t saved;
    kept_word(std::int32_t *w, std::int32_t v) : word(w), saved(*w)
    {
        *w = v;
    }
    kept_word(const kept_word &) = delete;
    kept_word &operator=(const kept_word &) = delete;
    ~kept_word()
    {
        *word = saved;
    }
};

// laurent has the value until the end of the block.
struct in_laurent {
    std::int32_t saved = kelmar::laurent;
    explicit in_laurent(std::int32_t v)
    {
        kelmar::laurent = v;
    }
    in_laurent(const in_laurent &) = delete;
    ~in_laurent()
    {
        kelmar::laurent = saved;
    }
};

}  // namespace kelmar_test

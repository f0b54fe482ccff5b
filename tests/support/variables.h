#pragma once
// tests/support/variables.h -- six variables, and how they come into force.

#include "poly/variables.h"

namespace kelmar_test {

// Records of six variables, the outermost first.
struct six_variables {
    kelmar::pt record[6] = {};
    six_variables()
    {
        for (int k = 0; k < 6; ++k) {
            record[k].level = static_cast<std::int16_t>(k + 1);
            record[k].cut = 20;
            record[k].next = k < 5 ? &record[k + 1] : nullptr;
        }
    }
    const kelmar::pt *first() const
    {
        return record;
    }
};

// Six variables are in force until the end of the block.
struct six_in_force : six_variables {
    kelmar::pt *saved_names = kelmar::polynames;
    std::int32_t saved_count = kelmar::number_polys;
    six_in_force()
    {
        kelmar::polynames = record;
        kelmar::number_polys = 6;
    }
    six_in_force(const six_in_force &) = delete;
    ~six_in_force()
    {
        kelmar::polynames = saved_names;
        kelmar::number_polys = saved_count;
    }
    kelmar::pt *names()
    {
        return record;
    }
};

}  // namespace kelmar_test
